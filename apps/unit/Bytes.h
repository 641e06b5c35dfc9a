// Byte strings of the wire, their checksum and their hexadecimal text.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace unit {

using Bytes = std::vector<std::uint8_t>;

// Two's complement of the 8-bit sum: the bytes and their checksum add to 0 modulo 256.
std::uint8_t Checksum(std::span<const std::uint8_t> bytes);

// The characters as bytes, one each.
Bytes BytesOf(std::string_view text);

// "3F 4D 50": two capital digits a byte, one space between; empty for no bytes.
std::string HexText(std::span<const std::uint8_t> bytes);

}  // namespace unit
