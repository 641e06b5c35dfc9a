// What the unit reports of itself: levels, status words and the state of the stages.
#pragma once

#include <array>
#include <cstdint>

#include "unit/Registers.h"

namespace unit {

// Indices of the level words, in the order of the reply.
enum LevelIndex { InLeft, InRight, MidLeft, MidRight, OutLeft, OutRight, LevelCount };

// What the analyzer shows of one trace: line i is the frequency (i + 1) * rate / 1024; 192 is full scale, 185
// less is 70 dB less.
using SpectrumLines = std::array<std::uint8_t, 512>;

struct Status {
  std::array<std::uint16_t, LevelCount> levels{};  // 0..32767, 20675 is 0 dB
  std::uint16_t unitStatus = 0;                    // bit 9: the option; bit 0: the system word was set
  std::uint16_t unitMode = 0;  // bits 15, 14: overload of trace 1 and 2; bit 8 - i: stage i adapts
  std::array<std::uint16_t, 10> stageStatus{};  // what stages 1 to 10 measure
  std::array<std::uint8_t, 10> stageNibble{};   // bit 0: overload in the stage
};

// What is not the sound's: the option, and whether the system word was set.
std::uint16_t UnitStatusWord(const Registers& registers, bool option);

}  // namespace unit
