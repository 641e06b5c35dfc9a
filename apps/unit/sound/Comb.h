// The comb filter and its inverse, as taps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace unit::sound {

// The words of the parameter block. Odd harmonics come as half of the period with the depth's sign turned,
// even ones as half of the period.
struct CombWords {
  std::uint16_t period = 0;  // samples
  std::uint16_t limit = 0;   // Hz
  std::uint16_t depth = 0;   // signed, 32768 is 1
};

// Up to the limit the gain is |(1 + g) - s (1 - g) z^-period| / 2, with g = (1 - |c|) / 2 for the depth c and
// s its sign. A depth of d dB comes as c = 1 - 2 x 10^(-d/20): notches stand at g, which is -d dB, at the
// multiples of sampleRate / period, and peaks at 0 dB between them; a negative c changes the two. Above the
// limit the signal passes (algorithm 7), or stands at g when inverse is set (algorithm 10), through a
// transition that begins at the limit. At most mostTaps; the period is held to what they can hold.
std::vector<float> CombTaps(bool inverse, const CombWords& words, double sampleRate, std::size_t mostTaps);

// How late the sound itself comes out of so many such taps, in samples; its echo is a period later.
std::size_t CombLatency(const CombWords& words, std::size_t taps, std::size_t mostTaps);

}  // namespace unit::sound
