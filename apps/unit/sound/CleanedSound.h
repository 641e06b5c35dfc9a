// What a recording has become: a finished file that is heard in the place of the processed sound.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <variant>

#include "unit/sound/SoundFile.h"

namespace unit::sound {

// A file whose first sample belongs to a second of the recording.
class CleanedSound {
 public:
  // begins: that second. rate: the unit's, in Hz. Else a line that says what is wrong.
  static std::variant<CleanedSound, std::string> Open(const std::string& path, double begins, int rate);

  const std::string& Name() const { return name; }
  double Begins() const { return begins; }
  void SetRate(int rate) { file.SetRate(rate); }
  // What belongs to the recording from that second on, wherever it was read last; silence before its
  // beginning and behind its end.
  void Read(double second, std::span<float> left, std::span<float> right);

 private:
  CleanedSound(SoundReader opened, std::string path, double first)
      : file(std::move(opened)), name(std::move(path)), begins(first) {}

  SoundReader file;
  std::string name;
  double begins;
};

}  // namespace unit::sound
