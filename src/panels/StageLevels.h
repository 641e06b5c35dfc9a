// What the unit tells of the stage that a panel edits: its level in a bar, and whatever else hangs on it, ten
// times a second for as long as the panel is on show.
#pragma once

#include <functional>
#include <memory>

#include "model/StageReadings.h"
#include "panels/Meter.h"
#include "panels/Panel.h"

namespace vc {

struct StageLevels {
  // Which entries are the stage's is asked for at every tick.
  StageLevels(Panel& owner, StageEntries (*entriesOf)(const SystemSettings& settings), LevelBar& levelBar);
  StageLevels(const StageLevels&) = delete;
  StageLevels& operator=(const StageLevels&) = delete;

  // Told with what the bar has just been shown, at every tick; with a closed port that is nothing.
  std::function<void(const StageReading& reading)> told;

  // The panel's activation and its end do so by themselves.
  void Start();
  void Stop() { timer->SetEnabled(false); }

 private:
  void Tick();
  void Show();

  Panel& panel;
  StageEntries (*entries)(const SystemSettings& settings);
  Meter meter;
  std::unique_ptr<Timer> timer;
  std::int64_t ticks = 0;
};

// The levels of the equalizers come with a request of their own, which is made for as long as the panel is
// open, however it ends.
void AskForEqualizerLevels(Panel& panel);

}  // namespace vc
