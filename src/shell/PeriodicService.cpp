#include "shell/PeriodicService.h"

#include <algorithm>
#include <array>

#include "link/ConnectionState.h"
#include "shell/MasterControl.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int BargraphMilliseconds = 50;
constexpr int IconMilliseconds = 100;
constexpr std::int16_t SendAt = 5;

void ShowLevel(LevelBar& bar, std::int16_t level, bool portOpen) {
  const double decibels = LevelToDb(level, portOpen);
  bar.SetValue(DbToBarPosition(decibels));
  bar.SetReading(portOpen ? FixedText(decibels, 1) + " dB" : "no unit");
}

void ShowThreshold(LevelBar& bar, bool shown, double decibels) {
  bar.SetMarkerStyle(shown ? 0 : HiddenMarker);
  if (shown) bar.SetMarkerValue(1, DbToBarPosition(decibels));
}

}  // namespace

double LimiterThresholdDb(std::int16_t choice) {
  constexpr std::array<double, 3> decibels{-6.0, -9.0, -12.0};
  constexpr double others = -15.0;
  return choice >= 0 && choice < 3 ? decibels[static_cast<std::size_t>(choice)] : others;
}

PeriodicService::PeriodicService(EventLoop& events, SystemSettings& record, modDeviceComm& link,
                                 MasterControl& panel)
    : tmrBargraph(events.CreateTimer(BargraphMilliseconds, [this] { BargraphTick(); })),
      tmrIcon(events.CreateTimer(IconMilliseconds, [this] { IconTick(); })),
      settings(record),
      device(link),
      master(panel) {}

void PeriodicService::BargraphTick() {
  // The tick can take longer than its interval; it never runs inside itself.
  const bool enabled = tmrBargraph->Enabled();
  if (!enabled) return;
  tmrBargraph->SetEnabled(false);
  TickBody();
  tmrBargraph->SetEnabled(enabled);
}

void PeriodicService::TickBody() {
  if (settings.settingsChanged == SendAt) {
    sendChanges();
    settings.settingsChanged = SendAt - 1;  // and the next four ticks neither send nor poll
    return;
  }
  if (settings.settingsChanged != 0) {
    settings.settingsChanged =
        std::max<std::int16_t>(0, static_cast<std::int16_t>(settings.settingsChanged - 1));
    return;
  }
  Poll();
}

void PeriodicService::Poll() {
  if (eqLevelsWanted && pollEqTurn) {
    device.RequestEQData();
  } else if (pollMode == poll::MainLevels) {
    device.RequestBargraphData();
    ShowLevelBars();
  }
  if (device.ReplyTicksLeft == 0) pollEqTurn = !pollEqTurn;
}

void PeriodicService::ShowLevelBars() const {
  const UnitStatus& status = device.status;
  const bool open = device.comm.CommPortOpen;
  ShowLevel(master.lbInputLeft, status.levelInLeft, open);
  ShowLevel(master.lbInputRight, status.levelInRight, open);
  for (LevelBar* bar : {&master.lbInputLeft, &master.lbInputRight}) {
    ShowThreshold(*bar, settings.limiterEnabled == 1, LimiterThresholdDb(settings.limiterThreshold));
  }
  ShowLevel(master.lbOutputLeft, status.levelOutLeft, open);
  ShowLevel(master.lbOutputRight, status.levelOutRight, open);
}

void PeriodicService::IconTick() {
  if (connectionState != lastConnectionState) {
    master.txtComInfo.SetText(ConnectionText(connectionState, settings.comPort, settings.baudIndex));
    animateIcon = ConnectionAnimated(connectionState);
  }
  lastConnectionState = connectionState;
  if (animateIcon) StepIcon();
}

void PeriodicService::StepIcon() const {
  Picture& icon = master.pbxInfoPic;
  icon.SetImage(icon.Image() < icon.imageCount ? icon.Image() + 1 : 1);
}

}  // namespace vc
