#include "model/StageReadings.h"

#include <algorithm>

#include "model/Kinds.h"
#include "model/Stages.h"

namespace vc {
namespace {

constexpr int FirstEqualizerEntry = 8;

}  // namespace

StageEntries EntriesOfFilter(std::int16_t configMode, int stage) {
  const int pair = stage > PairStages ? stage - PairStages : stage;
  if (IsLinked(configMode)) return {2 * pair - 2, 2 * pair - 1};
  const int entry = PositionOfStage(configMode, stage) - 1;
  return {entry, entry};
}

StageEntries EntriesOfEqualizer(std::int16_t configMode, int equalizer) {
  if (IsLinked(configMode)) return {FirstEqualizerEntry, FirstEqualizerEntry + 1};
  const int entry = FirstEqualizerEntry + equalizer - 1;
  return {entry, entry};
}

std::int32_t StageLevel(const UnitStatus& status, int entry) {
  constexpr std::int32_t levelBits = 0x7FFF;
  return std::max(status.stageStatus.at(static_cast<std::size_t>(entry)) & levelBits, 1);
}

}  // namespace vc
