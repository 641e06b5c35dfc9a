// The sound under the taps, and the conditions under which they are learned.
#include "unit/sound/AdaptiveFilter.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "unit/sound/Samples.h"

namespace unit::sound {
namespace {

constexpr double CoefficientUnit = 8388608;  // 2^23
constexpr std::uint16_t HighestRate = 2047;
constexpr double UsualPower = 0.01;  // -20 dB

float WithinHeadroom(float sample) { return std::clamp(sample, -Headroom, Headroom); }

}  // namespace

unsigned RateOfWord(std::uint16_t word) {
  if (word <= 256) return word;
  return word <= 1024 ? 2U * word - 256 : 4U * word - 2304;
}

std::span<float> SampleHistory::Push(std::size_t count) {
  if (end + count > samples.size()) {
    std::copy(samples.begin() + static_cast<std::ptrdiff_t>(end - reach),
              samples.begin() + static_cast<std::ptrdiff_t>(end), samples.begin());
    end = reach;
  }
  end += count;
  return std::span(samples).subspan(end - count, count);
}

void SampleHistory::Reset() {
  std::fill(samples.begin(), samples.end(), 0.0F);
  end = reach;
}

AdaptiveFilter::AdaptiveFilter()
    : inputs(AdaptiveDelay + BlockFrames),
      references(AdaptiveDelay + AdaptiveTaps + TransformSpan),
      learner(AdaptiveTaps),
      scout(AdaptiveTaps),
      line(settings.sampleRate) {
  taps.reserve(AdaptiveTaps);
  Configure({});
}

void AdaptiveFilter::Configure(const AdaptiveSettings& wanted) {
  settings = wanted;
  settings.rate = std::min(wanted.rate, HighestRate);
  const std::size_t delay = std::min<std::size_t>(std::size_t{wanted.span} + 1, AdaptiveDelay);
  inputDelay = wanted.delayed == DelayedChannel::Input ? delay : 0;
  const std::size_t ofReference = wanted.delayed == DelayedChannel::Reference ? delay : 0;
  levelWeight = 1 - std::exp(-1 / (LevelSeconds * wanted.sampleRate));
  settings.taps = std::clamp<std::size_t>(wanted.taps, 1, AdaptiveTaps);
  if (wanted.sampleRate != sampleRate) line.SetRate(wanted.sampleRate);
  sampleRate = wanted.sampleRate;
  if (learner.Size() == settings.taps && referenceDelay == ofReference) return;
  line.Reset();
  learner.Resize(settings.taps);
  scout.Resize(settings.taps);
  referenceDelay = ofReference;
  tapsKnown = framesKnown = heard = false;
}

void AdaptiveFilter::Clear() {
  learner.Clear();
  scout.Clear();
  learnerLeft = scoutLeft = 0;
  line.Reset();
  tapsKnown = false;
}

void AdaptiveFilter::Reset() {
  Clear();
  inputs.Reset();
  references.Reset();
  inputLevel = outputLevel = referenceLevel = {};
  filled = lessons = 0;
  framesKnown = heard = adapting = false;
}

void AdaptiveFilter::Process(std::span<const float> input, std::span<const float> reference,
                             std::span<float> normal, std::span<float> rejected) {
  for (std::size_t at = 0; at < input.size();) {
    const std::size_t count = std::min(input.size() - at, BlockFrames - filled);
    std::ranges::transform(input.subspan(at, count), inputs.Push(count).begin(), Tame);
    std::ranges::transform(reference.subspan(at, count), references.Push(count).begin(), Tame);
    ProcessPiece(count);
    if (!normal.empty()) std::copy_n(error.begin(), count, normal.begin() + static_cast<std::ptrdiff_t>(at));
    if (!rejected.empty())
      std::copy_n(prediction.begin(), count, rejected.begin() + static_cast<std::ptrdiff_t>(at));
    at += count;
  }
}

void AdaptiveFilter::ProcessPiece(std::size_t count) {
  Predict(count);
  const std::span<const float> input = inputs.Window(inputDelay, count);
  for (std::size_t i = 0; i < count; ++i) {
    prediction[i] = WithinHeadroom(prediction[i]);
    error[i] = WithinHeadroom(input[i] - prediction[i]);
  }
  Judge(count);
  if (filled < BlockFrames) return;
  if (!heard) Hear();
  if (Holds())
    line.Process(blockPrediction, blockError, references.Held(BlockFrames, BlockFrames).first<BlockFrames>());
  if (lessons > 0) Learn();
  filled = lessons = 0;
  heard = false;
}

bool AdaptiveFilter::Holds() const {
  return settings.predictor && referenceDelay >= BlockFrames + HeldLine::Latency;
}

// Whole blocks by their frames, pieces of a block and short filters directly.
void AdaptiveFilter::Predict(std::size_t count) {
  constexpr std::size_t directTaps = BlockFrames;
  if (count == BlockFrames && learner.Size() > directTaps) {
    Hear();
    learner.Predict(prediction);
    return;
  }
  if (!tapsKnown) taps.assign(learner.Taps().rbegin(), learner.Taps().rend());
  tapsKnown = true;
  Correlate(taps, references.Window(referenceDelay, taps.size() + count - 1),
            std::span(prediction).first(count));
}

// At the end of a block.
void AdaptiveFilter::Hear() {
  const auto frame = [this](std::size_t blocksAgo) {
    return references.Window(referenceDelay + blocksAgo * BlockFrames, TransformSpan).first<TransformSpan>();
  };
  for (BlockLearner* const one : {&learner, &scout}) {
    one->Hear(frame(0));
    for (std::size_t i = 1; i < one->Partitions() && !framesKnown; ++i) one->HearAgain(i, frame(i));
  }
  framesKnown = heard = true;
}

// Sample by sample, whether it may be learned from.
void AdaptiveFilter::Judge(std::size_t count) {
  const std::span<const float> input = inputs.Window(0, count), reference = references.Window(0, count),
                               late = inputs.Window(inputDelay, count);
  for (std::size_t i = 0; i < count; ++i) {
    inputLevel.Take(input[i], levelWeight);
    referenceLevel.Take(reference[i], levelWeight);
    outputLevel.Take(error[i], levelWeight);
    adapting = MayAdapt();
    taught[filled + i] = adapting;
    taughtError[filled + i] = adapting ? error[i] : 0;
    taughtInput[filled + i] = adapting ? late[i] : 0;
    blockPrediction[filled + i] = prediction[i];
    blockError[filled + i] = error[i];
    if (adapting) ++lessons;
  }
  filled += count;
}

void AdaptiveFilter::Learn() {
  constexpr double part = 163840, middle = 4;
  const double rate = RateOfWord(settings.rate);
  const double loudness = settings.normalize ? 1 : std::min(1.0, referenceLevel.meanSquare / UsualPower);
  const Lesson lesson{.rate = loudness * rate / part,
                      .gain = loudness * rate / (rate + middle),
                      .share = static_cast<double>(lessons) / BlockFrames};
  learner.Learn(taughtInput, taughtError, lesson);
  if (!settings.predictor) Scout(lesson);
  tapsKnown = false;
}

// A second set of taps, which nobody hears, forgets quickly: so it finds a way that has appeared or changed
// while the first one, being sure of itself, does not look for it. Where it leaves less, it is followed (K.
// Ochiai, T. Araseki, T. Ogihara, "Echo canceler with two echo path models", IEEE Transactions on
// Communications 25, 1977).
void AdaptiveFilter::Scout(const Lesson& lesson) {
  constexpr double quick = 1.6e-3, likely = 0.1, kept = 0.98, better = 1.1;
  const auto meanSquare = [](const BlockOf& sound) {
    return std::inner_product(sound.begin(), sound.end(), sound.begin(), 0.0) / BlockFrames;
  };
  BlockOf left;
  scout.Predict(left);
  for (std::size_t i = 0; i < BlockFrames; ++i) {
    left[i] = taught[i] ? WithinHeadroom(taughtInput[i] - WithinHeadroom(left[i])) : 0;
  }
  learnerLeft = kept * learnerLeft + (1 - kept) * meanSquare(taughtError);
  scoutLeft = kept * scoutLeft + (1 - kept) * meanSquare(left);
  scout.Learn(
      taughtInput, left,
      {.rate = std::max(lesson.rate, quick), .least = likely, .gain = lesson.gain, .share = lesson.share});
  if (learnerLeft <= better * scoutLeft) return;
  learner.Follow(scout);
  learnerLeft = scoutLeft;
}

void AdaptiveFilter::Level::Take(float sample, double weight) {
  constexpr double faintest = 1e-30;
  meanSquare += weight * (double{sample} * sample - meanSquare);
  if (meanSquare < faintest) meanSquare = 0;
}

bool AdaptiveFilter::MayAdapt() const {
  if (settings.rate == 0) return false;
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

void AdaptiveFilter::Coefficients(std::span<std::int32_t> out) const {
  const std::size_t held = std::min(out.size(), learner.Size());
  for (std::size_t i = 0; i < held; ++i) {
    const double code = std::nearbyint(double{learner.Taps()[i]} * CoefficientUnit);
    out[i] = static_cast<std::int32_t>(std::clamp(code, -CoefficientUnit, CoefficientUnit - 1));
  }
  std::fill(out.begin() + static_cast<std::ptrdiff_t>(held), out.end(), 0);
}

void AdaptiveFilter::SetCoefficients(std::span<const std::int32_t> coefficients) {
  std::vector<float> wanted;
  for (const std::int32_t coefficient : coefficients.first(std::min(coefficients.size(), learner.Size()))) {
    wanted.push_back(static_cast<float>(std::clamp(coefficient / CoefficientUnit, -1.0, 1.0)));
  }
  learner.SetTaps(wanted);
  scout.SetTaps(wanted);
  line.Reset();
  tapsKnown = false;
}

}  // namespace unit::sound
