#include "shell/Session.h"

#include <utility>

#include "model/Settings.h"
#include "text/modFile.h"

namespace vc {

Session::Session(Platform host)
    : platform(host),
      library(host.ports, host.clock),
      device(library, {settings.comPort, settings.baudIndex, settings.linkReady}),
      download(settings, device),
      config(settings),
      master(settings, device, platform.desk),
      periodic(host.events, settings, device, master) {
  FillLinkHooks();
  FillMasterHooks();
  FillModelHooks();
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
  hooks.unitOptionChanged = [this] {
    constexpr std::int16_t elevenKilohertz = 4;  // the one bandwidth at which the option counts
    if (settings.bandwidthIndex == elevenKilohertz) config.ConfigureStages(false);
  };
  hooks.portUnavailable = [this](const std::string& reason) { master.lblStatus.core.SetCaption(reason); };
  hooks.portCaption = [this] { return master.PortCaption(); };
  hooks.mainTimerMilliseconds = [this] { return periodic.tmrBargraph->IntervalMilliseconds(); };
  hooks.endProgram = [this] { platform.events.RequestEnd(); };
}

void Session::FillMasterHooks() {
  MasterHooks& hooks = master.hooks;
  hooks.enableMainTimer = [this](bool on) { periodic.EnableMainTimer(on); };
  hooks.configureStages = [this](bool fit) { config.ConfigureStages(fit); };
  hooks.refreshConnectionText = [this] { periodic.lastConnectionState.clear(); };
  hooks.showObjectLog = [this] { ShowObjectLog(); };
  hooks.exit = [this] {
    Exit();
    platform.events.RequestEnd();
  };
}

void Session::FillModelHooks() {
  config.hooks.hourglass = [this](bool shown) { platform.desk.SetHourglass(shown); };
  config.hooks.warnTooLarge = [this](const std::string& title, const std::string& text) {
    platform.desk.Box(box::Exclamation, title, text);
  };
  config.hooks.unitOption = [this] { return device.status.unitOption; };
  config.hooks.download = [this](int mode) { download.DownloadSettings(mode); };
  download.progress = [this](int done, int total) { platform.desk.ShowProgress(done, total); };
  periodic.sendChanges = [this] { SendChanges(); };
}

void Session::SendChanges() {
  if (std::exchange(settings.fitPending, std::int16_t{0}) != 0 &&
      LayoutDiffers(settings, PlanFit(settings, true))) {
    config.ConfigureStages(true);
  } else {
    download.DownloadSettings(DownloadMode::Difference);
  }
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
  config.ConfigureStages(true);
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
