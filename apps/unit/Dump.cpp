// Everything that the unit was given and holds, as text that is the same for the same state.
#include "unit/Dump.h"

namespace unit {

std::string DumpText(Unit& unit) {
  std::string text = SettingText(unit.Present());
  const std::size_t waiting = unit.HeldStages().WaitingPackets();
  if (waiting > 0) text += "waiting " + std::to_string(waiting) + '\n';
  return text + MemoriesText(unit.memories);
}

}  // namespace unit
