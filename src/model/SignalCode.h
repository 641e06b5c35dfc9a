// The signals of the chain that the unit's analyzer can measure, by the code that a setup stores.
#pragma once

#include <cstdint>

#include "model/Kinds.h"

namespace vc {

// The output of a filter stage 1..6 is its number and FirstFilter - 1, in every configuration.
namespace signal {
inline constexpr std::int16_t LeftIn = 0, RightIn = 1, LeftEqualizer = 2, RightEqualizer = 3, LeftLine = 4,
                              RightLine = 5, FirstFilter = 6, LeftBroadband = 12, RightBroadband = 13;
}  // namespace signal

// What the traces measure where nothing else is chosen.
inline constexpr std::int16_t DefaultYellowSignal = signal::LeftIn;
constexpr std::int16_t DefaultBlueSignal(std::int16_t configMode) {
  return configMode == ConfigMode::Mono ? signal::LeftLine : signal::RightLine;
}

}  // namespace vc
