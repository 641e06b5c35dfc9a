// The steps of the operator's work on the record, and the way back and forth along them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/FieldChanges.h"
#include "model/SystemSettings.h"
#include "platform/Clock.h"
#include "text/Wire.h"

namespace vc {

struct HistoryWires {
  // The record stands as before or after a step; told with what it was, and whether the step exchanged the
  // whole setup. Marks and limits are the listener's.
  Wire<void(const SystemSettings& was, bool exchanged)> restored;
  // Whether the unit holds the finished table of a filter stage. Of the record that cannot be told: its mark
  // goes when the table goes out.
  Wire<bool(int stage)> tableHeld;
  // CanUndo, CanRedo or a title may have changed.
  Wire<void()> changed;
};

// A setup outside the record: the operator's values, and which tables are finished.
struct KeptSetup {
  SystemSettings record;
  PerStage<std::int16_t> built;
};

// What a step does beside the record, such as which of two setups is in it: run where the step is made or
// done again, and with `back` where it is taken back.
using Beside = std::function<void(bool back)>;

// Only what a setup keeps is a step's matter, and of that not the connection: port and rate stay as they are.
struct EditHistory {
  EditHistory(SystemSettings& record, Clock& timeSource, HistoryWires wired);

  using Action = std::function<void(const SystemSettings& before)>;

  // Runs an action of the operator, told with the record before it; what it changes becomes one step. The
  // action may change nothing, and may call Edit again, which adds to the same step. Edits from the same
  // source that follow each other within a second become one step; those without a source never do. What has
  // no title is nobody's edit: see Amend.
  void Edit(const std::string& title, const std::string& source, const Action& action);
  // As Edit, for another setup that takes the place of the whole one.
  void Exchange(const std::string& title, const std::function<void()>& action);
  // What the record has now, to come back to.
  KeptSetup Kept() const;
  // To another setup that is kept beside this one, and this one stays. It is a step even where both are
  // alike; the unit follows as it does after an undo.
  void Cross(const std::string& title, const KeptSetup& other, const Beside& beside);
  // Where the last step has crossed, or the one that was taken back last: back along it, or along it again.
  // So going to and fro makes no further steps. False where there is none.
  bool CrossAgain();
  // A step that leaves the record alone.
  void Note(const std::string& title, const Beside& beside);
  // Runs what follows from the last step by itself, such as a fit that waited for the next tick; what it
  // changes becomes part of that step.
  void Amend(const std::function<void()>& action);
  // Told before every edit by a control that can be dragged, whether it is. The first edit of a drag begins a
  // step, which stays open however long the hand rests, until CloseStep.
  void KeepOpen(bool drag);
  // The next edit begins a step of its own.
  void CloseStep();

  bool CanUndo() const { return done > 0; }
  bool CanRedo() const { return done < steps.size(); }
  // Empty where there is nothing to undo or redo.
  std::string UndoTitle() const { return CanUndo() ? steps[done - 1].title : std::string{}; }
  std::string RedoTitle() const { return CanRedo() ? steps[done].title : std::string{}; }
  void Undo();
  void Redo();

 private:
  struct Step {
    std::string title, source;
    bool exchange;
    FieldChanges changes;
    PerStage<std::int16_t> builtBefore, builtAfter;  // which tables are finished
    Beside beside{};                                 // none where the step is of the record alone
    bool crosses = false;

    bool IsNone() const { return changes.Empty() && builtBefore == builtAfter && !beside; }
  };

  // filterBuilt, with every table that the unit holds marked as finished.
  PerStage<std::int16_t> Built() const;
  void Record(Step step, const Action& action);
  void Push(Step step);
  bool Continues(const std::string& source) const;
  void Join(const Step& step);
  // Brings the record to one end of a step, and the unit after it.
  void Restore(const Step& step, bool back);
  void PutInPlace(const Step& step, bool back);

  SystemSettings& settings;
  Clock& clock;
  const HistoryWires wires;
  std::vector<Step> steps;
  std::size_t done = 0;  // of the steps, how many stand
  int depth = 0;
  bool open = false, dragging = false;
  std::int64_t lastEdit = 0;  // microseconds
};

}  // namespace vc
