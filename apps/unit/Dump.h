// Everything that the unit was given and holds, as text that is the same for the same state.
#pragma once

#include <string>

#include "unit/Unit.h"

namespace unit {

// The lines of the present setting, "waiting COUNT" if there are packets for which no command has come, the
// lines of the stand-alone memories, those of the firmware images, and one that says what the unit runs:
// "application runs", "power is off" or what its boot ROM does.
std::string DumpText(Unit& unit);

}  // namespace unit
