#include "unit/sound/Comb.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/FirDesign.h"

namespace unit::sound {
namespace {

constexpr std::size_t MostLimitLength = 256;  // of the filter that makes the limit, taps up to its middle
// What is left of the comb above its limit, and of the filter's ripple in a notch of 60 dB below it.
constexpr double LimitAttenuation = 96.0;

}  // namespace

std::vector<float> CombTaps(bool inverse, const CombWords& words, double sampleRate, std::size_t mostTaps) {
  const std::size_t period = std::clamp<std::size_t>(words.period, 1, std::max<std::size_t>(mostTaps, 4) - 3);
  const double depth = static_cast<std::int16_t>(words.depth) / 32768.0;
  const double beyond = inverse ? (1.0 - std::abs(depth)) / 2.0 : 1.0;
  const std::size_t n =
      std::clamp<std::size_t>((mostTaps + 1 - std::min(period, mostTaps)) / 2, 2, MostLimitLength);
  // The last tooth is whole: the transition begins at the limit.
  const double width = TransitionWidth(n, LimitAttenuation);
  const double edge = words.limit / sampleRate + width / 2.0;
  const bool limited = edge + width / 2.0 < 0.5;
  const std::vector<double> below =
      limited ? LowpassTaps(n, edge, LimitAttenuation) : std::vector<double>{1.0};

  std::vector<double> taps(below.size() + period);
  for (std::size_t i = 0; i < below.size(); ++i) {
    taps[i] += (0.5 - beyond) * below[i];
    taps[i + period] -= 0.5 * depth * below[i];
  }
  taps[below.size() / 2] += beyond;
  return {taps.begin(), taps.end()};
}

}  // namespace unit::sound
