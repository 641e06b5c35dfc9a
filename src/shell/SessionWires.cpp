// What the parts of a session are told of each other.
#include <span>
#include <string>
#include <utility>

#include "persist/SaveDisplay.h"
#include "report/GraphPictures.h"
#include "shell/Session.h"

namespace vc {

LinkHooks Session::LinkWires() {
  return {
      .box =
          [this](int code, const std::string& title, const std::string& text) {
            // At a signal nobody is there to answer; an exit by the menu ends the loop last of all.
            if (platform.events.Ending()) return SafeAnswer(box::ButtonsOf(code));
            return platform.desk.Box(code, title, text);
          },
      .connectionState = [this](const std::string& state) { TakeConnectionState(state); },
      .connectEntriesChecked = [this](bool connected) { master.connection.CheckConnectEntries(connected); },
      .mainTimer = [this](bool on) { periodic.EnableMainTimer(on); },
      .pollingStarted = [this] { displays.Poll(); },
      .unitOptionChanged = [this] { FollowUnitOption(); },
      .portUnavailable = [this](const std::string& reason) { master.lblStatus.core.SetCaption(reason); },
      .portCaption = [this] { return master.connection.PortCaption(); },
      .mainTimerMilliseconds = [this] { return periodic.tmrBargraph->IntervalMilliseconds(); },
      .ending = [this] { return Leaving(); },
      .waiting = [this](std::int32_t hundredths) { ShowWaiting(hundredths); },
      .portClosed = [this] { periodic.ShowLevelBars(); },
      .endProgram = [this] { platform.events.RequestEnd(); }};
}

FitHooks Session::FitWires() {
  return {
      .hourglass = [this](bool shown) { platform.desk.SetHourglass(shown); },
      .warnTooLarge = [this](const std::string& title,
                             const std::string& text) { platform.desk.Box(box::Exclamation, title, text); },
      .showConfiguration = [this] { master.ShowConfiguration(); },
      .refreshPanel =
          [this] {
            master.ConfigureStages();
            panels.Refresh();
          },
      .unitOption = [this] { return device.status.unitOption; },
      .download = [this](int mode) { download.DownloadSettings(mode); }};
}

CoefHooks Session::CoefWires() {
  return {.mainTimer = [this](bool on) { periodic.EnableMainTimer(on); },
          .mainTimerEnabled = [this] { return periodic.tmrBargraph->Enabled(); },
          .runEvents = [this] { platform.events.RunEvents(0); },
          .sendChanges = [this] { edits.SendChanges(); },
          .blockRead = [this] { setups.CountBlock(); },
          .ending = [this] { return Leaving(); }};
}

SetupHooks Session::SetupWires() {
  return {.portOpen = [this] { return device.comm.CommPortOpen; },
          .readCoefficients =
              [this](int stage, CoefSpan coefficients) {
                return coefReader.ReadFilterCoefficients(stage, coefficients);
              },
          .progress = [this](int done,
                             int total) { platform.desk.ShowProgress("Reading coefficients", done, total); }};
}

SetupContext Session::SetupContextWires() {
  return {
      .settings = settings,
      .setups = setups,
      .files = platform.files,
      .desk = platform.desk,
      .forms = forms,
      .edits = edits,
      .switchMainTimer =
          [this](bool on) {
            const bool before = periodic.tmrBargraph->Enabled();
            periodic.EnableMainTimer(on);
            return before;
          },
      .stored = [this](const std::string& /*name*/) { platform.files.Settle(); },
      .recalled = [this](const std::string& /*name*/) { TakeOnSetup(); },
      .before = [this](const std::string& what, const std::function<void()>& go) { atHand.Before(what, go); },
      .used = [this](const std::string& path) { atHand.Used(path); },
      .sendLearned =
          [this](int stage, std::span<const std::int32_t> coefficients) {
            return download.SendLearned(stage, coefficients);
          },
      .open = {settings, [this] { ShowOpenSetup(); }}};
}

SetupPair::Around Session::PairParts() {
  return {.edits = edits,
          .setup = setupContext,
          .events = platform.events,
          .mayOverwrite = [this](const std::string& setup) { return MayOverwrite(setup); },
          .shown = [this] { ShowSetupHeard(); }};
}

MasterControl::Around Session::MasterParts() {
  return {.edits = edits,
          .config = config,
          .device = device,
          .desk = platform.desk,
          .files = platform.files,
          .periodic = periodic,
          .panels = panels,
          .displays = displays,
          .windows = windows,
          .look = look,
          .reports = reports,
          .session = {.newSetup = [this] { NewSetup(); },
                      .before = [this](const std::string& what,
                                       const std::function<void()>& go) { atHand.Before(what, go); },
                      .exit =
                          [this] {
                            const bool now = !platform.events.endRefused;
                            if (now && !windows.Get<FrmClean>("FrmClean").MayEnd()) return;
                            const auto end = [this, now] {
                              if (now) Exit();
                              platform.events.RequestEnd();
                            };
                            // What is kept for the next run is not lost.
                            if (!now || lastState.KeepsState()) return end();
                            atHand.Before("the program ends", end);
                          },
                      .offerUnit = [this] { return unitConnection.OfferInstead(); },
                      .showUnit = [this] { unitConnection.ShowStarted(); },
                      .hearSetup = [this](int side) { pair.Hear(static_cast<SetupPair::Side>(side)); },
                      .switchSetup = [this] { pair.Switch(); },
                      .copySetup = [this] { pair.Copy(); },
                      .switchHeard = [this] { unitConnection.SwitchHeard(); },
                      .queueRefresh = [this](bool wanted) { QueueRefresh(wanted); },
                      .tell =
                          [this](const std::string& text) {
                            master.lblStatus.core.SetCaption(text);
                            if (forms.Find("FrmSplash") != nullptr) TellAtStart(text);
                          }}};
}

Displays::Around Session::DisplayParts() {
  return {.edits = edits,
          .coefReader = coefReader,
          .image = download.image,
          .clock = platform.clock,
          .forms = forms,
          .master = master,
          .periodic = periodic,
          .panels = panels,
          .windows = windows,
          .pictures = platform.pictures,
          .printouts = printouts,
          .settings = settings,
          .desk = platform.desk};
}

WindowContext Session::WindowWires() {
  return {.setup = setupContext,
          .objectLog = objectLog,
          .forms = forms,
          .printReport = [this](const std::string& printer,
                                bool DoubleSpaced) { reports.Print(printer, DoubleSpaced); },
          .platform = platform,
          .cleaning = CleanWindowParts(),
          .unitWindow = UnitWindowParts(),
          .tracing = TracingParts()};
}

FrmLineTrace::Around Session::TracingParts() {
  return {.trace = lineTrace,
          .tap = portLibrary.tap,
          .forms = forms,
          .events = platform.events,
          .save = [this](const std::string& text, Form& over) {
            windows.Get<SaveDisplay>("SaveTrace").Take("Line Trace", {{"Text", ".txt", text}});
            windows.OpenOver("SaveTrace", over);
          }};
}

Reports::Around Session::ReportParts() {
  return {.settings = settings,
          .clock = platform.clock,
          .desk = platform.desk,
          .files = platform.files,
          .windows = windows,
          .printouts = printouts,
          .over = master.form,
          .generate = [this](std::string& text) { return report.GenerateReport(text) == modReport::Built; },
          .pictures =
              [this] {
                return GraphPictures({settings, platform.clock.Wall(), displays.Reading()});
              }};
}

TickCalls Session::TickWires() {
  return {.sendChanges = [this] { edits.SendChanges(); },
          .requestCoefBlock = [this] { coefReader.PollDisplayed(); },
          .requestSpectrum = [this] { spectrumReader.RequestSpectrumData(); },
          .requestSif = [this] { spectrumReader.RequestSIFData(); },
          .levelsShown = [this] { master.blocks.whole.ShowEnds(spectrumReader, PolledTraces()); }};
}

EndSpectra::Polled Session::PolledTraces() const {
  constexpr std::int16_t secondAlone = 0, firstAlone = 1;  // specDisplayMode
  if (!device.comm.CommPortOpen) return {};
  const bool both = periodic.pollMode == poll::Spectrum;
  return {.first = periodic.pollMode == poll::Sif || (both && settings.specDisplayMode != secondAlone),
          .second = both && settings.specDisplayMode != firstAlone};
}

EditWires Session::EditsWires() {
  return {.configureStages = [this](bool fit) { config.ConfigureStages(fit); },
          .download = [this](int mode) { download.DownloadSettings(mode); },
          .forgetBandwidth = [this] { download.ForgetBandwidth(); },
          .holdsTable = [this](int stage) { return download.HoldsTable(stage); },
          .requestAnalyzerClear = [this] { download.AnalyzerClearRequest = true; },
          .undisturbed =
              [this](const std::function<void()>& fit) {
                const std::int16_t pollMode = std::exchange(periodic.pollMode, poll::MainLevels);
                const std::int16_t ticks = std::exchange(settings.settingsChanged, std::int16_t{0});
                fit();
                periodic.pollMode = pollMode;
                settings.settingsChanged = ticks;
              },
          .edited = [this] { ShowRecord(); },
          .setupExchanged = [this] { setupContext.open.Forget(); },
          .stepsChanged =
              [this] {
                master.actions.ShowSteps();
                ShowOpenSetup();
              }};
}

UnitEvents Session::UnitWires() {
  return {.changed = [this] { unitConnection.Follow(); }, .died = [this] { unitConnection.TellDeath(); }};
}

FrmUnit::Around Session::UnitWindowParts() {
  return {.unit = unit,
          .forms = forms,
          .files = platform.files,
          .desk = platform.desk,
          .start = [this] { return unitConnection.Start(); },
          .stop = [this] { unitConnection.Stop(); },
          .connected = [this] { return unitConnection.Connected(); },
          .switchHeard = [this] { unitConnection.SwitchHeard(); },
          .switchSetup = [this] { master.menus.mnuSwitchSetup.Click(); },
          .hearsBefore = [this] { return unitConnection.HearsBefore(); },
          .chooseSound = [this](const SoundFileWish& wish, Form& over) { ChooseFile(wish, over); }};
}

UnitConnection::Around Session::UnitParts() {
  return {.unit = unit,
          .settings = settings,
          .device = device,
          .master = master,
          .windows = windows,
          .forms = forms,
          .desk = platform.desk};
}

CleanRun::Around Session::CleaningParts() {
  return {.platform = platform, .settings = settings, .device = device, .unit = unit, .setupName = [this] {
            const OpenSetup& open = setupContext.open;
            return open.Path() +
                   (!open.Path().empty() && open.Changed() ? ", changed since it was stored" : "");
          }};
}

FrmClean::Around Session::CleanWindowParts() {
  return {.setup = setupContext,
          .run = cleaning,
          .unit = unit,
          .startUnit = [this] { return StartUnit(); },
          .chooseSound = [this](const SoundFileWish& wish, Form& over) { ChooseFile(wish, over); },
          .showUnit = [this] { windows.Open("FrmUnit"); }};
}

}  // namespace vc
