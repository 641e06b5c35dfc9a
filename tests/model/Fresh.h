// The record as a start of the program gives it.
#pragma once

#include "model/Settings.h"

namespace vc {

inline SystemSettings Fresh() {
  SystemSettings settings;
  InitSettings(settings);
  return settings;
}

}  // namespace vc
