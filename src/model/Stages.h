// How stages are named and where they stand in the unit, by the layout of the chain.
#pragma once

#include <cstdint>
#include <string>

namespace vc {

// The physical place (1..6) of a filter stage (1..6). In the stereo modes left and right partners stand next
// to each other: left stages at the odd places, right stages at the even ones. extraStages counts by place.
int PositionOfStage(std::int16_t configMode, int stage);

// What follows the kind in a panel's title, e.g. " (Left Filter 2)". stage 1..6, equalizer 1..2.
std::string StageTitleSuffix(std::int16_t configMode, int stage);
std::string EqTitleSuffix(std::int16_t configMode, int equalizer);

}  // namespace vc
