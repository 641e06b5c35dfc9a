// Byte strings of the wire, their checksum and their hexadecimal text.
#include "unit/Bytes.h"

namespace unit {

std::uint8_t Checksum(std::span<const std::uint8_t> bytes) {
  unsigned sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return static_cast<std::uint8_t>(0U - sum);
}

Bytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

std::string HexText(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4U];
    text += digits[byte & 15U];
  }
  return text;
}

}  // namespace unit
