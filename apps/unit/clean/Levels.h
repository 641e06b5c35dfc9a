// How loud a sound is, measured as it goes by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace unit::clean {

struct LevelReport {
  double peak = 0, rms = 0;        // full scale is 1
  std::optional<double> loudness;  // LUFS of the whole (EBU R 128); nothing where it is too short or silent
  std::uint64_t clipped = 0;       // samples at or beyond full scale
};

class Levels {
 public:
  // fullScale: what counts as clipped, at it or beyond, also below 0.
  Levels(std::size_t channelCount, int rate, double fullScale);
  ~Levels();

  // Whole frames, channels side by side.
  void Take(std::span<const double> samples);
  LevelReport Report() const;

 private:
  struct Meter;  // the library's

  std::size_t channels;
  double limit;
  std::unique_ptr<Meter> meter;
  double peak = 0, squares = 0;
  std::uint64_t count = 0, clipped = 0;
};

}  // namespace unit::clean
