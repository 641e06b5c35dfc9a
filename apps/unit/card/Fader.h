// The edges of a gap in the sound, without clicks.
#pragma once

#include <algorithm>
#include <cmath>

#include "unit/card/Ring.h"

namespace unit::sound {

// The last sample fades into the gap, and what comes behind the gap fades in.
class Fader {
 public:
  StereoFrame Next(const StereoFrame& frame) {
    if (gain < 1) gain = std::min(gain + In, 1.0F);
    return last = Scaled(frame, gain);
  }
  StereoFrame NextOfGap() {
    gain = 0;
    const bool audible = std::abs(last[0]) + std::abs(last[1]) > Inaudible;
    return last = audible ? Scaled(last, Out) : StereoFrame{};
  }

 private:
  static constexpr float In = 1.0F / 64;  // a frame: 1.3 ms at 48 kHz
  static constexpr float Out = 0.95F;     // a frame: 60 dB in 2.8 ms at 48 kHz
  static constexpr float Inaudible = 1.0e-5F;
  static StereoFrame Scaled(const StereoFrame& frame, float by) { return {frame[0] * by, frame[1] * by}; }

  float gain = 0;
  StereoFrame last{};
};

}  // namespace unit::sound
