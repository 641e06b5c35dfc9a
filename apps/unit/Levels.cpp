// The built-in test signal: two voices whose levels rise and fall as speech does, as a pure function of time.
#include "unit/Levels.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace unit {
namespace {

// Periods in seconds. A phrase is speech for its first part, then a pause.
struct Voice {
  double phrase;
  double speechShare;
  double syllable;
  double drift;
};

constexpr Voice voices[] = {{4.1, 0.72, 0.32, 7.3}, {5.3, 0.64, 0.39, 9.1}};

constexpr double SpeechMean = -18.0;
constexpr double SyllableSwing = 8.0;
constexpr double DriftSwing = 4.0;
constexpr double PauseMean = -55.0;
constexpr double PauseSwing = 1.5;
constexpr double EmphasisGain = 9.0;
constexpr double EmphasisStart = 0.5;
constexpr double EmphasisSeconds = 1.2;
constexpr int PhrasesPerEmphasis = 6;
constexpr double RampSeconds = 0.12;

double Fraction(double value) { return value - std::floor(value); }

double Wave(double seconds, double period) { return std::sin(2.0 * std::numbers::pi * seconds / period); }

// 0 to 1 along a half cosine, for x from 0 to 1.
double Smooth(double x) { return 0.5 - 0.5 * std::cos(std::numbers::pi * std::clamp(x, 0.0, 1.0)); }

// 1 inside 0..length, 0 outside, with smooth edges of the ramp's length inside.
double Window(double seconds, double length, double ramp) {
  return Smooth(seconds / ramp) * Smooth((length - seconds) / ramp);
}

}  // namespace

double SpeechDb(int voice, std::int64_t microseconds) {
  const Voice& v = voices[voice];
  const double seconds = static_cast<double>(microseconds) / 1e6;
  const double inPhrase = Fraction(seconds / v.phrase) * v.phrase;
  const double speaking = Window(inPhrase, v.phrase * v.speechShare, RampSeconds);
  const double phrases = seconds / (v.phrase * PhrasesPerEmphasis);
  const double inEmphasis = Fraction(phrases) * v.phrase * PhrasesPerEmphasis - EmphasisStart;
  const double emphasis = Window(inEmphasis, EmphasisSeconds, EmphasisSeconds / 2) * EmphasisGain;
  const double speech =
      SpeechMean + SyllableSwing * Wave(seconds, v.syllable) + DriftSwing * Wave(seconds, v.drift) + emphasis;
  const double pause = PauseMean + PauseSwing * Wave(seconds, v.drift);
  return pause + (speech - pause) * speaking;
}

std::uint16_t LevelWord(double db) {
  const double level = std::round(FullScaleLevel * std::pow(10.0, db / 20.0));
  return static_cast<std::uint16_t>(std::clamp(level, 0.0, 32767.0));
}

double ControlDb(std::uint16_t control) { return 0.5 * ((control & 0xFF) - NeutralControl); }

}  // namespace unit
