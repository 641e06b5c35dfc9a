// From the unit's blocks into the ring of a card that plays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "unit/card/CardShare.h"
#include "unit/card/Margin.h"
#include "unit/card/RateConverter.h"

namespace unit::sound {

// See CardOutput. It knows nothing of time: the card's calls are its clock.
class Playback {
 public:
  // Both rates in Hz; cardDelay: seconds between the ring and the ear.
  Playback(CardShare& shared, int cardRate, double cardDelay, int unitRate);

  void SetRate(int unitRate);
  std::size_t Room() const;
  void Write(std::span<const float> left, std::span<const float> right);
  void Rest() { share.resting.store(true, std::memory_order_release); }
  std::uint64_t DropOuts() const { return share.dropOuts.load(std::memory_order_relaxed) + lost; }
  double Latency() const;

 private:
  std::size_t Low() const;

  CardShare& share;
  int cardRate, rate;
  double cardDelay;
  std::size_t block;  // of the unit's frames, as they are written
  RateConverter converter;
  Margin margin;
  std::uint64_t lost = 0;
};

}  // namespace unit::sound
