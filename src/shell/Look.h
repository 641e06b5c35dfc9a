// The look of the windows and of the plots that the operator has chosen, kept from run to run in a file of
// its own: it is the desk's matter, not the setup's.
#pragma once

#include <string>

#include "platform/Platform.h"
#include "shell/MasterControl.h"

namespace vc {

struct Look {
  Look(Platform& host, MasterControl& panel) : platform(host), master(panel) {}

  // What the last run has kept; the system's look where there is nothing that can be read.
  void Load();
  // Takes the look on and keeps it. Where it cannot be kept it still holds for this run.
  void Choose(Theme chosen);
  void Choose(AxisLaw chosen);

 private:
  void TakeOnTheme();
  void Keep() const;
  std::string Path() const;

  Platform& platform;
  MasterControl& master;
  Theme theme = Theme::System;
  AxisLaw frequencies = AxisLaw::Linear;
};

}  // namespace vc
