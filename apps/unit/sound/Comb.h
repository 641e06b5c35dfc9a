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

// Up to the limit the gain is |1 - c z^-period| / 2 with the depth c. For c = 1 - 2 x 10^(-d/20) the notches,
// at the multiples of sampleRate / period, stand at -d dB, and so do the troughs between the peaks of a
// negative c. Above the limit the signal passes (algorithm 7), or stands at that floor when inverse is set
// (algorithm 10). At most mostTaps; the period is held to what they can hold.
std::vector<float> CombTaps(bool inverse, const CombWords& words, double sampleRate, std::size_t mostTaps);

}  // namespace unit::sound
