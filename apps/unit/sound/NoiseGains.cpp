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
    for (std::size_t i = 0; i < table_.size(); ++i) {
      const double root = LeastRoot + static_cast<double>(i) / PerUnit;
      table_[i] = static_cast<float>(root * std::exp(-0.5 * std::expint(-root * root)));
    }
  }

  // wiener: 0..1; v: the same times the ratio of the power to the noise.
  float operator()(float wiener, float v) const {
    const float root = std::max(std::sqrt(v), LeastRoot);
    const float place = std::min((root - LeastRoot) * PerUnit, static_cast<float>(Size));
    const auto at = static_cast<std::size_t>(place);
    if (at + 1 >= Size) return wiener;
    const float rooted = table_[at] + (place - static_cast<float>(at)) * (table_[at + 1] - table_[at]);
    return wiener * rooted / root;
  }

 private:
  static constexpr float LeastRoot = 1.0F / 32, PerUnit = 32;
  static constexpr std::size_t Size = 128;
  std::array<float, Size> table_{};  // of the factor times the root of v, which has no pole, by that root
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
  return static_cast<float>(sums_[end] - sums_[from]) * Parts()[end - from];
}

void NoiseGains::Configure(const NoiseGainSettings& settings) {
  settings_ = settings;
  floor_ =
      settings.smoothing == NoiseSmoothing::None ? settings.floor : std::max(settings.floor, LeastSmoothed);
  const double lineHz = settings.sampleRate / (2.0 * (Lines - 1));
  const auto linesOf = [&](double width) { return static_cast<std::size_t>(std::lround(width / lineHz)); };
  reach_ = std::max<std::size_t>(1, linesOf(NearHz));
  surroundings_ = linesOf(SurroundingsHz);
  kept_ = std::pow(NearAveraging, static_cast<float>(ReferenceRate / settings.sampleRate));
}

void NoiseGains::Reset() {
  near_.fill(0);
  last_.fill(0);
}

const NoiseGains::Spectrum& NoiseGains::Take(const Spectrum& power, const Spectrum& noise) {
  for (std::size_t k = 0; k < Lines; ++k) ratio_[k] = std::min(power[k] / noise[k], HighestRatio);
  if (settings_.smoothing != NoiseSmoothing::None) FindClear();
  if (settings_.smoothing == NoiseSmoothing::Spectrum) {
    for (std::size_t k = 0; k < Lines; ++k) last_[k] = power[k] + settings_.averaging * (last_[k] - power[k]);
  }
  for (std::size_t k = 0; k < Lines; ++k) gain_[k] = std::clamp(Gain(k, noise[k]), floor_, 1.0F);
  if (settings_.smoothing != NoiseSmoothing::None) EvenOut();
  if (settings_.smoothing == NoiseSmoothing::Ratio) {
    for (std::size_t k = 0; k < Lines; ++k) last_[k] = gain_[k] * gain_[k] * power[k];
  }
  return gain_;
}

void NoiseGains::FindClear() {
  for (std::size_t k = 0; k < Lines; ++k) ratios_.Add(k, ratio_[k]);
  for (std::size_t k = 0; k < Lines; ++k) {
    const float mean = ratios_.Mean(k, reach_);
    near_[k] = mean + kept_ * (near_[k] - mean);
    const float excess = std::max(near_[k] - 1, 0.0F) / ClearlyAbove;
    const float steep = excess * excess * excess * excess;
    clear_[k] = steep / (1 + steep);
  }
}

float NoiseGains::Gain(std::size_t line, float noise) const {
  const float excess = std::max(ratio_[line] - 1, 0.0F);
  switch (settings_.smoothing) {
    case NoiseSmoothing::Spectrum:
      return 1 - noise / std::max(last_[line], noise);
    case NoiseSmoothing::None:
      return excess / (1 + excess);
    case NoiseSmoothing::Ratio:
      break;
  }
  const float last = settings_.averaging * (1 - clear_[line]);
  const float ratio = excess + last * (last_[line] / noise - excess);
  const float wiener = ratio / (1 + ratio);
  return Logarithmic()(wiener, wiener * ratio_[line]);
}

void NoiseGains::EvenOut() {
  Sums clear, gains;
  for (std::size_t k = 0; k < Lines; ++k) {
    clear.Add(k, clear_[k] * ratio_[k]);
    gains.Add(k, gain_[k]);
  }
  for (std::size_t k = 0; k < Lines; ++k) {
    const float share = clear.Mean(k, surroundings_) / std::max(ratios_.Mean(k, surroundings_), 1e-6F);
    const float unclear = std::clamp((ClearShare - share) / (ClearShare - ChanceShare), 0.0F, 1.0F);
    const auto reach = static_cast<std::size_t>(std::lround(WidestReach * unclear));
    if (reach != 0) gain_[k] = gains.Mean(k, reach);
  }
}

}  // namespace unit::sound
