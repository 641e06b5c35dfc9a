#include "model/CombFilter.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>

#include "model/Kinds.h"
#include "model/SymmetricTaps.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

using S = SystemSettings;

// "Odd" and "Even" stand at the multiples of half a period, which is a whole number of samples.
int PeriodOf(const S& s, int stage, int longest) {
  const int period = s.combHarmonic[stage] == CombHarmonic::All ? s.combFreq[stage] : s.combFreq[stage] / 2;
  return std::clamp(period, 1, longest);
}

CombFilter Comb(const S& s, int stage, bool inverse) {
  const int size = std::max<int>(s.maxFilterSize[stage], 4);
  CombFilter filter{.period = PeriodOf(s, stage, size - 3)};
  filter.halfLength = (size + 1 - filter.period) / 2;
  const auto word = static_cast<std::int16_t>(CombWord(s.combDepth[stage]).word);
  const bool turned = (s.combHarmonic[stage] == CombHarmonic::Odd) != inverse;
  const bool notchesAtZero = turned ? word < 0 : word >= 0;
  filter.stopGain = (1 - std::abs(word) / FullScaleWord) / 2;
  filter.now = (1 + filter.stopGain) / 2;
  filter.later = notchesAtZero ? filter.now - 1 : 1 - filter.now;
  filter.beyond = inverse ? filter.stopGain : 1;
  filter.limit = Bounded(s.combLimit[stage] / static_cast<double>(s.sampleRate), 0.0, 0.5);
  return filter;
}

}  // namespace

CombFilter CombOf(const S& settings, int stage) { return Comb(settings, stage, false); }

CombFilter InverseCombOf(const S& settings, int stage) { return Comb(settings, stage, true); }

// The lowpass and what it leaves over share the signal between the comb and the gain beyond. Neither is
// turned by more than a right angle against the other, so that nowhere they cancel.
std::vector<double> GainsAt(const CombFilter& filter, std::span<const double> frequencies) {
  const double attenuation = WindowAttenuation(filter.stopGain);
  const double width = TransitionWidth(filter.halfLength, attenuation);
  std::vector<double> below(frequencies.size(), 1.0);
  if (filter.limit + width < 0.5) {  // the last tooth is whole: the transition begins at the limit
    const HalfTaps window = KaiserWindow(filter.halfLength, KaiserBeta(attenuation), filter.halfLength - 1);
    below = AmplitudesAt(LowpassTaps(window, filter.limit + width / 2), frequencies);
  }
  std::vector<double> gains;
  gains.reserve(frequencies.size());
  for (std::size_t i = 0; i < frequencies.size(); i++) {
    const double angle = -2 * std::numbers::pi * frequencies[i] * filter.period;
    const std::complex<double> comb = filter.now + filter.later * std::polar(1.0, angle);
    gains.push_back(std::abs(filter.beyond + below[i] * (comb - filter.beyond)));
  }
  return gains;
}

std::vector<double> TellingAt(const CombFilter& filter) {
  std::vector<double> extremes;
  const double step = 0.5 / filter.period;
  for (int k = 0; k * step <= filter.limit; k++) extremes.push_back(k * step);
  return extremes;
}

}  // namespace vc
