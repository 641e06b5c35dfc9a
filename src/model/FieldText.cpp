// Fields to text and back.
#include "model/FieldText.h"

#include <type_traits>

namespace vc {
namespace {

template <typename T>
std::string Text(const T& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    return value;
  } else if constexpr (std::is_same_v<T, bool>) {
    return value ? "true" : "false";
  } else if constexpr (std::is_floating_point_v<T>) {
    return ShortestText(value);
  } else {
    return std::to_string(value);
  }
}

std::string IndexError(const FieldRow& row, int i, int j) {
  const std::array<int, 2> index{i, j};
  for (std::size_t k = 0; k < static_cast<std::size_t>(row.dimensions); k++) {
    const IndexRange& extent = row.extent[k];
    if (!extent.Holds(index[k])) {
      return "index " + std::to_string(index[k]) + " is outside " + std::to_string(extent.first) + ".." +
             std::to_string(extent.last);
    }
  }
  return {};
}

template <typename T>
std::optional<double> Parse(std::string_view text) {
  if constexpr (std::is_floating_point_v<T>) return ParseNumber(text);
  const auto whole = ParseInteger(text);
  return whole ? std::optional(static_cast<double>(*whole)) : std::nullopt;
}

std::string OutsideText(std::string_view text, Bounds bounds) {
  return std::string(text) + " is outside " + ShortestText(bounds.lower) + ".." + ShortestText(bounds.upper);
}

// Returns the reason for a refusal, empty where the number was stored.
template <typename T>
std::string StoreNumber(T& element, std::string_view text, Bounds bounds) {
  const auto number = Parse<T>(text);
  if (!number) {
    return "\"" + std::string(text) + (std::is_integral_v<T> ? "\" is no whole number" : "\" is no number");
  }
  if (*number < bounds.lower || *number > bounds.upper) return OutsideText(text, bounds);
  element = static_cast<T>(*number);
  return {};
}

std::string Store(SystemSettings& settings, const FieldRow& row, int i, int j, std::string_view text) {
  const auto bounds = FieldRange(settings, row, i, j);
  return std::visit(
      [&]<typename T>(T* element) -> std::string {
        if constexpr (std::is_arithmetic_v<T>) {
          return StoreNumber(*element, text, *bounds);
        } else {
          *element = text;
          return {};
        }
      },
      row.at(settings, i, j));
}

}  // namespace

std::string FieldText(const SystemSettings& settings, const FieldRow& row, int i, int j) {
  return std::visit([](const auto& value) { return Text(value); }, row.value(settings, i, j));
}

bool SetFieldText(SystemSettings& settings, const FieldRow& row, int i, int j, std::string_view text,
                  std::string& error) {
  error = IsDerived(row) ? std::string(row.name) + " is derived" : IndexError(row, i, j);
  if (error.empty()) error = Store(settings, row, i, j, text);
  return error.empty();
}

}  // namespace vc
