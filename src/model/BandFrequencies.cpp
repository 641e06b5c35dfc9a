#include "model/BandFrequencies.h"

#include <algorithm>
#include <cstddef>

#include "model/Bandwidth.h"

namespace vc {
namespace {

constexpr std::array<int, BandCount> Everywhere{2,  6,  10, 14, 18, 22,  26,  30,  34,  38,
                                                44, 54, 64, 76, 88, 100, 112, 124, 136, 148};

// 740 Hz at 3.2 kHz, 4400 Hz at 6.5 kHz: those do not follow the rate.
struct Moved {
  std::int32_t sampleRate;
  std::size_t band;
  int place;
};
constexpr std::array MovedBands{Moved{7200, 9, 37}, Moved{14400, 16, 110}};

}  // namespace

std::array<int, BandCount> BandPlaces(std::int16_t bandwidthIndex) {
  std::array<int, BandCount> places = Everywhere;
  for (const Moved& moved : MovedBands) {
    if (moved.sampleRate == BandwidthOf(bandwidthIndex).sampleRate) places.at(moved.band) = moved.place;
  }
  return places;
}

std::array<double, BandCount> BandFrequencies(std::int16_t bandwidthIndex) {
  const double step = static_cast<double>(BandwidthOf(bandwidthIndex).sampleRate) / BandSteps;
  std::array<double, BandCount> frequencies{};
  std::ranges::transform(BandPlaces(bandwidthIndex), frequencies.begin(),
                         [step](int place) { return place * step; });
  return frequencies;
}

}  // namespace vc
