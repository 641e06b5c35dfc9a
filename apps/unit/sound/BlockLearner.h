// How the taps of an adaptive filter are learned, a block at a time.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "unit/sound/FrameTransform.h"
#include "unit/sound/Kernels.h"

namespace unit::sound {

// What a block is learned with.
struct Lesson {
  double rate = 0;  // how fast the way from the reference to the input is taken to change: part of its power
                    // a block
  double least = 1e-4;  // power that the taps are taken to have in this
  double gain = 1;      // of each step, 0..1
  double share = 1;     // of the block's samples that may be learned from; the error is 0 in the others
};

// Taps from 0 to the latest lag, of a reference that is heard in frames of the last TransformSpan samples.
// They are learned by a Kalman filter whose lines of frequency and partitions of BlockFrames taps are taken
// to be independent: each knows how uncertain it is, and what else there is in the input, speech in
// particular, is weighed line by line as it comes and goes. So the taps are learned in its gaps and rest
// while it is loud, and a coloured reference is learned as fast as a white one. G. Enzner, P. Vary,
// "Frequency-domain adaptive Kalman filter for acoustic echo control in hands-free telephones", Signal
// Processing 86, 2006; F. Kuech, E. Mabande, G. Enzner, "State-space architecture of the
// partitioned-block-based acoustic echo controller", ICASSP 2014.
class BlockLearner {
 public:
  // mostTaps: memory is kept for so many.
  explicit BlockLearner(std::size_t mostTaps);

  // The taps begin at 0 where their number changes.
  void Resize(std::size_t taps);
  std::size_t Size() const { return size; }
  std::size_t Partitions() const { return (size + BlockFrames - 1) / BlockFrames; }
  // All taps are 0, and nothing is known.
  void Clear();

  // Of lag 0 first.
  std::span<const float> Taps() const { return std::span(taps).first(size); }
  // As many as there are given, the rest is 0. Where one is not 0 they are taken to be about right.
  void SetTaps(std::span<const float> wanted);

  // Takes over the taps of another one of the same size, and what is known of them.
  void Follow(const BlockLearner& leader);

  // The next frame of the reference; the one before it becomes that of the next partition.
  void Hear(std::span<const float, TransformSpan> frame);
  // The same of a partition, all of which are heard anew.
  void HearAgain(std::size_t partition, std::span<const float, TransformSpan> frame);

  // What the taps make of the second half of the frame heard last.
  void Predict(std::span<float, BlockFrames> prediction);
  // What was to be predicted, and what the prediction has left of it.
  void Learn(std::span<const float, BlockFrames> input, std::span<const float, BlockFrames> error,
             const Lesson& lesson);

 private:
  struct Partition {
    FrameSpectrum taps, sound;
    alignas(64) Points variance{};  // of what the taps' spectrum is off by
  };

  FrameSpectrum& Sound(std::size_t partition) { return partitions[(newest + partition) % count].sound; }
  std::span<float, BlockFrames> Piece(std::size_t partition) {
    return std::span(taps).subspan(partition * BlockFrames).first<BlockFrames>();
  }
  void FindRates(const Lesson& lesson);
  void FindScale(const Lesson& lesson);
  void Move(std::size_t partition, float certainty);
  void Load(std::size_t partition);

  FrameTransform transform;
  std::size_t size = 0, count = 1;
  AlignedFloats taps;  // in whole partitions
  std::vector<Partition> partitions;
  std::size_t newest = 0;  // where the frame heard last stands
  FrameSpectrum sum, right, wrong, step;
  alignas(64) Points other{};            // power of what is no copy of the reference
  alignas(64) Points before{}, after{};  // mean powers of the input and of the error
  alignas(64) Points rates{};            // of change, by line
  alignas(64) Points scale{};            // of a step, by line
};

}  // namespace unit::sound
