// What a level bar shows of the levels that the unit reports: the level itself, the highest of late, a figure
// that can be read, and whether full scale was reached.
#pragma once

#include <cstdint>

#include "widgets/GraphicButton.h"
#include "widgets/LevelBar.h"

namespace vc {

class Meter {
 public:
  explicit Meter(LevelBar& levelBar) : bar(levelBar) {}
  // The lamp is lit at full scale and stays lit until it is clicked.
  Meter(LevelBar& levelBar, GraphicButton& clipLamp) : bar(levelBar), lamp(&clipLamp) {}

  // A level word at a time in microseconds. The figure takes a higher level at once and then stands for half
  // a second, after which it is the highest of that time; the peak is held for a second and a half and falls
  // by 12 dB a second from there.
  void Show(std::int16_t level, std::int64_t now);
  // There is nothing to show. The lamp stays as it is.
  void ShowNoUnit();

 private:
  void FollowPeak(double decibels, std::int64_t now);
  void FollowFigure(double decibels, std::int64_t now);

  LevelBar& bar;
  GraphicButton* lamp = nullptr;
  bool running = false;
  double peak = 0, highest = 0, figure = 0;  // dB
  std::int64_t peakFallsAt = 0, figureEnds = 0;
};

}  // namespace vc
