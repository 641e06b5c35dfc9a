// The adaptive filters: the one-channel filter, which predicts what is regular in a sound, and the reference
// canceller, which finds in one sound what another one carries.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "unit/sound/BlockLearner.h"
#include "unit/sound/Blocks.h"
#include "unit/sound/HeldLine.h"
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
  bool predictor = false;  // the one-channel filter: its reference is its input
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

  // Room for count samples more, at most Slack, to be written at once.
  std::span<float> Push(std::size_t count);
  void Reset();
  // size samples, oldest first, the newest of them delay samples ago; delay + size is at most the reach.
  std::span<const float> Window(std::size_t delay, std::size_t size) const {
    return std::span(samples).subspan(end - delay - size, size);
  }
  // The same, to be changed.
  std::span<float> Held(std::size_t delay, std::size_t size) {
    return std::span(samples).subspan(end - delay - size, size);
  }

 private:
  static constexpr std::size_t Slack = 32768;  // so many samples go by before the rest is moved

  std::size_t reach;
  std::vector<float> samples;
  std::size_t end;
};

// A transversal filter that learns, block by block, as BlockLearner says: its reference, through the taps, is
// the prediction; what the prediction leaves of the input drives the taps. There is no delay. Of the rate m,
// the taps are taken to change by the part m / 163840 of their power a block, and a step is m / (m + 4) of
// the best one, so every rate is stable: a low one learns slowly and finely, a high one follows quickly and
// coarsely. Without normalisation both are less for a reference below -20 dB (RMS, below full scale), in
// proportion to its power. What goes into the line of the one-channel filter is told by HeldLine; where its
// delay is shorter than that needs, it is the input.
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
  std::size_t Taps() const { return learner.Size(); }

  // The taps as numbers of 24 bits, -2^23..2^23-1, of which 2^23 is 1.0, the latest sample's first. What is
  // longer than the filter gets zeros.
  void Coefficients(std::span<std::int32_t> out) const;
  // The taps again; those beyond the given ones become 0.
  void SetCoefficients(std::span<const std::int32_t> coefficients);

 private:
  struct Level {
    double meanSquare = 0;
    void Take(float sample, double weight);
  };
  using BlockOf = std::array<float, BlockFrames>;

  void ProcessPiece(std::size_t count);
  void Predict(std::size_t count);
  void Hear();
  void Judge(std::size_t count);
  void Learn();
  void Scout(const Lesson& lesson);
  bool Holds() const;
  bool MayAdapt() const;

  AdaptiveSettings settings;
  std::size_t inputDelay = 0, referenceDelay = 0;
  double sampleRate = 12000;
  double levelWeight = 0;  // of a sample in the short-time levels

  SampleHistory inputs, references;
  BlockLearner learner, scout;
  double learnerLeft = 0, scoutLeft = 0;  // mean squares of what the two leave of the input
  HeldLine line;
  AlignedFloats taps;                       // the oldest sample's first, as the learner has them
  bool tapsKnown = false;                   // taps are the learner's
  bool heard = false;                       // the learner has this block's frame
  bool framesKnown = false;                 // and those before it
  BlockOf prediction{}, error{};            // of the present piece
  BlockOf blockPrediction{}, blockError{};  // of the block so far
  std::array<bool, BlockFrames> taught{};   // whether a sample is learned from
  BlockOf taughtInput{}, taughtError{};     // 0 where it is not learned from
  std::size_t filled = 0, lessons = 0;      // samples of the present block, and those to be learned from
  Level inputLevel, outputLevel, referenceLevel;
  bool adapting = false;
};

}  // namespace unit::sound
