#include "RecordPromises.h"

#include <type_traits>

#include "Promise.h"
#include "model/Fields.h"

namespace fuzz {
namespace {

using vc::SystemSettings;

// Whether the rule lets a number stand outside the range of its edits.
template <typename T>
bool StandsAnyway(const vc::Rule& rule, T value) {
  if (std::holds_alternative<vc::rules::WhenEdited>(rule)) return true;
  if (const auto* ranges = std::get_if<vc::rules::LoadedOrEdited>(&rule)) {
    return value >= ranges->loaded.lower && value <= ranges->loaded.upper;
  }
  const auto* within = std::get_if<vc::rules::WithinOr>(&rule);
  return within != nullptr && static_cast<double>(value) == within->other;
}

template <typename T>
void RequireRange(SystemSettings& settings, const vc::FieldRow& row) {
  const bool varies = std::holds_alternative<vc::rules::FollowsField>(row.rule) ||
                      std::holds_alternative<vc::rules::FollowsLimits>(row.rule);
  vc::ForEachStretch<T>(settings, row, [&](int i, std::span<T> elements) {
    int j = row.extent[1].first;
    auto range = vc::FieldRange(settings, row, i, j);
    for (const T element : elements) {
      if (varies) range = vc::FieldRange(settings, row, i, j++);
      const bool inside = element >= static_cast<T>(range->lower) && element <= static_cast<T>(range->upper);
      Require(inside || StandsAnyway(row.rule, element), "in its range:", row.name);
    }
  });
}

}  // namespace

void RequireRanges(SystemSettings& settings, bool fitted) {
  for (const vc::FieldRow& row : vc::Fields()) {
    if (vc::IsDerived(row) || (!fitted && std::holds_alternative<vc::rules::FollowsLimits>(row.rule)))
      continue;
    std::visit(
        [&]<typename T>(T*) {
          if constexpr (std::is_arithmetic_v<T>) RequireRange<T>(settings, row);
        },
        row.at(settings, row.extent[0].first, row.extent[1].first));
  }
}

void RequireSame(const SystemSettings& one, const SystemSettings& other, std::string_view promise) {
  if (one == other) return;
  for (const vc::FieldRow& row : vc::Fields()) {
    if (vc::IsDerived(row)) continue;
    vc::ForEachElement(row, [&](int i, int j) {
      Require(row.value(one, i, j) == row.value(other, i, j), promise, row.name);
    });
  }
}

}  // namespace fuzz
