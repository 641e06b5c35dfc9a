// Where the twenty bands of the graphic filters and of the noise equalizer lie.
#pragma once

#include <array>
#include <cstdint>

namespace vc {

inline constexpr int BandCount = 20;
// Steps from 0 Hz to the sample rate: every band stands on one of them.
inline constexpr int BandSteps = 360;

// In steps, rising; the spacing is even up to the middle and wider above it. A bandwidthIndex outside the
// list counts as the narrowest one.
std::array<int, BandCount> BandPlaces(std::int16_t bandwidthIndex);
// The same in Hz.
std::array<double, BandCount> BandFrequencies(std::int16_t bandwidthIndex);

}  // namespace vc
