#include "shell/Session.h"

#include "model/Settings.h"
#include "text/modFile.h"

namespace vc {

Session::Session(Platform host)
    : platform(host),
      library(host.ports, host.clock),
      device(library, {settings.comPort, settings.baudIndex, settings.linkReady}),
      master(settings, device, platform.desk),
      periodic(host.events, settings, device, master) {
  FillLinkHooks();
  FillMasterHooks();
}

void Session::FillLinkHooks() {
  LinkHooks& hooks = device.hooks;
  hooks.box = [this](int code, const std::string& title, const std::string& text) {
    return platform.desk.Box(code, title, text);
  };
  hooks.connectionState = [this](const std::string& state) {
    periodic.connectionState = state;
    if (state == StateConnected) master.lblStatus.core.SetCaption("");
  };
  hooks.connectEntriesChecked = [this](bool connected) { master.CheckConnectEntries(connected); };
  hooks.mainTimer = [this](bool on) { periodic.EnableMainTimer(on); };
  hooks.pollingStarted = [this] { periodic.pollMode = poll::MainLevels; };
  hooks.portUnavailable = [this](const std::string& reason) { master.lblStatus.core.SetCaption(reason); };
  hooks.portCaption = [this] { return master.PortCaption(); };
  hooks.mainTimerMilliseconds = [this] { return periodic.tmrBargraph->IntervalMilliseconds(); };
  hooks.endProgram = [this] { platform.events.RequestEnd(); };
}

void Session::FillMasterHooks() {
  MasterHooks& hooks = master.hooks;
  hooks.enableMainTimer = [this](bool on) { periodic.EnableMainTimer(on); };
  hooks.refreshConnectionText = [this] { periodic.lastConnectionState.clear(); };
  hooks.showObjectLog = [this] { ShowObjectLog(); };
  hooks.exit = [this] {
    Exit();
    platform.events.RequestEnd();
  };
}

void Session::Start() {
  settings.loadingSetup = true;
  settings.curFilter = settings.curEq = settings.curBroadband = 1;
  platform.desk.SetHourglass(true);
  forms.Show(splash.form);
  platform.events.RunEvents(0);  // lets the splash paint
  periodic.eqLevelsWanted = false;
  master.pbxInfoPic.SetImage(ConnectionIconImages);
  periodic.connectionState = StateConnected;
  periodic.tmrIcon->SetEnabled(true);
  InitSettings(settings);
  master.CheckPortAndRate();
  periodic.ShowLevelBars();
  ConnectAtStart();
  forms.Unload(splash.form);
  forms.Show(master.form);
  periodic.pollMode = poll::MainLevels;
  settings.loadingSetup = false;
  platform.desk.SetHourglass(false);
}

void Session::ConnectAtStart() {
  if (!device.InitComPort(false)) return;
  master.CheckFirmwareVersion(true);
  device.InitComPort(true);
}

void Session::ShowObjectLog() {
  std::string text;
  objectLog.DumpObjects(text);
  debug.txtInfo.SetText(text);
  forms.Show(debug.form, Modality::Modal);
}

void Session::Exit() {
  if (exited) return;
  exited = true;
  forms.Hide(master.form);
  platform.desk.SetHourglass(true);
  device.DisconnectZorq(false);
  platform.desk.SetHourglass(false);
  periodic.EnableMainTimer(false);
  periodic.tmrIcon->SetEnabled(false);
  forms.UnloadAll();
  std::string dump;
  objectLog.DumpObjects(dump);
  WriteLogFile(JoinPath(platform.desk.InstallFolder(), "\\ObjectLog.txt"), dump, 0);
}

}  // namespace vc
