#include "panels/Meter.h"

#include <algorithm>
#include <utility>

#include "link/Status.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::int64_t Second = 1000000;
constexpr std::int64_t PeakHeld = Second * 3 / 2, FigureStands = Second / 2;
constexpr double FallPerSecond = 12.0;  // dB
constexpr double FullScaleDb = 0.0;

}  // namespace

void Meter::Show(std::int16_t level, std::int64_t now) {
  constexpr bool portOpen = true;
  const double decibels = LevelToDb(level, portOpen);
  if (!std::exchange(running, true)) {
    peak = highest = decibels;
    peakFallsAt = now + PeakHeld;
    figureEnds = now;
  }
  bar.SetValue(DbToBarPosition(decibels));
  FollowPeak(decibels, now);
  FollowFigure(decibels, now);
  if (lamp != nullptr && decibels >= FullScaleDb) lamp->SetValue(1);
}

void Meter::FollowPeak(double decibels, std::int64_t now) {
  if (now > peakFallsAt) {
    peak -= FallPerSecond * static_cast<double>(now - peakFallsAt) / static_cast<double>(Second);
    peakFallsAt = now;
  }
  if (decibels >= peak) {
    peak = decibels;
    peakFallsAt = now + PeakHeld;
  }
  bar.SetPeak(DbToBarPosition(peak));
}

void Meter::FollowFigure(double decibels, std::int64_t now) {
  highest = std::max(highest, decibels);
  if (now < figureEnds && highest <= figure) return;
  figure = highest;
  bar.SetReading(FixedText(figure, 1) + " dB");
  highest = decibels;
  figureEnds = now + FigureStands;
}

void Meter::ShowNoUnit() {
  running = false;
  constexpr std::int16_t silence = 1;
  bar.SetValue(DbToBarPosition(LevelToDb(silence, false)));
  bar.SetPeak(0);
  bar.SetReading("no unit");
}

}  // namespace vc
