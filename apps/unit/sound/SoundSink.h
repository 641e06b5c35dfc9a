// Where what leaves the unit goes.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <variant>

#include "unit/card/SoundCard.h"
#include "unit/sound/SoundWriter.h"

namespace unit::sound {

// A file has one rate: where the unit's changes the next one begins, "clean-2.wav" behind "clean.wav".
class FileSeries {
 public:
  // heard: a file that is never written, whatever its name or link; empty for none. Else a line that says
  // what is wrong.
  static std::variant<FileSeries, std::string> Begin(const std::string& path, int rate,
                                                     const std::string& heard);

  // Each gives an empty text or a line that says what is wrong: then nothing more is to be written.
  std::string Write(std::span<const float> left, std::span<const float> right);
  std::string SetRate(int sampleRate, const std::string& heard);
  // Completes the file.
  std::string Close();

  const std::string& Path() const { return path; }
  // Whether the path leads to a file that is being written.
  bool Writes(const std::string& file) const;

 private:
  FileSeries(std::string firstPath, SoundWriter begun, int sampleRate);

  std::string path;
  std::unique_ptr<SoundWriter> writer;
  int rate;
  int number = 1;
  bool empty = true;  // the file that is being written
};

enum class SinkKind : std::uint8_t { Nowhere, File, Card };

// In the order of SinkKind.
using SoundSink = std::variant<std::monostate, FileSeries, std::unique_ptr<CardOutput>>;

}  // namespace unit::sound
