// The high-pass filters at the input and the output: rumble and hum below the speech are taken out.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace unit::sound {

inline constexpr double HighpassLowest = 100;  // Hz
inline constexpr double HighpassHighest = 500;

// Which of the two are in, by the input stage's word (register 5).
inline bool InputHighpassOn(std::uint16_t word) { return (word & 0x8000) != 0; }
inline bool OutputHighpassOn(std::uint16_t word) { return (word & 0x4000) != 0; }

// A Butterworth filter of the fourth order: -3 dB at the cut-off, 24 dB an octave below it. It is the
// bilinear transform of the analog one, as two sections (Oppenheim and Schafer, Discrete-Time Signal
// Processing, 7.1).
class Highpass {
 public:
  Highpass(double cutoff, double sampleRate) { Configure(cutoff, sampleRate); }

  // cutoff in Hz, as registers 17 and 18 have it, bounded to 100..500; sampleRate in Hz. The sound goes on.
  void Configure(double cutoff, double sampleRate);
  void Reset();
  // Any number of samples; in and out may be the same. No latency.
  void Process(std::span<const float> in, std::span<float> out);

 private:
  struct Section {
    double gain = 0, feedback1 = 0, feedback2 = 0;
    double memory1 = 0, memory2 = 0;

    double Next(double sample);
  };
  std::array<Section, 2> sections;
};

}  // namespace unit::sound
