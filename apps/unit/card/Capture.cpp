// Out of the ring of a card that hears, into the unit's blocks.
#include "unit/card/Capture.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/Blocks.h"

namespace unit::sound {
namespace {

constexpr float HighestSample = 8;     // as with files
constexpr double LongestWait = 0.025;  // seconds of sound more than are kept, which are caught up slowly

// What is no number would stay in the filters for ever.
float Bounded(float sample) {
  return std::isfinite(sample) ? std::clamp(sample, -HighestSample, HighestSample) : 0.0F;
}

}  // namespace

Capture::Capture(CardShare& shared, int cardsRate, double delay, int unitRate)
    : share(shared),
      cardRate(cardsRate),
      rate(unitRate),
      cardDelay(delay),
      block(BlockFrames),
      converter(cardsRate, unitRate) {}

void Capture::SetRate(int unitRate) {
  if (unitRate == rate) return;
  rate = unitRate;
  converter.SetRates(cardRate, rate);
  state = State::Rested;
}

void Capture::Rest() {
  share.resting.store(true, std::memory_order_release);
  state = State::Rested;
}

// Frames of the card that stay behind when a block is read: in the mean, over the phases of both clocks. A
// card that plays takes a period at a time, too, which may be as long, and just before one of this card
// comes.
std::size_t Capture::Kept() const {
  constexpr double least = 0.004;  // seconds
  const std::uint32_t period = share.period.load(std::memory_order_relaxed);
  const double seconds = 1.0 * period / cardRate;
  return period +
         Frames(std::max(margin.Seconds(static_cast<double>(block) / rate, seconds), seconds + least));
}

// Frames of the card with which reading begins: no block is ready before.
std::size_t Capture::Enough() const { return Kept() + Frames(static_cast<double>(block) / rate); }

// Where blocks are read as soon as they are ready, half a period more comes until then in the mean: so both
// who waits for this and who has a clock of his own finds what is kept.
std::size_t Capture::Ready() const {
  const std::size_t early = state == State::Running ? share.period.load(std::memory_order_relaxed) / 2 : 0;
  return Above(Kept() - early) * static_cast<std::size_t>(rate) / static_cast<std::size_t>(cardRate);
}

std::size_t Capture::Pop(std::span<StereoFrame> frames) {
  const std::size_t count = share.ring.Pop(frames);
  for (StereoFrame& frame : frames.first(count)) frame = entry.Next({Bounded(frame[0]), Bounded(frame[1])});
  return count;
}

void Capture::Break() {
  ++missed;
  margin.Heed(DropOuts());
  Wait();
}

// Whoever reads may need several blocks at once, to fill what has become empty meanwhile: so what is read
// begins when a block more has come than is kept.
void Capture::Wait() {
  state = State::Waiting;
  share.ring.Skip(Above(Kept()));
}

std::size_t Capture::Above(std::size_t wished) const {
  const std::size_t fill = share.ring.Fill();
  return fill > wished ? fill - wished : 0;
}

void Capture::Follow() {
  const std::size_t longest = Enough() + Frames(LongestWait) + share.period.load(std::memory_order_relaxed);
  if (state == State::Running && Above(longest) > 0) return Break();
  if (state == State::Rested) return Wait();
  if (state == State::Running || share.ring.Fill() < Enough()) return;
  share.ring.Skip(Above(Enough()));
  converter.SetRates(cardRate, rate);  // without what it held of the sound before the gap
  entry = Fader();
  steering.Reset();
  state = State::Running;
}

void Capture::Read(std::span<float> left, std::span<float> right) {
  block = left.size();
  share.resting.store(false, std::memory_order_release);
  margin.Heed(DropOuts());
  Follow();
  const double seconds = static_cast<double>(block) / rate;
  const double fill = static_cast<double>(share.ring.Fill()) / cardRate;
  const double speed = steering.Speed(fill - seconds - static_cast<double>(Kept()) / cardRate, seconds);
  std::array<StereoFrame, BlockFrames> frames;
  for (std::size_t done = 0; done < block; done += BlockFrames) {
    const std::span<StereoFrame> part = std::span(frames).first(std::min(BlockFrames, block - done));
    const std::size_t made =
        state == State::Running
            ? converter.Produce(part, speed, [this](std::span<StereoFrame> more) { return Pop(more); })
            : 0;
    if (state == State::Running && made < part.size()) Break();
    for (std::size_t i = 0; i < part.size(); ++i) {
      const StereoFrame frame = i < made ? fader.Next(part[i]) : fader.NextOfGap();
      left[done + i] = frame[0];
      right[done + i] = frame[1];
    }
  }
}

double Capture::Latency() const {
  return static_cast<double>(Kept()) / cardRate + static_cast<double>(block) / rate + cardDelay +
         converter.Delay();
}

}  // namespace unit::sound
