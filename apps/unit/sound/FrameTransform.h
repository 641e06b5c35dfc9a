// The spectra that fast convolution works with, of four overlapping frames at once.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>

#include "unit/sound/Blocks.h"

namespace unit::sound {

inline constexpr std::size_t BlockSpectra = 4;                       // frames of a block
inline constexpr std::size_t FrameHop = BlockFrames / BlockSpectra;  // samples from frame to frame
inline constexpr std::size_t TransformSpan =
    BlockFrames + FrameHop;  // samples that the frames of a block cover

// The transform of 2 FrameHop real samples at the odd multiples of half a bin, every other of them. The
// product of two is that of a convolution that comes round with its sign turned, which overlap-save throws
// away; and a complex transform of FrameHop points gives it. H. J. Nussbaumer, "Fast Fourier Transform and
// Convolution Algorithms", 1982.
struct FrameSpectrum {
  std::array<float, FrameHop> re{}, im{};
};

class FrameTransform {
 public:
  FrameTransform();
  FrameTransform(FrameTransform&&) noexcept;
  FrameTransform& operator=(FrameTransform&&) noexcept;
  ~FrameTransform();

  // Frame i covers the samples i FrameHop to (i + 2) FrameHop - 1.
  void Forward(std::span<const float, TransformSpan> signal, std::span<FrameSpectrum, BlockSpectra> spectra);
  // The second halves of the frames, side by side.
  void Inverse(std::span<const FrameSpectrum, BlockSpectra> spectra, std::span<float, BlockFrames> signal);

 private:
  struct Plan;
  std::unique_ptr<Plan> plan_;
};

}  // namespace unit::sound
