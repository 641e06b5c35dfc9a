// What is said of a unit after an update that failed.
#include <algorithm>

#include "firmware/modFirmware.h"

namespace vc {
namespace {

const std::string TryAgain = "press Alt+U twice to update it again";

std::string SectionText(const UpdateState& state, std::size_t row) {
  const std::string name = "Section " + std::to_string(row + 1);
  switch (state.sections.at(row)) {
    case SectionState::Written:
      return name + " is written.";
    case SectionState::Erased:
      return name + " is not verified.";
    case SectionState::Untouched:
      break;
  }
  return name + " has not been changed.";
}

std::string WhatToDo(const UpdateState& state) {
  if (!state.portOpened) return "Free the port, then " + TryAgain + ".";
  if (!state.reached) {
    return "The unit must be switched on, connected and set to 115200 baud: see to that, then " + TryAgain +
           ".";
  }
  const auto any = [&state](SectionState which) {
    return std::find(state.sections.begin(), state.sections.end(), which) != state.sections.end();
  };
  // Where its power failed before anything was erased it runs as before.
  if (any(SectionState::Erased))
    return "The unit should be waiting in its boot ROM: leave it switched on and " + TryAgain + ".";
  if (any(SectionState::Written))
    return "The unit waits in its boot ROM: leave it switched on and " + TryAgain + ".";
  return "Switch the unit off and on to use it as it is, or " + TryAgain + ".";
}

}  // namespace

std::string UnitStateText(const UpdateState& state, const std::string& why) {
  const std::string sections = state.reached ? SectionText(state, 0) + "  " + SectionText(state, 1)
                                             : "The unit was not reached and has not been changed.";
  return why + ".  " + sections + "  " + WhatToDo(state);
}

}  // namespace vc
