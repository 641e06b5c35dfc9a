// A broadband stage: broadband noise is taken out of a sound in its spectrum, in every band as far as the
// host asks for.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include <kissfft/kiss_fftr.h>

#include "unit/sound/BroadbandGrid.h"
#include "unit/sound/NoiseFloor.h"
#include "unit/sound/NoiseFrame.h"
#include "unit/sound/NoiseGains.h"
#include "unit/sound/NoiseTaken.h"

namespace unit::sound {

// The record that opens a broadband block, by the operator's names for its fields.
struct BroadbandRecord {
  std::int32_t mode = 0;         // 0 smooths the signal-to-noise ratio, 1 the spectrum, others nothing
  std::int32_t buffers = 24;     // "Minimization Buffers", 1..100
  float signalAveraging = 0;     // "Signal Averaging Value", 0..1
  float averageSpectrum = 0;     // "Average Spectrum Value", 0..1
  float noiseAverage = 0;        // "Noise Average Value", 0..1
  float noiseEstimation = 0.7F;  // "Noise Estimation Compensation", 0..1
  float subtractionFloor = 0;    // "Noise Subtraction Floor", 0..1, of the power
};

// What the unit works with before a record comes, the same times at every rate: 24 buffers and 0.97 at 12
// kHz.
BroadbandRecord UsualRecord(double sampleRate);

// A sound is cut into frames of 512 samples, 128 apart, under a root of a Hann window, and put together
// again. A line of the spectrum keeps 1 - x (1 - G) of itself: G is the gain for the noise that was found
// (NoiseGains). x is such that a steady noise falls to 1 - a v, with v the value of the block that serves
// the line (0..1, the reduction that the host asks for) and a the stage's attenuation; 1 where that is
// further than the gains go. What leaves has the stage's gain.
class Broadband {
 public:
  static constexpr std::size_t FrameSize = NoiseFrame::Size;
  static constexpr std::size_t Hop = NoiseFrame::Hop;
  static constexpr std::size_t LatencySamples = FrameSize;
  static constexpr std::size_t PieceSize = 48;  // bytes
  static constexpr unsigned PieceCount = 12;    // the record, then twelve values a piece
  static constexpr std::uint16_t UnityGain = 16;

  // No line is reduced before its piece comes.
  explicit Broadband(double rate);

  // rate in Hz. Record, values and words stay; the noise is to be found anew.
  void Configure(double rate);
  // piece: 0..11; bytes: 48. A field of the record that is out of its range, as all are in the record that
  // switches smoothing off, is as the usual record has it; a value is bounded to 0..1.
  void TakePiece(unsigned piece, std::span<const std::uint8_t> bytes);
  // 0..32767: the part of the noise that is taken out, of 32768.
  void SetAttenuation(std::uint16_t word);
  void SetGain(std::uint16_t word) { gain = static_cast<float>(word) / UnityGain; }
  // Finds the noise anew; the sound goes on.
  void Forget();
  void Reset();

  // Any number of samples; in and out may be the same.
  void Process(std::span<const float> in, std::span<float> out);

 private:
  static constexpr std::size_t Lines = NoiseFloor::Lines;
  struct FreeTransform {
    void operator()(kiss_fftr_cfg transform) const { kiss_fftr_free(transform); }
  };
  using Transform = std::unique_ptr<kiss_fftr_state, FreeTransform>;

  void TakeRecord(std::span<const std::uint8_t> bytes);
  void UseRecord();
  void ProcessFrame();
  NoiseFloorSettings FloorSettings() const;
  NoiseGainSettings GainSettings() const;
  void FindShares();
  void ReduceNoise();

  Transform forward, inverse;
  std::array<float, FrameSize> window{};
  double sampleRate;
  BroadbandRecord sent;    // as it came
  BroadbandRecord record;  // with the usual fields in the place of those out of range
  std::array<float, BroadbandValues> values{};
  std::array<std::uint8_t, NoiseFloor::Lines> valueOf;  // by line
  float attenuation = 1, gain = 1;
  std::array<float, NoiseFloor::Lines> shares{};  // x
  bool sharesKnown = false;
  std::optional<NoiseTaken> taken;  // by the gains as they are set, once it is asked for

  NoiseFloor noise;
  NoiseGains gains;
  std::size_t framesPartial = 0;  // since the reset, with silence before the sound in them
  NoiseFloor::Spectrum power{};   // of the frame
  std::array<kiss_fft_cpx, Lines> spectrum{};
  std::array<float, FrameSize> heard{};    // the last samples, oldest first
  std::array<float, FrameSize> overlap{};  // what frames add up to; the first hop is complete
  std::array<float, FrameSize> frame{};
  std::size_t inHop = 0;
};

}  // namespace unit::sound
