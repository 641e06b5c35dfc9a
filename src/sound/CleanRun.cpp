#include "sound/CleanRun.h"

#include <algorithm>
#include <array>
#include <utility>

#include "model/Bandwidth.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int PollMilliseconds = 100;

std::string CommandFor(const CleanWish& wish, const std::string& setup) {
  std::string command = "clean " + Quoted(wish.in) + " " + Quoted(wish.out);
  if (wish.from) command += " from " + ShortestText(*wish.from);
  if (wish.to) command += " to " + ShortestText(*wish.to);
  command += wish.adaptiveFiltersKept ? " adaptive keep" : " adaptive learn";
  return setup.empty() ? command : command + " setup " + Quoted(setup);
}

struct EndRow {
  const char* state;  // as the unit calls it
  CleanPhase phase;
};
constexpr std::array<EndRow, 3> EndTable{
    {{"done", CleanPhase::Done}, {"cancelled", CleanPhase::Cancelled}, {"failed", CleanPhase::Failed}}};

}  // namespace

CleanRun::CleanRun(const Around& parts)
    : around(parts), tmrClean(parts.platform.events.CreateTimer(PollMilliseconds, [this] { Tick(); })) {}

void CleanRun::Start(const CleanWish& wanted) {
  if (Busy()) return;
  wish = wanted;
  done = 0.0;
  secondsLeft.reset();
  error.clear();
  report.clear();
  const std::string fault = FaultOf(wish, around.platform.files);
  if (!fault.empty()) return Fail(fault);
  phase = CleanPhase::Sending;
  tmrClean->SetEnabled(true);
  Raise(changed);
}

void CleanRun::Cancel() {
  if (phase == CleanPhase::Sending) return End(CleanPhase::Cancelled);
  if (phase == CleanPhase::Running) around.unit.Ask("cancel", [](const Said& /*answer*/) {});
}

std::string CleanRun::SettingsText() const {
  const std::string name = around.setupName();
  const std::string text =
      "Settings: " + (name.empty() ? "as they stand, of no setup file" : name) + ". What is above " +
      std::string(BandwidthOf(around.settings.bandwidthIndex).name) + " (Bandwidth) goes.";
  return text + (around.settings.procEnabled != 0 ? "" : " Processing is off: nothing else is changed.");
}

std::string CleanRun::WhyApart() const {
  if (!around.unit.Running()) return "The simulated unit does not run.";
  if (around.device.comm.CommPortOpen && around.settings.comPort == around.unit.Port()) return {};
  return ApplicationTitle + " Control is not connected to the simulated unit, which may have other settings.";
}

// The mark of a changed record falls to 0 some ticks after all of it has been sent.
void CleanRun::Tick() {
  if (phase == CleanPhase::Running) return AskState();
  const std::string apart = WhyApart();
  if (!apart.empty()) return Fail(apart);
  if (around.settings.settingsChanged == 0) Begin();
}

void CleanRun::Begin() {
  phase = CleanPhase::Running;
  asking = true;
  around.unit.Ask(CommandFor(wish, around.setupName()), [this](const Said& answer) {
    asking = false;
    if (!answer["ok"].True()) Fail(answer["error"].Text());
  });
  Raise(changed);
}

void CleanRun::AskState() {
  if (std::exchange(asking, true)) return;
  around.unit.Ask("state", [this](const Said& answer) {
    asking = false;
    if (phase == CleanPhase::Running) TakeState(answer);
  });
}

// A unit that is slow to answer goes on cleaning; one that was started anew knows of none.
void CleanRun::TakeState(const Said& answer) {
  const bool answered = answer["ok"].True();
  const Said& clean = answer["clean"];
  if (!answered && around.unit.Running()) return;
  if (!answered || clean.Nothing()) {
    return Fail("The simulated unit has ended in the midst of it. " + wish.out + " has not been written.");
  }
  const auto* const end = std::ranges::find(EndTable, clean["state"].Text(), &EndRow::state);
  if (end == EndTable.end()) {
    done = clean["done"].Number();
    secondsLeft =
        clean["secondsLeft"].Nothing() ? std::nullopt : std::optional(clean["secondsLeft"].Number());
    return Raise(changed);
  }
  for (const Said& line : clean["report"].Items()) report.push_back(line.Text());
  error = clean["error"].Text();
  End(end->phase);
}

void CleanRun::Fail(const std::string& why) {
  error = why;
  End(CleanPhase::Failed);
}

void CleanRun::End(CleanPhase outcome) {
  tmrClean->SetEnabled(false);
  phase = outcome;
  if (outcome == CleanPhase::Done) done = 1.0;
  secondsLeft.reset();
  Raise(changed);
}

}  // namespace vc
