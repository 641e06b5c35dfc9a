// How numbers become the bytes of a data packet. Coefficients go high byte first, everything else low byte
// first.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

#include "link/Frames.h"

namespace vc {

using PacketContent = std::array<std::uint8_t, PacketPayload>;

inline constexpr std::size_t CoefficientsPerPacket = 16;

// A coefficient, full scale -1.0..1.0, as the 24 bits that the unit gets: 8388607 times the value to the
// nearest, ties to even. What lies beyond is bounded, NaN gives 0.
inline constexpr double CoefficientUnity = 8388607;
std::int32_t CoefficientWord(float coefficient);

// The packet content of sixteen coefficients. Those missing from a shorter span are 0, those after the
// sixteenth are left out.
PacketContent PackCoefficients(std::span<const float> sixteen);
// The same of coefficients as the unit has them, -2^23..2^23-1.
PacketContent PackCoefficients(std::span<const std::int32_t> sixteen);

// Stores value at bytes[place...], low byte first. The place must lie inside.
template <std::unsigned_integral Value>
constexpr void StoreLittleEndian(std::span<std::uint8_t> bytes, std::size_t place, Value value) {
  for (std::size_t i = 0; i < sizeof(Value); i++) {
    bytes[place + i] = static_cast<std::uint8_t>(value >> (8 * i) & 0xFFU);
  }
}

}  // namespace vc
