// The simulated unit as the far end of a virtual line.
#pragma once

#include "VirtualLine.h"
#include "unit/Unit.h"

namespace support {

inline FarEnd EndOf(unit::Unit& simulated) {
  return {
      .receive = [&simulated](std::span<const std::uint8_t> bytes, std::int64_t now,
                              std::uint32_t baud) { simulated.Receive(bytes, now, static_cast<int>(baud)); },
      .transmit = [&simulated](std::int64_t now) { return simulated.Transmit(now); },
      .nextEvent = [&simulated] { return simulated.NextEvent(); },
      .closed = [&simulated] { simulated.LineClosed(); }};
}

}  // namespace support
