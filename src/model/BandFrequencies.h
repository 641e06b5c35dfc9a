// Where the twenty bands of the graphic filters and of the noise equalizer lie.
#pragma once

#include <cstdint>
#include <span>

namespace vc {

inline constexpr int BandCount = 20;

// In Hz, rising; the spacing is even up to the middle and wider above it. A bandwidthIndex outside the list
// counts as the nearest one.
std::span<const double, BandCount> BandFrequencies(std::int16_t bandwidthIndex);

}  // namespace vc
