// Filters as plainly as they can be written well, compiled for the machine that builds them: what the unit's
// own are measured against.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace bench {

// Overlap-save with FFTW: y[n] = the sum of taps[k] x[n - k], a block later than the unit's.
// A. V. Oppenheim, R. W. Schafer, "Discrete-Time Signal Processing", section 8.7.
class OverlapSave {
 public:
  // points: of the transform, more than the taps.
  OverlapSave(std::span<const float> taps, std::size_t points);
  OverlapSave(OverlapSave&&) noexcept;
  OverlapSave& operator=(OverlapSave&&) noexcept;
  ~OverlapSave();

  // Samples that Process takes.
  std::size_t Block() const { return block; }
  // Block() samples, in place.
  void Process(std::span<float> sound);

 private:
  struct Plan;

  std::size_t block;
  std::unique_ptr<Plan> plan;
};

// Normalised LMS that predicts a sound from what it was `predictionSpan` samples ago: one pass over the taps
// a sample, which brings in the last error and sums the next prediction.
class FusedPredictor {
 public:
  FusedPredictor(std::size_t taps, std::size_t predictionSpan, float stepSize);

  // What the prediction leaves, in place.
  void Process(std::span<float> sound);

 private:
  float Next(float sample);

  std::vector<float> weights;  // the oldest sample's first
  std::vector<float> past;
  std::size_t span, end;
  float step, energy = 0.0F, pendingChange = 0.0F;
};

}  // namespace bench
