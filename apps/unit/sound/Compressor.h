// The limiter, compressor and expander of a stage.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace unit::sound {

// The parameter block.
struct CompressorWords {
  std::uint32_t attack = 0x7FFFFFFF;       // 2^31 over the time constant in samples at bandwidthHz a second
  std::uint32_t release = 0x7FFFFFFF;      // the same
  std::int16_t limitThreshold = 3840;      // 256 log2 of the amplitude, 32768 is full scale
  std::uint16_t compressionRatio = 32768;  // 32768 over the ratio
  std::int16_t compressionThreshold = 3840;
  std::uint16_t expansionRatio = 16;  // 16 is 1
};

CompressorWords CompressorWordsOf(std::span<const std::uint8_t, 16> block);

// Levels in dB are those of a sine's peak, 0 at full scale, and right from 100 Hz on; the least is -90.3 dB.
class Compressor {
 public:
  explicit Compressor(double rate);

  void Configure(const CompressorWords& words, double bandwidthHz);
  // Silence before the next sample.
  void Reset();
  void Process(std::span<const float> in, std::span<float> out);

  // As they stand, log2 of the amplitude, 32768 being full scale, 0..31.9, and log2 of the gain, -16..15.9.
  double Level() const { return level; }
  double Gain() const { return GainFor(level); }

 private:
  double GainFor(double inputLevel) const;
  float Peak(float newest);
  float Held(float peak);

  double sampleRate;
  double attack = 1.0, release = 1.0;  // parts of the way in a sample
  double limit = 15.0, compression = 15.0, compressionSlope = 1.0, expansionSlope = 1.0;
  double level = 0.0;
  std::array<float, 2> past{};  // the sample before, and the one before that
  // The greatest of the last samples: by pieces of the window, the present one first filled.
  std::array<float, 8> pieces{};
  std::size_t piece = 0, pieceFilled = 0, pieceSize;
};

}  // namespace unit::sound
