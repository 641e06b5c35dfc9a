// Sound into files.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <variant>

#include "unit/sound/Blocks.h"
#include "unit/sound/EncodedFile.h"

namespace unit::sound {

// Writes stereo files of 24 bits: FLAC where the name ends so, WAV where it ends so or has no ending, which
// becomes RF64 above 4 GB. Samples are rounded to the nearest number; what is beyond full scale is clipped,
// what is no number is written as 0. The file appears under its name when it is closed (PartFile), and
// nothing is left of one that was neither closed nor has failed.
class SoundWriter {
 public:
  // rate in Hz. Else a line that says what is wrong, with the path first.
  static std::variant<SoundWriter, std::string> Create(const std::string& path, int rate);

  // Two spans of the same length. Gives an empty text, or a line that says what is wrong; then nothing more
  // is written, the part stays with what it has, and the line comes each time. About once a second the part
  // of a WAV file is made whole as far as it is.
  const std::string& Write(std::span<const float> left, std::span<const float> right);

  // The last thing to do with it; gives what Write gives.
  const std::string& Close();

 private:
  SoundWriter(int sampleRate, EncodedFile opened);

  void WriteBlock(std::span<const float> left, std::span<const float> right);
  void KeepWhatThereIs();

  std::size_t rate;
  EncodedFile file;
  std::string failure;
  std::array<int, 2 * BlockFrames> block{};
  std::size_t unsettled = 0;  // frames that the header does not count yet
};

}  // namespace unit::sound
