#include "model/FieldChanges.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "model/Fields.h"
#include "model/Loans.h"

namespace vc {
namespace {

// What a stage's table is made of.
constexpr std::array<std::string_view, 5> TableFields{"filterType", "builtFreq", "builtWidth", "hiResCurve",
                                                      "sifCurve"};

bool IsOfASetup(const FieldRow& row) {
  return !IsDerived(row) && row.name != "comPort" && row.name != "baudIndex";
}

// A setup does not keep what a table was built of, yet the way back leads to it.
bool IsOfAStep(const FieldRow& row) {
  return IsOfASetup(row) || row.name == "builtFreq" || row.name == "builtWidth";
}

const FieldRow& RowAt(FieldChanges::Place place) { return Fields()[static_cast<std::size_t>(place.row)]; }

// Visits the elements of a row that differ, as the operator has them: visit(i, j, one, other).
template <typename Visit>
void ForEachDifference(const FieldRow& row, const SystemSettings& one, const SystemSettings& other,
                       Visit visit) {
  ForEachElement(row, [&](int i, int j) {
    FieldValue first = OperatorsValue(one, row, i, j), second = OperatorsValue(other, row, i, j);
    if (first != second) visit(i, j, std::move(first), std::move(second));
  });
}

template <typename T>
void Merge(std::vector<FieldChanges::Change<T>>& changes, const std::vector<FieldChanges::Change<T>>& later) {
  std::vector<FieldChanges::Change<T>> merged;
  auto old = changes.begin();
  for (const auto& change : later) {
    while (old != changes.end() && old->place < change.place) merged.push_back(*old++);
    const bool again = old != changes.end() && old->place == change.place;
    merged.push_back({change.place, again ? (old++)->before : change.before, change.after});
  }
  merged.insert(merged.end(), old, changes.end());
  std::erase_if(merged, [](const auto& change) { return change.before == change.after; });
  changes = std::move(merged);
}

void Put(SystemSettings& settings, FieldChanges::Place place, double number) {
  StoreNumber(settings, RowAt(place), place.i, place.j, number);
}
void Put(SystemSettings& settings, FieldChanges::Place place, const std::string& text) {
  *std::get<std::string*>(RowAt(place).at(settings, place.i, place.j)) = text;
}

}  // namespace

void FieldChanges::Add(const FieldChanges& later) {
  Merge(numbers, later.numbers);
  Merge(texts, later.texts);
}

void FieldChanges::Revert(SystemSettings& settings) const {
  for (const auto& change : numbers) Put(settings, change.place, change.before);
  for (const auto& change : texts) Put(settings, change.place, change.before);
}

void FieldChanges::Repeat(SystemSettings& settings) const {
  for (const auto& change : numbers) Put(settings, change.place, change.after);
  for (const auto& change : texts) Put(settings, change.place, change.after);
}

bool FieldChanges::TouchTable(int stage) const {
  return std::ranges::any_of(numbers, [stage](const auto& change) {
    return change.place.i == stage &&
           std::ranges::find(TableFields, RowAt(change.place).name) != TableFields.end();
  });
}

FieldChanges ChangesBetween(const SystemSettings& before, const SystemSettings& after) {
  FieldChanges changes;
  std::int16_t index = -1;
  for (const FieldRow& row : Fields()) {
    ++index;
    if (!IsOfAStep(row)) continue;
    ForEachDifference(row, before, after, [&](int i, int j, FieldValue was, FieldValue is) {
      const FieldChanges::Place place{index, static_cast<std::int16_t>(i), static_cast<std::int16_t>(j)};
      if (std::holds_alternative<std::string>(was)) {
        changes.texts.push_back({place, std::get<std::string>(was), std::get<std::string>(is)});
      } else {
        changes.numbers.push_back({place, AsNumber(was), AsNumber(is)});
      }
    });
  }
  return changes;
}

bool SetupDiffers(const SystemSettings& one, const SystemSettings& other) {
  return std::ranges::any_of(Fields(), [&](const FieldRow& row) {
    bool differs = false;
    if (IsOfASetup(row)) {
      ForEachDifference(row, one, other,
                        [&](int, int, const FieldValue&, const FieldValue&) { differs = true; });
    }
    return differs;
  });
}

}  // namespace vc
