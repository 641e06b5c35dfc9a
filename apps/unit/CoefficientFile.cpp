// A file of coefficients that the unit is to have learned.
#include "unit/CoefficientFile.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <optional>

#include "unit/Stages.h"

namespace unit {
namespace {

std::optional<std::int32_t> CoefficientOf(const std::string& word) {
  constexpr std::int32_t lowest = -8388608, highest = 8388607;
  std::int32_t value = 0;
  const char* const last = word.data() + word.size();
  const auto [end, error] = std::from_chars(word.data(), last, value);
  if (error != std::errc() || end != last || value < lowest || value > highest) return std::nullopt;
  return value;
}

}  // namespace

std::variant<std::vector<std::int32_t>, std::string> ReadCoefficients(const std::string& path) {
  std::ifstream file(path);
  if (!file) return path + ": can't be read: " + std::strerror(errno);
  std::vector<std::int32_t> coefficients;
  for (std::string word; file >> word;) {
    const std::optional<std::int32_t> value = CoefficientOf(word);
    if (!value || coefficients.size() == PageSize)
      return (path + ": can't take \"").append(word).append("\"");
    coefficients.push_back(*value);
  }
  if (file.bad()) return path + ": can't be read";
  return coefficients;
}

}  // namespace unit
