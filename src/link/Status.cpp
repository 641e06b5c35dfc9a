#include "link/Status.h"

#include <algorithm>
#include <cmath>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::size_t LevelOffset = 3, UnitStatusOffset = 15, UnitModeOffset = 17, StageOffset = 19,
                      NibbleOffset = 35;
constexpr std::int32_t OptionBit = 0x200;

std::uint8_t ByteAt(std::string_view head, std::size_t offset) {
  if (offset >= head.size()) throw Fault{"Subscript out of range"};
  return static_cast<std::uint8_t>(head[offset]);
}

std::int32_t WordAt(std::string_view head, std::size_t offset) {
  return ByteAt(head, offset) | ByteAt(head, offset + 1) << 8;
}

// The steps of the scale get wider towards the bottom: whole dB, then two, then three.
std::int32_t ScaleStep(double decibels) {
  if (std::isnan(decibels) || decibels < -66.0) return 0;
  if (decibels >= 3.6) return 43;
  if (decibels >= 3.4) return 42;
  if (decibels >= 3.2) return 41;
  if (decibels >= -18.0) return Nearest32(decibels - 3.9 + 40.0);
  const std::int32_t whole = Nearest32(decibels - 3.9);
  return decibels >= -30.0 ? whole / 2 + 30 : whole / 3 + 24;
}

}  // namespace

void UnitStatus::ClearLevels() {
  levelInLeft = levelInRight = levelMidLeft = levelMidRight = levelOutLeft = levelOutRight = 0;
}

void UnitStatus::ClearWords() {
  unitStatus = unitMode = 0;
  unitOption = unitOptionPrev = false;
}

void DecodeLevels(UnitStatus& status, std::string_view head) {
  std::size_t offset = LevelOffset;
  for (std::int16_t* level : {&status.levelInLeft, &status.levelInRight, &status.levelMidLeft,
                              &status.levelMidRight, &status.levelOutLeft, &status.levelOutRight}) {
    *level = static_cast<std::int16_t>(WordAt(head, offset) & 0x7FFF);
    offset += 2;
  }
}

void DecodeUnitStatus(UnitStatus& status, std::string_view head) {
  status.unitStatus = WordAt(head, UnitStatusOffset);
  status.unitOption = (status.unitStatus & OptionBit) != 0;
}

void DecodeUnitMode(UnitStatus& status, std::string_view head) {
  status.unitMode = WordAt(head, UnitModeOffset);
}

void DecodeStages(UnitStatus& status, std::string_view head) {
  ++status.stagesTold;
  for (std::size_t i = 0; i < 8; ++i) status.stageStatus[i] = WordAt(head, StageOffset + 2 * i);
  for (std::size_t i = 0; i < status.stageNibble.size(); ++i) {
    // The bytes come in swapped pairs.
    status.stageNibble[i ^ 1U] = static_cast<std::int16_t>(ByteAt(head, NibbleOffset + i) & 15);
  }
}

void DecodeEqualizerStages(UnitStatus& status, std::string_view head) {
  ++status.equalizersTold;
  status.stageStatus[8] = WordAt(head, 3);
  status.stageStatus[9] = WordAt(head, 5);
}

double LevelToDb(std::int32_t level, bool portOpen) {
  const std::int32_t counted = portOpen ? std::max(level, 1) : 1;
  return 20.0 * (std::log(static_cast<double>(counted)) - std::log(static_cast<double>(FullScaleLevel))) /
         std::log(10.0);
}

std::int32_t DbToBarPosition(double decibels) {
  return Nearest32((ScaleStep(decibels) - 1) * 2.380952380952381);
}

}  // namespace vc
