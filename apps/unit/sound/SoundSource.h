// What the unit hears.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "unit/card/SoundCard.h"
#include "unit/sound/Scene.h"
#include "unit/sound/SoundFile.h"

namespace unit::sound {

enum class SourceKind : std::uint8_t { Scene, File, Card };

struct SourceWish {
  SourceKind kind = SourceKind::Scene;
  std::string name;        // of the file or the card
  bool looped = false;     // the file is heard over and over
  std::uint64_t seed = 1;  // of the scene
};

// The built-in scene, a recording or the input of a sound card. It runs or holds still; while it holds still,
// and behind a recording's end, it is silent. A recording that comes to its end holds still there.
class SoundSource {
 public:
  // It runs, but for nothing. rate: the unit's, in Hz. Else a line that says what is wrong.
  static std::variant<SoundSource, std::string> Open(const SourceWish& wish, int rate);

  SourceKind Kind() const { return static_cast<SourceKind>(sound.index()); }
  const std::string& Name() const { return name; }

  void SetRate(int rate);
  // Two spans of the same length, which may be any.
  void Read(std::span<float> left, std::span<float> right);

  bool Playing() const { return playing; }
  // A recording that is at its end begins anew. Gives an empty text, or what is wrong; then nothing has
  // changed.
  std::string SetPlaying(bool plays);
  // Of a recording, in seconds. Each gives what SetPlaying gives.
  std::string Seek(double second);
  std::string SetLoop(const std::optional<SoundReader::Loop>& loop);

  // Null where it is something else.
  SoundReader* File() { return std::get_if<SoundReader>(&sound); }
  const SoundReader* File() const { return std::get_if<SoundReader>(&sound); }
  CardInput* Card() const;

 private:
  // In the order of SourceKind.
  using Sound = std::variant<Scene, SoundReader, std::unique_ptr<CardInput>>;

  SoundSource(Sound opened, std::string soundName) : sound(std::move(opened)), name(std::move(soundName)) {}

  Sound sound;
  std::string name;
  bool playing = true;
};

}  // namespace unit::sound
