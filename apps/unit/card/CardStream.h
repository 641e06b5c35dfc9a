// A card that is open, in the process that attends to it.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "unit/card/Attendant.h"
#include "unit/card/CardShare.h"
#include "unit/card/PortAudioSide.h"

namespace unit::sound {

// Whether something that counts up still does.
class Pulse {
 public:
  using Clock = std::chrono::steady_clock;
  explicit Pulse(Clock::time_point now) : since(now) {}

  // True where the count has been the same for half a second of calls; before the first, for two.
  bool Stopped(std::uint64_t count, Clock::time_point now);

 private:
  std::uint64_t last = 0;
  Clock::time_point since;
};

class CardStream {
 public:
  // Else why not, in words, within two and a half seconds.
  static std::variant<std::unique_ptr<CardStream>, std::string> Open(const std::string& name,
                                                                     Direction direction);

  CardShare& Share() { return *share; }
  int Rate() const { return rate; }       // Hz
  double Delay() const { return delay; }  // seconds, the card's own
  std::string Trouble();                  // empty while the card goes on

 private:
  struct Unmap {
    void operator()(CardShare* shared) const;
  };
  using Shared = std::unique_ptr<CardShare, Unmap>;
  static Shared Map();
  CardStream(std::string cardName, Shared shared, Attendant begun)
      : name(std::move(cardName)), share(std::move(shared)), attendant(std::move(begun)) {}

  std::string name;
  Shared share;
  Attendant attendant;
  int rate = 0;
  double delay = 0;
  Pulse pulse{Pulse::Clock::now()};
  std::string trouble;
};

}  // namespace unit::sound
