// The console with any lines, over a session with a simulated unit: every line is answered in lines, the
// record stays in its ranges, undo and redo lead there and back, and the exit keeps the state. Lines are text
// of the input, or made by it from the names of the controls that are on show.
#include <array>
#include <sstream>

#include "Input.h"
#include "MemoryFiles.h"
#include "NoPrograms.h"
#include "Promise.h"
#include "RecordPromises.h"
#include "RecordingPrinters.h"
#include "UnitEnd.h"
#include "console/Console.h"
#include "host/CairoPictures.h"
#include "model/Settings.h"
#include "widgets/ControlText.h"
#include "widgets/Plot.h"

namespace fuzz {
namespace {

const std::string Folder = "/program";

struct Run {
  unit::Unit unit{{}};
  support::VirtualClock clock;
  host::TimerLoop loop{clock};
  std::ostringstream out;
  console::ConsoleDesk desk{out, clock, {Folder, Folder}};
  MemoryFiles files;
  support::VirtualPorts ports{clock, support::EndOf(unit)};
  support::RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session{{clock, loop, desk, ports, files, printers, pictures, programs}};
  console::Console face{session, desk, loop, out};

  std::string Say(const std::string& line) {
    out.str("");
    face.Execute(line);
    return out.str();
  }
};

std::string ControlName(const vc::Form& form, Input& input) {
  if (form.controls.empty()) return "none";
  return vc::CoreOf(form.controls[input.Below(form.controls.size())]).FullName();
}

std::string Value(const vc::AnyControl& control, Input& input) {
  const std::string range = vc::RangeOf(control);
  switch (input.Below(4)) {
    case 0:
      return std::to_string(input.Byte());
    case 1:
      return std::to_string(input.Word() - 32768);
    case 2:
      return range.substr(0, range.find_first_of(".|"));
    default:
      return input.Text(input.Below(24));
  }
}

std::string Index(const vc::FieldRow& row, Input& input) {
  std::string text;
  for (std::size_t i = 0; i < static_cast<std::size_t>(row.dimensions); ++i) {
    const vc::IndexRange& range = row.extent[i];
    const auto count = static_cast<std::size_t>(range.last - range.first) + 1;
    text += (i == 0 ? "(" : ",") + std::to_string(range.first + static_cast<int>(input.Below(count)));
  }
  return text.empty() ? text : text + ")";
}

std::string RecordLine(Input& input) {
  const vc::FieldRow& row = vc::Fields()[input.Below(vc::Fields().size())];
  const std::string place = "record " + std::string(row.name) + Index(row, input);
  const std::size_t way = input.Below(4);
  return way == 0 ? place : place + ' ' + std::to_string(way == 1 ? input.Word() - 32768 : input.Byte());
}

// Of a form that is open: mostly the one on top.
std::string ControlLine(const std::string& command, const Run& run, Input& input) {
  const auto& open = run.session.forms.open;
  if (open.empty()) return command + " none";
  const std::size_t depth = input.Below(8) == 0 ? open.size() : 1;
  const vc::Form& form = *open[open.size() - depth].form;
  const std::string name = form.name + "." + ControlName(form, input);
  const vc::AnyControl* control = vc::FindControl(form, name.substr(form.name.size() + 1));
  return control == nullptr ? command + " " + name : command + " " + name + " " + Value(*control, input);
}

std::string KeyLine(const Run& run, Input& input) {
  const vc::Form* form = run.session.forms.Top();
  if (form == nullptr || form->keys.empty()) return "key Escape";
  auto found = form->keys.begin();
  std::advance(found, input.Below(form->keys.size()));
  return "key " + found->first;
}

double Along(const vc::PlotAxis& axis, Input& input) {
  constexpr double beyond = 0.1, most = 65535.0;
  const double part = static_cast<double>(input.Word()) / most;
  return axis.from + (axis.to - axis.from) * (part * (1.0 + 2.0 * beyond) - beyond);
}

// What is drawn or pointed at on a plot of the form on top, by keys or by places.
std::string PlotLine(const Run& run, Input& input) {
  static const std::array<std::string, 10> keys{"Left",      "Right", "Up",   "Down", "Ctrl+Right",
                                                "Ctrl+Left", "Enter", "Home", "End",  "Escape"};
  const vc::Form* form = run.session.forms.Top();
  if (form == nullptr) return "point none 0 0";
  for (const vc::AnyControl& control : form->controls) {
    auto* const* plot = std::get_if<vc::Plot*>(&control);
    if (plot == nullptr || (*plot)->small) continue;
    const std::string name = form->name + "." + (*plot)->core.FullName();
    if (input.Below(2) == 0) return "press " + name + " " + keys[input.Below(keys.size())];
    std::string line = "point " + name;
    for (const vc::PlotAxis* axis : {&(*plot)->XAxis(), &(*plot)->YAxis()}) {
      line += ' ' + std::to_string(Along(*axis, input));
    }
    return line;
  }
  return "show";
}

// A day of the session is not the console's matter.
std::string Bounded(const std::string& line) {
  constexpr std::size_t longest = 10;
  const std::size_t place = line.find("run");
  return place == std::string::npos ? line : line.substr(0, place + longest - 2);
}

std::string NextLine(const Run& run, Input& input) {
  static const std::array<std::string, 6> answers{"ok", "cancel", "yes", "no", "yes ok yes", "none"};
  static const std::array<std::string, 6> looks{"forms", "show", "help", "close", "show MasterControl", ""};
  switch (input.Below(16)) {
    case 0:
    case 1:
    case 2:
      return ControlLine("click", run, input);
    case 3:
    case 4:
      return ControlLine("set", run, input);
    case 5:
      return ControlLine("enter", run, input);
    case 6:
      return ControlLine("type", run, input);
    case 7:
      return ControlLine("get", run, input);
    case 8:
    case 9:
      return RecordLine(input);
    case 10:
      return KeyLine(run, input);
    case 11:
      return "answer " + answers[input.Below(answers.size())];
    case 12:
      return "run " + std::to_string(input.Below(4096));
    case 13:
      return looks[input.Below(looks.size())];
    case 14:
      return PlotLine(run, input);
    default:
      return Bounded(input.Text(input.Below(64)));
  }
}

void RequireAnswer(const std::string& answer) {
  Require(answer.empty() || answer.back() == '\n', "it answers in lines");
  std::size_t errors = 0;
  for (std::size_t at = 0; at < answer.size(); at = answer.find('\n', at) + 1) {
    if (answer.compare(at, 6, "error ") == 0) ++errors;
  }
  Require(errors <= 1, "what is wrong is told in one line");
}

void RequireWayBack(Run& run) {
  run.loop.RunFor(1000);  // what an edit has left to the next tick is done
  vc::EditHistory& history = run.session.history;
  const auto before = std::make_unique<vc::SystemSettings>(run.session.settings);
  int steps = 0;
  for (; history.CanUndo(); ++steps) history.Undo();
  RequireRanges(run.session.settings, false);
  for (; steps > 0; --steps) history.Redo();
  RequireSame(run.session.settings, *before, "undone and done again is the same:");
}

void RequireExit(Run& run) {
  run.session.settings.levelControlsShown &= 1;  // a file carries no more of it
  run.session.settings.specRun = 1;              // and nothing of this
  run.Say("quit");
  Require(run.loop.Ending() && !run.ports.state.open && run.session.forms.open.empty(), "the exit comes");
  Run next;
  next.files.content = run.files.content;
  vc::InitSettings(next.session.settings);
  next.session.lastState.Load();
  RequireSame(next.session.settings, run.session.settings, "the last state comes back:");
}

void TryLines(Input input) {
  constexpr int mostLines = 32;
  Run run;
  run.session.Start();
  for (int line = 0; line < mostLines && !input.AtEnd() && !run.loop.Ending(); ++line) {
    RequireAnswer(run.Say(NextLine(run, input)));
    RequireRanges(run.session.settings, false);
  }
  if (!run.loop.Ending()) RequireWayBack(run);
  RequireExit(run);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::TryLines(fuzz::Input({data, size}));
  return 0;
}
