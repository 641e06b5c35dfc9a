// The LMS law, its step and the conditions under which it works.
#include "unit/sound/AdaptiveFilter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "unit/sound/Samples.h"

namespace unit::sound {
namespace {

constexpr double CoefficientUnit = 8388608;  // 2^23
constexpr float LargestWeight = 1.0F;
// A reference below -40 dB is learned from more slowly: in its pauses, what is left of it must not be made to
// explain the input.
constexpr double QuietPower = 1e-4;
constexpr double UsualPower = 0.01;  // -20 dB

double StepOf(std::uint16_t word) {
  constexpr double middle = 1024;
  const double rate = RateOfWord(word);
  return rate / (rate + middle);
}

float WithinHeadroom(float sample) { return std::clamp(sample, -Headroom, Headroom); }

}  // namespace

unsigned RateOfWord(std::uint16_t word) {
  if (word <= 256) return word;
  return word <= 1024 ? 2U * word - 256 : 4U * word - 2304;
}

void SampleHistory::Push(float sample) {
  if (end_ == samples_.size()) {
    std::copy(samples_.end() - static_cast<std::ptrdiff_t>(reach_), samples_.end(), samples_.begin());
    end_ = reach_;
  }
  samples_[end_++] = sample;
}

void SampleHistory::Reset() {
  std::fill(samples_.begin(), samples_.end(), 0.0F);
  end_ = reach_;
}

AdaptiveFilter::AdaptiveFilter() : input_(AdaptiveDelay + 1), reference_(AdaptiveDelay + AdaptiveTaps + 1) {
  weights_.reserve(AdaptiveTaps);
  Configure({});
}

void AdaptiveFilter::Configure(const AdaptiveSettings& settings) {
  constexpr std::uint16_t highestRate = 2047;
  settings_ = settings;
  settings_.taps = std::clamp<std::size_t>(settings.taps, 1, AdaptiveTaps);
  const std::size_t delay = std::min<std::size_t>(std::size_t{settings.span} + 1, AdaptiveDelay);
  inputDelay_ = settings.delayed == DelayedChannel::Input ? delay : 0;
  referenceDelay_ = settings.delayed == DelayedChannel::Reference ? delay : 0;
  step_ = StepOf(std::min(settings.rate, highestRate));
  levelWeight_ = 1 - std::exp(-1 / (LevelSeconds * settings.sampleRate));
  if (weights_.size() != settings_.taps) weights_.assign(settings_.taps, 0.0F);
  untilExact_ = 0;
}

void AdaptiveFilter::Clear() { std::fill(weights_.begin(), weights_.end(), 0.0F); }

void AdaptiveFilter::Reset() {
  Clear();
  input_.Reset();
  reference_.Reset();
  inputLevel_ = outputLevel_ = referenceLevel_ = {};
  untilExact_ = 0;
  nextBounded_ = 0;
  adapting_ = false;
}

void AdaptiveFilter::Process(std::span<const float> input, std::span<const float> reference,
                             std::span<float> normal, std::span<float> rejected) {
  for (std::size_t i = 0; i < input.size(); ++i) {
    const Outputs outputs = Next(Tame(input[i]), Tame(reference[i]));
    if (!normal.empty()) normal[i] = outputs.normal;
    if (!rejected.empty()) rejected[i] = outputs.rejected;
  }
  BringIn(reference_.Window(referenceDelay_, weights_.size()));
}

AdaptiveFilter::Outputs AdaptiveFilter::Next(float input, float reference) {
  input_.Push(input);
  reference_.Push(reference);
  const std::span<const float> window = reference_.Window(referenceDelay_, weights_.size());
  TrackEnergy(window, reference_.Ago(referenceDelay_ + weights_.size()));

  const float prediction = WithinHeadroom(Predict(window));
  const float error = WithinHeadroom(input_.Ago(inputDelay_) - prediction);
  inputLevel_.Take(input, levelWeight_);
  referenceLevel_.Take(reference, levelWeight_);
  outputLevel_.Take(error, levelWeight_);
  adapting_ = MayAdapt();
  if (adapting_) Adapt(error);
  return {.normal = error, .rejected = prediction};
}

void AdaptiveFilter::Level::Take(float sample, double weight) {
  constexpr double faintest = 1e-30;
  meanSquare += weight * (double{sample} * sample - meanSquare);
  if (meanSquare < faintest) meanSquare = 0;
}

// One pass over the taps a sample: what the last one has taught comes in on the way.
float AdaptiveFilter::Predict(std::span<const float> window) {
  const float change = std::exchange(change_, 0.0F);
  if (change == 0) return Dot(weights_, window);
  return AddScaledAndDot(weights_, change, reference_.Window(referenceDelay_ + 1, weights_.size()), window);
}

void AdaptiveFilter::BringIn(std::span<const float> window) {
  if (change_ != 0) AddScaled(weights_, std::exchange(change_, 0.0F), window);
}

// A running sum; it is made exact now and then, so that what rounding leaves does not grow.
void AdaptiveFilter::TrackEnergy(std::span<const float> window, float leaving) {
  constexpr std::size_t exactEvery = 4096;
  if (untilExact_ == 0) {
    energy_ = Energy(window);
    untilExact_ = exactEvery;
  } else {
    energy_ += double{window.back()} * window.back() - double{leaving} * leaving;
  }
  --untilExact_;
}

bool AdaptiveFilter::MayAdapt() const {
  if (step_ == 0) return false;
  const double threshold = settings_.threshold / 32767.0;
  const auto above = [threshold](const Level& level) { return 2 * level.meanSquare > threshold * threshold; };
  switch (settings_.condition) {
    case AdaptCondition::InputAbove:
      return above(inputLevel_);
    case AdaptCondition::InputBelow:
      return !above(inputLevel_);
    case AdaptCondition::OutputAbove:
      return above(outputLevel_);
    case AdaptCondition::OutputBelow:
      return !above(outputLevel_);
    case AdaptCondition::ReferenceAbove:
      return above(referenceLevel_);
    case AdaptCondition::ReferenceBelow:
      return !above(referenceLevel_);
    default:
      return true;
  }
}

void AdaptiveFilter::Adapt(float error) {
  constexpr double faintest = 1e-15;
  const double taps = static_cast<double>(weights_.size());
  const double largest = 1 / (std::max(energy_, 0.0) + QuietPower * taps);
  const double gain = settings_.normalize ? step_ * largest : std::min(step_ / (UsualPower * taps), largest);
  const double change = gain * error;
  if (std::abs(change) < faintest) return;
  change_ = static_cast<float>(change);
  BoundWeights();
}

// A few taps at a time: what one sample can add to a tap is small.
void AdaptiveFilter::BoundWeights() {
  constexpr std::size_t atOnce = 16;  // more of them would not be stored when the next sample reads them
  const std::size_t end = std::min(nextBounded_ + atOnce, weights_.size());
  for (std::size_t i = nextBounded_; i < end; ++i) {
    weights_[i] = std::clamp(weights_[i], -LargestWeight, LargestWeight);
  }
  nextBounded_ = end == weights_.size() ? 0 : end;
}

void AdaptiveFilter::Coefficients(std::span<std::int32_t> out) const {
  const std::size_t held = std::min(out.size(), weights_.size());
  for (std::size_t i = 0; i < held; ++i) {
    const double code = std::nearbyint(double{weights_[weights_.size() - 1 - i]} * CoefficientUnit);
    out[i] = static_cast<std::int32_t>(std::clamp(code, -CoefficientUnit, CoefficientUnit - 1));
  }
  std::fill(out.begin() + static_cast<std::ptrdiff_t>(held), out.end(), 0);
}

void AdaptiveFilter::SetCoefficients(std::span<const std::int32_t> coefficients) {
  Clear();
  const std::size_t given = std::min(coefficients.size(), weights_.size());
  for (std::size_t i = 0; i < given; ++i) {
    const double tap = std::clamp(coefficients[i] / CoefficientUnit, -1.0, 1.0);
    weights_[weights_.size() - 1 - i] = static_cast<float>(tap);
  }
}

}  // namespace unit::sound
