// Steps as pairs of records: what differs between the two is what undo and redo put back.
#include "model/EditHistory.h"

#include <algorithm>
#include <tuple>

#include "model/Fields.h"

namespace vc {
namespace {

constexpr std::size_t MostSteps = 100;
constexpr std::int64_t LongestPause = 1000000;  // microseconds

bool IsOfASetup(const FieldRow& row) {
  return !IsDerived(row) && row.name != "comPort" && row.name != "baudIndex";
}

bool RowDiffers(const FieldRow& row, const SystemSettings& one, const SystemSettings& other) {
  bool differs = false;
  ForEachElement(row, [&](int i, int j) {
    differs = differs || OperatorsValue(one, row, i, j) != OperatorsValue(other, row, i, j);
  });
  return differs;
}

// Makes in the target the change that leads from one record to another, and leaves all else of it alone.
void CarryOver(SystemSettings& target, const SystemSettings& from, const SystemSettings& to) {
  for (const FieldRow& row : Fields()) {
    if (!IsOfASetup(row)) continue;
    ForEachElement(row, [&](int i, int j) {
      const FieldValue value = row.value(to, i, j);
      if (row.value(from, i, j) != value) StoreValue(row.at(target, i, j), value);
    });
  }
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (from.filterBuilt[stage] != to.filterBuilt[stage]) target.filterBuilt[stage] = to.filterBuilt[stage];
  }
}

// What a stage's table is made of.
auto TableOf(const SystemSettings& settings, int stage) {
  return std::tie(settings.filterType[stage], settings.mnotchFreq[stage], settings.mnotchWidth[stage],
                  settings.mslotFreq[stage], settings.mslotWidth[stage], settings.hiResCurve[stage],
                  settings.sifCurve[stage]);
}

// Counts for the time of an edit, also where a fault ends it.
struct Depth {
  explicit Depth(int& counter) : count(counter) { ++count; }
  ~Depth() { --count; }
  Depth(const Depth&) = delete;
  Depth& operator=(const Depth&) = delete;
  int& count;
};

}  // namespace

bool SetupDiffers(const SystemSettings& one, const SystemSettings& other) {
  return one.filterBuilt != other.filterBuilt || std::ranges::any_of(Fields(), [&](const FieldRow& row) {
           return IsOfASetup(row) && RowDiffers(row, one, other);
         });
}

EditHistory::EditHistory(SystemSettings& record, Clock& timeSource) : settings(record), clock(timeSource) {}

SystemSettings EditHistory::Standing() const {
  SystemSettings standing = OperatorsRecord(settings);
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (tableHeld(stage)) standing.filterBuilt[stage] = -1;
  }
  return standing;
}

bool EditHistory::Continues(const std::string& source) const {
  if (!open || source.empty() || CanRedo() || !CanUndo() || steps.back()->source != source) return false;
  return kept || clock.Microseconds() - lastEdit <= LongestPause;
}

void EditHistory::Edit(const std::string& title, const std::string& source,
                       const std::function<void()>& action) {
  if (depth > 0) return action();
  Record(std::make_unique<Step>(Step{title, source, false, Standing(), {}}), action);
}

void EditHistory::Exchange(const std::string& title, const std::function<void()>& action) {
  Record(std::make_unique<Step>(Step{title, "", true, Standing(), {}}), action);
}

void EditHistory::Record(std::unique_ptr<Step> step, const std::function<void()>& action) {
  {
    const Depth inside(depth);
    action();
  }
  const auto after = std::make_unique<SystemSettings>(Standing());
  if (!SetupDiffers(step->before, *after)) return;
  if (Continues(step->source)) {
    CarryOver(steps.back()->after, step->before, *after);
  } else {
    step->after = *after;
    steps.resize(done);
    steps.push_back(std::move(step));
    if (steps.size() > MostSteps) steps.erase(steps.begin());
    done = steps.size();
  }
  open = true;
  lastEdit = clock.Microseconds();
  changed();
}

void EditHistory::Amend(const std::function<void()>& action) {
  const bool consequence = depth == 0 && CanUndo() && !CanRedo();
  if (!consequence) return action();
  const auto before = std::make_unique<SystemSettings>(Standing());
  action();
  CarryOver(steps.back()->after, *before, Standing());
}

void EditHistory::KeepOpen(bool stays) { kept = stays; }

void EditHistory::CloseStep() { open = kept = false; }

void EditHistory::Restore(const SystemSettings& from, const SystemSettings& to, bool exchanged) {
  const auto was = std::make_unique<SystemSettings>(settings);
  {
    const OperatorsTurn turn(settings);
    CarryOver(settings, from, to);
  }
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (to.filterBuilt[stage] != 0) {
      if (TableOf(from, stage) != TableOf(to, stage)) settings.filterBuilt[stage] = -1;
    } else if (from.filterBuilt[stage] != 0) {
      settings.filterDirty[stage] = -1;  // the unit still holds the table that is now none
    }
  }
  restored(*was, exchanged);
  changed();
}

void EditHistory::Undo() {
  if (!CanUndo() || depth > 0) return;
  CloseStep();
  const Step& step = *steps[--done];
  Restore(step.after, step.before, step.exchange);
}

void EditHistory::Redo() {
  if (!CanRedo() || depth > 0) return;
  CloseStep();
  const Step& step = *steps[done++];
  Restore(step.before, step.after, step.exchange);
}

}  // namespace vc
