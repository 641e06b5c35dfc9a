// What a change of a stage's kind does to the record. What the stage remembers for other kinds stays.
#pragma once

#include "model/SystemSettings.h"

namespace vc {

// Stores the kind of filter stage 1..6 (a code outside the list becomes 0) and clears the tables that the new
// kind starts from, unless loadingSetup is set. Returns true where the old kind had borrowed DSP stages, so
// that the fit must run; otherwise the stage's coefficients are marked to be made again.
bool ChangeFilterKind(SystemSettings& settings, int stage, std::int16_t kind);

// The same for equalizer 1 or 2 (a code outside the list becomes 3). For the spectral graphic its
// curve is cleared, unless loadingSetup is set. The equalizer's eqChanged is raised.
void ChangeEqKind(SystemSettings& settings, int equalizer, std::int16_t kind);

}  // namespace vc
