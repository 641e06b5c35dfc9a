#include "shell/Session.h"

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>

#include "model/Loans.h"
#include "model/Settings.h"
#include "persist/FileNames.h"
#include "shell/Help.h"
#include "shell/Notices.h"
#include "text/ProgramInfo.h"
#include "text/modFile.h"

namespace vc {

Session::Session(Platform host)
    : platform(host),
      portLibrary(host.ports, host.clock),
      lineTrace(host.clock),
      device(portLibrary, {settings.comPort, settings.baudIndex, settings.linkReady}, LinkWires()),
      download(settings, device,
               [this](int done, int total) { platform.desk.ShowProgress("Sending settings", done, total); }),
      config(settings, FitWires()),
      coefReader(settings, device, CoefWires()),
      spectrumReader(settings, device),
      setups(settings, host.files, host.desk, SetupWires()),
      forms([this](const std::string& message) {
        platform.desk.Box(box::Exclamation, ApplicationTitle, message);
      }),
      setupContext(SetupContextWires()),
      edits(settings, host.clock, EditsWires()),
      pair(PairParts()),
      master(MasterParts()),
      periodic(host.events, host.clock, settings, device, master, TickWires()),
      panels({edits, settings, platform.desk, forms, master, periodic, device, coefReader, host.events,
              windows, displays, spectrumReader, [this] { return SetupMark(); }}),
      displays(DisplayParts()),
      lastState(setupContext, platform, master, pair),
      unit(platform, settings, UnitWires()),
      unitConnection(UnitParts()),
      cleaning(CleaningParts()),
      look(platform, master),
      windows(WindowWires()),
      trail(host.files, JoinPath(host.desk.InstallFolder(), SetupTrail::FileName)),
      atHand({setupContext, windows, master.menus, trail}),
      reportSources({settings, host.clock, host.desk, host.events, device, spectrumReader, master, displays}),
      report(host.clock, reportSources.Wires()),
      printouts({host.printers, host.desk, windows}),
      reports(ReportParts()) {
  master.form.activated = [this] { Activated(); };
  forms.helpAsked = [this](const Form& form) { OpenHelpOf(platform.desk, form); };
}

void Session::TakeConnectionState(const std::string& state) {
  periodic.connectionState = state;
  if (state == StateConnected) master.lblStatus.core.SetCaption("");
}

void Session::FollowUnitOption() {
  constexpr std::int16_t elevenKilohertz = 4;  // the one bandwidth at which the option counts
  if (settings.bandwidthIndex == elevenKilohertz) config.ConfigureStages(false);
}

void Session::ShowWaiting(std::int32_t hundredths) {
  platform.desk.ShowWaiting(hundredths / 10);
  if (hundredths > 0) platform.events.KeepShown();
}

void Session::ChooseFile(const SoundFileWish& wish, Form& over) {
  windows.Get<ChooseSound>("ChooseSound").Take(wish);
  windows.OpenOver("ChooseSound", over);
}

// Whoever edits the record has only stored it: all that shows it follows here.
void Session::ShowRecord() {
  master.blocks.ShowOnce([this] {
    master.ConfigMasterControl();
    master.ConfigureStages();
  });
  panels.Refresh();
  displays.Refresh();
}

void Session::Start() {
  settings.loadingSetup = true;
  settings.curFilter = settings.curEq = settings.curBroadband = 1;
  platform.desk.SetHourglass(true);
  windows.Open("FrmSplash");
  platform.events.RunEvents(0);  // lets the splash paint
  periodic.eqLevelsWanted = false;
  QueueRefresh(false);
  master.top.pbxInfoPic.SetImage(ConnectionIconImages);
  periodic.connectionState = StateConnected;
  periodic.tmrIcon->SetEnabled(true);
  InitSettings(settings);
  lastState.Claim();
  lastState.Load();
  trail.Load();
  look.Load();
  master.ConfigMasterControl();
  periodic.ShowLevelBars();
  ConnectAtStart();
}

void Session::FinishStart() {
  platform.desk.SetHourglass(true);
  TellAtStart(device.comm.CommPortOpen ? "Sending the settings to " + ApplicationTitle
                                       : "Fitting the filters");
  config.ConfigureStages(true);
  atHand.TakeUp(lastState.Earlier(), device.status.unitOption);
  const auto factory = std::make_unique<SystemSettings>();
  if (atHand.Held(FactoryFile, device.status.unitOption, *factory)) pair.JudgeOther(*factory);
  windows.Close("FrmSplash");
  forms.Show(master.form);
  periodic.pollMode = poll::MainLevels;
  settings.loadingSetup = false;
  platform.desk.SetHourglass(false);
  unitConnection.ShowStarted();
}

void Session::TellAtStart(const std::string& what) {
  windows.Get<FrmSplash>("FrmSplash").lblWaiting.core.SetCaption(what);
  platform.events.RunEvents(0);
}

void Session::ConnectAtStart() {
  if (Leaving()) return FinishStart();
  TellAtStart("Waiting for " + ApplicationTitle + " on " + master.connection.PortCaption() + " at " +
              master.connection.RateCaption());
  if (!device.InitComPort(false) && !(unitConnection.OfferInstead() && device.InitComPort(false))) {
    return FinishStart();
  }
  master.connection.CheckFirmwareVersion(true, [this](bool present) {
    if (present && !Leaving()) device.InitComPort(true);
    FinishStart();
  });
}

bool Session::Leaving() const { return platform.events.Ending() && !exited; }

Session::Connection Session::OwnConnection() {
  const OperatorsTurn own(settings);
  return {settings.comPort, settings.baudIndex};
}

// Handlers are inert while the flag is set: nothing that the loaded setup fills refits or clears it.
void Session::NewSetup() {
  const Connection present = OwnConnection();
  settings.loadingSetup = true;
  platform.desk.SetHourglass(true);
  history.Exchange("New Filter Configuration", [&] {
    if (!lastState.LoadFactorySetup()) return;
    if (device.comm.CommPortOpen) {
      const OperatorsTurn own(settings);
      std::tie(settings.comPort, settings.baudIndex) = present;
    }
    TakeOnSetup();
    setupContext.open.Take({});
  });
  settings.loadingSetup = false;
  ShowOpenSetup();
  platform.desk.SetHourglass(false);
}

void Session::ShowOpenSetup() {
  const std::string& path = setupContext.open.Path();
  const std::string caption = " Master Control Panel", mark = setupContext.open.Changed() ? "*" : "";
  const std::string name = (path.empty() ? ApplicationTitle : LastPart(path)) + SetupMark();
  master.form.SetCaption(mark + name + caption + (path.empty() ? "" : " - " + ApplicationTitle));
  master.lblSetupFile.core.SetCaption(path);
  atHand.ShowMenus();
  if (!settings.loadingSetup && lastState.KeepsState()) trail.KeepOpen(path);
}

std::string Session::SetupMark() const { return pair.Heard() == SetupPair::A ? "" : " (Setup B)"; }

void Session::ShowSetupHeard() {
  master.actions.ShowSetupHeard(pair.Heard());
  master.lblSetupHeard.core.SetCaption("Setup " + SetupPair::NameOf(pair.Heard()) + " is heard");
  ShowOpenSetup();
}

bool Session::MayOverwrite(const std::string& setup) {
  return platform.desk.Box(box::InformationYesNo, "Copy Setup",
                           "Setup " + setup +
                               " has changes that no file holds.  Do you wish to copy over it?  "
                               "Undo brings it back.") == Answer::Yes;
}

void Session::TakeOnSetup() {
  edits.formerLevels.reset();
  master.ConfigMasterControl();
  config.ConfigureStages(true);
}

void Session::Activated() {
  if (!std::exchange(refreshOnActivate, false)) return;
  config.ConfigureStages(true);
  forms.Hide(master.form);
  forms.Show(master.form);
}

void Session::CloseAllButMaster() {
  const auto isOther = [this](const Forms::Entry& entry) { return entry.form != &master.form; };
  for (auto found = std::ranges::find_if(forms.open, isOther); found != forms.open.end();
       found = std::ranges::find_if(forms.open, isOther)) {
    forms.Unload(*found->form);
  }
}

void Session::Exit() {
  if (exited) return;
  exited = true;
  forms.TakeTyped();
  forms.Hide(master.form);
  CloseAllButMaster();  // what a panel still holds belongs to the state
  platform.desk.SetHourglass(true);
  lastState.Save();
  device.DisconnectZorq(false);
  unit.Stop();
  platform.desk.SetHourglass(false);
  periodic.EnableMainTimer(false);
  periodic.tmrIcon->SetEnabled(false);
  forms.UnloadAll();
  std::string dump;
  objectLog.DumpObjects(dump);
  WriteLogFile(JoinPath(platform.desk.InstallFolder(), "\\ObjectLog.txt"), dump, 0);
}

}  // namespace vc
