// The one door through which the record is edited: by panels and the master panel, by name, from memories and
// files. What an edit of a field entails beyond its value is in the field's row.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "model/EditHistory.h"
#include "model/Fields.h"
#include "model/SystemSettings.h"
#include "platform/Clock.h"
#include "text/Wire.h"

namespace vc {

// How far an edit has come. A draft is stored and marks nothing, so that the unit stays as it is: a row of a
// table that is built on demand. A settled edit goes out with a tick. A finished one (a drawn curve) goes out
// at once where its field asks for that.
enum class EditState { Draft, Settled, Finished };

// Where an edit comes from: what the step is called, and its source as EditHistory has it. What follows from
// something that is no edit has no title, and makes no step.
struct EditOrigin {
  std::string title;
  std::string source{};
  EditState state = EditState::Settled;
};

// A new value for an element. What a panel may set is its own matter: a number is held only to what the
// element can hold.
struct FieldEdit {
  FieldEdit(const FieldRow* edited, int first, int second, double number)
      : row(edited), i(first), j(second), value(number) {}
  FieldEdit(const FieldRow* edited, int first, int second, std::string text)
      : row(edited), i(first), j(second), value(std::move(text)) {}

  const FieldRow* row;
  int i, j;
  std::variant<double, std::string> value;
};

// What the door needs of the session.
struct EditWires {
  // ConfigureStages of the fit, and what of Download it uses.
  Wire<void(bool fit)> configureStages;
  Wire<void(int mode)> download;
  Wire<void()> forgetBandwidth;
  Wire<bool(int stage)> holdsTable;
  // The unit's analyzer is to begin anew with the next download.
  Wire<void()> requestAnalyzerClear;
  // Runs a fit with no poll and no other change under way.
  Wire<void(const std::function<void()>& fit)> undisturbed;
  // The record has been edited: every view shows it anew.
  Wire<void()> edited;
  // Another setup stands in the record than the one that was named last.
  Wire<void()> setupExchanged;
  // CanUndo, CanRedo or a title may have changed.
  Wire<void()> stepsChanged;
};

struct RecordEdits {
  RecordEdits(SystemSettings& record, Clock& clock, EditWires wired);
  RecordEdits(const RecordEdits&) = delete;
  RecordEdits& operator=(const RecordEdits&) = delete;

  // What is lent to a panel keeps the panel's value: the edit, here and by text, is of the operator's own.
  // Stores the values and sees to what they entail, as one step. A derived field may be edited so, but makes
  // no step.
  void Apply(std::span<const FieldEdit> together, const EditOrigin& origin);
  void Apply(std::initializer_list<FieldEdit> together, const EditOrigin& origin) {
    Apply(std::span(together.begin(), together.size()), origin);
  }
  // Edits an element by text. False and a reason in error, with the record untouched, where the text is no
  // value for it.
  bool ByText(const FieldRow& row, int i, int j, std::string_view text, const EditOrigin& origin,
              std::string& error);

  // Has the whole register image made anew and sent with the next tick, though nothing is edited.
  void MakeAnew();
  // Has the unit's analyzer begin anew with the next tick.
  void ClearAnalyzer();
  // Brings the unit up to the record, fitting it anew where an edit has asked for that and it would matter.
  void SendChanges();
  // Fits the record to the unit with nothing else under way.
  void Fit();

  SystemSettings& settings;
  const EditWires wires;
  EditHistory history;
  // Positions of the input levels while the unit is to be set by its own controls.
  std::optional<std::array<std::int16_t, 2>> formerLevels;

 private:
  // The values have been stored: what follows from that.
  void Entail(std::span<const FieldEdit> together, const SystemSettings& before, EditState state);
  // Undo and redo have put the record back from what it was: the unit follows.
  void FollowRestore(const SystemSettings& was, bool exchanged);
};

}  // namespace vc
