// How a row of the table acts on the record, whatever the type of the field.
#include "model/Fields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "model/Clamp.h"

namespace vc {
namespace {

template <typename... Branches>
struct Either : Branches... {
  using Branches::operator()...;
};
template <typename... Branches>
Either(Branches...) -> Either<Branches...>;

// The numbers that an element of the field can hold; nothing for texts.
std::optional<Bounds> TypeBounds(const FieldValue& value) {
  return std::visit(
      []<typename T>(const T&) -> std::optional<Bounds> {
        if constexpr (std::is_arithmetic_v<T>) {
          return Bounds{static_cast<double>(std::numeric_limits<T>::lowest()),
                        static_cast<double>(std::numeric_limits<T>::max())};
        }
        return std::nullopt;
      },
      value);
}

// Both ends moved into the numbers of the type: a law may add to a hostile neighbour.
Bounds Fitting(Bounds bounds, Bounds type) {
  Clamp(bounds.lower, type.lower, type.upper);
  Clamp(bounds.upper, type.lower, type.upper);
  return bounds;
}

// The range that the rule names, for a number of that type.
Bounds BoundsNow(const Rule& rule, const SystemSettings& settings, int i, int j, Bounds type) {
  const auto law = Either{
      [&](const rules::Any&) { return type; },
      [&](const rules::Mask& mask) {
        return Bounds{0, static_cast<double>(mask.bits)};
      },
      [&](const rules::Flag&) {
        return Bounds{-1, 0};
      },
      [&](const rules::FollowsField& follows) { return follows.bounds(settings, i, j); },
      [&](const rules::FollowsLimits& follows) { return follows.bounds(settings, i, j); },
      [&](const rules::Derived&) { return type; },
      [&](const auto& within) {
        return Bounds{within.lower, within.upper};
      },
  };
  return Fitting(std::visit(law, rule), type);
}

double InitialAt(const FieldRow& row, int i) {
  return i == row.extent[0].first ? row.initial.first : row.initial.others;
}

// The number that the rule leaves of an integer or float. NaN counts as the default.
double Ruled(const Rule& rule, double value, Bounds bounds) {
  const auto held = [&] {
    double result = value;
    Clamp(result, bounds.lower, bounds.upper);
    return result;
  };
  const auto outside = [&] { return value < bounds.lower || value > bounds.upper; };
  const auto law = Either{
      [&](const rules::Mask& mask) {
        return static_cast<double>(static_cast<std::int32_t>(value) & mask.bits);
      },
      [&](const rules::Flag&) { return value == 0 ? 0.0 : -1.0; },
      [&](const rules::WithinOr& within) { return value == within.other ? value : held(); },
      [&](const rules::OutsideBecomes& range) {
        return outside() ? static_cast<double>(range.value) : value;
      },
      [&](const rules::WhenEdited&) { return value; },
      [&](const rules::Derived&) { return value; },
      [&](const auto&) { return held(); },
  };
  return std::visit(law, rule);
}

}  // namespace

const FieldRow* FindField(std::string_view name) {
  const auto rows = Fields();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&](const FieldRow& row) { return row.name == name; });
  return found == rows.end() ? nullptr : &*found;
}

bool IsDerived(const FieldRow& row) { return std::holds_alternative<rules::Derived>(row.rule); }

std::optional<Bounds> FieldRange(const SystemSettings& settings, const FieldRow& row, int i, int j) {
  const auto type = TypeBounds(row.value(settings, i, j));
  if (!type || IsDerived(row)) return std::nullopt;
  return BoundsNow(row.rule, settings, i, j, *type);
}

void StoreInitial(SystemSettings& settings, const FieldRow& row, int i, int j) {
  if (row.initial.kept) return;
  std::visit(
      [&]<typename T>(T* element) {
        if constexpr (std::is_arithmetic_v<T>) {
          *element = static_cast<T>(InitialAt(row, i));
        } else {
          element->clear();
        }
      },
      row.at(settings, i, j));
}

void ApplyRule(SystemSettings& settings, const FieldRow& row, int i, int j) {
  const auto bounds = FieldRange(settings, row, i, j);
  if (!bounds) return;
  std::visit(
      [&]<typename T>(T* element) {
        if constexpr (std::is_arithmetic_v<T>) {
          const auto value = static_cast<double>(*element);
          const double number = std::isnan(value) ? InitialAt(row, i) : value;
          *element = static_cast<T>(Ruled(row.rule, number, *bounds));
        }
      },
      row.at(settings, i, j));
}

}  // namespace vc
