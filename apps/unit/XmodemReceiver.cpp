// The receiving side of an XMODEM transfer with checksums: which packets are taken, and what they add up to.
#include "unit/XmodemReceiver.h"

#include <numeric>

namespace unit {
namespace {

constexpr std::size_t HeadSize = 3;

std::span<const std::uint8_t> DataOf(std::span<const std::uint8_t> packet) {
  return packet.subspan(HeadSize, XmodemDataSize);
}

unsigned SumOf(std::span<const std::uint8_t> bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), 0U);
}

}  // namespace

bool IsXmodemPacket(std::span<const std::uint8_t> bytes) {
  return bytes.size() == XmodemPacketSize && bytes[0] == Soh && bytes[1] + bytes[2] == 0xFF &&
         bytes.back() == SumOf(DataOf(bytes)) % 0x100;
}

XmodemReceiver::Verdict XmodemReceiver::Take(std::span<const std::uint8_t> packet) {
  const std::size_t number = packet[1];
  if (Packets() > 0 && number == Packets() % 0x100) return Verdict::Repeated;
  if (number != (Packets() + 1) % 0x100) return Verdict::NotNext;
  if (received.size() + XmodemDataSize > capacity) return Verdict::Full;
  const auto data = DataOf(packet);
  received.insert(received.end(), data.begin(), data.end());
  return Verdict::Stored;
}

std::string SumText(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const unsigned sum = SumOf(bytes);
  std::string text;
  for (const unsigned shift : {12U, 8U, 4U, 0U}) text += digits[sum >> shift & 15U];
  return text;
}

}  // namespace unit
