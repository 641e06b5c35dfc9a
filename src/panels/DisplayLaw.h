// How a slider's position is shown, typed and stored. A law is a value: a new one is one more function here.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "text/Convert.h"

namespace vc {

constexpr double AsKept(double value) { return value; }

struct DisplayLaw {
  std::string unit;
  std::function<std::string(double position)> show;
  // Raises a Fault where the text is none that the law can read, or where the law has no answer.
  std::function<double(const std::string& text)> parse;
  // The value that is kept for a position, and the position that shows a value.
  std::function<double(double position)> stored = Nearest;
  std::function<double(double value)> position = AsKept;
  double step = 1.0;  // of the slider, by key, page and wheel
  // The slider goes at once where the value that was stored stands, and from there nothing is stored again.
  bool snaps = false;
};

// The number that a typed text stands for; raises a Fault where it is none. A comma may stand in place of the
// point.
double TypedNumber(const std::string& text);

// The position as a whole number.
DisplayLaw WholeNumber(const std::string& unit);
// The position in whole tens, 100..500.
DisplayLaw WholeTens(const std::string& unit);
// The position in tenths, with one decimal: "2.5" at 25. What is kept is what is shown.
DisplayLaw Tenths(const std::string& unit);
// An input level in half decibels around 192: "0", "+2.5", "-48.0". It ends at 96 and 255.
DisplayLaw InputLevel();

// A linear output gain in dB, for which its code stands; it ends at the codes 16 and 506.
DisplayLaw OutputGain();
inline constexpr std::int16_t LeastGain = 16, MostGain = 506;

// Steepness of a cut-off edge in dB per octave, of a slope parameter n: (2n - 1) * 37 * E / (3 Fs) + 0.5 for
// an effective edge of E Hz, which is the edge itself where what lies below it passes and half of it where
// what lies above it does. Typing at an edge of 0 Hz has no answer.
struct SlopeLaw {
  std::function<double()> effectiveEdge;  // E, Hz
  std::function<double()> sampleRate;     // Fs, Hz
};
DisplayLaw TransitionSlope(SlopeLaw law);

}  // namespace vc
