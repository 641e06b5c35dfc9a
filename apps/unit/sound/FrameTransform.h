// The spectra that fast convolution works with.
#pragma once

#include <cstddef>
#include <span>

#include "unit/sound/Blocks.h"
#include "unit/sound/Kernels.h"

namespace unit::sound {

inline constexpr std::size_t TransformSpan = 2 * BlockFrames;  // samples of a frame

// The transform of TransformSpan real samples at the odd multiples of half a bin, every other of them. The
// product of two is that of a convolution that comes round with its sign turned, which overlap-save throws
// away; and a complex transform of BlockFrames points gives it. H. J. Nussbaumer, "Fast Fourier Transform and
// Convolution Algorithms", 1982.
struct alignas(64) FrameSpectrum {
  Points re{}, im{};
};

class FrameTransform {
 public:
  FrameTransform();

  void Forward(std::span<const float, TransformSpan> signal, FrameSpectrum& spectrum) const;
  // The second half of the frame.
  void Inverse(const FrameSpectrum& spectrum, std::span<float, BlockFrames> signal) const;

 private:
  Turns frame;  // by a quarter of the circle over all points
  Turns inner;
};

}  // namespace unit::sound
