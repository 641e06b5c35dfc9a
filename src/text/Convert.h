// The one set of conversions between numbers of different kinds. A checked conversion that cannot be made
// raises a Fault; the routine that can fail traps it in one place.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace vc {

// An unexpected run-time error: a value that does not fit, a division by zero, an index out of its array.
struct Fault {
  std::string description;
  int number = 0;        // 0 where the error has no number of its own
  std::string source{};  // the routine that raised it, empty where nobody asks
};

// Nearest integer, halves to even. Raises a Fault for NaN and for what does not fit into 16 bits.
std::int16_t Nearest(double value);
// The same into 32 bits.
std::int32_t Nearest32(double value);
// The largest integer that is not above value. Raises a Fault like Nearest.
std::int16_t Floor(double value);

// value / divisor; raises a Fault where the divisor is 0.
double Divide(double value, double divisor);

// The low 16 bits as the signed number that the record and the wire hold.
constexpr std::int16_t LowWord(std::int64_t value) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(value & 0xFFFF));
}

// Text to number: leading and trailing blanks are allowed, anything else that is not part of the number, NaN
// and infinities are not. The decimal mark is a point whatever the locale.
std::optional<double> ParseNumber(std::string_view text);
// An integer without fraction or exponent.
std::optional<std::int64_t> ParseInteger(std::string_view text);

// Fixed decimals with a point whatever the locale: (1.25, 1) gives "1.2", halves to even as printf rounds.
std::string FixedText(double value, int decimals);
// The shortest text that reads back to the same 32-bit or 64-bit value.
std::string ShortestText(float value);
std::string ShortestText(double value);

}  // namespace vc
