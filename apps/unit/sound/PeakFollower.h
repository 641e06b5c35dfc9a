// The peaks of a sound: up at once, held over the dips of its waves, then down at the release time.
#pragma once

#include <cmath>

namespace unit::sound {

class PeakFollower {
 public:
  static constexpr double HoldSeconds = 0.02;  // half a wave of 25 Hz

  // release: the time constant in seconds, the peak falls by 8.7 dB in it.
  void Configure(double release, double sampleRate) {
    hold = static_cast<unsigned>(HoldSeconds * sampleRate);
    decay = std::exp(-1 / (release * sampleRate));
  }

  void Reset() { peak = 0; }

  // The peak with this sample's magnitude, never below it.
  double Next(double magnitude) {
    constexpr double faintest = 1e-12;
    if (magnitude >= peak) {
      peak = magnitude;
      held = hold;
    } else if (held > 0) {
      --held;
    } else {
      peak = peak < faintest ? 0.0 : std::fmax(peak * decay, magnitude);
    }
    return peak;
  }

 private:
  double decay = 0;
  double peak = 0;
  unsigned hold = 0, held = 0;
};

}  // namespace unit::sound
