#include "model/EditHistory.h"

#include <tuple>
#include <utility>

#include "model/Loans.h"

namespace vc {
namespace {

constexpr std::size_t MostSteps = 100;
constexpr std::int64_t LongestPause = 1000000;  // microseconds

// Counts for the time of an edit, also where a fault ends it.
struct Depth {
  explicit Depth(int& counter) : count(counter) { ++count; }
  ~Depth() { --count; }
  Depth(const Depth&) = delete;
  Depth& operator=(const Depth&) = delete;
  int& count;
};

// Makes in the target the change that leads from one set of marks to another, and leaves the others alone.
void CarryOver(PerStage<std::int16_t>& target, const PerStage<std::int16_t>& from,
               const PerStage<std::int16_t>& to) {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (from[stage] != to[stage]) target[stage] = to[stage];
  }
}

}  // namespace

EditHistory::EditHistory(SystemSettings& record, Clock& timeSource, HistoryWires wired)
    : settings(record), clock(timeSource), wires(std::move(wired)) {}

PerStage<std::int16_t> EditHistory::Built() const {
  PerStage<std::int16_t> built = settings.filterBuilt;
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (wires.tableHeld(stage)) built[stage] = -1;
  }
  return built;
}

bool EditHistory::Continues(const std::string& source) const {
  if (!open || source.empty() || CanRedo() || !CanUndo() || steps.back().source != source) return false;
  return dragging || clock.Microseconds() - lastEdit <= LongestPause;
}

void EditHistory::Edit(const std::string& title, const std::string& source, const Action& action) {
  if (depth > 0) {
    const auto before = std::make_unique<SystemSettings>(settings);
    return action(*before);
  }
  if (title.empty()) {
    const auto before = std::make_unique<SystemSettings>(settings);
    return Amend([&] { action(*before); });
  }
  Record({title, source, false, {}, Built(), {}}, action);
}

void EditHistory::Exchange(const std::string& title, const std::function<void()>& action) {
  Record({title, "", true, {}, Built(), {}}, [&action](const SystemSettings&) { action(); });
}

void EditHistory::Record(Step step, const Action& action) {
  const auto before = std::make_unique<SystemSettings>(settings);
  {
    const Depth inside(depth);
    action(*before);
  }
  step.changes = ChangesBetween(*before, settings);
  step.builtAfter = Built();
  if (step.IsNone()) return;
  const bool continues = Continues(step.source);
  open = true;
  if (continues) {
    Join(step);
  } else {
    Push(std::move(step));
  }
  done = steps.size();
  lastEdit = clock.Microseconds();
  wires.changed();
}

void EditHistory::Push(Step step) {
  steps.resize(done);
  steps.push_back(std::move(step));
  if (steps.size() > MostSteps) steps.erase(steps.begin());
  done = steps.size();
}

KeptSetup EditHistory::Kept() const { return {OperatorsRecord(settings), Built()}; }

// A fit may make something else of the other setup than what was kept.
void EditHistory::Cross(const std::string& title, const KeptSetup& other, const Beside& beside) {
  if (depth > 0) return;
  CloseStep();
  const auto before = std::make_unique<SystemSettings>(settings);
  Step step{title, "", false, ChangesBetween(settings, other.record), Built(), other.built, beside, true};
  Restore(step, false);
  step.changes = ChangesBetween(*before, settings);
  step.builtAfter = Built();
  Push(std::move(step));
  wires.changed();
}

bool EditHistory::CrossAgain() {
  const bool back = CanUndo() && steps[done - 1].crosses;
  if (!back && !(CanRedo() && steps[done].crosses)) return false;
  back ? Undo() : Redo();
  return true;
}

void EditHistory::Note(const std::string& title, const Beside& beside) {
  if (depth > 0) return;
  CloseStep();
  beside(false);
  Push({title, "", false, {}, Built(), Built(), beside});
  wires.changed();
}

// A step that has come back to where it began is none, and the next edit does not continue the one before.
void EditHistory::Join(const Step& step) {
  steps.back().changes.Add(step.changes);
  CarryOver(steps.back().builtAfter, step.builtBefore, step.builtAfter);
  if (!steps.back().IsNone()) return;
  steps.pop_back();
  open = false;
}

void EditHistory::Amend(const std::function<void()>& action) {
  const bool consequence = depth == 0 && CanUndo() && !CanRedo();
  if (!consequence) return action();
  const auto before = std::make_unique<SystemSettings>(settings);
  const PerStage<std::int16_t> builtBefore = Built();
  action();
  steps.back().changes.Add(ChangesBetween(*before, settings));
  CarryOver(steps.back().builtAfter, builtBefore, Built());
  wires.changed();
}

void EditHistory::KeepOpen(bool drag) {
  if (drag && !dragging) open = false;
  dragging = drag;
}

void EditHistory::CloseStep() { open = dragging = false; }

void EditHistory::Restore(const Step& step, bool back) {
  const auto was = std::make_unique<SystemSettings>(settings);
  PutInPlace(step, back);
  if (step.beside) step.beside(back);
  {
    const Depth inside(depth);  // what follows belongs to no step
    wires.restored(*was, step.exchange);
  }
  wires.changed();
}

void EditHistory::PutInPlace(const Step& step, bool back) {
  const auto& [from, to] =
      back ? std::tie(step.builtAfter, step.builtBefore) : std::tie(step.builtBefore, step.builtAfter);
  {
    const OperatorsTurn turn(settings);
    if (back) {
      step.changes.Revert(settings);
    } else {
      step.changes.Repeat(settings);
    }
  }
  CarryOver(settings.filterBuilt, from, to);
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (to[stage] != 0) {
      if (step.changes.TouchTable(stage)) settings.filterBuilt[stage] = -1;
    } else if (from[stage] != 0) {
      settings.filterDirty[stage] = -1;  // the unit still holds the table that is now none
    }
  }
}

void EditHistory::Undo() {
  if (!CanUndo() || depth > 0) return;
  CloseStep();
  Restore(steps[--done], true);
}

void EditHistory::Redo() {
  if (!CanRedo() || depth > 0) return;
  CloseStep();
  Restore(steps[done++], false);
}

}  // namespace vc
