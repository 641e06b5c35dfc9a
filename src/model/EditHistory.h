// The steps of the operator's work on the record, and the way back and forth along them. Every edit from a
// form or by name goes through here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/SystemSettings.h"
#include "platform/Clock.h"

namespace vc {

// Whether two records differ in anything that a setup keeps, port and rate left aside.
bool SetupDiffers(const SystemSettings& one, const SystemSettings& other);

// Only what a setup keeps is a step's matter, and of that not the connection: port and rate stay as they are.
struct EditHistory {
  EditHistory(SystemSettings& record, Clock& timeSource);

  // The record stands as before or after a step; told with what it was, and whether the step exchanged the
  // whole setup. Marks and limits are the listener's.
  std::function<void(const SystemSettings& was, bool exchanged)> restored = [](const SystemSettings&, bool) {
  };
  // Whether the unit holds the finished table of a filter stage. Of the record that cannot be told: its mark
  // goes when the table goes out.
  std::function<bool(int stage)> tableHeld = [](int) { return false; };
  // CanUndo, CanRedo or a title may have changed.
  std::function<void()> changed = [] {};

  // Runs an action of the operator; what it changes becomes one step. The action may change nothing, and may
  // call Edit again, which adds to the same step. Edits from the same source that follow each other within a
  // second become one step; those without a source never do.
  void Edit(const std::string& title, const std::string& source, const std::function<void()>& action);
  // As Edit, for another setup that takes the place of the whole one.
  void Exchange(const std::string& title, const std::function<void()>& action);
  // Runs what follows from the last step by itself, such as a fit that waited for the next tick; what it
  // changes becomes part of that step.
  void Amend(const std::function<void()>& action);
  // While a drag goes on, its step stays open however long the hand rests.
  void KeepOpen(bool open);
  // The next edit begins a step of its own.
  void CloseStep();

  bool CanUndo() const { return done > 0; }
  bool CanRedo() const { return done < steps.size(); }
  // Empty where there is nothing to undo or redo.
  std::string UndoTitle() const { return CanUndo() ? steps[done - 1]->title : std::string{}; }
  std::string RedoTitle() const { return CanRedo() ? steps[done]->title : std::string{}; }
  void Undo();
  void Redo();

 private:
  struct Step {
    std::string title, source;
    bool exchange;
    SystemSettings before, after;
  };

  // The record, with every table that the unit holds marked as finished.
  SystemSettings Standing() const;
  void Record(std::unique_ptr<Step> step, const std::function<void()>& action);
  bool Continues(const std::string& source) const;
  void Restore(const SystemSettings& from, const SystemSettings& to, bool exchanged);

  SystemSettings& settings;
  Clock& clock;
  std::vector<std::unique_ptr<Step>> steps;
  std::size_t done = 0;  // of the steps, how many stand
  int depth = 0;
  bool open = false, kept = false;
  std::int64_t lastEdit = 0;  // microseconds
};

}  // namespace vc
