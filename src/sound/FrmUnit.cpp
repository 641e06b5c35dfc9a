#include "sound/FrmUnit.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "persist/FileNames.h"
#include "sound/CleanWish.h"
#include "text/Convert.h"

namespace vc {
namespace {

enum Source { Scene, Recording, Input };
enum Output { Nowhere, IntoFile, Card };
constexpr int Before = 0, After = 1;
constexpr const char* NoDevice = "no sound device";
constexpr int PeakParts = 800;

std::string Capital(std::string text) {
  if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return text;
}

// What cannot be written as seconds in the unit's language would be a part of its own.
std::string SecondsWord(double seconds) { return FixedText(seconds, 3); }

int SourceOf(const std::string& kind) { return kind == "file" ? Recording : kind == "card" ? Input : Scene; }
int OutputOf(const std::string& kind) { return kind == "file" ? IntoFile : kind == "card" ? Card : Nowhere; }

std::string LouderText(double gain) {
  constexpr double heard = 0.05;  // dB, which are shown as 0.1
  if (std::abs(gain) < heard) return {};
  return ", " + FixedText(std::abs(gain), 1) + (gain < 0 ? " dB quieter" : " dB louder") +
         " to be as loud as what comes out";
}

// A file stands in the place of what the filters make now.
std::string HeardAfter(const std::string& file) {
  return file.empty() ? "the sound that comes out" : LastPart(file) + " as it was cleaned, whatever is set";
}

// What is being typed stays.
void ShowUnlessTyped(TextBox& box, const std::string& text) {
  if (!box.Typed()) box.SetText(text);
}

}  // namespace

FrmUnit::FrmUnit(const Around& parts)
    : wave(form, {.seek = [this](double seconds) { Seek(seconds); },
                  .mark =
                      [this](double from, double to) {
                        Mark({from, to});
                      },
                  .play = [this] { btnPlay.Click(); }}),
      around(parts),
      unit(parts.unit) {
  form.okButton = &btnClose;
  form.opensAside = true;
  for (TextBox* box : {&txtPosition, &txtFrom, &txtTo}) box->widest = "0:00:00.00";
  for (TextBox* box : {&txtSource, &txtOutput}) box->readOnly = true;
  for (Frame* line : {&fraUnit, &fraTransport, &fraLoop}) line->look = FrameLook::Flat;
  lblTrouble.keepsRoom = lblDropOuts.keepsRoom = true;
  BindUnit();
  BindSound();
  BindTransport();
  BindHeard();
}

void FrmUnit::BindUnit() {
  btnStart.clicked = [this] { Start(); };
  btnStop.clicked = [this] {
    error.clear();
    around.stop();
    Follow();
  };
  btnDevices.clicked = [this] { AskDevices(); };
  btnClose.clicked = [this] { around.forms.Unload(form); };
}

void FrmUnit::BindSound() {
  optSource.changed = [this] { ChooseSource(); };
  optOutput.changed = [this] { ChooseOutput(); };
  btnSource.clicked = [this] { AskForSource(); };
  btnOutput.clicked = [this] { AskForOutput(); };
  cmbInput.changed = [this] { optSource.Selected() == Input ? ChooseSource() : optSource.Select(Input); };
  cmbOutput.changed = [this] { optOutput.Selected() == Card ? ChooseOutput() : optOutput.Select(Card); };
}

void FrmUnit::BindTransport() {
  btnPlay.clicked = [this] { Tell(unit.state["playing"].True() ? "pause" : "play"); };
  txtPosition.WhenTaken([this] {
    if (const auto at = ParseTime(txtPosition.Text()); at && txtPosition.Typed()) Seek(*at);
    ShowTransport();
  });
  const auto bindEnd = [this](TextBox& box, double Marked::*end) {
    box.WhenTaken([this, &box, end] {
      Marked part = marked;
      if (const auto at = ParseTime(box.Text())) part.*end = *at;
      Mark(part);
    });
  };
  bindEnd(txtFrom, &Marked::from);
  bindEnd(txtTo, &Marked::to);
  btnFrom.clicked = [this] { Mark({Position(), marked.to > Position() ? marked.to : Seconds()}); };
  btnTo.clicked = [this] { Mark({marked.from < Position() ? marked.from : 0, Position()}); };
  chkLoop.changed = [this] { TellLoop(); };
}

void FrmUnit::BindHeard() {
  form.keys["B"] = [this] { around.switchHeard(); };
  form.keys["Ctrl+B"] = [this] { around.switchSetup(); };
  form.unrepeated.insert("Ctrl+B");
  optHeard.changed = [this] {
    if ((optHeard.Selected() == Before) != around.hearsBefore()) around.switchHeard();
  };
}

void FrmUnit::Fill() {
  error.clear();
  form.initialFocus = unit.Running() ? &wave.pbxWave.core : &btnStart.core;  // no stray key is to stop it
  AskDevices();
  Follow();
}

void FrmUnit::Start() {
  error.clear();
  error = Capital(around.start());
  AskDevices();
  Follow();
  if (unit.Running()) form.Focus(wave.pbxWave.core);
}

// A state that comes behind its answer is one after it.
void FrmUnit::Tell(const std::string& command) {
  ++unanswered;
  unit.Ask(command, [this](const Said& answer) { TakeAnswer(answer); });
}

void FrmUnit::OpenRecording(const std::string& path) {
  ++unanswered;
  unit.Ask("source file " + Quoted(path), [this](const Said& answer) {
    TakeAnswer(answer);
    if (answer["ok"].True()) Tell("play");
  });
}

void FrmUnit::TakeAnswer(const Said& answer) {
  --unanswered;
  error = answer["ok"].True() ? std::string() : Capital(answer["error"].Text());
  nowIn.clear();
  nowOut.clear();
  ShowTrouble();
}

void FrmUnit::ChooseSource() {
  const int source = optSource.Selected();
  if (source == Scene) return Tell("source scene");
  if (source == Input) return Tell("source card " + Quoted(cmbInput.Text()));
  if (txtSource.Text().empty()) return AskForSource();
  Tell("source file " + Quoted(txtSource.Text()));
}

// A file that has been written is not begun anew by a click beside its name.
void FrmUnit::ChooseOutput() {
  const int output = optOutput.Selected();
  if (output == Nowhere) return Tell("output none");
  if (output == Card) return Tell("output card " + Quoted(cmbOutput.Text()));
  AskForOutput();
}

// Where the operator leaves the window without a file, the choice is again what the unit does.
void FrmUnit::AskForSource() {
  around.chooseSound(
      {"Open a Recording", txtSource.Text(), true, [this](const std::string& path) { OpenRecording(path); }},
      form);
  nowIn.clear();
}

void FrmUnit::AskForOutput() {
  around.chooseSound(
      {"Write Sound to a File", txtOutput.Text(), false, [this](const std::string& path) { WriteTo(path); }},
      form);
  nowOut.clear();
}

void FrmUnit::WriteTo(const std::string& path) {
  const bool there = around.files.KindOf(path) == FileKind::File;
  const std::string question = LastPart(path) + " already exists. Do you wish to overwrite?";
  if (there && around.desk.Box(box::InformationYesNo, "File Already Exists", question) != Answer::Yes) return;
  Tell("output file " + Quoted(path));
}

void FrmUnit::AskDevices() {
  if (unit.Running()) unit.Ask("devices", [this](const Said& answer) { TakeDevices(answer); });
}

void FrmUnit::TakeDevices(const Said& answer) {
  FillDevices(cmbInput, answer["inputs"], cmbInput.Text());
  FillDevices(cmbOutput, answer["outputs"], cmbOutput.Text());
  Follow();
}

void FrmUnit::FillDevices(ListBox& list, const Said& names, const std::string& present) {
  const Mute mute(form);
  std::vector<std::string> rows;
  for (const Said& name : names.Items()) rows.push_back(name.Text());
  const bool any = !rows.empty();
  list.core.SetEnabled(any);
  if (!any) rows.emplace_back(NoDevice);
  const auto kept = std::ranges::find(rows, present);
  const auto row = kept == rows.end() ? 0 : static_cast<int>(kept - rows.begin());
  list.SetItems(std::move(rows));
  list.SetListIndex(row);
}

void FrmUnit::Seek(double seconds) { Tell("seek " + SecondsWord(seconds)); }

void FrmUnit::Mark(Marked part) {
  const double end = Seconds();
  part = {std::clamp(part.from, 0.0, end), std::clamp(part.to, 0.0, end)};
  if (part.from > part.to) std::swap(part.from, part.to);
  marked = part;
  const Mute mute(form);
  chkLoop.SetValue(part.to > part.from);
  TellLoop();
}

void FrmUnit::TellLoop() {
  if (marked.to <= marked.from) marked = {0, Seconds()};
  Tell(chkLoop.Value() ? "loop " + SecondsWord(marked.from) + " " + SecondsWord(marked.to) : "loop off");
  ShowTransport();
}

void FrmUnit::Follow() {
  const Mute mute(form);
  ShowUnit();
  ShowSound();
  ShowTransport();
  ShowHeard();
  ShowTrouble();
}

std::string FrmUnit::StateTold() const {
  const std::string port = "COM" + std::to_string(unit.Port());
  if (unit.Silent()) return "The unit on " + port + " does not answer.";
  if (unit.Running())
    return "Running on " + port + (around.connected() ? ", connected." : ", not connected.");
  if (unit.Port() != 0) return "The unit has ended by itself.";
  return unit.Installed() ? "Not running." : "veltrana-unit is not installed beside this program.";
}

void FrmUnit::ShowUnit() {
  const bool runs = unit.Running();
  lblUnit.core.SetCaption(StateTold());
  const bool connects = runs && !around.connected();
  btnStart.core.SetCaption(connects                    ? "Connect"
                           : unit.Port() != 0 && !runs ? "&Start It Again"
                                                       : "&Start the Unit");
  btnStart.core.SetEnabled(connects || (!runs && unit.Installed()));
  btnStop.core.SetEnabled(runs);
  for (Frame* frame : {&fraSource, &fraOutput, &fraTransport, &fraLoop}) frame->core.SetEnabled(runs);
  btnDevices.core.SetEnabled(runs);
}

// What the operator is about to choose stands until the unit has another one.
void FrmUnit::ShowSound() {
  const Said &source = unit.state["source"], &output = unit.state["output"];
  const std::string in = source["kind"].Text() + " " + source["name"].Text(),
                    out = output["kind"].Text() + " " + output["name"].Text();
  if (std::exchange(nowIn, in) != in) {
    optSource.Select(SourceOf(source["kind"].Text()));
    if (optSource.Selected() == Recording) txtSource.SetText(source["name"].Text());
    if (optSource.Selected() == Input) ChooseRow(cmbInput, source["name"].Text());
  }
  if (std::exchange(nowOut, out) != out) {
    optOutput.Select(OutputOf(output["kind"].Text()));
    if (optOutput.Selected() == IntoFile) txtOutput.SetText(output["name"].Text());
    if (optOutput.Selected() == Card) ChooseRow(cmbOutput, output["name"].Text());
  }
  const bool cards = cmbInput.core.Enabled(), speakers = cmbOutput.core.Enabled();
  optSource.buttons[Input]->core.SetEnabled(cards);
  optOutput.buttons[Card]->core.SetEnabled(speakers);
  AskPeaks();
}

void FrmUnit::ChooseRow(ListBox& list, const std::string& name) {
  const auto row = std::ranges::find(list.Items(), name);
  if (row != list.Items().end()) list.SetListIndex(static_cast<int>(row - list.Items().begin()));
}

bool FrmUnit::HasFile() const { return unit.state["source"]["kind"].Text() == "file"; }
double FrmUnit::Seconds() const { return HasFile() ? unit.state["source"]["seconds"].Number() : 0; }
double FrmUnit::Position() const { return unit.state["position"].Number(); }

// Again and again while it grows.
void FrmUnit::AskPeaks() {
  const std::string name = HasFile() ? unit.state["source"]["name"].Text() : std::string();
  if (peaksOf != name) {
    peaksOf = name;
    peaksWhole = false;
    marked = {};
    wave.Begin(Seconds(), LastPart(name));
  }
  if (name.empty() || peaksWhole || peaksAsked) return;
  peaksAsked = true;
  unit.Ask("peaks " + std::to_string(PeakParts), [this, name](const Said& answer) {
    peaksAsked = false;
    if (name != peaksOf || !answer["ok"].True()) return;
    wave.Take(answer);
    peaksWhole = answer["loaded"].Number() >= 1;
  });
}

void FrmUnit::ShowTransport() {
  const bool file = HasFile();
  const auto& loop = unit.state["loop"].Items();
  if (unanswered == 0) {
    if (loop.size() == 2) marked = {loop[0].Number(), loop[1].Number()};
    chkLoop.SetValue(loop.size() == 2);
  }
  for (ControlCore* core : {&btnPlay.core, &txtPosition.core, &chkLoop.core, &txtFrom.core, &btnFrom.core,
                            &txtTo.core, &btnTo.core})
    core->SetEnabled(file);
  btnPlay.core.SetCaption(unit.state["playing"].True() && file ? "&Pause" : "&Play");
  ShowUnlessTyped(txtPosition, file ? TimeText(Position()) : "");
  ShowUnlessTyped(txtFrom, file ? TimeText(marked.from) : "");
  ShowUnlessTyped(txtTo, file ? TimeText(marked.to) : "");
  lblLength.core.SetCaption(file ? "of " + TimeText(Seconds()) : "");
  if (file) wave.ShowPosition(Position());
  if (wave.Dragging()) return;
  const bool part = marked.to > marked.from;
  wave.ShowMarked(part ? std::optional(PlotBand{marked.from, marked.to, BandMeaning::Pass}) : std::nullopt);
}

void FrmUnit::ShowHeard() {
  const bool before = around.hearsBefore();
  optHeard.Select(before ? Before : After);
  const double gain = unit.state["bypassGain"].Number();
  const std::string as = before ? "The sound card gets the sound that goes in" + LouderText(gain) + "."
                                : "The sound card gets " + HeardAfter(unit.state["after"].Text()) + ".";
  lblHeard.core.SetCaption(unit.Running() ? as : "Key B switches between the two.");
}

void FrmUnit::ShowTrouble() {
  const double drops = unit.state["dropOuts"].Number();
  lblDropOuts.core.SetCaption(drops > 0 ? "Drop-outs: " + FixedText(drops, 0) : "");
  // What the operator has just been refused is told first.
  std::string told = error;
  for (const std::string& other : {unit.LastWords(), unit.state["trouble"].Text(), unit.NotResumed()}) {
    if (told.empty()) told = other;
  }
  lblTrouble.core.SetCaption(Capital(told));
}

}  // namespace vc
