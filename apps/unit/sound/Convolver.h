// A filter of any length without delay: whole blocks by partitioned convolution, pieces of a block and short
// filters directly. G. Garcia, "Optimal filter partition for efficient convolution with short input/output
// delay", 2002.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "unit/sound/Blocks.h"
#include "unit/sound/FrameTransform.h"

namespace unit::sound {

class Convolver {
 public:
  // mostTaps: what SetTaps is given more than this is left out. Starts with the tap 1.
  explicit Convolver(std::size_t mostTaps);

  // y[n] = the sum of taps[k] x[n - k]; the new filter fades in over BlockFrames samples from the next one
  // on. It finds what has come in before. Taps that are set while another filter fades in wait for that.
  void SetTaps(std::span<const float> taps);

  // Silence before the next sample, and no fade under way.
  void Reset();

  // Quickest with blocks of BlockFrames. However the samples are cut, the result differs by rounding at most.
  void Process(std::span<const float> in, std::span<float> out);

 private:
  struct Filter {
    std::vector<float> head;             // the first taps, the last of them first
    std::vector<FrameSpectrum> spectra;  // of BlockFrames taps each, those of the head too
    std::size_t partitions = 0;          // 0: the head is all
    bool tailKnown = false;
    std::array<float, BlockFrames> tail{};  // what comes from behind the head in the present block
  };

  void Load(Filter& filter, std::span<const float> taps);
  void FindSpectra();
  void Sum(const Filter& filter, std::size_t firstPartition, std::span<float, BlockFrames> out);
  void Run(Filter& filter, std::size_t at, std::span<float> out);
  void Fade(std::size_t at, std::span<float> out);
  void EndFade();
  void Whole(std::span<const float> in, std::span<float> out);
  void Piece(std::span<const float> in, std::span<float> out);
  void TakeIn(std::span<const float> in);
  void Transform(std::size_t blocksAgo);
  void EndBlock();

  FrameTransform transform;
  std::size_t tapLimit;
  std::array<Filter, 3> filters;  // by the three indexes below
  std::size_t now = 0, next = 1, waiting = 2;
  bool fading = false, kept = false;  // kept: a filter waits
  std::size_t faded = 0;              // samples
  std::vector<float> signal;          // the past, and the present block at the end
  std::size_t filled = 0;             // samples of the present block
  std::vector<FrameSpectrum> past;    // of the signal's blocks, a ring
  std::size_t present = 0;            // where that of the present block goes
  bool pastKnown = false;
  FrameSpectrum sum;
  std::array<float, BlockFrames> incoming{};
};

}  // namespace unit::sound
