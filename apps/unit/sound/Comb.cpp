#include "unit/sound/Comb.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/FirDesign.h"

namespace unit::sound {
namespace {

std::size_t PeriodOf(const CombWords& words, std::size_t mostTaps) {
  return std::clamp<std::size_t>(words.period, 1, std::max<std::size_t>(mostTaps, 4) - 3);
}

}  // namespace

std::vector<float> CombTaps(bool inverse, const CombWords& words, double sampleRate, std::size_t mostTaps) {
  const std::size_t period = PeriodOf(words, mostTaps);
  const double depth = static_cast<std::int16_t>(words.depth) / 32768.0;
  const double floor = (1.0 - std::abs(depth)) / 2.0;
  const double beyond = inverse ? floor : 1.0;
  const std::size_t n = std::max<std::size_t>((mostTaps + 1 - std::min(period, mostTaps)) / 2, 2);
  // The last tooth is whole: the transition begins at the limit.
  const double attenuation = AttenuationFor(floor);
  const double width = TransitionWidth(n, attenuation);
  const double edge = words.limit / sampleRate + width / 2.0;
  const bool limited = edge + width / 2.0 < 0.5;
  const std::vector<double> below = limited ? LowpassTaps(n, edge, attenuation) : std::vector<double>{1.0};

  const double now = (1.0 + floor) / 2.0;
  const double later = std::copysign(1.0 - now, -depth);
  std::vector<double> taps(below.size() + period);
  for (std::size_t i = 0; i < below.size(); ++i) {
    taps[i] += (now - beyond) * below[i];
    taps[i + period] += later * below[i];
  }
  taps[below.size() / 2] += beyond;
  return {taps.begin(), taps.end()};
}

std::size_t CombLatency(const CombWords& words, std::size_t taps, std::size_t mostTaps) {
  return (taps - PeriodOf(words, mostTaps)) / 2;
}

}  // namespace unit::sound
