// The frequency-sampling step of filter design, part of the port library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vc {

inline constexpr std::size_t IfftCapacity = 4096;

// Replaces the wanted linear magnitudes of bins 0..size/2 (bin k is k times the sample rate over size) by the
// taps 0..size-1 of a linear-phase filter that has them, centred at tap size/2, with unity gain for magnitude
// 1: all ones give a single 1.0 at tap size/2. The other bins are not read, entries from size on are left
// alone. size is any even number from 2 to 4096; another one changes nothing. mode is always 1.
// Frequency-sampling design: Rabiner, Gold, "Theory and Application of Digital Signal Processing",
// 1975, 3.17.
void CalculateIFFT(std::int16_t size, std::int16_t mode, std::span<float, IfftCapacity> buffer);

}  // namespace vc
