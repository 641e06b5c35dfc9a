#include "unit/sound/Convolver.h"

#include <algorithm>
#include <utility>

#include "unit/sound/Kernels.h"
#include "unit/sound/Samples.h"

namespace unit::sound {
namespace {

constexpr std::size_t DirectTaps = BlockFrames;  // up to here the transforms cost more than they save

std::size_t PartitionsFor(std::size_t taps) {
  return taps <= DirectTaps ? 0 : (taps + BlockFrames - 1) / BlockFrames;
}

}  // namespace

Convolver::Convolver(std::size_t mostTaps)
    : mostTaps_(std::max<std::size_t>(1, mostTaps)),
      signal_((std::max<std::size_t>(1, PartitionsFor(mostTaps_)) + 1) * BlockFrames),
      past_(std::max<std::size_t>(1, PartitionsFor(mostTaps_))) {
  for (Filter& filter : filters_) {
    filter.head.reserve(DirectTaps);
    filter.spectra.resize(PartitionsFor(mostTaps_));
  }
  filters_[now_].head = {1.0F};
}

void Convolver::SetTaps(std::span<const float> taps) {
  Load(filters_[fading_ ? waiting_ : next_], taps.first(std::min(taps.size(), mostTaps_)));
  kept_ = fading_;
  fading_ = true;
}

void Convolver::Reset() {
  if (kept_) std::swap(now_, waiting_);
  if (fading_ && !kept_) std::swap(now_, next_);
  filters_[next_].partitions = filters_[waiting_].partitions = 0;
  fading_ = kept_ = false;
  faded_ = filled_ = 0;
  std::ranges::fill(signal_, 0.0F);
  std::ranges::fill(past_, FrameSpectrum{});
  for (Filter& filter : filters_) filter.tailKnown = false;
}

void Convolver::Process(std::span<const float> in, std::span<float> out) {
  while (!in.empty()) {
    const std::size_t room = BlockFrames - std::max(filled_, fading_ ? faded_ : 0);
    const std::size_t count = std::min(in.size(), room);
    const bool whole = count == BlockFrames && !fading_ && filters_[now_].partitions > 0;
    whole ? Whole(in.first(count), out.first(count)) : Piece(in.first(count), out.first(count));
    in = in.subspan(count);
    out = out.subspan(count);
  }
}

void Convolver::Load(Filter& filter, std::span<const float> taps) {
  const std::span<const float> head = taps.first(std::min(taps.size(), DirectTaps));
  filter.head.assign(head.rbegin(), head.rend());
  if (head.empty()) filter.head = {0.0F};
  filter.tailKnown = false;
  filter.partitions = PartitionsFor(taps.size());
  for (std::size_t i = 0; i < filter.partitions; ++i) {
    const std::span<const float> rest = taps.subspan(i * BlockFrames);
    std::array<float, TransformSpan> frame{};
    std::ranges::copy(rest.first(std::min(rest.size(), BlockFrames)), frame.begin());
    transform_.Forward(frame, filter.spectra[i]);
  }
  if (filter.partitions > 0 && !pastKnown_) FindSpectra();
}

void Convolver::FindSpectra() {
  for (std::size_t block = 1; block < past_.size(); ++block) Transform(block);
  pastKnown_ = true;
}

// The spectrum of a block with the one before it, 0 the present one.
void Convolver::Transform(std::size_t blocksAgo) {
  const std::size_t first = signal_.size() - blocksAgo * BlockFrames - TransformSpan;
  transform_.Forward(std::span(signal_).subspan(first).first<TransformSpan>(),
                     past_[(present_ + past_.size() - blocksAgo) % past_.size()]);
}

// What the partitions from the first one on give in the present block.
void Convolver::Sum(const Filter& filter, std::size_t firstPartition, std::span<float, BlockFrames> out) {
  sum_ = {};
  for (std::size_t i = firstPartition; i < filter.partitions; ++i) {
    const FrameSpectrum& taps = filter.spectra[i];
    const FrameSpectrum& sound = past_[(present_ + past_.size() - i) % past_.size()];
    AddProduct(sum_.re, sum_.im, {sound.re, sound.im}, {taps.re, taps.im});
  }
  transform_.Inverse(sum_, out);
}

void Convolver::Run(Filter& filter, std::size_t at, std::span<float> out) {
  const std::size_t first = signal_.size() - BlockFrames + at + 1 - filter.head.size();
  Correlate(filter.head, std::span(signal_).subspan(first), out);
  if (filter.partitions == 0) return;
  if (!filter.tailKnown) Sum(filter, DirectTaps / BlockFrames, filter.tail);
  filter.tailKnown = true;
  AddScaled(out, 1.0F, std::span(filter.tail).subspan(at));
}

void Convolver::Fade(std::size_t at, std::span<float> out) {
  const std::span<float> next = std::span(incoming_).first(out.size());
  Run(filters_[next_], at, next);
  for (std::size_t i = 0; i < out.size(); ++i) {
    const float part = static_cast<float>(faded_ + i + 1) / static_cast<float>(BlockFrames);
    out[i] += part * (next[i] - out[i]);
  }
  faded_ += out.size();
  if (faded_ == BlockFrames) EndFade();
}

void Convolver::EndFade() {
  filters_[now_].partitions = 0;
  std::swap(now_, next_);
  if (kept_) std::swap(next_, waiting_);
  fading_ = std::exchange(kept_, false);
  faded_ = 0;
}

void Convolver::TakeIn(std::span<const float> in) {
  std::ranges::transform(in, signal_.end() - static_cast<std::ptrdiff_t>(BlockFrames - filled_), Tame);
  filled_ += in.size();
}

void Convolver::Whole(std::span<const float> in, std::span<float> out) {
  TakeIn(in);
  Transform(0);
  Sum(filters_[now_], 0, out.first<BlockFrames>());
  EndBlock();
}

void Convolver::Piece(std::span<const float> in, std::span<float> out) {
  const std::size_t at = filled_;
  TakeIn(in);
  Run(filters_[now_], at, out);
  if (fading_) Fade(at, out);
  if (filled_ < BlockFrames) return;
  pastKnown_ = std::ranges::any_of(filters_, [](const Filter& filter) { return filter.partitions > 0; });
  if (pastKnown_) Transform(0);
  EndBlock();
}

void Convolver::EndBlock() {
  filled_ = 0;
  std::copy(signal_.begin() + BlockFrames, signal_.end(), signal_.begin());
  present_ = (present_ + 1) % past_.size();
  for (Filter& filter : filters_) filter.tailKnown = false;
}

}  // namespace unit::sound
