// What the unit tells of a stage, in its block of stage values.
#pragma once

#include <cstdint>

#include "link/Status.h"
#include "model/SystemSettings.h"

namespace vc {

// The entries of stageStatus and stageNibble, 0..9, that belong to a stage: two where it is a linked pair,
// else twice the same.
struct StageEntries {
  int left, right;
};
// Filter stage 1..6, by the layout of the chain; equalizer 1 or 2.
StageEntries EntriesOfFilter(std::int16_t configMode, int stage);
StageEntries EntriesOfEqualizer(std::int16_t configMode, int equalizer);

// Linear level of an entry, 1..32767; see LevelToDb. What is told as less than 1 counts as 1.
std::int32_t StageLevel(const UnitStatus& status, int entry);

}  // namespace vc
