#include "unit/sound/BlockLearner.h"

#include <algorithm>

namespace unit::sound {
namespace {

// Of a tap's spectrum before anything was heard, and part of the power of taps that are given.
constexpr float FirstVariance = 0.3F, GivenVariance = 0.01F;
constexpr float LargestTap = 1.0F;

float PowerOf(const FrameSpectrum& spectrum, std::size_t line) {
  return spectrum.re[line] * spectrum.re[line] + spectrum.im[line] * spectrum.im[line];
}

std::size_t PartitionsOf(std::size_t taps) { return (taps + BlockFrames - 1) / BlockFrames; }

}  // namespace

BlockLearner::BlockLearner(std::size_t mostTaps)
    : taps(PartitionsOf(mostTaps) * BlockFrames), partitions(PartitionsOf(mostTaps)) {
  Resize(1);
}

void BlockLearner::Resize(std::size_t wanted) {
  if (wanted == size) return;
  size = wanted;
  count = Partitions();
  newest = 0;
  for (Partition& partition : partitions) partition.sound = {};
  Clear();
}

void BlockLearner::Clear() {
  std::ranges::fill(taps, 0.0F);
  for (Partition& partition : partitions) {
    partition.taps = {};
    partition.variance.fill(FirstVariance);
  }
  other = before = after = {};
}

void BlockLearner::SetTaps(std::span<const float> wanted) {
  Clear();
  if (std::ranges::all_of(wanted, [](float tap) { return tap == 0; })) return;
  std::ranges::copy(wanted.first(std::min(wanted.size(), size)), taps.begin());
  for (std::size_t i = 0; i < count; ++i) {
    Load(i);
    Partition& at = partitions[i];
    for (std::size_t line = 0; line < TransformPoints; ++line) {
      at.variance[line] = GivenVariance * PowerOf(at.taps, line);
    }
  }
}

void BlockLearner::Follow(const BlockLearner& leader) {
  taps = leader.taps;
  for (std::size_t i = 0; i < count; ++i) {
    partitions[i].taps = leader.partitions[i].taps;
    partitions[i].variance = leader.partitions[i].variance;
  }
}

void BlockLearner::Hear(std::span<const float, TransformSpan> frame) {
  newest = (newest + count - 1) % count;
  transform.Forward(frame, Sound(0));
}

void BlockLearner::HearAgain(std::size_t partition, std::span<const float, TransformSpan> frame) {
  transform.Forward(frame, Sound(partition));
}

void BlockLearner::Predict(std::span<float, BlockFrames> prediction) {
  sum = {};
  for (std::size_t i = 0; i < count; ++i) {
    const FrameSpectrum& sound = Sound(i);
    const FrameSpectrum& path = partitions[i].taps;
    AddProduct(sum.re, sum.im, {sound.re, sound.im}, {path.re, path.im});
  }
  transform.Inverse(sum, prediction);
}

void BlockLearner::Learn(std::span<const float, BlockFrames> input, std::span<const float, BlockFrames> error,
                         const Lesson& lesson) {
  constexpr float half = 0.5F, caution = 0.4F;
  std::array<float, TransformSpan> frame{};
  std::ranges::copy(input, frame.begin() + BlockFrames);
  transform.Forward(frame, right);
  std::ranges::copy(error, frame.begin() + BlockFrames);
  transform.Forward(frame, wrong);
  FindRates(lesson);
  FindScale(lesson);
  const float certainty = half * caution * static_cast<float>(lesson.share);
  for (std::size_t i = 0; i < count; ++i) Move(i, certainty);
}

// Where the taps make the input louder the way has changed, and what is known of it is worth little (two
// paths for the same end: K. Ochiai, T. Araseki, T. Ogihara, IEEE Transactions on Communications 25, 1977).
void BlockLearner::FindRates(const Lesson& lesson) {
  constexpr float kept = 0.97F, louder = 1.2F, changed = 0.05F;
  const auto rate = static_cast<float>(lesson.rate);
  const float quick = std::max(rate, changed);
  for (std::size_t line = 0; line < TransformPoints; ++line) {
    before[line] = kept * before[line] + (1 - kept) * PowerOf(right, line);
    after[line] = kept * after[line] + (1 - kept) * PowerOf(wrong, line);
    rates[line] = after[line] > louder * before[line] ? quick : rate;
  }
}

// What the uncertainty of the taps can explain of the error, beside what it can't. Half of a frame is error.
void BlockLearner::FindScale(const Lesson& lesson) {
  constexpr float kept = 0.7F, faintest = 1e-8F, half = 0.5F;
  scale.fill(0);
  for (std::size_t i = 0; i < count; ++i) {
    Partition& at = partitions[i];
    const FrameSpectrum& sound = Sound(i);
    AddUncertainty({.variance = at.variance,
                    .rate = rates,
                    .floor = static_cast<float>(lesson.least),
                    .most = FirstVariance},
                   {at.taps.re, at.taps.im}, {sound.re, sound.im}, scale);
  }
  const auto gain = static_cast<float>(lesson.gain);
  for (std::size_t line = 0; line < TransformPoints; ++line) {
    other[line] = kept * other[line] + (1 - kept) * PowerOf(wrong, line);
    scale[line] = gain / (half * scale[line] + other[line] + faintest);
  }
}

// Of a step in the lines, that part counts which falls on the partition's taps.
void BlockLearner::Move(std::size_t partition, float certainty) {
  Partition& at = partitions[partition];
  const FrameSpectrum& sound = Sound(partition);
  const std::size_t used = std::min(BlockFrames, size - partition * BlockFrames);
  const float part = static_cast<float>(used) / static_cast<float>(BlockFrames);
  FindStep({sound.re, sound.im}, {wrong.re, wrong.im}, scale, certainty * part, at.variance, step.re,
           step.im);
  std::array<float, BlockFrames> change;
  transform.Inverse(step, change);
  const std::span<float> piece = Piece(partition);
  for (std::size_t i = 0; i < used; ++i) {
    piece[i] = std::clamp(piece[i] + change[i], -LargestTap, LargestTap);
  }
  Load(partition);
}

void BlockLearner::Load(std::size_t partition) {
  alignas(64) std::array<float, TransformSpan> frame{};
  std::ranges::copy(Piece(partition), frame.begin());
  transform.Forward(frame, partitions[partition].taps);
}

}  // namespace unit::sound
