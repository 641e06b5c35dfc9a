// The adaptive filters: the one-channel filter, which predicts what is regular in a sound, and the reference
// canceller, which finds in one sound what another one carries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "unit/sound/Kernels.h"

namespace unit::sound {

inline constexpr std::size_t AdaptiveTaps = 6144;    // the most: six stages of 1024
inline constexpr std::size_t AdaptiveDelay = 32768;  // samples, the most

enum class DelayedChannel { Input, Reference };

// When a filter may adapt, as the nibbles of registers 64 and 65 have it; those above are Always.
enum class AdaptCondition : std::uint8_t {
  Always,
  InputAbove,
  InputBelow,
  OutputAbove,
  OutputBelow,
  ReferenceAbove,
  ReferenceBelow
};

struct AdaptiveSettings {
  std::size_t taps = 4;    // 1..6144
  std::uint16_t span = 0;  // 0..32767, the prediction span or delay less one sample
  DelayedChannel delayed = DelayedChannel::Reference;
  std::uint16_t rate = 0;  // 0..2047; 0 freezes the filter
  bool normalize = false;
  AdaptCondition condition = AdaptCondition::Always;
  std::uint16_t threshold = 0;  // of the condition's level; 32767 is a tone of full scale
  double sampleRate = 12000;    // Hz
  bool operator==(const AdaptiveSettings&) const = default;
};

// The operator's rate, 1..5884 in units of 2^-14, from its word: fine steps at small rates.
unsigned RateOfWord(std::uint16_t word);

// The samples that went by, with the last ones in one piece.
class SampleHistory {
 public:
  explicit SampleHistory(std::size_t longest) : reach(longest), samples(longest + Slack), end(longest) {}

  void Push(float sample);
  void Reset();
  // The sample delay samples ago, 0 being the last one; delay is less than the reach.
  float Ago(std::size_t delay) const { return samples[end - 1 - delay]; }
  // size samples, oldest first, the newest of them delay samples ago; delay + size is at most the reach.
  std::span<const float> Window(std::size_t delay, std::size_t size) const {
    return std::span(samples).subspan(end - delay - size, size);
  }

 private:
  static constexpr std::size_t Slack = 32768;  // so many samples go by before the rest is moved

  std::size_t reach;
  std::vector<float> samples;
  std::size_t end;
};

// A transversal filter that learns by the normalised LMS law (Haykin, Adaptive Filter Theory, chapter 6): its
// reference, through the taps, is the prediction; what the prediction leaves of the input drives the taps. Of
// the rate m the step is m / (m + 1024), so every rate is stable and the reference's level does not matter.
// Without normalisation the step is that of a reference of -20 dB (RMS, below full scale) whatever the level
// is: louder sounds are learned faster, in proportion to their power, up to the step 1.
class AdaptiveFilter {
 public:
  static constexpr double LevelSeconds = 0.02;  // time constant of the short-time levels

  AdaptiveFilter();

  // Values out of range are bounded. The sound goes on; the taps stay unless their number changed.
  void Configure(const AdaptiveSettings& wanted);
  void Clear();  // the taps
  void Reset();  // the taps and the sound

  // Any number of samples. For the one-channel filter the reference is the input. Of the outputs, one gets
  // the input less the prediction, the other the prediction; either may be empty or the same as an input.
  void Process(std::span<const float> input, std::span<const float> reference, std::span<float> normal,
               std::span<float> rejected);

  // Whether the last sample was learned from.
  bool Adapting() const { return adapting; }
  std::size_t Taps() const { return weights.size(); }

  // The taps as numbers of 24 bits, -2^23..2^23-1, of which 2^23 is 1.0, the latest sample's first. What is
  // longer than the filter gets zeros.
  void Coefficients(std::span<std::int32_t> out) const;
  // The taps again; those beyond the given ones become 0.
  void SetCoefficients(std::span<const std::int32_t> coefficients);

 private:
  struct Outputs {
    float normal, rejected;
  };
  struct Level {
    double meanSquare = 0;
    void Take(float sample, double weight);
  };

  Outputs Next(float input, float reference);
  void TrackEnergy(std::span<const float> window, float leaving);
  bool MayAdapt() const;
  float Predict(std::span<const float> window);
  void Adapt(float error);
  void BringIn(std::span<const float> window);
  void BoundWeights();

  AdaptiveSettings settings;
  std::size_t inputDelay = 0, referenceDelay = 0;
  double step = 0;         // of the normalised law, 0..1
  double levelWeight = 0;  // of a sample in the short-time levels

  SampleHistory inputs, references;
  AlignedFloats weights;       // the oldest sample's first
  float pendingChange = 0;     // what the last sample has taught, times its window: not in the taps yet
  double energy = 0;           // of the samples under the taps
  std::size_t untilExact = 0;  // samples until the energy is summed anew
  std::size_t nextBounded = 0;
  Level inputLevel, outputLevel, referenceLevel;
  bool adapting = false;
};

}  // namespace unit::sound
