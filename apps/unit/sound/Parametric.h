// The parametric equalizer: up to four peaking sections in a row and a level.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace unit::sound {

class Parametric {
 public:
  static constexpr std::size_t Sections = 4;
  static constexpr std::size_t BlockSize = 2 + Sections * 14;  // bytes of the parameter block that are read

  // The block, bytes 0 and 1: the level, 32767 is 1; then seven words a section: the low 15 and the high 16
  // bits of the second-order band filter's coefficients, 2^30 is 1, and its gain, signed, 4096 is 1. A
  // section is 1 + gain times the filter; one that would not be stable passes what it gets. What it holds of
  // the sound stays.
  void Configure(std::span<const std::uint8_t, BlockSize> block);
  void Reset();
  void Process(std::span<const float> in, std::span<float> out);

 private:
  struct Section {
    double input = 0.0;                       // of x[n], and with its sign turned of x[n - 2]
    double feedback1 = 0.0, feedback2 = 0.0;  // of y[n - 1] and y[n - 2]
    double gain = 0.0;
    double state1 = 0.0, state2 = 0.0;
  };

  std::array<Section, Sections> sections{};
  double level = 1.0;
};

}  // namespace unit::sound
