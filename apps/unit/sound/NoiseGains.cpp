// The gains of single lines, and where speech lets them stand.
#include "unit/sound/NoiseGains.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/NoiseFrame.h"

namespace unit::sound {
namespace {

constexpr float HighestRatio = 1e6F;      // beyond it nothing changes
constexpr float LeastRatio = 0.0031623F;  // -25 dB
constexpr float LeastSmoothed = 0.08F;    // -22 dB

// What stands this far above the noise over so many hertz and so long is hardly ever the noise's own chance.
constexpr double NearHz = 100;
constexpr double ClearSeconds = 0.009;
constexpr float ClearlyAbove = 2;  // times the noise, beyond the noise itself
constexpr float MostClear = 0.9F;  // a little is always smoothed

// A mean of signal-to-noise ratios below LeastPresent is that of noise alone: those that noise makes grow
// with what a frame counts for in their average. The law is a fit to white noise.
float LeastPresent(NoiseSmoothing smoothing, float averaging) {
  constexpr float leastNews = 0.0025F, power = 0.75F, spectrum = 1.5F;
  const float ofNoise = std::pow(std::max(1 - averaging, leastNews), power);
  return smoothing == NoiseSmoothing::Spectrum ? spectrum * ofNoise : ofNoise;
}

constexpr double FarHz = 400;
constexpr std::size_t NearLines = 3, FarLines = 17;  // at least, so that chance is evened out
constexpr double VoiceHz = 5000;                     // up to where most of speech is: what counts of a frame
constexpr double PresentSeconds = 0.02;
constexpr float SurelyAbove = 3.16F;  // times the least, and from there on it is speech
constexpr float Sure = 0.999F;

// 1 / n.
const std::array<float, NoiseGains::Lines + 1>& Parts() {
  static const auto parts = [] {
    std::array<float, NoiseGains::Lines + 1> each{};
    for (std::size_t n = 1; n < each.size(); ++n) each[n] = 1 / static_cast<float>(n);
    return each;
  }();
  return parts;
}

}  // namespace

float NoiseGains::Sums::Mean(std::size_t line, std::size_t reach) const {
  const std::size_t from = line - std::min(line, reach), end = std::min(line + reach + 1, Lines);
  return static_cast<float>(sums[end] - sums[from]) * Parts()[end - from];
}

void NoiseGains::Configure(const NoiseGainSettings& wanted) {
  settings = wanted;
  floor = wanted.smoothing == NoiseSmoothing::None ? wanted.floor : std::max(wanted.floor, LeastSmoothed);
  floorLog = std::log(std::max(floor, LeastSmoothed));
  const double lineHz = wanted.sampleRate / NoiseFrame::Size;
  const auto linesOf = [&](double width) { return static_cast<std::size_t>(std::lround(width / lineHz)); };
  nearReach = std::max(linesOf(NearHz), NearLines);
  farReach = std::max(linesOf(FarHz), FarLines);
  voiceReach = linesOf(VoiceHz);
  const double frameSeconds = NoiseFrame::Hop / wanted.sampleRate;
  clearKept = static_cast<float>(std::exp(-frameSeconds / ClearSeconds));
  presentKept = static_cast<float>(std::exp(-frameSeconds / PresentSeconds));
  leastPresent = LeastPresent(wanted.smoothing, wanted.averaging);
  surelyPresent = leastPresent * SurelyAbove;
  perLog = 1 / std::log(SurelyAbove);
}

void NoiseGains::Reset() {
  near.fill(0);
  present.fill(0);
  last.fill(0);
}

const NoiseGains::Spectrum& NoiseGains::Take(const Spectrum& power, const Spectrum& noise) {
  const bool smoothed = settings.smoothing != NoiseSmoothing::None;
  for (std::size_t k = 0; k < Lines; ++k) ratio[k] = std::min(power[k] / noise[k], HighestRatio);
  if (settings.smoothing == NoiseSmoothing::Ratio) FindClear();
  if (settings.smoothing == NoiseSmoothing::Spectrum) {
    for (std::size_t k = 0; k < Lines; ++k) last[k] = power[k] + settings.averaging * (last[k] - power[k]);
  }
  for (std::size_t k = 0; k < Lines; ++k) {
    signal[k] = SignalRatio(k, noise[k]);
    gain[k] = signal[k] / (1 + signal[k]);
  }
  if (settings.smoothing == NoiseSmoothing::Ratio) {
    for (std::size_t k = 0; k < Lines; ++k) last[k] = gain[k] * gain[k] * power[k];
  }
  if (smoothed) WeighBySpeech();
  for (float& each : gain) each = std::max(each, floor);
  return gain;
}

void NoiseGains::FindClear() {
  Sums ratios;
  for (std::size_t k = 0; k < Lines; ++k) ratios.Add(k, ratio[k]);
  for (std::size_t k = 0; k < Lines; ++k) {
    const float mean = ratios.Mean(k, nearReach);
    near[k] = mean + clearKept * (near[k] - mean);
    const float excess = std::max(near[k] - 1, 0.0F) / ClearlyAbove;
    const float steep = std::min(excess * excess * excess * excess, HighestRatio);
    clear[k] = MostClear * steep / (1 + steep);
  }
}

float NoiseGains::SignalRatio(std::size_t line, float noise) const {
  const float excess = std::max(ratio[line] - 1, 0.0F);
  switch (settings.smoothing) {
    case NoiseSmoothing::Spectrum:
      return std::max(last[line] / noise - 1, LeastRatio);
    case NoiseSmoothing::None:
      return excess;
    case NoiseSmoothing::Ratio:
      break;
  }
  const float weight = settings.averaging * (1 - clear[line]);
  return std::max(excess + weight * (last[line] / noise - excess), LeastRatio);
}

// 0..1 in the logarithm, as is the range of speech.
float NoiseGains::Likelihood(float mean) const {
  if (mean <= leastPresent) return 0;
  return mean >= surelyPresent ? 1 : std::log(mean / leastPresent) * perLog;
}

void NoiseGains::WeighBySpeech() {
  Sums ratios;
  for (std::size_t k = 0; k < Lines; ++k) {
    present[k] = signal[k] + presentKept * (present[k] - signal[k]);
    ratios.Add(k, present[k]);
  }
  const float ofFrame = Likelihood(ratios.Mean(0, voiceReach));
  for (std::size_t k = 0; k < Lines; ++k) {
    // Before the line itself is looked at, and after.
    const float prior =
        ofFrame <= 0 ? 0
                     : ofFrame * Likelihood(ratios.Mean(k, nearReach)) * Likelihood(ratios.Mean(k, farReach));
    if (prior <= 0) {
      gain[k] = floor;
      continue;
    }
    const float odds = (1 - prior) / prior * (1 + signal[k]) * std::exp(-gain[k] * ratio[k]);
    const float speech = 1 / (1 + odds);
    if (speech < Sure) gain[k] = std::exp(speech * std::log(gain[k]) + (1 - speech) * floorLog);
  }
}

}  // namespace unit::sound
