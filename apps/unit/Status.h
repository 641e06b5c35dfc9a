// What the unit reports of itself: levels, status words and the state of the stages.
#pragma once

#include <array>
#include <cstdint>

#include "unit/Registers.h"

namespace unit {

// Indices of the level words, in the order of the reply.
enum LevelIndex { InLeft, InRight, MidLeft, MidRight, OutLeft, OutRight, LevelCount };

struct Status {
  std::array<std::uint16_t, LevelCount> levels{};  // 0..32767, 20675 is 0 dB
  std::uint16_t unitStatus = 0;                    // bit 9: the option; bit 0: the system word was set
  std::uint16_t unitMode = 0;  // bits 15, 14: overload of the left and right input; bits 0..3: bandwidth
  std::array<std::uint16_t, 10>
      stageStatus{};  // low 15 bits a level; bit 15 of the first eight: signal present
  std::array<std::uint8_t, 10> stageNibble{};  // low 4 bits count: how busy the stage is
};

// The state at a time in microseconds: the built-in signal through the input level controls (commands 0
// and 1) once these were set.
Status MeasureStatus(std::int64_t microseconds, const Registers& registers, bool option);

}  // namespace unit
