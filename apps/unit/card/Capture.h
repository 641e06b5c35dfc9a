// Out of the ring of a card that hears, into the unit's blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "unit/card/CardShare.h"
#include "unit/card/Fader.h"
#include "unit/card/Margin.h"
#include "unit/card/RateConverter.h"
#include "unit/card/Steering.h"

namespace unit::sound {

// See CardInput. It knows nothing of time: the card's calls and those of Read are its clocks.
class Capture {
 public:
  // Both rates in Hz; cardDelay: seconds between the microphone and the ring.
  Capture(CardShare& shared, int cardRate, double cardDelay, int unitRate);

  void SetRate(int unitRate);
  std::size_t Ready() const;
  void Read(std::span<float> left, std::span<float> right);
  void Rest();
  std::uint64_t DropOuts() const { return share.dropOuts.load(std::memory_order_relaxed) + missed; }
  double Latency() const;

 private:
  enum class State {
    Rested,   // by intention
    Waiting,  // for enough to begin with
    Running   // blocks follow on each other without a gap
  };

  std::size_t Frames(double seconds) const { return static_cast<std::size_t>(seconds * cardRate); }
  std::size_t Kept() const;
  std::size_t Enough() const;
  void Follow();
  void Break();
  void Wait();
  std::size_t Above(std::size_t wished) const;
  std::size_t Pop(std::span<StereoFrame> frames);

  CardShare& share;
  int cardRate, rate;
  double cardDelay;
  std::size_t block;  // of the unit's frames, as they are read
  State state = State::Rested;
  RateConverter converter;
  Steering steering;
  Margin margin;
  Fader entry, fader;  // before the converter and behind it
  std::uint64_t missed = 0;
};

}  // namespace unit::sound
