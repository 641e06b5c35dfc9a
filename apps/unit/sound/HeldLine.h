// What the delay line of the one-channel adaptive filter is given.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "unit/sound/FrameTransform.h"

namespace unit::sound {

// A predictor takes out what is regular, and with it whatever else lies as near to it in frequency as its
// taps are long; and all that went into its line comes back as an echo. So where a line of the spectrum has
// proved to be predicted well, its delay line gets the prediction, and of what that misses a part that is the
// smaller the more there is of it: speech passes by, while the regular sound stays in the line, in step with
// the input. That makes the filter recursive, and its notches as narrow as the hum is steady (J. R.
// Treichler, "Transient and convergent behavior of the adaptive line enhancer", IEEE Transactions on
// Acoustics, Speech, and Signal Processing 27, 1979, for the line without it; N. Cho, C. Choi, S. Lee,
// "Adaptive line enhancement by using an IIR lattice notch filter", the same 37, 1989, for the narrow notch).
class HeldLine {
 public:
  static constexpr std::size_t Latency = BlockFrames;  // samples, until the line's sound is what it stays

  // sampleRate in Hz.
  explicit HeldLine(double sampleRate);
  // Begins anew.
  void SetRate(double sampleRate);
  void Reset();

  // The prediction of a block of the input, and what that has left of it. last gets the line's sound of the
  // block before this one.
  void Process(std::span<const float, BlockFrames> prediction, std::span<const float, BlockFrames> error,
               std::span<float, BlockFrames> last);

 private:
  static constexpr std::size_t Spells = 8;  // of which the best counts
  using Frame = std::array<float, TransformSpan>;

  void Take(Frame& frame, std::span<const float, BlockFrames> block, FrameSpectrum& spectrum) const;
  void FindShares();
  void EndSpell();

  FrameTransform transform;
  Frame window;
  std::size_t spellBlocks = 1, blocks = 0, spell = 0;
  Frame predicted{}, missed{};  // the last two blocks
  FrameSpectrum wrong, right;
  Points regular{};                    // mean power of the prediction
  Points before{}, after{};            // mean powers of the input and of what is missed
  std::array<Points, Spells> least{};  // least part that was missed, in each of the last spells
  Points best{};                       // of all but the present spell
  Points share{};                      // of what is missed that goes into the line
  std::array<float, BlockFrames> tail{};
};

}  // namespace unit::sound
