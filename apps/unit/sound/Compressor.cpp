#include "unit/sound/Compressor.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/Samples.h"

namespace unit::sound {
namespace {

constexpr double WindowSeconds = 0.005;  // half a period of the lowest tone that is held without ripple
constexpr double FullScale = 32768.0;
constexpr double Most = 31.9, MostGain = 15.9, LeastGain = -16.0;  // log2, as the status words can tell
constexpr double LevelUnit = 256.0, SlopeUnity = 32768.0, ExpansionUnity = 16.0;

std::uint32_t Long(std::span<const std::uint8_t> bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

std::uint16_t Short(std::span<const std::uint8_t> bytes) {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

// In a sample, of the way that takes a time constant of 2^31 / word samples at bandwidthHz a second.
double Part(std::uint32_t word, double bandwidthHz, double sampleRate) {
  return 1.0 - std::exp(-(word / 2147483648.0) * bandwidthHz / sampleRate);
}

}  // namespace

CompressorWords CompressorWordsOf(std::span<const std::uint8_t, 16> block) {
  return {.attack = Long(block.subspan(0)),
          .release = Long(block.subspan(4)),
          .limitThreshold = static_cast<std::int16_t>(Short(block.subspan(8))),
          .compressionRatio = Short(block.subspan(10)),
          .compressionThreshold = static_cast<std::int16_t>(Short(block.subspan(12))),
          .expansionRatio = Short(block.subspan(14))};
}

Compressor::Compressor(double rate)
    : sampleRate(rate),
      pieceSize(static_cast<std::size_t>(
          std::ceil(WindowSeconds * rate / static_cast<double>(pieces.size() - 1)))) {}

void Compressor::Configure(const CompressorWords& words, double bandwidthHz) {
  attack = Part(words.attack, bandwidthHz, sampleRate);
  release = Part(words.release, bandwidthHz, sampleRate);
  limit = words.limitThreshold / LevelUnit;
  compression = std::min(words.compressionThreshold / LevelUnit, limit);
  compressionSlope = words.compressionRatio / SlopeUnity;
  expansionSlope = words.expansionRatio / ExpansionUnity;
}

void Compressor::Reset() {
  level = 0.0;
  past = {};
  pieces = {};
  piece = pieceFilled = 0;
}

void Compressor::Process(std::span<const float> in, std::span<float> out) {
  for (std::size_t i = 0; i < in.size(); ++i) {
    const float x = Tame(in[i]);
    const double amplitude = std::max(1.0, FullScale * static_cast<double>(Held(Peak(x))));
    const double target = std::min(std::log2(amplitude), Most);
    level += (target > level ? attack : release) * (target - level);
    out[i] = x * static_cast<float>(std::exp2(GainFor(level)));
  }
}

// Expansion below the compression threshold, compression up to the limit, which is where the output then
// stays.
double Compressor::GainFor(double inputLevel) const {
  const double knee = limit + (compression - limit) * compressionSlope;
  double output = limit;
  if (inputLevel < compression) {
    output = knee + (inputLevel - compression) * expansionSlope;
  } else if (inputLevel < limit) {
    output = limit + (inputLevel - limit) * compressionSlope;
  }
  return std::clamp(output - inputLevel, LeastGain, MostGain);
}

// The amplitude of the sine through the last three samples when the middle one is at a top, else 0. Up to
// half of the rate it is right to the last bit, where samples alone would miss the tops; of any sound it is 3
// dB more than the sample at most.
float Compressor::Peak(float newest) {
  const float before = past[1];
  const float top = past[0];
  past = {newest, top};
  const float size = std::abs(top);
  if (size < std::abs(newest) || size < std::abs(before) || size == 0.0F) return 0.0F;
  const float cosine = (before + newest) / 2.0F / size;
  const float sine = (newest - before) / 2.0F / size;
  const float square = 1.0F - cosine * cosine;
  return square > 1.0e-6F ? size * std::sqrt(1.0F + sine * sine / square) : size;
}

float Compressor::Held(float peak) {
  if (pieceFilled == pieceSize) {
    piece = (piece + 1) % pieces.size();
    pieces[piece] = 0.0F;
    pieceFilled = 0;
  }
  ++pieceFilled;
  pieces[piece] = std::max(pieces[piece], peak);
  return *std::ranges::max_element(pieces);
}

}  // namespace unit::sound
