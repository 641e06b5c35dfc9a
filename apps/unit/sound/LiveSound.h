// Sound that goes on in time: from a file or the built-in scene, through the engine, into a file.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "unit/Unit.h"
#include "unit/sound/Engine.h"
#include "unit/sound/Scene.h"
#include "unit/sound/SoundFile.h"
#include "unit/sound/SoundWriter.h"

namespace unit::sound {

struct SoundOptions {
  std::string in;   // file that is heard; empty for the scene
  std::string out;  // file for what leaves the unit, empty for none
  bool looped = false;
  bool lenient = false;    // what is wrong with the file that is heard is only told
  std::uint64_t seed = 1;  // of the scene
};

class LiveSound {
 public:
  // Else a line that says what is wrong.
  static std::variant<std::unique_ptr<LiveSound>, std::string> Open(const SoundOptions& options);

  // From now on the unit's sound is this one, which must outlive it: it follows every command at the block
  // in which that comes, and answers what the host asks of it.
  void Attach(Unit& unit);

  // Processes all blocks that end by then, in microseconds of the unit's time. What it is more than half a
  // second late with is left out.
  void RunUntil(std::int64_t now);
  // When the next block ends.
  std::int64_t NextBlock() const { return static_cast<std::int64_t>(done + BlockTime()); }

  // One block, whatever the time. Past the end of the input it is silence.
  void RunBlock();
  bool InputEnded() const;
  double Seconds() const { return seconds; }  // of sound so far

  // What is heard from now on: a file, which stands at its start, or, without a path, the scene. Gives an
  // empty text, or what is wrong; then nothing has changed.
  std::string SetSource(const std::string& path);
  const std::string& SourceName() const { return options.in; }  // empty for the scene
  // While it does not play, the unit hears silence.
  std::string SetPlaying(bool plays);
  bool Playing() const { return playing; }

  // Completes the file that is written. Without it there is none.
  void Close();
  // Told of a line that says what is wrong with a file, of each once: nothing more is written after a
  // failure, and the sound that is heard goes on behind its flaw.
  std::function<void(const std::string&)> failed = [](const std::string&) {};
  // Nothing was wrong with either file so far that counts.
  bool Whole() const { return whole; }

  Engine engine;

 private:
  using Source = std::variant<Scene, SoundReader>;

  LiveSound(Source heard, SoundOptions wanted);

  double BlockTime() const { return 1e6 * BlockFrames / engine.SampleRate(); }
  void Follow(const Frame& frame);
  void TakeTables(const Synthesis& synthesis);
  void Settle();
  void FollowRate();
  void BeginFile();
  void EndFile();
  void Fail(const std::string& what);
  void Listen(std::span<float> left, std::span<float> right);
  void TellFlaw(const SoundReader& reader);

  Source source;
  SoundOptions options;
  Unit* attached = nullptr;
  bool changed = false;  // the unit holds something that the engine does not know
  int rate = 0;
  double done = 0;     // microseconds up to which the sound has been processed
  double seconds = 0;  // of sound
  std::optional<SoundWriter> writer;
  int files = 0;
  bool playing = true, whole = true, flawTold = false;
};

}  // namespace unit::sound
