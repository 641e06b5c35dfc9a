// Everything that the unit was given and holds, as text that is the same for the same state.
#include "unit/Dump.h"

namespace unit {
namespace {

std::string StateText(const Unit& unit) {
  if (unit.InApplication()) return "application runs\n";
  return (unit.IsOff() ? "power is off" : unit.Rom().StateText()) + '\n';
}

}  // namespace

std::string DumpText(Unit& unit) {
  std::string text = SettingText(unit.Present());
  const std::size_t waiting = unit.HeldStages().WaitingPackets();
  if (waiting > 0) text += "waiting " + std::to_string(waiting) + '\n';
  return text + MemoriesText(unit.memories) + ImagesText(unit.Rom().images) + StateText(unit);
}

}  // namespace unit
