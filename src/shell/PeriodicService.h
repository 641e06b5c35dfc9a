// The two timers on the master panel that keep the program alive between the operator's actions: one shows
// the connection, the other drives everything that flows between host and unit without being asked.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "link/modDeviceComm.h"
#include "model/SystemSettings.h"
#include "panels/Meter.h"
#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "text/Wire.h"

namespace vc {

struct MasterControl;

// What the tick requests.
namespace poll {
inline constexpr std::int16_t MainLevels = 0;
inline constexpr std::int16_t Coefficients = 1;  // the coefficient display is up
inline constexpr std::int16_t Spectrum = 2;      // the analyzer is up
inline constexpr std::int16_t Sif = 3;           // the spectral inverse filter's panel is up
}  // namespace poll

// What the tick has others do.
struct TickCalls {
  // Brings the unit up to the record.
  Wire<void()> sendChanges;
  // One step of the request that a mode beside the main levels makes.
  Wire<void()> requestCoefBlock;
  Wire<void()> requestSpectrum;
  Wire<void()> requestSif;
  // The levels have been shown: what else a reply has brought, or the end of the link, may be.
  Wire<void()> levelsShown;
};

struct PeriodicService {
  PeriodicService(EventLoop& events, Clock& timeSource, SystemSettings& record, modDeviceComm& link,
                  MasterControl& panel, TickCalls tickCalls);

  TickCalls calls;
  std::int16_t pollMode = poll::MainLevels;
  std::int16_t sifStep = 0;         // 0..7, step of the request for the spectral inverse filter
  bool eqLevelsWanted = false;      // while an equalizer's level panel is up
  bool pollEqTurn = false;          // whether the equalizer request has the next turn
  std::string connectionState;      // the program's only record of what the display should say
  std::string lastConnectionState;  // the state last shown
  bool animateIcon = false;

  std::unique_ptr<Timer> tmrBargraph, tmrIcon;

  void EnableMainTimer(bool on);
  // The connection is told anew at the next tick of tmrIcon, though its state is the same.
  void ShowConnectionAnew() { lastConnectionState.clear(); }
  // Levels of the last reply, or of a closed port, into the bars.
  void ShowLevelBars();

 private:
  void BargraphTick();
  void TickBody();
  void ShowOversize();
  void Poll();
  void RequestByMode();
  void IconTick();
  void StepIcon() const;

  void ShowThreshold();

  Clock& clock;
  SystemSettings& settings;
  modDeviceComm& device;
  MasterControl& master;
  Meter inputLeft, inputRight, outputLeft, outputRight;
  std::optional<bool> oversizeShown;
  std::string lastUnanswered;  // as it was last shown
  bool tickHolds = false;      // the tick has turned its timer off, and nobody has switched it since
};

// What the limiter threshold choice stands for, in dB.
double LimiterThresholdDb(std::int16_t choice);

}  // namespace vc
