// The noise in a spectrum, found under the sound that comes and goes above it.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "unit/sound/NoiseFrame.h"

namespace unit::sound {

struct NoiseFloorSettings {
  float averaging = 0.97F;    // of the spectrum, 0..1: what the last average counts in the next one
  float noiseAveraging = 0;   // of the estimate, 0..1, likewise
  float compensation = 0.7F;  // 0..1: the estimate is raised by its inverse
  std::size_t buffers = 24;   // 1..100 whose least average is looked for
};

// Minimum statistics (R. Martin, IEEE Transactions on Speech and Audio Processing 9, 2001), in a simple form:
// the power of each line is averaged, and the least average of the last buffers, which a pause between two
// words has left, is the noise once it is raised to what its mean must be. The average falls faster than it
// rises, but no further than the noise.
class NoiseFloor {
 public:
  static constexpr std::size_t Lines = NoiseFrame::Lines;
  static constexpr std::size_t MostBuffers = 100;
  static constexpr std::size_t FramesPerBuffer = 8;
  using Spectrum = std::array<float, Lines>;

  // Values out of range are bounded. What was found stays.
  void Configure(const NoiseFloorSettings& wanted);
  void Reset();

  // The powers of the next frame.
  void Take(const Spectrum& power);
  // The power of the noise, 0 before the first frame.
  const Spectrum& Noise() const { return noise; }

 private:
  void Average(const Spectrum& power);
  void CloseBuffer();
  void FindLeast();

  NoiseFloorSettings settings;
  float leastOfMean = 1;                        // the least average of a steady noise as a part of its mean
  std::array<Spectrum, MostBuffers> buffers{};  // the least averages of the buffers closed, in a ring
  std::size_t closed = 0;                       // buffers, since the reset
  std::size_t frames = 0;                       // since the reset, no further than it matters
  std::size_t framesInBuffer = 0;
  Spectrum average{}, open{}, least{}, noise{};  // open: of the present buffer; least: of the closed ones
};

}  // namespace unit::sound
