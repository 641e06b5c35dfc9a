// What a control of a panel edits: a number of the record, through the door of all edits, or one of a panel's
// own work copy.
#pragma once

#include <array>
#include <functional>

#include "model/FieldAccess.h"
#include "panels/Panel.h"

namespace vc {

// An element of a field, found anew whenever it is asked for: which one depends on the stage that is edited.
struct FieldElement {
  const FieldRow* row;
  std::function<std::array<int, 2>(const SystemSettings& settings)> index;
};

// Of a field without an index; of the filter stage, equalizer or broadband stage that is edited, with the
// second index where the field has one. An equalizer's is 1 or 2, or 9 or 10 where its field is kept by
// entry.
FieldElement Single(const FieldRow& row);
FieldElement OfFilter(const FieldRow& row, int j = 0);
FieldElement OfEqualizer(const FieldRow& row, int j = 0);
FieldElement OfBroadband(const FieldRow& row, int j = 0);

struct Parameter {
  std::function<double()> value;              // as it is stored now
  std::function<double()> factory;            // as a new setup has it
  std::function<double(double number)> kept;  // what a number becomes when it is stored
  // Stores it, held to its range; edits by the same control that follow each other are one step under the
  // title.
  std::function<void(double value, const ControlCore& source, const std::string& title)> store;
};

// Edits of it go as far as the state says; a table that waits for its button is made of drafts.
Parameter InRecord(Panel& panel, const FieldElement& element, EditState state = EditState::Settled);
// The same, its steps under a title of their own where no caption says it.
Parameter Titled(Parameter parameter, const std::string& title);

// In a work copy that its panel takes into the record itself; edited is told after every change.
template <typename T>
Parameter InCopy(T& element, T factory, std::function<void()> edited) {
  return {.value = [&element] { return static_cast<double>(element); },
          .factory = [factory] { return static_cast<double>(factory); },
          .kept = [](double number) { return static_cast<double>(static_cast<T>(number)); },
          .store =
              [&element, edited = std::move(edited)](double value, const ControlCore&, const std::string&) {
                element = static_cast<T>(value);
                edited();
              }};
}

}  // namespace vc
