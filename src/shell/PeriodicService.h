// The two timers on the master panel that keep the program alive between the operator's actions: one shows
// the connection, the other drives everything that flows between host and unit without being asked.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "link/modDeviceComm.h"
#include "model/SystemSettings.h"
#include "platform/EventLoop.h"

namespace vc {

struct MasterControl;

// What the tick requests.
namespace poll {
inline constexpr std::int16_t MainLevels = 0;
}

struct PeriodicService {
  // Brings the unit up to the record.
  std::function<void()> sendChanges = [] {};

  PeriodicService(EventLoop& events, SystemSettings& record, modDeviceComm& link, MasterControl& panel);

  std::int16_t pollMode = poll::MainLevels;
  bool eqLevelsWanted = false;      // while an equalizer's level panel is up
  bool pollEqTurn = false;          // whether the equalizer request has the next turn
  std::string connectionState;      // the program's only record of what the display should say
  std::string lastConnectionState;  // the state last shown
  bool animateIcon = false;

  std::unique_ptr<Timer> tmrBargraph, tmrIcon;

  void EnableMainTimer(bool on) const { tmrBargraph->SetEnabled(on); }
  // Levels of the last reply, or of a closed port, into the bars.
  void ShowLevelBars() const;

 private:
  void BargraphTick();
  void TickBody();
  void Poll();
  void IconTick();
  void StepIcon() const;

  SystemSettings& settings;
  modDeviceComm& device;
  MasterControl& master;
};

// What the limiter threshold choice stands for, in dB.
double LimiterThresholdDb(std::int16_t choice);

}  // namespace vc
