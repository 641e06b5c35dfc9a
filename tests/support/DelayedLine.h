// A virtual line that takes its time each way, as one over a network does.
#pragma once

#include <algorithm>
#include <deque>
#include <utility>

#include "VirtualLine.h"

namespace support {

class DelayedLine {
 public:
  DelayedLine(FarEnd unit, std::int64_t microsecondsEachWay)
      : end(std::move(unit)), delay(microsecondsEachWay) {}

  FarEnd End() {
    return {.receive =
                [this](std::span<const std::uint8_t> bytes, std::int64_t now, std::uint32_t baud) {
                  rate = baud;
                  toUnit.push_back({now + delay, {bytes.begin(), bytes.end()}});
                },
            .transmit =
                [this](std::int64_t now) {
                  Move(now);
                  Bytes due;
                  for (; !toHost.empty() && toHost.front().time <= now; toHost.pop_front()) {
                    due.insert(due.end(), toHost.front().bytes.begin(), toHost.front().bytes.end());
                  }
                  return due;
                },
            .nextEvent = [this] { return NextEvent(); },
            .closed =
                [this] {
                  toUnit.clear();
                  toHost.clear();
                  end.closed();
                }};
  }

 private:
  struct Piece {
    std::int64_t time;
    Bytes bytes;
  };

  // The unit hears and speaks at its own moments, whenever the program looks.
  void Move(std::int64_t now) {
    for (auto next = NextAtUnit(); next && *next <= now; next = NextAtUnit()) {
      for (; !toUnit.empty() && toUnit.front().time <= *next; toUnit.pop_front()) {
        end.receive(toUnit.front().bytes, *next, rate);
      }
      if (const Bytes said = end.transmit(*next); !said.empty()) toHost.push_back({*next + delay, said});
    }
  }
  std::optional<std::int64_t> NextAtUnit() const {
    std::optional<std::int64_t> next = end.nextEvent();
    if (!toUnit.empty()) next = std::min(next.value_or(toUnit.front().time), toUnit.front().time);
    return next;
  }
  std::optional<std::int64_t> NextEvent() const {
    std::optional<std::int64_t> next = NextAtUnit();
    if (!toHost.empty()) next = std::min(next.value_or(toHost.front().time), toHost.front().time);
    return next;
  }

  FarEnd end;
  std::int64_t delay;
  std::uint32_t rate = 0;
  std::deque<Piece> toUnit, toHost;
};

}  // namespace support
