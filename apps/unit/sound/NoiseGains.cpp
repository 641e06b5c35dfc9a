// The gains of single lines, and where they are evened out.
#include "unit/sound/NoiseGains.h"

#include <algorithm>
#include <cmath>

namespace unit::sound {
namespace {

constexpr double ReferenceRate = 12000;
constexpr float HighestRatio = 1e6F;    // beyond it nothing changes
constexpr float LeastSmoothed = 0.08F;  // -22 dB

// A mean over so much of the spectrum, and so much of the last frame at 12 kHz, has a dozen degrees of
// freedom: noise hardly ever takes it to ClearlyAbove.
constexpr double NearHz = 140;
constexpr float NearAveraging = 0.55F;
constexpr float ClearlyAbove = 2;  // times the noise, beyond the noise itself

// Whether a line is speech is told by the sounds of speech around it, so their width is one in Hz; how quiet
// a mean of gains is, by how many they are, so theirs is one in lines.
constexpr double SurroundingsHz = 1700;  // on each side, whose clear share decides
constexpr float WidestReach = 14;        // lines on each side where nothing is clear
constexpr float ChanceShare = 0.1F;      // of the power, up to which it is chance
constexpr float ClearShare = 0.55F;      // from which on a line is left alone

// Wiener's gain times exp(E1(v) / 2), which is the gain of the least logarithmic error. Below LeastRoot the
// factor, 27 dB there, grows no more: what is far below the noise is not lifted to it.
class LogarithmicGain {
 public:
  LogarithmicGain() {
    for (std::size_t i = 0; i < table.size(); ++i) {
      const double root = LeastRoot + static_cast<double>(i) / PerUnit;
      table[i] = static_cast<float>(root * std::exp(-0.5 * std::expint(-root * root)));
    }
  }

  // wiener: 0..1; v: the same times the ratio of the power to the noise.
  float operator()(float wiener, float v) const {
    const float root = std::max(std::sqrt(v), LeastRoot);
    const float place = std::min((root - LeastRoot) * PerUnit, static_cast<float>(Size));
    const auto at = static_cast<std::size_t>(place);
    if (at + 1 >= Size) return wiener;
    const float rooted = table[at] + (place - static_cast<float>(at)) * (table[at + 1] - table[at]);
    return wiener * rooted / root;
  }

 private:
  static constexpr float LeastRoot = 1.0F / 32, PerUnit = 32;
  static constexpr std::size_t Size = 128;
  std::array<float, Size> table{};  // of the factor times the root of v, which has no pole, by that root
};

const LogarithmicGain& Logarithmic() {
  static const LogarithmicGain gain;
  return gain;
}

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
  const double lineHz = wanted.sampleRate / (2.0 * (Lines - 1));
  const auto linesOf = [&](double width) { return static_cast<std::size_t>(std::lround(width / lineHz)); };
  nearReach = std::max<std::size_t>(1, linesOf(NearHz));
  surroundings = linesOf(SurroundingsHz);
  kept = std::pow(NearAveraging, static_cast<float>(ReferenceRate / wanted.sampleRate));
}

void NoiseGains::Reset() {
  near.fill(0);
  last.fill(0);
}

const NoiseGains::Spectrum& NoiseGains::Take(const Spectrum& power, const Spectrum& noise) {
  for (std::size_t k = 0; k < Lines; ++k) ratio[k] = std::min(power[k] / noise[k], HighestRatio);
  if (settings.smoothing != NoiseSmoothing::None) FindClear();
  if (settings.smoothing == NoiseSmoothing::Spectrum) {
    for (std::size_t k = 0; k < Lines; ++k) last[k] = power[k] + settings.averaging * (last[k] - power[k]);
  }
  for (std::size_t k = 0; k < Lines; ++k) gain[k] = std::clamp(Gain(k, noise[k]), floor, 1.0F);
  if (settings.smoothing != NoiseSmoothing::None) EvenOut();
  if (settings.smoothing == NoiseSmoothing::Ratio) {
    for (std::size_t k = 0; k < Lines; ++k) last[k] = gain[k] * gain[k] * power[k];
  }
  return gain;
}

void NoiseGains::FindClear() {
  for (std::size_t k = 0; k < Lines; ++k) ratios.Add(k, ratio[k]);
  for (std::size_t k = 0; k < Lines; ++k) {
    const float mean = ratios.Mean(k, nearReach);
    near[k] = mean + kept * (near[k] - mean);
    const float excess = std::max(near[k] - 1, 0.0F) / ClearlyAbove;
    const float steep = excess * excess * excess * excess;
    clear[k] = steep / (1 + steep);
  }
}

float NoiseGains::Gain(std::size_t line, float noise) const {
  const float excess = std::max(ratio[line] - 1, 0.0F);
  switch (settings.smoothing) {
    case NoiseSmoothing::Spectrum:
      return 1 - noise / std::max(last[line], noise);
    case NoiseSmoothing::None:
      return excess / (1 + excess);
    case NoiseSmoothing::Ratio:
      break;
  }
  const float weight = settings.averaging * (1 - clear[line]);
  const float smoothed = excess + weight * (last[line] / noise - excess);
  const float wiener = smoothed / (1 + smoothed);
  return Logarithmic()(wiener, wiener * ratio[line]);
}

void NoiseGains::EvenOut() {
  Sums clearPower, gains;
  for (std::size_t k = 0; k < Lines; ++k) {
    clearPower.Add(k, clear[k] * ratio[k]);
    gains.Add(k, gain[k]);
  }
  for (std::size_t k = 0; k < Lines; ++k) {
    const float share = clearPower.Mean(k, surroundings) / std::max(ratios.Mean(k, surroundings), 1e-6F);
    const float unclear = std::clamp((ClearShare - share) / (ClearShare - ChanceShare), 0.0F, 1.0F);
    const auto reach = static_cast<std::size_t>(std::lround(WidestReach * unclear));
    if (reach != 0) gain[k] = gains.Mean(k, reach);
  }
}

}  // namespace unit::sound
