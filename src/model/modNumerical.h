// The laws by which decibels become 16-bit words of the unit's registers and parameter blocks.
#pragma once

#include <cstdint>

namespace vc {

// Every word is a std::uint16_t, the pattern on the wire: a negative one is in two's complement, and full
// scale, 32768, which a signed word cannot hold, is 0x8000.

inline constexpr double FullScaleWord = 32768;

// value between lower and upper; NaN becomes 0.
double Bounded(double value, double lower, double upper);
// Nearest integer, ties to even, bounded to -32768..32768; NaN gives 0.
std::uint16_t BoundedWord(double value);
// The word of minus the value; 0x8000 stays as it is.
std::uint16_t NegatedWord(std::uint16_t word);

// 10^(decibels/20); infinite or 0 where the result leaves the range of a double.
double AmplitudeRatio(double decibels);

// The gain of a stopband that is attenuated by 0..60 dB (bounded): 32768 times the amplitude ratio.
std::uint16_t AttenWord(std::int16_t decibels);

struct CombDepthWord {
  std::uint16_t word;
  std::int16_t combDepth;  // dB, bounded to -60..60: what the record is corrected to
};
// How much of the delayed signal a comb takes away for a depth in dB, 32768 being all of it.
CombDepthWord CombWord(std::int16_t combDepth);

// How much of the band a notch takes away for an attenuation of -60..60 dB (bounded), 32768 being all of it;
// a negative attenuation gives the negative word.
std::uint16_t NotchWord(std::int16_t decibels);

}  // namespace vc
