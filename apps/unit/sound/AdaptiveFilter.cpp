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
  if (end == samples.size()) {
    std::copy(samples.end() - static_cast<std::ptrdiff_t>(reach), samples.end(), samples.begin());
    end = reach;
  }
  samples[end++] = sample;
}

void SampleHistory::Reset() {
  std::fill(samples.begin(), samples.end(), 0.0F);
  end = reach;
}

AdaptiveFilter::AdaptiveFilter() : inputs(AdaptiveDelay + 1), references(AdaptiveDelay + AdaptiveTaps + 1) {
  weights.reserve(AdaptiveTaps);
  Configure({});
}

void AdaptiveFilter::Configure(const AdaptiveSettings& wanted) {
  constexpr std::uint16_t highestRate = 2047;
  settings = wanted;
  settings.taps = std::clamp<std::size_t>(wanted.taps, 1, AdaptiveTaps);
  const std::size_t delay = std::min<std::size_t>(std::size_t{wanted.span} + 1, AdaptiveDelay);
  inputDelay = wanted.delayed == DelayedChannel::Input ? delay : 0;
  referenceDelay = wanted.delayed == DelayedChannel::Reference ? delay : 0;
  step = StepOf(std::min(wanted.rate, highestRate));
  levelWeight = 1 - std::exp(-1 / (LevelSeconds * wanted.sampleRate));
  if (weights.size() != settings.taps) weights.assign(settings.taps, 0.0F);
  untilExact = 0;
}

void AdaptiveFilter::Clear() { std::fill(weights.begin(), weights.end(), 0.0F); }

void AdaptiveFilter::Reset() {
  Clear();
  inputs.Reset();
  references.Reset();
  inputLevel = outputLevel = referenceLevel = {};
  untilExact = 0;
  nextBounded = 0;
  adapting = false;
}

void AdaptiveFilter::Process(std::span<const float> input, std::span<const float> reference,
                             std::span<float> normal, std::span<float> rejected) {
  for (std::size_t i = 0; i < input.size(); ++i) {
    const Outputs outputs = Next(Tame(input[i]), Tame(reference[i]));
    if (!normal.empty()) normal[i] = outputs.normal;
    if (!rejected.empty()) rejected[i] = outputs.rejected;
  }
  BringIn(references.Window(referenceDelay, weights.size()));
}

AdaptiveFilter::Outputs AdaptiveFilter::Next(float input, float reference) {
  inputs.Push(input);
  references.Push(reference);
  const std::span<const float> window = references.Window(referenceDelay, weights.size());
  TrackEnergy(window, references.Ago(referenceDelay + weights.size()));

  const float prediction = WithinHeadroom(Predict(window));
  const float error = WithinHeadroom(inputs.Ago(inputDelay) - prediction);
  inputLevel.Take(input, levelWeight);
  referenceLevel.Take(reference, levelWeight);
  outputLevel.Take(error, levelWeight);
  adapting = MayAdapt();
  if (adapting) Adapt(error);
  return {.normal = error, .rejected = prediction};
}

void AdaptiveFilter::Level::Take(float sample, double weight) {
  constexpr double faintest = 1e-30;
  meanSquare += weight * (double{sample} * sample - meanSquare);
  if (meanSquare < faintest) meanSquare = 0;
}

// One pass over the taps a sample: what the last one has taught comes in on the way.
float AdaptiveFilter::Predict(std::span<const float> window) {
  const float change = std::exchange(pendingChange, 0.0F);
  if (change == 0) return Dot(weights, window);
  return AddScaledAndDot(weights, change, references.Window(referenceDelay + 1, weights.size()), window);
}

void AdaptiveFilter::BringIn(std::span<const float> window) {
  if (pendingChange != 0) AddScaled(weights, std::exchange(pendingChange, 0.0F), window);
}

// A running sum; it is made exact now and then, so that what rounding leaves does not grow.
void AdaptiveFilter::TrackEnergy(std::span<const float> window, float leaving) {
  constexpr std::size_t exactEvery = 4096;
  if (untilExact == 0) {
    energy = Energy(window);
    untilExact = exactEvery;
  } else {
    energy += double{window.back()} * window.back() - double{leaving} * leaving;
  }
  --untilExact;
}

bool AdaptiveFilter::MayAdapt() const {
  if (step == 0) return false;
  const double threshold = settings.threshold / 32767.0;
  const auto above = [threshold](const Level& level) { return 2 * level.meanSquare > threshold * threshold; };
  switch (settings.condition) {
    case AdaptCondition::InputAbove:
      return above(inputLevel);
    case AdaptCondition::InputBelow:
      return !above(inputLevel);
    case AdaptCondition::OutputAbove:
      return above(outputLevel);
    case AdaptCondition::OutputBelow:
      return !above(outputLevel);
    case AdaptCondition::ReferenceAbove:
      return above(referenceLevel);
    case AdaptCondition::ReferenceBelow:
      return !above(referenceLevel);
    default:
      return true;
  }
}

void AdaptiveFilter::Adapt(float error) {
  constexpr double faintest = 1e-15;
  const double taps = static_cast<double>(weights.size());
  const double largest = 1 / (std::max(energy, 0.0) + QuietPower * taps);
  const double gain = settings.normalize ? step * largest : std::min(step / (UsualPower * taps), largest);
  const double change = gain * error;
  if (std::abs(change) < faintest) return;
  pendingChange = static_cast<float>(change);
  BoundWeights();
}

// A few taps at a time: what one sample can add to a tap is small.
void AdaptiveFilter::BoundWeights() {
  constexpr std::size_t atOnce = 16;  // more of them would not be stored when the next sample reads them
  const std::size_t end = std::min(nextBounded + atOnce, weights.size());
  for (std::size_t i = nextBounded; i < end; ++i) {
    weights[i] = std::clamp(weights[i], -LargestWeight, LargestWeight);
  }
  nextBounded = end == weights.size() ? 0 : end;
}

void AdaptiveFilter::Coefficients(std::span<std::int32_t> out) const {
  const std::size_t held = std::min(out.size(), weights.size());
  for (std::size_t i = 0; i < held; ++i) {
    const double code = std::nearbyint(double{weights[weights.size() - 1 - i]} * CoefficientUnit);
    out[i] = static_cast<std::int32_t>(std::clamp(code, -CoefficientUnit, CoefficientUnit - 1));
  }
  std::fill(out.begin() + static_cast<std::ptrdiff_t>(held), out.end(), 0);
}

void AdaptiveFilter::SetCoefficients(std::span<const std::int32_t> coefficients) {
  Clear();
  const std::size_t given = std::min(coefficients.size(), weights.size());
  for (std::size_t i = 0; i < given; ++i) {
    const double tap = std::clamp(coefficients[i] / CoefficientUnit, -1.0, 1.0);
    weights[weights.size() - 1 - i] = static_cast<float>(tap);
  }
}

}  // namespace unit::sound
