#include "model/LobeFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "model/modNumerical.h"

namespace vc {
namespace {

using S = SystemSettings;

// With which the window, n + 1 bins from end to end, has half of its height 1.5 bins from its centre.
constexpr double LobeBeta = 15.3;

LobeFilter Lobe(const S& s, int stage, std::int16_t hertz, std::int16_t width) {
  const int longest = std::max(s.maxFilterSize[stage] / 2 - 1, 1);
  return {.centre = Bounded(hertz / static_cast<double>(s.sampleRate), 0.0, 0.5),
          .halfLength = std::clamp<int>(width, 1, longest)};
}

}  // namespace

LobeFilter NotchOf(const S& s, int stage) {
  LobeFilter filter = Lobe(s, stage, s.notchFreq[stage], s.notchWidth[stage]);
  const auto taken = static_cast<std::int16_t>(NotchWord(s.notchAtten[stage]));
  filter.passed = -taken / FullScaleWord;
  return filter;
}

LobeFilter SlotOf(const S& s, int stage) {
  LobeFilter filter = Lobe(s, stage, s.slotFreq[stage], s.slotWidth[stage]);
  filter.direct = AttenWord(s.slotAtten[stage]) / FullScaleWord;
  filter.passed = 1 - filter.direct;
  return filter;
}

HalfTaps LobeTaps(const LobeFilter& filter) {
  HalfTaps taps = KaiserWindow(filter.halfLength, LobeBeta, filter.halfLength + 1);
  for (std::size_t k = 0; k < taps.size(); k++) {
    taps[k] *= std::cos(2 * std::numbers::pi * filter.centre * static_cast<double>(k));
  }
  const double height = AmplitudesAt(taps, std::vector{filter.centre}).front();
  for (double& tap : taps) tap *= filter.passed / height;
  taps.front() += filter.direct;
  return taps;
}

std::vector<double> GainsAt(const LobeFilter& filter, std::span<const double> frequencies) {
  return AmplitudesAt(LobeTaps(filter), frequencies);
}

std::vector<double> TellingAt(const LobeFilter& filter) {
  const double reach = 0.75 / (filter.halfLength + 1);
  return {filter.centre - reach, filter.centre, filter.centre + reach};
}

}  // namespace vc
