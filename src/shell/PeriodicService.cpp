#include "shell/PeriodicService.h"

#include <algorithm>
#include <array>
#include <utility>

#include "link/ConnectionState.h"
#include "shell/MasterControl.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int BargraphMilliseconds = 50;
constexpr int IconMilliseconds = 100;
constexpr std::int16_t SifSteps = 8, SifStride = 5;

}  // namespace

double LimiterThresholdDb(std::int16_t choice) {
  constexpr std::array<double, 3> decibels{-6.0, -9.0, -12.0};
  constexpr double others = -15.0;
  return choice >= 0 && choice < 3 ? decibels[static_cast<std::size_t>(choice)] : others;
}

PeriodicService::PeriodicService(EventLoop& events, Clock& timeSource, SystemSettings& record,
                                 modDeviceComm& link, MasterControl& panel, TickCalls tickCalls)
    : calls(std::move(tickCalls)),
      tmrBargraph(events.CreateTimer(BargraphMilliseconds, [this] { BargraphTick(); })),
      tmrIcon(events.CreateTimer(IconMilliseconds, [this] { IconTick(); })),
      clock(timeSource),
      settings(record),
      device(link),
      master(panel),
      inputLeft(panel.chain.inputs[0].bar, panel.chain.inputs[0].clip),
      inputRight(panel.chain.inputs[1].bar, panel.chain.inputs[1].clip),
      outputLeft(panel.chain.lbOutputLeft, panel.chain.btnClipOutputLeft),
      outputRight(panel.chain.lbOutputRight, panel.chain.btnClipOutputRight) {}

void PeriodicService::BargraphTick() {
  // The tick can take longer than its interval; it never runs inside itself.
  if (!tmrBargraph->Enabled()) return;
  tickHolds = true;
  tmrBargraph->SetEnabled(false);
  TickBody();
  calls.levelsShown();  // also of a tick that only waits: what is polled no more is not to stay
  if (std::exchange(tickHolds, false)) tmrBargraph->SetEnabled(true);
}

void PeriodicService::EnableMainTimer(bool on) {
  tickHolds = false;
  tmrBargraph->SetEnabled(on);
}

void PeriodicService::TickBody() {
  ShowOversize();
  if (settings.settingsChanged == SendAt) {
    calls.sendChanges();
    // The next four ticks neither send nor poll, but where something is left to be sent.
    if (settings.settingsChanged != SendAt) settings.settingsChanged = SendAt - 1;
    return;
  }
  if (settings.settingsChanged != 0) {
    settings.settingsChanged =
        std::max<std::int16_t>(0, static_cast<std::int16_t>(settings.settingsChanged - 1));
    return;
  }
  Poll();
}

void PeriodicService::ShowOversize() {
  const bool oversize =
      std::ranges::any_of(settings.extraStages, [](std::int16_t extra) { return extra > 0; });
  if (oversizeShown == oversize) return;
  oversizeShown = oversize;
  master.ShowOversize(oversize);
}

void PeriodicService::Poll() {
  // On a closed port a turn would never end, and the bars would stand still at the last level.
  const bool turns = pollMode != poll::Sif;
  const bool equalizer = turns && eqLevelsWanted && pollEqTurn && device.comm.CommPortOpen;
  const bool barsMove = pollMode != poll::MainLevels || !equalizer;
  if (equalizer) {
    device.RequestEQData();
  } else {
    RequestByMode();
  }
  if (turns && device.ReplyTicksLeft == 0) pollEqTurn = !pollEqTurn;
  if (barsMove) ShowLevelBars();
}

void PeriodicService::RequestByMode() {
  switch (pollMode) {
    case poll::Coefficients:
      return calls.requestCoefBlock();
    case poll::Spectrum:
      return calls.requestSpectrum();
    case poll::Sif:
      sifStep = static_cast<std::int16_t>((sifStep + SifStride) % SifSteps);
      return calls.requestSif();
    default:
      return device.RequestBargraphData();
  }
}

void PeriodicService::ShowLevelBars() {
  const UnitStatus& status = device.status;
  for (const auto& [meter, level] : {std::pair<Meter*, std::int16_t>{&inputLeft, status.levelInLeft},
                                     {&inputRight, status.levelInRight},
                                     {&outputLeft, status.levelOutLeft},
                                     {&outputRight, status.levelOutRight}}) {
    if (device.comm.CommPortOpen) {
      meter->Show(level, clock.Microseconds());
    } else {
      meter->ShowNoUnit();
    }
  }
  ShowThreshold();
  calls.levelsShown();
}

void PeriodicService::ShowThreshold() {
  const bool shown = settings.limiterEnabled == 1;
  const double decibels = LimiterThresholdDb(settings.limiterThreshold);
  for (LevelBar* bar : {&master.chain.inputs[0].bar, &master.chain.inputs[1].bar}) {
    bar->SetMarkerStyle(shown ? 0 : HiddenMarker);
    bar->SetMarkerText(shown ? "Limiter threshold " + FixedText(decibels, 0) + " dB" : "");
    if (shown) bar->SetMarkerValue(1, DbToBarPosition(decibels));
  }
}

void PeriodicService::IconTick() {
  const std::string unanswered = UnansweredText(device.UnansweredHundredths);
  if (connectionState != lastConnectionState || unanswered != lastUnanswered) {
    master.top.txtComInfo.SetText(ConnectionText(connectionState, settings.comPort, settings.baudIndex) +
                                  unanswered);
    animateIcon = ConnectionAnimated(connectionState);
  }
  lastConnectionState = connectionState;
  lastUnanswered = unanswered;
  if (animateIcon) StepIcon();
}

void PeriodicService::StepIcon() const {
  Picture& icon = master.top.pbxInfoPic;
  icon.SetImage(icon.Image() < icon.imageCount ? icon.Image() + 1 : 1);
}

}  // namespace vc
