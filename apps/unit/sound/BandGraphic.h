// The twenty-band graphic equalizer, as taps.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace unit::sound {

inline constexpr std::size_t GraphicBands = 20;
using BandValues = std::array<double, GraphicBands>;

// The centres in Hz: even steps up to the tenth band, wider ones above it.
BandValues BandCentres(double sampleRate);

// An odd number of taps, mostTaps at most and 1023 at most, symmetric about the middle one. words: linear
// gains, 32767 is 1, lowest band first; they hold at the centres in Hz (rising, below half of the
// sampleRate). Between them the gain goes straight from one to the next, outside it stays.
std::vector<float> GraphicTaps(const std::array<std::uint16_t, GraphicBands>& words,
                               const BandValues& centres, double sampleRate, std::size_t mostTaps);

}  // namespace unit::sound
