#include "sound/FrmClean.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "persist/FileNames.h"
#include "persist/SafeFile.h"
#include "text/Convert.h"

namespace vc {
namespace {

enum Part { WholeRecording, PartOfIt };
enum Adaptive { Learn, Keep };
constexpr int ProgressSteps = 1000;

// "1 min 5 s": what is left is no more exact than a second.
std::string LeftText(double seconds) {
  constexpr int perMinute = 60;
  const auto whole = static_cast<long>(std::ceil(std::max(seconds, 0.0)));
  const std::string tail = std::to_string(whole % perMinute) + " s";
  return whole < perMinute ? tail : std::to_string(whole / perMinute) + " min " + tail;
}

}  // namespace

FrmClean::FrmClean(const Around& parts) : around(parts), run(parts.run) {
  txtReport.readOnly = txtReport.multiLine = txtReport.inColumns = true;
  txtReport.columns = 72;
  txtReport.lines = 16;
  for (TextBox* box : {&txtFrom, &txtTo}) box->widest = "0:00:00.00";
  pbMain.SetOrientation(0);
  pbMain.SetFromColor(Highlight);
  pbMain.SetToColor(Highlight);
  pbMain.SetSteps(ProgressSteps);
  optPart.Select(WholeRecording);
  optAdaptive.Select(Learn);
  BindFiles();
  optPart.changed = [this] { ShowUsable(); };
  btnStart.clicked = [this] { Start(); };
  btnCancel.clicked = [this] { run.Cancel(); };
  btnSaveReport.clicked = [this] { SaveReport(); };
  btnHear.clicked = [this] { Hear(); };
  btnClose.clicked = [this] { Close(); };
  form.okButton = &btnClose;
  form.initialFocus = &txtRecording.core;
  form.activated = [this] { ShowSettings(); };
  form.unloaded = [this] { run.Cancel(); };
  run.changed = [this] { FollowRun(); };
}

void FrmClean::BindFiles() {
  txtRecording.WhenTaken([this] { TakeRecording(txtRecording.Text()); });
  btnRecording.clicked = [this] {
    around.chooseSound({.title = "Recording",
                        .path = txtRecording.Text(),
                        .there = true,
                        .chosen = [this](const std::string& path) { TakeRecording(path); }},
                       form);
  };
  btnCleaned.clicked = [this] {
    around.chooseSound({.title = "Cleaned File",
                        .path = txtCleaned.Text(),
                        .there = false,
                        .chosen = [this](const std::string& path) { txtCleaned.SetText(path); }},
                       form);
  };
}

void FrmClean::Fill() {
  if (!run.Busy()) TakeFromUnit();
  ShowSettings();
  ShowUsable();
}

void FrmClean::TakeFromUnit() {
  const Said& source = around.unit.state["source"];
  if (source["kind"].Text() != "file") return;
  TakeRecording(source["name"].Text());
  const Said::Row& marks = around.unit.state["loop"].Items();
  optPart.Select(marks.size() == 2 ? PartOfIt : WholeRecording);
  if (marks.size() != 2) return;
  txtFrom.SetText(TimeText(marks[0].Number()));
  txtTo.SetText(TimeText(marks[1].Number()));
}

void FrmClean::TakeRecording(const std::string& path) {
  txtRecording.SetText(path);
  const std::string name = path.empty() ? std::string() : CleanedName(path);
  if (txtCleaned.Text().empty() || txtCleaned.Text() == suggested) txtCleaned.SetText(name);
  suggested = name;
}

bool FrmClean::ReadWish(CleanWish& wish) {
  std::error_code ignored;
  const auto absolute = [&ignored](const std::string& path) {
    return path.empty() ? path : std::filesystem::absolute(path, ignored).string();
  };
  wish = {.in = absolute(txtRecording.Text()), .out = absolute(txtCleaned.Text())};
  wish.adaptiveFiltersKept = optAdaptive.Selected() == Keep;
  if (optPart.Selected() == WholeRecording) return true;
  for (const auto& [box, time] : {std::pair{&txtFrom, &wish.from}, {&txtTo, &wish.to}}) {
    if (IsBlank(box->Text())) continue;
    *time = ParseTime(box->Text());
    if (*time) continue;
    Tell(box->Text() + " is no time: say seconds, or minutes and seconds as 1:02.5.");
    return false;
  }
  return true;
}

void FrmClean::Start() {
  CleanWish wish;
  if (!ReadWish(wish)) return around.setup.desk.Beep();
  const std::string fault = FaultOf(wish, around.setup.files);
  if (!fault.empty()) {
    Tell(fault);
    return around.setup.desk.Beep();
  }
  if (MayReplace(wish.out) && UnitRuns()) run.Start(wish);
}

bool FrmClean::MayReplace(const std::string& path) const {
  if (around.setup.files.KindOf(path) != FileKind::File) return true;
  return around.setup.Warn(box::InformationYesNo, "File Already Exists",
                           LastPart(path) + " already exists. Do you wish to overwrite?") == Answer::Yes;
}

bool FrmClean::UnitRuns() {
  if (around.unit.Running()) return true;
  const Answer answer = around.setup.desk.Box(
      box::InformationYesNo, "Simulated Unit",
      "Recordings are cleaned by the simulated unit, which does not run. Do you wish to start it now?");
  if (answer != Answer::Yes) return false;
  const std::string reason = around.startUnit();
  if (!reason.empty()) Tell("The simulated unit does not run: " + reason);
  return reason.empty();
}

void FrmClean::FollowRun() {
  pbMain.SetValue(static_cast<std::int32_t>(std::lround(run.done * ProgressSteps)));
  Tell(StateText());
  std::string report;
  for (const std::string& line : run.report) report += line + "\n";
  txtReport.SetText(report);
  ShowUsable();
  if (std::exchange(followed, run.phase) != run.phase) FocusNext();
}

// What the operator wants next, and no box into which a stray key would type.
void FrmClean::FocusNext() {
  form.Focus(run.Busy() ? btnCancel.core : run.phase == CleanPhase::Done ? btnHear.core : btnStart.core);
}

std::string FrmClean::StateText() const {
  switch (run.phase) {
    case CleanPhase::None:
      return {};
    case CleanPhase::Sending:
      return "Sending the settings to the unit";
    case CleanPhase::Running:
      return FixedText(std::floor(run.done * 100.0), 0) + " %" +
             (run.secondsLeft ? ", " + LeftText(*run.secondsLeft) + " left" : "");
    case CleanPhase::Done:
      return LastPart(run.wish.out) + " is done.";
    case CleanPhase::Cancelled:
      return "Cancelled. " + LastPart(run.wish.out) + " has not been written.";
    case CleanPhase::Failed:
      break;
  }
  return run.error;
}

void FrmClean::ShowSettings() { lblSettings.core.SetCaption(run.SettingsText()); }

void FrmClean::ShowUsable() {
  const bool busy = run.Busy();
  for (Frame* frame : {&fraChoose, &fraPart, &fraAdaptive}) frame->core.SetEnabled(!busy);
  for (TextBox* box : {&txtRecording, &txtCleaned}) box->core.SetEnabled(!busy);
  const bool part = optPart.Selected() == PartOfIt;
  for (TextBox* box : {&txtFrom, &txtTo}) box->core.SetEnabled(part);
  btnStart.core.SetEnabled(!busy);
  btnCancel.core.SetEnabled(busy);
  for (Button* button : {&btnSaveReport, &btnHear}) button->core.SetEnabled(!run.report.empty());
}

void FrmClean::SaveReport() {
  const std::string path = std::filesystem::path(run.wish.out).replace_extension(".txt").string();
  if (!MayReplace(path)) return;
  const bool saved = WriteWholeFile(around.setup.files, path, txtReport.Text());
  Tell(saved ? "The report is saved as " + LastPart(path) + "."
             : LastPart(path) + " is not saved: it cannot be written there, or the disk is full.");
}

// Both files themselves, in step: the cleaned one stands in the place of what leaves the unit's chain, which
// may be set otherwise by now, and whose filters have learned something else. So the key that switches before
// and after compares what was with what is in the file, as loud as each other.
void FrmClean::Hear() {
  if (!UnitRuns()) return;
  const std::string from = ShortestText(run.wish.from.value_or(0.0));
  for (const std::string& command :
       {"source file " + Quoted(run.wish.in), "after file " + Quoted(run.wish.out) + " " + from,
        "seek " + from, std::string("bypass off"), std::string("play")}) {
    around.unit.Ask(command, [this](const Said& answer) {
      if (!answer["ok"].True()) Tell(answer["error"].Text());
    });
  }
  Tell("Key B switches between the recording and " + LastPart(run.wish.out) + ".");
  around.showUnit();
}

void FrmClean::Tell(const std::string& text) { lblState.core.SetCaption(text); }

bool FrmClean::MayEnd() {
  if (!run.Busy()) return true;
  return around.setup.desk.Box(box::ExclamationYesNoLast, "Clean a Recording",
                               LastPart(run.wish.in) + " is being cleaned. Do you wish to stop that? " +
                                   LastPart(run.wish.out) + " is not written then.") == Answer::Yes;
}

void FrmClean::Close() {
  if (MayEnd()) around.setup.forms.Unload(form);
}

}  // namespace vc
