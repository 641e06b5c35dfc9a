#include "link/Frames.h"

#include <algorithm>

namespace vc {
namespace {

// The header takes no part in the checksum.
constexpr std::size_t HeaderSize = 3;

template <std::size_t Size>
void Seal(std::array<std::uint8_t, Size>& frame) {
  frame.back() = Checksum(std::span(frame).subspan(HeaderSize, Size - HeaderSize - 1));
}

}  // namespace

std::uint8_t Checksum(std::span<const std::uint8_t> bytes) {
  std::uint32_t sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return static_cast<std::uint8_t>((0U - sum) & 0xFFU);
}

CommandFrame MakeCommandFrame(std::uint8_t code, std::uint16_t argument) {
  CommandFrame frame{'?',
                     'M',
                     'P',
                     code,
                     static_cast<std::uint8_t>(argument & 0xFFU),
                     static_cast<std::uint8_t>(argument >> 8U),
                     0};
  Seal(frame);
  return frame;
}

PacketFrame MakePacketFrame(std::int32_t number, std::span<const std::uint8_t> content) {
  PacketFrame frame{'?', 'L', 'P', static_cast<std::uint8_t>(std::clamp(number, 0, 255))};
  std::copy_n(content.begin(), std::min(content.size(), PacketPayload), frame.begin() + HeaderSize + 1);
  Seal(frame);
  return frame;
}

bool IsComplaint(std::string_view reply) {
  // "!RT" holds "RT".
  return std::ranges::any_of(std::array<std::string_view, 3>{"RT", "!T", "!R"},
                             [reply](std::string_view mark) { return reply.find(mark) != reply.npos; });
}

}  // namespace vc
