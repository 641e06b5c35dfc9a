// Where stages stand in the unit, by the layout of the chain.
#pragma once

#include <cstdint>

namespace vc {

// The physical place (1..6) of a filter stage (1..6). In the stereo modes left and right partners stand next
// to each other: left stages at the odd places, right stages at the even ones. extraStages counts by place.
int PositionOfStage(std::int16_t configMode, int stage);

}  // namespace vc
