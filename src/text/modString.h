// Byte and string routines of the port code. A string here holds one character per byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vc {

using Bytes = std::vector<std::uint8_t>;

// Turns the first count bytes into text, one character per byte. Count 0 means the whole array less a final
// NUL; a count beyond the array is cut to its size; an empty array gives the empty string.
void BytesToString(std::string& text, const Bytes& bytes, std::int32_t count);

// Resizes bytes to the text's length and stores each character's 8-bit value.
void StringToBytes(Bytes& bytes, std::string_view text);

// Upper-case hexadecimal text of value, padded on the left with "0" up to the digits.
std::string HexPadded(std::uint32_t value, int digits);

}  // namespace vc
