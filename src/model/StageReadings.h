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
// Filter stage 1..6 and broadband stage 1 or 2, by the layout of the chain; equalizer 1 or 2, which is read
// alone in every layout.
StageEntries EntriesOfFilter(std::int16_t configMode, int stage);
StageEntries EntriesOfEqualizer(int equalizer);
StageEntries EntriesOfBroadband(std::int16_t configMode, int number);
// Of the stage of each family that is edited.
StageEntries EntriesOfCurFilter(const SystemSettings& settings);
StageEntries EntriesOfCurEq(const SystemSettings& settings);
StageEntries EntriesOfCurBroadband(const SystemSettings& settings);

// Counts what the unit has told of an entry.
std::uint32_t TimesTold(const UnitStatus& status, int entry);
// Linear level of an entry, 1..32767; see LevelToDb. What is told as less than 1 counts as 1.
std::int32_t StageLevel(const UnitStatus& status, int entry);

// All that is told of a stage; of one of which nothing is told, as it stands here.
struct StageReading {
  std::int32_t level = 1;     // the larger of a linked pair, as StageLevel gives it
  std::int16_t overload = 0;  // the overload flags, 0..15; those of either of a linked pair
  bool adapting = false;      // of a filter stage; of a linked pair the left one
};
StageReading ReadStage(const UnitStatus& status, const StageEntries& entries);

// What a limiter, compressor and expander tells in place of a level; where nothing is told, as it stands
// here.
struct DynamicsReading {
  double input = -100, gain = 0, output = -100;  // dB
};
// In eighths of an octave, 0.75 dB: the level that goes in, in the low byte, and the gain with its sign above
// it.
DynamicsReading ReadDynamics(const UnitStatus& status, int entry);

}  // namespace vc
