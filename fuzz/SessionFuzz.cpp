// Whole sessions against a unit that answers whatever the input says, while the operator works on: the record
// stays in its ranges, what is written can be read again, and the exit always comes.
#include <array>

#include "HostileUnit.h"
#include "MemoryFiles.h"
#include "NoPrograms.h"
#include "Promise.h"
#include "QuietDesk.h"
#include "RecordPromises.h"
#include "RecordingPrinters.h"
#include "host/CairoPictures.h"
#include "host/TimerLoop.h"
#include "model/Settings.h"
#include "shell/Session.h"

namespace fuzz {
namespace {

const std::string Folder = "/program";
const std::string SetupPath = Folder + "/Fuzzed.nrv";

struct Run {
  HostileUnit unit;
  support::VirtualClock clock;
  host::TimerLoop loop{clock};
  QuietDesk desk{Folder};
  MemoryFiles files;
  support::VirtualPorts ports{clock, unit.End()};
  support::RecordingPrinters printers;
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session{{clock, loop, desk, ports, files, printers, pictures, programs}};

  explicit Run(Input answers) : unit(answers) { unit.line = &ports.state; }
};

// A value of the field, or one that is none.
std::string ValueFor(const vc::SystemSettings& settings, const vc::FieldRow& row, int i, int j, Input& ops) {
  const auto range = vc::FieldRange(settings, row, i, j);
  const double share = static_cast<double>(ops.Byte()) / 255;
  if (!range) return ops.Text(ops.Below(16));
  const double lower = std::max(range->lower, -1e6), upper = std::min(range->upper, 1e6);
  const bool outside = ops.Below(16) == 0;
  return std::to_string(static_cast<int>(outside ? upper + 1 : lower + share * (upper - lower)));
}

int IndexIn(const vc::IndexRange& range, Input& ops) {
  return range.first + static_cast<int>(ops.Below(static_cast<std::size_t>(range.last - range.first) + 1));
}

void Edit(Run& run, Input& ops) {
  const vc::FieldRow& row = vc::Fields()[ops.Below(vc::Fields().size())];
  const int i = IndexIn(row.extent[0], ops), j = IndexIn(row.extent[1], ops);
  std::string wrong;
  const std::string value = ValueFor(run.session.settings, row, i, j, ops);
  run.session.edits.ByText(row, i, j, value, {std::string(row.name)}, wrong);
}

void Wait(Run& run, Input& ops) { run.loop.RunFor(static_cast<int>(10 * ops.Below(512))); }

void Menu(Run& run, Input& ops) {
  vc::MasterMenus& menus = run.session.master.menus;
  const std::array entries{&menus.mnuConnect, &menus.mnuDisconnect, &menus.mnuAbout,
                           &menus.mnuUndo,    &menus.mnuRedo,       &menus.mnuNew};
  const vc::MenuEntry& entry = *entries[ops.Below(entries.size())];
  if (entry.core.Usable()) entry.Click();
}

void Line(Run& run, Input& ops) {
  run.ports.state.gone = ops.Below(8) == 0;
  run.ports.state.framingErrors = ops.Below(8) == 0;
  run.ports.state.absent = ops.Below(8) == 0;
  run.ports.state.refusesConfig = ops.Below(8) == 0;
  run.desk.agrees = ops.Below(2) == 0;
}

// What is displayed is what is polled.
void Display(Run& run, Input& ops) {
  run.session.periodic.pollMode = static_cast<std::int16_t>(ops.Below(4));
  run.session.periodic.eqLevelsWanted = ops.Below(2) == 0;
  run.session.coefReader.coefFilterIndex = static_cast<std::int16_t>(ops.Below(6));
}

// With what the unit has learned, as far as it says so.
void Store(Run& run, Input& /*ops*/) {
  const std::string before = run.files.content[SetupPath];
  const bool stored = run.session.setups.SaveSetupFile(SetupPath, 0);
  const std::string& now = run.files.content[SetupPath];
  Require(stored || now == before, "a store that fails leaves the file");
  if (stored) {
    Run next{Input({})};
    next.files.content = run.files.content;
    std::int16_t flag = vc::TakeConnection;
    vc::InitSettings(next.session.settings);
    Require(next.session.setups.LoadSetupFile(SetupPath, flag), "what was stored loads");
  }
  if (now.empty()) run.files.content.erase(SetupPath);
}

void Recall(Run& run, Input& ops) {
  const std::int16_t flag = ops.Below(2) == 0 ? vc::KeepConnection : vc::TakeConnection;
  run.session.setups.RecallSetupFile(SetupPath, flag);
}

constexpr std::array Operations{Wait, Wait, Edit, Edit, Menu, Line, Display, Store, Recall};

void RequireSense(Run& run) {
  RequireRanges(run.session.settings, false);
  const bool open = run.session.device.comm.CommPortOpen;
  Require(open == run.ports.state.open, "a port that is not in use is closed");
  Require(run.session.periodic.connectionState == (open ? vc::StateConnected : vc::StateClosed),
          "the state that is shown is that of the port");
}

void RequireExit(Run& run) {
  run.session.settings.levelControlsShown &= 1;  // a file carries no more of it
  run.session.master.menus.mnuExit.Click();
  Require(run.loop.Ending() && !run.ports.state.open && run.session.forms.open.empty(), "the exit comes");
  Run next{Input({})};
  next.files.content = run.files.content;
  vc::InitSettings(next.session.settings);
  next.session.lastState.Load();
  RequireSame(next.session.settings, run.session.settings, "the last state comes back:");
}

void TrySession(Input ops, Input answers) {
  constexpr int mostSteps = 10;
  constexpr double patience = 2000.0;  // virtual seconds: every frame of a download may need its last attempt
  Run run(answers);
  run.session.Start();
  for (int step = 0; step < mostSteps && !ops.AtEnd() && !run.loop.Ending(); ++step) {
    const auto operation = Operations[ops.Below(Operations.size())];
    const double start = run.clock.Seconds();
    operation(run, ops);
    Require(run.clock.Seconds() - start < patience, "everything ends");
    RequireSense(run);
  }
  RequireExit(run);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input({data, size});
  const fuzz::Input ops = input.Part();
  fuzz::TrySession(ops, input);
  return 0;
}
