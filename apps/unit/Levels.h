// The built-in test signal: two voices whose levels rise and fall as speech does, as a pure function of time.
#pragma once

#include <array>
#include <cstdint>

namespace unit {

inline constexpr double FullScaleLevel = 20675.0;  // the level word at 0 dB
inline constexpr std::uint16_t NeutralControl = 192;

// Levels in dB of the signal, index 0 left and 1 right.
using Stereo = std::array<double, 2>;

// Level of a voice (0 or 1) at a time in microseconds: -30..-6 dB while it speaks, around -55 dB in its
// pauses, and for a moment about every half minute up to +3 dB.
double SpeechDb(int voice, std::int64_t microseconds);

// Level word 0..32767 of a level in dB; beyond the ends the nearest of them.
std::uint16_t LevelWord(double db);

// Gain of an input level control: half a dB a step, 0 dB at 192. The low eight bits count.
double ControlDb(std::uint16_t control);

}  // namespace unit
