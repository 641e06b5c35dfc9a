// A line to the simulated unit on which one byte gets lost, doubled, changed or late.
#pragma once

#include <deque>
#include <memory>
#include <optional>

#include "UnitEnd.h"

namespace support {

struct ByteFault {
  enum class Kind { Lost, Doubled, Changed, Late };
  Kind kind = Kind::Lost;
  std::size_t place = 0;  // of the byte among all that pass in either direction
  std::int64_t delayMicroseconds = 0;
};

class FaultyLine {
 public:
  std::optional<ByteFault> fault;
  std::function<void()> bytePassed = [] {};  // told of each before it counts
  std::size_t passed = 0;                    // bytes, in both directions

  FarEnd End() {
    return {.receive =
                [this](std::span<const std::uint8_t> bytes, std::int64_t now, std::uint32_t baud) {
                  rate = baud;
                  for (const std::uint8_t byte : bytes) Pass(toUnit, byte, now);
                  Move(now);
                },
            .transmit =
                [this](std::int64_t now) {
                  Move(now);
                  return Due(toHost, now);
                },
            .nextEvent = [this] { return NextEvent(); },
            .closed =
                [this] {
                  toUnit.clear();
                  toHost.clear();
                  simulated->LineClosed();
                }};
  }

  // A unit that knows nothing yet, on a line without a fault.
  void PlugInAnother(const unit::Options& options = {}) {
    simulated = std::make_unique<unit::Unit>(options);
    fault.reset();
    passed = 0;
  }
  unit::Unit& Now() { return *simulated; }

 private:
  struct Byte {
    std::int64_t time;
    std::uint8_t value;
  };
  using Way = std::deque<Byte>;

  // No byte overtakes another.
  void Pass(Way& way, std::uint8_t value, std::int64_t now) {
    using Kind = ByteFault::Kind;
    bytePassed();
    const std::size_t place = passed++;
    const bool hit = fault && fault->place == place;
    if (hit && fault->kind == Kind::Lost) return;
    if (hit && fault->kind == Kind::Changed) value ^= 0x15;
    const std::int64_t delay = hit && fault->kind == Kind::Late ? fault->delayMicroseconds : 0;
    const std::int64_t time = std::max(way.empty() ? now : way.back().time, now + delay);
    way.push_back({time, value});
    if (hit && fault->kind == Kind::Doubled) way.push_back({time, value});
  }

  static Bytes Due(Way& way, std::int64_t now) {
    Bytes bytes;
    for (; !way.empty() && way.front().time <= now; way.pop_front()) bytes.push_back(way.front().value);
    return bytes;
  }

  void Move(std::int64_t now) {
    const Bytes heard = Due(toUnit, now);
    if (!heard.empty()) simulated->Receive(heard, now, static_cast<int>(rate));
    for (const std::uint8_t byte : simulated->Transmit(now)) Pass(toHost, byte, now);
  }

  std::optional<std::int64_t> NextEvent() const {
    std::optional<std::int64_t> next = simulated->NextEvent();
    for (const Way* way : {&toUnit, &toHost}) {
      if (!way->empty()) next = std::min(way->front().time, next.value_or(INT64_MAX));
    }
    return next;
  }

  std::unique_ptr<unit::Unit> simulated = std::make_unique<unit::Unit>(unit::Options{});
  std::uint32_t rate = 0;
  Way toUnit, toHost;
};

}  // namespace support
