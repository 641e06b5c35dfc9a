#include "panels/StageLevels.h"

#include <utility>

namespace vc {
namespace {

constexpr int IntervalMilliseconds = 100;
constexpr std::int64_t IntervalMicroseconds = 1000 * IntervalMilliseconds;

}  // namespace

StageLevels::StageLevels(Panel& owner, StageEntries (*entriesOf)(const SystemSettings& settings),
                         LevelBar& levelBar)
    : panel(owner),
      entries(entriesOf),
      meter(levelBar),
      timer(owner.context.events.CreateTimer(IntervalMilliseconds, [this] { Tick(); })) {
  meter.ShowNoUnit();
  panel.form.activated = [this, others = std::move(panel.form.activated)] {
    if (others) others();
    Start();
  };
  panel.form.unloaded = [this, others = std::move(panel.form.unloaded)] {
    Stop();
    if (others) others();
  };
}

void StageLevels::Start() {
  Show();
  timer->SetEnabled(true);
}

void StageLevels::Tick() {
  if (!panel.OnShow()) return Stop();
  ++ticks;
  Show();
}

void StageLevels::Show() {
  StageReading reading;
  if (panel.context.portOpen) {
    reading = ReadStage(panel.context.status, entries(panel.settings));
    meter.Show(static_cast<std::int16_t>(reading.level), ticks * IntervalMicroseconds);
  } else {
    meter.ShowNoUnit();
  }
  if (told) told(reading);
}

void AskForEqualizerLevels(Panel& panel) {
  panel.form.activated = [&panel, others = std::move(panel.form.activated)] {
    panel.context.askForEqualizerLevels(true);
    if (others) others();
  };
  panel.form.unloaded = [&panel, others = std::move(panel.form.unloaded)] {
    panel.context.askForEqualizerLevels(false);
    if (others) others();
  };
}

}  // namespace vc
