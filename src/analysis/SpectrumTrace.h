// What is drawn of a spectrum of the unit: one byte a line as it came, on the scale of a display, and where
// its lines lie in frequency. The unit measures and averages; here nothing but the scale is made.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/SpectrumReader.h"

namespace vc {

inline constexpr int TraceLines = 460;  // of a reply, those that are displayed
// Raw, the top of the display, and what a trace without a reply holds.
inline constexpr std::uint8_t RawTop = 192;
// How far the bottom of a display lies below its top: in the analyzer's own units, and in tenths of a dB.
inline constexpr float DisplayBottom = 100.0F, DisplayBottomTenths = 700.0F;
inline constexpr double BottomLevel = -70.0;  // dB, at the bottom of either

// By line, from 0 at the top of the display to its bottom.
using SpectrumTrace = std::array<float, TraceLines>;

// In single precision, (192 - raw) / 185 of the way to the bottom, held to the display.
float ScaledLine(std::uint8_t raw, float bottom = DisplayBottom);
SpectrumTrace ScaledTrace(const RawTrace& raw, float bottom = DisplayBottom);
// The level of a line in dB, 0..-70, where the bottom is DisplayBottom.
double LevelOf(float line);
std::vector<float> LevelsOf(const SpectrumTrace& trace);

// Of line 0..460, at a sample rate in Hz.
double LineFrequency(double sampleRate, double line);
// The same as the whole number that is shown, halves to even.
int ShownFrequency(double sampleRate, int line);
// The line of a typed frequency, 0..460, of which the last is beyond the display. Not the exact inverse of
// LineFrequency: the unit's own display has always read it so.
int LineOfFrequency(double sampleRate, double hertz);

// The line with the highest level, the lowest of those that have the same; 0 where all are at the bottom.
int StrongestLine(const SpectrumTrace& trace);

}  // namespace vc
