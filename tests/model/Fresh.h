// The record as a start of the program gives it, and one that has been worked on.
#pragma once

#include "model/Settings.h"

namespace vc {

inline SystemSettings Fresh() {
  SystemSettings settings;
  InitSettings(settings);
  return settings;
}

// With something in every table that a change of kind or bandwidth may empty.
inline SystemSettings Filled() {
  SystemSettings settings = Fresh();
  for (int stage = 1; stage <= FilterStages; stage++) {
    settings.mnotchFreq[stage].Fill(500);
    settings.mnotchWidth[stage].Fill(20);
    settings.mslotFreq[stage].Fill(600);
    settings.mslotWidth[stage].Fill(30);
    settings.sifCurve[stage].Fill(-5);
    settings.hiResCurve[stage].Fill(-6);
    settings.customCurve[stage].Fill(-7);
  }
  settings.filterAtten.Fill(100);
  settings.filterGain.Fill(99);
  settings.filterBuilt.Fill(-1);
  return settings;
}

}  // namespace vc
