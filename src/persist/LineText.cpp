#include "persist/LineText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr char Quote = '"';

bool IsBlank(char character) { return character == ' ' || character == '\t' || character == '\r'; }

template <typename Number>
void AddNumber(std::string& text, Number value) {
  std::array<char, 32> line;  // NOLINT(cppcoreguidelines-pro-type-member-init): thousands of lines a file
  char* end = std::to_chars(line.data(), line.data() + line.size(), value).ptr;
  for (const char character : LineEnd) *end++ = character;
  text.append(line.data(), end);
}

std::string_view WithoutBlanks(std::string_view line) {
  while (!line.empty() && IsBlank(line.back())) line.remove_suffix(1);
  while (!line.empty() && IsBlank(line.front())) line.remove_prefix(1);
  return line;
}

}  // namespace

void LineWriter::Integer(std::int64_t value) { AddNumber(text, value); }

void LineWriter::Float(float value) {
  // Curves are thousands of lines, and most of them flat.
  if (value == 0 && !std::signbit(value)) return Line("0");
  if (std::isnan(value)) value = 0;
  if (std::isinf(value)) value = std::copysign(std::numeric_limits<float>::max(), value);
  AddNumber(text, value);
}

void LineWriter::Text(std::string_view value) {
  text += Quote;
  for (const char character : value) {
    if (character == Quote) text += Quote;
    text += character;
  }
  text += Quote;
  text += LineEnd;
}

void LineWriter::Line(std::string_view line) { text.append(line).append(LineEnd); }

std::string_view LineReader::Line() const {
  if (AtEnd()) return {};
  return text.substr(place, text.find('\n', place) - place);
}

bool LineReader::Past(std::size_t from) {
  while (from < text.size() && IsBlank(text[from])) ++from;
  if (from < text.size() && text[from] != '\n') return false;
  place = std::min(from + 1, text.size());
  return true;
}

template <typename Plain>
bool LineReader::Number(Plain& value) {
  Plain taken{};
  const auto [last, error] = std::from_chars(text.data() + place, text.data() + text.size(), taken);
  if (error == std::errc{} && std::isfinite(static_cast<double>(taken)) &&
      Past(static_cast<std::size_t>(last - text.data()))) {
    value = taken;
    return true;
  }
  return OtherNumber(value);
}

// Whatever else counts as a number: blanks before it, a plus sign, for an integer a fraction.
template <typename Plain>
bool LineReader::OtherNumber(Plain& value) {
  const std::string_view line = Line();
  auto number = ParseNumber(WithoutBlanks(line));
  if (!number) return false;
  if constexpr (std::is_integral_v<Plain>) number = std::nearbyint(*number);
  constexpr double lowest = std::numeric_limits<Plain>::lowest();
  constexpr double highest = std::numeric_limits<Plain>::max();
  if (*number < lowest || *number > highest) return false;
  value = static_cast<Plain>(*number);
  return Past(place + line.size());
}

bool LineReader::Integer(std::int16_t& value) { return Number(value); }
bool LineReader::Integer(std::int32_t& value) { return Number(value); }
bool LineReader::Float(float& value) { return Number(value); }

bool LineReader::Text(std::string& value) {
  std::string_view line = Line();
  if (line.starts_with(Quote)) return QuotedText(value);
  place = std::min(place + line.size() + 1, text.size());
  if (line.ends_with('\r')) line.remove_suffix(1);
  value = line;
  return true;
}

bool LineReader::QuotedText(std::string& value) {
  std::string taken;
  for (std::size_t at = place + 1; at < text.size(); ++at) {
    if (text[at] == Quote && !text.substr(at + 1).starts_with(Quote)) {
      if (!Past(at + 1)) return false;
      value = std::move(taken);
      return true;
    }
    if (text[at] == Quote) ++at;
    taken += text[at];
  }
  return false;
}

bool LineReader::NextIs(std::string_view line) const { return WithoutBlanks(Line()) == line; }

bool LineReader::Is(std::string_view line) {
  if (!NextIs(line)) return false;
  return Past(place + Line().size());
}

}  // namespace vc
