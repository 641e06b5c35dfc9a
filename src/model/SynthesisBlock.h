// The parameter blocks from which the unit synthesizes the filter of a stage by itself.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vc {

// Words in a block are 16 bits, low byte first; what a block does not use is 0.
using StageBlock = std::array<std::uint8_t, 96>;
// Word number `word` (0..47).
inline std::uint16_t BlockWord(const StageBlock& block, std::size_t word) {
  return static_cast<std::uint16_t>(block[2 * word] | block[2 * word + 1] << 8);
}

inline constexpr std::size_t GraphicBands = 20;
inline constexpr std::size_t ParametricSubstages = 4;

// Four words at bytes 0..7.
StageBlock FourWordBlock(std::uint16_t p1, std::uint16_t p2, std::uint16_t p3, std::uint16_t p4);

// Twenty words, 32767 times the gain of a band. The numbers are slider values: dB of attenuation, 0..40. A
// negative one counts as 0, bands missing from a shorter span stay 0.
StageBlock TwentyBandBlock(std::span<const std::int16_t> attenuations);

struct ParametricSubstage {
  double center = 0;  // fraction of the sample rate, 0..0.45
  double ratio = 0;   // centre over bandwidth; 0 gives a section without width
  double boost = 0;   // dB, -60..16
  bool active = false;
};
using ParametricSubstageRow = std::array<ParametricSubstage, ParametricSubstages>;

// The level word (half decibels, 192 is full scale and so is what lies above), then seven words a substage. A
// substage adds K times a bandpass of unit gain at its centre to the signal; it keeps the bandpass while it
// is not active, with K 0. The bandpass is the bilinear transform of a second-order resonance: Zoelzer,
// "Digital Audio Signal Processing", 5.2. A result that is not finite counts as 0 or as the bound that it is
// beyond.
StageBlock ParametricBlock(std::int16_t level, const ParametricSubstageRow& substages);

struct CompressorValues {
  std::int16_t limitThresh = 0;  // dB, -90..0, as compThresh
  std::int16_t compThresh = 0;
  double compRatio = 1;  // 1..100, as expRatio
  double expRatio = 1;
  std::int16_t attack = 1;  // ms, above 0, as release
  std::int16_t release = 1;
};

// Time constants in 2^-31 a sample at the rate bandwidthHz, thresholds as 256 times the binary logarithm of
// their 16-bit level, ratios as fraction of 32768 and in sixteenths. Results are bounded to the words that
// hold them.
StageBlock CompressorBlock(std::int16_t bandwidthHz, const CompressorValues& values);

}  // namespace vc
