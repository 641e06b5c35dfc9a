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

constexpr unsigned OptionBit = 0x200;
constexpr unsigned ConfiguredBit = 1;

Stereo InputDb(std::int64_t microseconds, const Registers& registers) {
  return {SpeechDb(0, microseconds) + ControlDb(registers.values[SystemWord].value_or(NeutralControl)),
          SpeechDb(1, microseconds) + ControlDb(registers.values[RightLevel].value_or(NeutralControl))};
}

// Filter stages 1 to 3, broadband stage 7 and equalizer stage 9 hear the left channel.
std::size_t ChannelOf(std::size_t stage) { return stage < 3 || stage == 6 || stage == 8 ? 0 : 1; }

}  // namespace

std::uint16_t UnitStatusWord(const Registers& registers, bool option) {
  return static_cast<std::uint16_t>((option ? OptionBit : 0U) |
                                    (registers.values[SystemWord].has_value() ? ConfiguredBit : 0U));
}

Status CourseStatus(std::int64_t microseconds, const Registers& registers) {
  const Stereo input = InputDb(microseconds, registers);
  Status status;
  for (std::size_t channel = 0; channel < input.size(); ++channel) {
    status.levels[InLeft + channel] = LevelWord(input[channel]);
    status.levels[MidLeft + channel] = LevelWord(input[channel] - MidLossDb);
    status.levels[OutLeft + channel] = LevelWord(input[channel] - OutLossDb);
  }
  for (std::size_t stage = 0; stage < status.stageStatus.size(); ++stage) {
    status.stageStatus[stage] =
        LevelWord(input[ChannelOf(stage)] - StageLossDb * static_cast<double>(stage + 1));
  }
  return status;
}

}  // namespace unit
