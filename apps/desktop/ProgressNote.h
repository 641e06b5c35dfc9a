// How far a long download has come, beside the mouse pointer. It is painted from within the blocking routine
// itself, so that no event is let through.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <QLabel>
#include <QPointer>

#include "platform/Clock.h"

namespace desktop {

class ProgressNote {
 public:
  explicit ProgressNote(vc::Clock& source) : clock(source) {}

  // done of total, from 0 on; 0 begins a new work, total or more ends it. Shown in the active window once the
  // work has lasted longer than 300 ms, and then brought up to date at most every 100 ms. Without a window on
  // the screen nothing is shown.
  void Show(std::string_view what, int done, int total);
  // The program has waited for the unit for so long; 0 ends it. Shown from 300 ms on, behind the progress
  // where there is one.
  void ShowWaiting(int tenths);
  // Off the screen at once. The next Show of the same work brings it back.
  void Remove();

 private:
  void Paint();

  vc::Clock& clock;
  std::optional<std::int64_t> started;  // in microseconds, as below; empty between two works
  std::int64_t painted = 0;
  QString progress, waiting;  // the two parts of the text
  QPointer<QLabel> label;     // a child of the window, which may take it along
};

}  // namespace desktop
