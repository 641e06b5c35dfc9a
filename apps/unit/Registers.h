// What the unit was sent and took: the last argument of every command and the last content of every packet.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "unit/FrameParser.h"

namespace unit {

using Payload = std::array<std::uint8_t, PayloadSize>;

// Indexed by command code and by packet number. A frame that was refused or not known leaves no mark here.
struct Registers {
  std::array<std::optional<std::uint16_t>, 256> values;
  std::array<std::uint32_t, 256> counts{};
  std::array<std::optional<Payload>, 256> packets;
  std::array<std::uint32_t, 256> packetCounts{};

  void Store(const Frame& frame);
};

}  // namespace unit
