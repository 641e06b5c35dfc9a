// The table of the record's fields: name, indices, default and rule. It drives the defaults, the validation,
// the clamps and every edit by name, so that one more field is one member and one row.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "model/SystemSettings.h"

namespace vc {

struct Bounds {
  double lower;
  double upper;
};

// The range of element (i, j) that the record gives at this moment.
using BoundsLaw = Bounds (*)(const SystemSettings& settings, int i, int j);

// What keeps a field in its range. ValidateSettings applies all but FollowsLimits.
namespace rules {
struct Any {};  // any value of its type; a NaN becomes the default
struct Mask {
  std::int32_t bits;  // the value AND bits
};
struct Flag {};  // 0, or -1 for anything else
struct Within {
  double lower, upper;
};
struct WithinOr {
  double lower, upper;
  std::int32_t other;  // stands as well, though no edit by name may store it
};
struct OutsideBecomes {
  double lower, upper;
  std::int32_t value;
};
struct FollowsField {
  BoundsLaw bounds;  // depends on another field, whose row stands before this one
};
struct FollowsLimits {
  BoundsLaw bounds;  // depends on a derived limit: applied by ClampSettingsToLimits, in the order of the rows
  BoundsLaw asked = nullptr;  // of edits, where a fit can give more than the limit is now
};
struct WhenEdited {
  double lower, upper;  // binds edits only; a loaded value stands until its panel opens
};
struct LoadedOrEdited {
  Bounds loaded;  // a load moves the value in here
  Bounds edited;  // an edit may set these, which then stand until the next load
};
struct Derived {};  // never edited from outside, never saved, never validated
}  // namespace rules

using Rule = std::variant<rules::Any, rules::Mask, rules::Flag, rules::Within, rules::WithinOr,
                          rules::OutsideBecomes, rules::FollowsField, rules::FollowsLimits, rules::WhenEdited,
                          rules::LoadedOrEdited, rules::Derived>;

// What InitSettings stores, before the rules move it into its range. Texts become empty.
struct Initial {
  constexpr Initial(double all) : first(all), others(all) {}  // implicit: a row shows the plain number
  constexpr Initial(double firstValue, double otherValues, bool isKept = false)
      : first(firstValue), others(otherValues), kept(isKept) {}

  double first;       // of the first index
  double others;      // of all other indices
  bool kept = false;  // InitSettings leaves the field alone
};

struct RecordEdits;

// What an edit of a field entails beyond its value; RecordEdits sees to it.
struct Entails {
  // Raises the marks by which the parts of the register image that depend on element (i, ...) are made anew.
  void (*mark)(SystemSettings& settings, int i);
  std::int16_t ticks;              // until it goes out, 0 where there is nothing to send
  std::int16_t ticksTogether = 0;  // where several elements are edited at once, if that is longer
  bool atOnce = false;             // a finished edit goes out without waiting for a tick
  void (*finish)(SystemSettings& settings, int i) = nullptr;  // a finished edit of a part of a table
  // The rule between fields, run when the value has been stored; before is the record as it was.
  void (*follow)(RecordEdits& edits, const SystemSettings& before, int i) = nullptr;
};

using FieldRef = std::variant<std::int16_t*, std::int32_t*, float*, std::uint8_t*, bool*, std::string*>;

struct IndexRange {
  int first = 0;
  int last = 0;

  constexpr bool Holds(int index) const { return index >= first && index <= last; }
};

struct FieldRow {
  std::string_view name;
  int dimensions;                    // 0, 1 or 2 indices
  std::array<IndexRange, 2> extent;  // 0..0 for an index that the field does not have
  // Element (i, j). An index outside its extent raises a Fault; one that the field does not have is ignored.
  FieldRef (*at)(SystemSettings& settings, int i, int j);
  FieldValue (*value)(const SystemSettings& settings, int i, int j);
  Initial initial;
  Rule rule;
  Entails entails;
};

std::span<const FieldRow> Fields();
// nullptr where no field has that name.
const FieldRow* FindField(std::string_view name);

// The value must be of the element's type.
void StoreValue(FieldRef target, const FieldValue& value);

// True for a field that is computed or belongs to the run: no edit by name may store it.
bool IsDerived(const FieldRow& row);
// The range of an element for edits at this moment, always inside its type's own. Nothing for texts and
// derived fields.
std::optional<Bounds> FieldRange(const SystemSettings& settings, const FieldRow& row, int i, int j);
// The same for what a load leaves.
std::optional<Bounds> LoadedRange(const SystemSettings& settings, const FieldRow& row, int i, int j);

// A value, or an element, as a number; a text raises a Fault.
double AsNumber(const FieldValue& value);
double NumberOf(const SystemSettings& settings, const FieldRow& row, int i, int j);
// Stores a number, moved into what the element's type can hold.
void StoreNumber(SystemSettings& settings, const FieldRow& row, int i, int j, double number);

// The default into every element, whatever stood there.
void StoreInitial(SystemSettings& settings, const FieldRow& row);
// Moves every element into the range that its rule gives at this moment.
void ApplyRule(SystemSettings& settings, const FieldRow& row);
// Moves those elements into their range whose range is another one than before, because of what else has been
// edited.
void FollowRange(SystemSettings& settings, const SystemSettings& before, const FieldRow& row);

template <typename Visit>
void ForEachElement(const FieldRow& row, Visit visit) {
  for (int i = row.extent[0].first; i <= row.extent[0].last; i++) {
    for (int j = row.extent[1].first; j <= row.extent[1].last; j++) visit(i, j);
  }
}

// The elements of each first index as one stretch of memory: visit(i, span). T is the field's type.
template <typename T, typename Visit>
void ForEachStretch(SystemSettings& settings, const FieldRow& row, Visit visit) {
  const IndexRange& inner = row.extent[1];
  for (int i = row.extent[0].first; i <= row.extent[0].last; i++) {
    T* first = std::get<T*>(row.at(settings, i, inner.first));
    visit(i, std::span<T>(first, static_cast<std::size_t>(inner.last - inner.first) + 1));
  }
}

}  // namespace vc
