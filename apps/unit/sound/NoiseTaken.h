// How much of a steady noise the gains of a broadband stage take, found on a noise of its own.
#pragma once

#include <cstddef>
#include <span>

#include <kissfft/kiss_fftr.h>

#include "unit/sound/NoiseFloor.h"
#include "unit/sound/NoiseFrame.h"
#include "unit/sound/NoiseGains.h"

namespace unit::sound {

// Of 1 - G, with G the gain of a line, over the power of the noise: the mean, and the mean of its square.
struct NoiseTaken {
  double mean = 1, square = 1;

  // The x with which a line that keeps 1 - x (1 - G) of itself leaves so much (0..1) of the noise's
  // amplitude; 1 where that is less than G alone leaves.
  float ShareFor(double left) const;
};

// With these settings, once all buffers are full of noise. The transform is one of NoiseFrame::Size real
// samples under the window. It takes as long as a second or two of sound.
NoiseTaken TakenOfNoise(const NoiseFloorSettings& floor, const NoiseGainSettings& gains,
                        std::span<const float, NoiseFrame::Size> window, kiss_fftr_cfg transform);

}  // namespace unit::sound
