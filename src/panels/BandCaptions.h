// What the bands of a graphic filter are called.
#pragma once

#include <cstdint>
#include <string_view>

namespace vc {

inline constexpr int BandCount = 20;

// "740", "1.1K": where band 0..19 lies at a bandwidth, the lowest first. The spacing is even up to the middle
// and wider above it. A bandwidth or a band outside the list counts as the nearest one.
std::string_view BandCaption(std::int16_t bandwidthIndex, int band);

}  // namespace vc
