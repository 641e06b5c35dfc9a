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
    : tapLimit(std::max<std::size_t>(1, mostTaps)),
      signal((std::max<std::size_t>(1, PartitionsFor(tapLimit)) + 1) * BlockFrames),
      past(std::max<std::size_t>(1, PartitionsFor(tapLimit))) {
  for (Filter& filter : filters) {
    filter.head.reserve(DirectTaps);
    filter.spectra.resize(PartitionsFor(tapLimit));
  }
  filters[now].head = {1.0F};
}

void Convolver::SetTaps(std::span<const float> taps) {
  Load(filters[fading ? waiting : next], taps.first(std::min(taps.size(), tapLimit)));
  kept = fading;
  fading = true;
}

void Convolver::Reset() {
  if (kept) std::swap(now, waiting);
  if (fading && !kept) std::swap(now, next);
  filters[next].partitions = filters[waiting].partitions = 0;
  fading = kept = false;
  faded = filled = 0;
  std::ranges::fill(signal, 0.0F);
  std::ranges::fill(past, FrameSpectrum{});
  for (Filter& filter : filters) filter.tailKnown = false;
}

void Convolver::Process(std::span<const float> in, std::span<float> out) {
  while (!in.empty()) {
    const std::size_t room = BlockFrames - std::max(filled, fading ? faded : 0);
    const std::size_t count = std::min(in.size(), room);
    const bool whole = count == BlockFrames && !fading && filters[now].partitions > 0;
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
    transform.Forward(frame, filter.spectra[i]);
  }
  if (filter.partitions > 0 && !pastKnown) FindSpectra();
}

void Convolver::FindSpectra() {
  for (std::size_t block = 1; block < past.size(); ++block) Transform(block);
  pastKnown = true;
}

// The spectrum of a block with the one before it, 0 the present one.
void Convolver::Transform(std::size_t blocksAgo) {
  const std::size_t first = signal.size() - blocksAgo * BlockFrames - TransformSpan;
  transform.Forward(std::span(signal).subspan(first).first<TransformSpan>(),
                    past[(present + past.size() - blocksAgo) % past.size()]);
}

// What the partitions from the first one on give in the present block.
void Convolver::Sum(const Filter& filter, std::size_t firstPartition, std::span<float, BlockFrames> out) {
  sum = {};
  for (std::size_t i = firstPartition; i < filter.partitions; ++i) {
    const FrameSpectrum& taps = filter.spectra[i];
    const FrameSpectrum& sound = past[(present + past.size() - i) % past.size()];
    AddProduct(sum.re, sum.im, {sound.re, sound.im}, {taps.re, taps.im});
  }
  transform.Inverse(sum, out);
}

void Convolver::Run(Filter& filter, std::size_t at, std::span<float> out) {
  const std::size_t first = signal.size() - BlockFrames + at + 1 - filter.head.size();
  Correlate(filter.head, std::span(signal).subspan(first), out);
  if (filter.partitions == 0) return;
  if (!filter.tailKnown) Sum(filter, DirectTaps / BlockFrames, filter.tail);
  filter.tailKnown = true;
  AddScaled(out, 1.0F, std::span(filter.tail).subspan(at));
}

void Convolver::Fade(std::size_t at, std::span<float> out) {
  const std::span<float> nextSound = std::span(incoming).first(out.size());
  Run(filters[next], at, nextSound);
  for (std::size_t i = 0; i < out.size(); ++i) {
    const float part = static_cast<float>(faded + i + 1) / static_cast<float>(BlockFrames);
    out[i] += part * (nextSound[i] - out[i]);
  }
  faded += out.size();
  if (faded == BlockFrames) EndFade();
}

void Convolver::EndFade() {
  filters[now].partitions = 0;
  std::swap(now, next);
  if (kept) std::swap(next, waiting);
  fading = std::exchange(kept, false);
  faded = 0;
}

void Convolver::TakeIn(std::span<const float> in) {
  std::ranges::transform(in, signal.end() - static_cast<std::ptrdiff_t>(BlockFrames - filled), Tame);
  filled += in.size();
}

void Convolver::Whole(std::span<const float> in, std::span<float> out) {
  TakeIn(in);
  Transform(0);
  Sum(filters[now], 0, out.first<BlockFrames>());
  EndBlock();
}

void Convolver::Piece(std::span<const float> in, std::span<float> out) {
  const std::size_t at = filled;
  TakeIn(in);
  Run(filters[now], at, out);
  if (fading) Fade(at, out);
  if (filled < BlockFrames) return;
  pastKnown = std::ranges::any_of(filters, [](const Filter& filter) { return filter.partitions > 0; });
  if (pastKnown) Transform(0);
  EndBlock();
}

void Convolver::EndBlock() {
  filled = 0;
  std::copy(signal.begin() + BlockFrames, signal.end(), signal.begin());
  present = (present + 1) % past.size();
  for (Filter& filter : filters) filter.tailKnown = false;
}

}  // namespace unit::sound
