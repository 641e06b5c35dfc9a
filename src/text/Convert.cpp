#include "text/Convert.h"

#include <array>
#include <charconv>
#include <cmath>

namespace vc {
namespace {

template <typename Integer>
Integer Checked(double whole) {
  const bool fits = whole >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
                    whole <= static_cast<double>(std::numeric_limits<Integer>::max());
  if (!fits) throw Fault{"Overflow"};  // NaN compares false and ends here too
  return static_cast<Integer>(whole);
}

// The default rounding mode of the floating-point unit, which nothing here changes, is nearest-even.
double NearestWhole(double value) { return std::nearbyint(value); }

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

template <typename Number>
std::optional<Number> ParseWhole(std::string_view text) {
  text = Trimmed(text);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

template <typename... Arguments>
std::string ToText(Arguments... arguments) {
  std::array<char, 400> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...);
  return {buffer.data(), result.ptr};
}

}  // namespace

std::int16_t Nearest(double value) { return Checked<std::int16_t>(NearestWhole(value)); }
std::int32_t Nearest32(double value) { return Checked<std::int32_t>(NearestWhole(value)); }
std::int16_t Floor(double value) { return Checked<std::int16_t>(std::floor(value)); }

double Divide(double value, double divisor) {
  if (divisor == 0.0) throw Fault{"Division by zero"};
  return value / divisor;
}

std::optional<double> ParseNumber(std::string_view text) {
  const auto value = ParseWhole<double>(text);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<std::int64_t> ParseInteger(std::string_view text) { return ParseWhole<std::int64_t>(text); }

std::string FixedText(double value, int decimals) {
  std::string text = ToText(value, std::chars_format::fixed, decimals);
  const bool onlyZeros = text.find_first_not_of("-0.") == std::string::npos;
  return onlyZeros && text.front() == '-' ? text.substr(1) : text;
}

std::string ShortestText(float value) { return ToText(value); }
std::string ShortestText(double value) { return ToText(value); }

}  // namespace vc
