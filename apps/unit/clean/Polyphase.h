// Sample rate conversion between two rates that have much in common.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "unit/clean/SampleSource.h"

namespace unit::clean {

// Between the samples of a sound stands what a linear-phase lowpass under Kaiser's window makes of them, with
// taps for each of the places at which the new rate asks for it (R. E. Crochiere, L. R. Rabiner, "Multirate
// Digital Signal Processing", 1983, chapter 2). It passes nine tenths of what the lower rate can hold, which
// is all of the unit's bandwidths, and what is beyond it and its images stay 120 dB below. Without a delay.
class Polyphase {
 public:
  // Whether the taps for all places are few enough to be found at once.
  static bool Suits(int fromHertz, int toHertz);

  Polyphase(SampleSource heard, std::size_t channelCount, int fromHertz, int toHertz);
  void Read(std::span<float> samples);

 private:
  void MakeTaps();
  void Hear();

  SampleSource source;
  std::size_t channels;
  std::size_t up, down;                  // the rates' ratio in lowest terms
  std::size_t reach;                     // samples on either side that a sample is made of
  std::vector<float> taps;               // 2 reach for each place
  std::vector<std::vector<float>> past;  // by channel, oldest first
  std::size_t at = 0;                    // in the past, where what the next sample is made of begins
  std::size_t place = 0;                 // of the next sample between two old ones, 0..up - 1
};

}  // namespace unit::clean
