// The receiving side of an XMODEM transfer with checksums: which packets are taken, and what they add up to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "unit/Bytes.h"

namespace unit {

inline constexpr std::uint8_t Soh = 0x01, Eot = 0x04, Ack = 0x06, Nak = 0x15;
inline constexpr std::size_t XmodemDataSize = 128;
// SOH, number, its complement to 255, data, sum of the data modulo 256.
inline constexpr std::size_t XmodemPacketSize = 3 + XmodemDataSize + 1;

// Whether head, complement and sum of so many bytes as a packet has are right.
bool IsXmodemPacket(std::span<const std::uint8_t> bytes);

class XmodemReceiver {
 public:
  explicit XmodemReceiver(std::size_t mostBytes) : capacity(mostBytes) {}

  // Repeated: the one before once more, as its answer was lost; it is not stored again. NotNext: of neither
  // number. Full: there is no room for it.
  enum class Verdict { Stored, Repeated, NotNext, Full };

  // Takes a packet for which IsXmodemPacket holds. Numbers begin with 1 and go on with 0 behind 255.
  Verdict Take(std::span<const std::uint8_t> packet);

  // The data of all packets. How long the file is that they come from is not known: its last packet is filled
  // up with zeros, which add nothing to the sum.
  const Bytes& Received() const { return received; }
  std::size_t Packets() const { return received.size() / XmodemDataSize; }

 private:
  std::size_t capacity;
  Bytes received;
};

// The low 16 bits of the sum of all bytes, as four capital hexadecimal digits.
std::string SumText(std::span<const std::uint8_t> bytes);

}  // namespace unit
