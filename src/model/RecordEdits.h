// Edits of the record by field, from the master panel and by name: what an edit of a field entails beyond its
// value.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "model/Download.h"
#include "model/EditHistory.h"
#include "model/Fields.h"
#include "model/modDeviceConfig.h"

namespace vc {

// Where an edit comes from: what the step is called, and its source as EditHistory has it.
struct EditOrigin {
  std::string title;
  std::string source{};
};

struct RecordEdits {
  RecordEdits(SystemSettings& record, modDeviceConfig& fit, Download& sender, EditHistory& steps);

  // Runs a fit with no poll and no other change under way.
  std::function<void(const std::function<void()>& fit)> undisturbed = [](const auto& fit) { fit(); };
  // The record has been edited: every view but its origin shows it anew.
  std::function<void()> edited = [] {};

  // Another setup stands in the record than the one that was named last.
  std::function<void()> setupExchanged = [] {};

  // Edits an element by text. False and a reason in error, with the record untouched, where the text is no
  // value for it.
  bool ByText(const FieldRow& row, int i, int j, std::string_view text, const EditOrigin& origin,
              std::string& error);
  // The same by a number, which the field's range must hold; false where it does not.
  bool Store(std::string_view field, int i, std::int16_t value, const EditOrigin& origin);
  // Has the whole register image made anew and sent with the next tick, though nothing is edited.
  void MakeAnew();
  // Fits the record to the unit with nothing else under way.
  void Fit();
  // Undo and redo have put the record back from what it was: the unit follows.
  void FollowRestore(const SystemSettings& was, bool exchanged);

  SystemSettings& settings;
  modDeviceConfig& config;
  Download& download;
  EditHistory& history;
  // Positions of the input levels while the unit is to be set by its own controls.
  std::optional<std::array<std::int16_t, 2>> formerLevels;
};

}  // namespace vc
