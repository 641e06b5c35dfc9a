// The peaks of a sound: up at once, held over the dips of its waves, then down at the release time.
#pragma once

#include <cmath>

namespace unit::sound {

class PeakFollower {
 public:
  static constexpr double HoldSeconds = 0.02;  // half a wave of 25 Hz

  // release: the time constant in seconds, the peak falls by 8.7 dB in it.
  void Configure(double release, double sampleRate) {
    hold_ = static_cast<unsigned>(HoldSeconds * sampleRate);
    decay_ = std::exp(-1 / (release * sampleRate));
  }

  void Reset() { peak_ = 0; }

  // The peak with this sample's magnitude, never below it.
  double Next(double magnitude) {
    constexpr double faintest = 1e-12;
    if (magnitude >= peak_) {
      peak_ = magnitude;
      held_ = hold_;
    } else if (held_ > 0) {
      --held_;
    } else {
      peak_ = peak_ < faintest ? 0.0 : std::fmax(peak_ * decay_, magnitude);
    }
    return peak_;
  }

 private:
  double decay_ = 0;
  double peak_ = 0;
  unsigned hold_ = 0, held_ = 0;
};

}  // namespace unit::sound
