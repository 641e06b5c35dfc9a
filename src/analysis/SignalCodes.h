// The signals of the chain that the unit's analyzer can measure: a code each, which a setup stores, and the
// lists in which the operator chooses one of those that the configuration has.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/SignalCode.h"
#include "model/SystemSettings.h"

namespace vc {

enum class TraceColour { Yellow, Blue };  // trace 1 and trace 2

struct SignalChoice {
  std::int16_t code;
  std::string text;
};

// The list of a trace, by numFilters and configMode as they are now. In Mono the two lists differ in the
// names of the first two rows, else they are alike.
std::vector<SignalChoice> SignalChoices(const SystemSettings& settings, TraceColour trace);
// The row that a code has in the lists; 0 where they do not have it.
int GetTraceSelection(const SystemSettings& settings, std::int16_t code);
// The code of a row; 0 where the lists do not have it.
std::int16_t SignalAt(const SystemSettings& settings, int row);
bool IsOffered(const SystemSettings& settings, std::int16_t code);

// What a trace measures where nothing else is chosen.
std::int16_t DefaultSignal(const SystemSettings& settings, TraceColour trace);

// The signal at the input of a filter stage 1..6.
std::int16_t FilterInputSignal(const SystemSettings& settings, int stage);

}  // namespace vc
