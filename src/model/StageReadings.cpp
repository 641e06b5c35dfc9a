#include "model/StageReadings.h"

#include <algorithm>
#include <cmath>

#include "model/Kinds.h"
#include "model/Stages.h"

namespace vc {
namespace {

constexpr int FirstBroadbandEntry = 6, FirstEqualizerEntry = 8;

}  // namespace

StageEntries EntriesOfFilter(std::int16_t configMode, int stage) {
  const int pair = stage > PairStages ? stage - PairStages : stage;
  if (IsLinked(configMode)) return {2 * pair - 2, 2 * pair - 1};
  const int entry = PositionOfStage(configMode, stage) - 1;
  return {entry, entry};
}

StageEntries EntriesOfEqualizer(int equalizer) {
  const int entry = FirstEqualizerEntry + equalizer - 1;
  return {entry, entry};
}

StageEntries EntriesOfBroadband(std::int16_t configMode, int number) {
  if (IsLinked(configMode)) return {FirstBroadbandEntry, FirstBroadbandEntry + 1};
  const int entry = FirstBroadbandEntry + number - 1;
  return {entry, entry};
}

StageEntries EntriesOfCurFilter(const SystemSettings& settings) {
  return EntriesOfFilter(settings.configMode, settings.curFilter);
}

StageEntries EntriesOfCurEq(const SystemSettings& settings) { return EntriesOfEqualizer(settings.curEq); }

StageEntries EntriesOfCurBroadband(const SystemSettings& settings) {
  return EntriesOfBroadband(settings.configMode, settings.curBroadband);
}

std::uint32_t TimesTold(const UnitStatus& status, int entry) {
  return entry < FirstEqualizerEntry ? status.stagesTold : status.equalizersTold;
}

std::int32_t StageLevel(const UnitStatus& status, int entry) {
  constexpr std::int32_t levelBits = 0x7FFF;
  return std::max(status.stageStatus.at(static_cast<std::size_t>(entry)) & levelBits, 1);
}

StageReading ReadStage(const UnitStatus& status, const StageEntries& entries) {
  constexpr int firstFilterBit = 7;  // of unitMode, downwards from there by entry
  const auto flags = [&status](int entry) { return status.stageNibble.at(static_cast<std::size_t>(entry)); };
  return {.level = std::max(StageLevel(status, entries.left), StageLevel(status, entries.right)),
          .overload = static_cast<std::int16_t>(flags(entries.left) | flags(entries.right)),
          .adapting =
              entries.left < FilterStages && (status.unitMode >> (firstFilterBit - entries.left) & 1) != 0};
}

DynamicsReading ReadDynamics(const UnitStatus& status, int entry) {
  constexpr double eighths = 8, fullScaleOctaves = 15;  // full scale is 32768
  const double decibelsAnOctave = 20 * std::log10(2.0);
  const auto word = static_cast<std::uint32_t>(status.stageStatus.at(static_cast<std::size_t>(entry)));
  const auto level = static_cast<std::uint8_t>(word & 0xFFU);
  const auto gain = static_cast<std::int8_t>(word >> 8U & 0xFFU);
  DynamicsReading reading;
  reading.input = decibelsAnOctave * (level / eighths - fullScaleOctaves);
  reading.gain = decibelsAnOctave * (gain / eighths);
  reading.output = reading.input + reading.gain;
  return reading;
}

}  // namespace vc
