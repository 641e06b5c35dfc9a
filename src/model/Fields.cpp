// How a row of the table acts on the record, whatever the type of the field.
#include "model/Fields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "model/Clamp.h"
#include "text/Convert.h"

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

// The range that the rule names for a load, of a number of that type.
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
      [&](const rules::LoadedOrEdited& ranges) { return ranges.loaded; },
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

// The number that a rule leaves of an integer or float that is not NaN.
double Held(double value, Bounds bounds) {
  Clamp(value, bounds.lower, bounds.upper);
  return value;
}
bool Outside(double value, Bounds bounds) { return value < bounds.lower || value > bounds.upper; }

double Ruled(const rules::Mask& mask, double value, Bounds /*bounds*/) {
  return static_cast<std::int32_t>(value) & mask.bits;
}
double Ruled(const rules::Flag& /*rule*/, double value, Bounds /*bounds*/) { return value == 0 ? 0.0 : -1.0; }
double Ruled(const rules::WithinOr& within, double value, Bounds bounds) {
  return value == within.other ? value : Held(value, bounds);
}
double Ruled(const rules::OutsideBecomes& range, double value, Bounds bounds) {
  return Outside(value, bounds) ? range.value : value;
}
double Ruled(const rules::WhenEdited& /*rule*/, double value, Bounds /*bounds*/) { return value; }
double Ruled(const auto& /*held*/, double value, Bounds bounds) { return Held(value, bounds); }

template <typename Law>
constexpr bool Follows =
    std::is_same_v<Law, rules::FollowsField> || std::is_same_v<Law, rules::FollowsLimits>;

// One law over a whole row, its range computed once where it is the same for all elements.
template <typename T, typename Law>
void ApplyLaw(const Law& law, SystemSettings& settings, const FieldRow& row) {
  const Bounds type{static_cast<double>(std::numeric_limits<T>::lowest()),
                    static_cast<double>(std::numeric_limits<T>::max())};
  Bounds bounds = Follows<Law> ? type : BoundsNow(row.rule, settings, 0, 0, type);
  ForEachStretch<T>(settings, row, [&](int i, std::span<T> elements) {
    const double initial = InitialAt(row, i);
    int j = row.extent[1].first;
    for (T& element : elements) {
      if constexpr (Follows<Law>) bounds = BoundsNow(row.rule, settings, i, j++, type);
      const auto value = static_cast<double>(element);
      element = static_cast<T>(Ruled(law, std::isnan(value) ? initial : value, bounds));
    }
  });
}

}  // namespace

const FieldRow* FindField(std::string_view name) {
  const auto rows = Fields();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&](const FieldRow& row) { return row.name == name; });
  return found == rows.end() ? nullptr : &*found;
}

bool IsDerived(const FieldRow& row) { return std::holds_alternative<rules::Derived>(row.rule); }

std::optional<Bounds> LoadedRange(const SystemSettings& settings, const FieldRow& row, int i, int j) {
  const auto type = TypeBounds(row.value(settings, i, j));
  if (!type || IsDerived(row)) return std::nullopt;
  return BoundsNow(row.rule, settings, i, j, *type);
}

std::optional<Bounds> FieldRange(const SystemSettings& settings, const FieldRow& row, int i, int j) {
  const auto range = LoadedRange(settings, row, i, j);
  if (!range) return range;
  const auto* follows = std::get_if<rules::FollowsLimits>(&row.rule);
  if (follows != nullptr && follows->asked != nullptr) {
    return Fitting(follows->asked(settings, i, j), *TypeBounds(row.value(settings, i, j)));
  }
  const auto* ranges = std::get_if<rules::LoadedOrEdited>(&row.rule);
  return ranges == nullptr ? range : ranges->edited;
}

void StoreValue(FieldRef target, const FieldValue& value) {
  std::visit([&value](auto* place) { *place = std::get<std::remove_pointer_t<decltype(place)>>(value); },
             target);
}

double AsNumber(const FieldValue& value) {
  return std::visit(
      []<typename T>(const T& number) -> double {
        if constexpr (std::is_arithmetic_v<T>) return static_cast<double>(number);
        throw Fault{"a text is no number"};
      },
      value);
}

double NumberOf(const SystemSettings& settings, const FieldRow& row, int i, int j) {
  return AsNumber(row.value(settings, i, j));
}

void StoreNumber(SystemSettings& settings, const FieldRow& row, int i, int j, double number) {
  const auto type = TypeBounds(row.value(settings, i, j));
  if (!type) throw Fault{"a text is no number"};
  std::visit(
      [held = Held(number, *type)]<typename T>(T* element) {
        if constexpr (std::is_integral_v<T>) *element = static_cast<T>(std::nearbyint(held));
        if constexpr (std::is_floating_point_v<T>) *element = static_cast<T>(held);
      },
      row.at(settings, i, j));
}

void StoreInitial(SystemSettings& settings, const FieldRow& row) {
  if (row.initial.kept) return;
  std::visit(
      [&]<typename T>(T*) {
        ForEachStretch<T>(settings, row, [&](int i, std::span<T> elements) {
          T initial{};
          if constexpr (std::is_arithmetic_v<T>) initial = static_cast<T>(InitialAt(row, i));
          std::ranges::fill(elements, initial);
        });
      },
      row.at(settings, row.extent[0].first, row.extent[1].first));
}

void ApplyRule(SystemSettings& settings, const FieldRow& row) {
  if (IsDerived(row)) return;
  const auto apply = [&]<typename T, typename Law>(T*, const Law& law) {
    if constexpr (std::is_arithmetic_v<T>) ApplyLaw<T>(law, settings, row);
  };
  std::visit(apply, row.at(settings, row.extent[0].first, row.extent[1].first), row.rule);
}

void FollowRange(SystemSettings& settings, const SystemSettings& before, const FieldRow& row) {
  const auto* field = std::get_if<rules::FollowsField>(&row.rule);
  const auto* limits = std::get_if<rules::FollowsLimits>(&row.rule);
  // What waits for a fit is left to it.
  const bool waits = limits != nullptr && limits->asked != nullptr;
  if (waits || (field == nullptr && limits == nullptr)) return;
  const BoundsLaw law = field != nullptr ? field->bounds : limits->bounds;
  ForEachElement(row, [&](int i, int j) {
    const Bounds was = law(before, i, j), now = law(settings, i, j);
    if (was.lower == now.lower && was.upper == now.upper) return;
    StoreNumber(settings, row, i, j, Held(NumberOf(settings, row, i, j), now));
  });
}

}  // namespace vc
