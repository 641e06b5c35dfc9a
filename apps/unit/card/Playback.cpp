// From the unit's blocks into the ring of a card that plays.
#include "unit/card/Playback.h"

#include <algorithm>

#include "unit/sound/Blocks.h"

namespace unit::sound {

Playback::Playback(CardShare& shared, int cardsRate, double delay, int unitRate)
    : share(shared),
      cardRate(cardsRate),
      rate(unitRate),
      cardDelay(delay),
      block(BlockFrames),
      converter(unitRate, cardsRate) {}

void Playback::SetRate(int unitRate) {
  if (unitRate == rate) return;
  rate = unitRate;
  converter.SetRates(rate, cardRate);
}

// Frames of the card with which the next block is due: what it takes at a time, and the margin.
std::size_t Playback::Low() const {
  const std::uint32_t period = share.period.load(std::memory_order_relaxed);
  const double seconds = margin.Seconds(static_cast<double>(block) / rate, 1.0 * period / cardRate);
  return period + static_cast<std::size_t>(seconds * cardRate);
}

// A block, less what is there beyond the least: so it tells how long there is until a block is due, too.
// Before the card's first call its period is not known.
std::size_t Playback::Room() const {
  if (share.beats.load(std::memory_order_acquire) == 0) return 0;
  const auto from = static_cast<std::size_t>(rate), to = static_cast<std::size_t>(cardRate);
  const std::size_t most = Low() + (BlockFrames * to + from - 1) / from;
  const std::size_t fill = share.ring.Fill();
  return fill > most ? 0 : (most - fill) * from / to;
}

void Playback::Write(std::span<const float> left, std::span<const float> right) {
  block = left.size();
  margin.Heed(DropOuts());
  share.enough.store(static_cast<std::uint32_t>(Low()), std::memory_order_relaxed);
  std::array<StereoFrame, BlockFrames> frames;
  for (std::size_t done = 0; done < left.size(); done += BlockFrames) {
    const std::size_t count = std::min(BlockFrames, left.size() - done);
    for (std::size_t i = 0; i < count; ++i) frames[i] = {left[done + i], right[done + i]};
    const auto converted = converter.Convert(std::span(frames).first(count));
    lost += share.ring.Push(converted) < converted.size() ? 1 : 0;
  }
  share.resting.store(false, std::memory_order_release);
}

double Playback::Latency() const {
  return static_cast<double>(Low()) / cardRate + cardDelay + converter.Delay();
}

}  // namespace unit::sound
