// What the unit reports of itself: levels, status words and the state of the stages.
#include "unit/Status.h"

#include <cstddef>

#include "unit/Levels.h"

namespace unit {
namespace {

constexpr std::uint8_t SystemWord = 0;
constexpr std::uint8_t RightLevel = 1;

constexpr double MidLossDb = 2.0;
constexpr double OutLossDb = 4.0;
constexpr double StageLossDb = 1.0;
constexpr double SignalPresentDb = -40.0;

constexpr unsigned OptionBit = 0x200;
constexpr unsigned ConfiguredBit = 1;
constexpr unsigned LeftOverload = 0x8000;
constexpr unsigned RightOverload = 0x4000;
constexpr unsigned SignalPresent = 0x8000;

Stereo InputDb(std::int64_t microseconds, const Registers& registers) {
  return {SpeechDb(0, microseconds) + ControlDb(registers.values[SystemWord].value_or(NeutralControl)),
          SpeechDb(1, microseconds) + ControlDb(registers.values[RightLevel].value_or(NeutralControl))};
}

std::uint16_t Mode(const Stereo& input, const Registers& registers) {
  const unsigned bandwidth = registers.values[SystemWord].value_or(0) >> 12U;
  const unsigned left = input[0] > 0.0 ? LeftOverload : 0;
  const unsigned right = input[1] > 0.0 ? RightOverload : 0;
  return static_cast<std::uint16_t>(left | right | bandwidth);
}

// Filter stages 1 to 3, broadband stage 7 and equalizer stage 9 hear the left channel.
std::size_t ChannelOf(std::size_t stage) { return stage < 3 || stage == 6 || stage == 8 ? 0 : 1; }

}  // namespace

Status MeasureStatus(std::int64_t microseconds, const Registers& registers, bool option) {
  const Stereo input = InputDb(microseconds, registers);
  Status status;
  for (std::size_t channel = 0; channel < input.size(); ++channel) {
    status.levels[InLeft + channel] = LevelWord(input[channel]);
    status.levels[MidLeft + channel] = LevelWord(input[channel] - MidLossDb);
    status.levels[OutLeft + channel] = LevelWord(input[channel] - OutLossDb);
  }
  status.unitStatus = static_cast<std::uint16_t>(
      (option ? OptionBit : 0U) | (registers.values[SystemWord].has_value() ? ConfiguredBit : 0U));
  status.unitMode = Mode(input, registers);
  const std::int64_t quarterSeconds = microseconds / 250'000;
  for (std::size_t stage = 0; stage < status.stageStatus.size(); ++stage) {
    const double db = input[ChannelOf(stage)] - StageLossDb * static_cast<double>(stage + 1);
    const unsigned present = stage < 8 && db > SignalPresentDb ? SignalPresent : 0;
    status.stageStatus[stage] = static_cast<std::uint16_t>(LevelWord(db) | present);
    status.stageNibble[stage] = (quarterSeconds + static_cast<std::int64_t>(stage)) & 15;
  }
  return status;
}

}  // namespace unit
