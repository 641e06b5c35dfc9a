// The transforms of a broadband stage, its record and its gains.
#include "unit/sound/Broadband.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

#include "unit/sound/Samples.h"

namespace unit::sound {
namespace {

constexpr std::int32_t MostBuffers = NoiseFloor::MostBuffers;
constexpr float FaintestPower = 1e-12F;  // a line of silence

std::uint32_t Word(std::span<const std::uint8_t> bytes, std::size_t place) {
  std::uint32_t word = 0;
  for (std::size_t i = sizeof word; i-- > 0;) word = (word << 8) | bytes[place + i];
  return word;
}

float Float(std::span<const std::uint8_t> bytes, std::size_t place) {
  return std::bit_cast<float>(Word(bytes, place));
}

// False for what is no number, too.
bool IsFraction(float value) { return value >= 0 && value <= 1; }

float FractionOr(float value, float otherwise) { return IsFraction(value) ? value : otherwise; }

NoiseSmoothing SmoothingOf(std::int32_t mode) {
  if (mode == 0) return NoiseSmoothing::Ratio;
  return mode == 1 ? NoiseSmoothing::Spectrum : NoiseSmoothing::None;
}

}  // namespace

BroadbandRecord UsualRecord(double sampleRate) {
  constexpr double referenceRate = 12000;
  const auto averaging = static_cast<float>(std::pow(0.97, referenceRate / sampleRate));
  return {.mode = 0,
          .buffers = static_cast<std::int32_t>(
              std::clamp(std::nearbyint(24 * sampleRate / referenceRate), 1.0, 100.0)),
          .signalAveraging = averaging,
          .averageSpectrum = averaging,
          .noiseAverage = 0,
          .noiseEstimation = 0.7F,
          .subtractionFloor = 0.00001F};
}

Broadband::Broadband(double sampleRate)
    : forward_(kiss_fftr_alloc(FrameSize, 0, nullptr, nullptr)),
      inverse_(kiss_fftr_alloc(FrameSize, 1, nullptr, nullptr)),
      sampleRate_(sampleRate),
      sent_(UsualRecord(sampleRate)) {
  // The squares of four windows, 64 apart, add up to 2; the transforms to 256.
  for (std::size_t i = 0; i < FrameSize; ++i) {
    window_[i] = static_cast<float>(std::sin(std::numbers::pi * static_cast<double>(i) / FrameSize));
  }
  UseRecord();
  Reset();
}

void Broadband::Configure(double sampleRate) {
  sampleRate_ = sampleRate;
  UseRecord();
  Forget();
}

void Broadband::TakePiece(unsigned piece, std::span<const std::uint8_t> bytes) {
  constexpr std::size_t bandsPerPiece = PieceSize / sizeof(float);
  if (piece >= PieceCount || bytes.size() < PieceSize) return;
  if (piece == 0) {
    TakeRecord(bytes);
    return;
  }
  for (std::size_t i = 0; i < bandsPerPiece; ++i) {
    const float value = Float(bytes, i * sizeof(float));
    bands_[(piece - 1) * bandsPerPiece + i] = std::isnan(value) ? 0.0F : std::clamp(value, 0.0F, 1.0F);
  }
}

void Broadband::TakeRecord(std::span<const std::uint8_t> bytes) {
  sent_ = {.mode = static_cast<std::int32_t>(Word(bytes, 0)),
           .buffers = static_cast<std::int32_t>(Word(bytes, 4)),
           .signalAveraging = Float(bytes, 8),
           .averageSpectrum = Float(bytes, 12),
           .noiseAverage = Float(bytes, 16),
           .noiseEstimation = Float(bytes, 20),
           .subtractionFloor = Float(bytes, 24)};
  UseRecord();
}

void Broadband::UseRecord() {
  const BroadbandRecord usual = UsualRecord(sampleRate_);
  const bool known = sent_.buffers >= 0 && sent_.buffers <= MostBuffers;
  record_ = {.mode = sent_.mode,
             .buffers = known ? sent_.buffers : usual.buffers,
             .signalAveraging = FractionOr(sent_.signalAveraging, usual.signalAveraging),
             .averageSpectrum = FractionOr(sent_.averageSpectrum, usual.averageSpectrum),
             .noiseAverage = FractionOr(sent_.noiseAverage, usual.noiseAverage),
             .noiseEstimation = FractionOr(sent_.noiseEstimation, usual.noiseEstimation),
             .subtractionFloor = FractionOr(sent_.subtractionFloor, usual.subtractionFloor)};
  noise_.Configure({.averaging = record_.averageSpectrum,
                    .noiseAveraging = record_.noiseAverage,
                    .compensation = record_.noiseEstimation,
                    .buffers = static_cast<std::size_t>(record_.buffers)});
  gains_.Configure({.smoothing = SmoothingOf(record_.mode),
                    .averaging = record_.signalAveraging,
                    .floor = std::sqrt(record_.subtractionFloor),
                    .sampleRate = sampleRate_});
}

void Broadband::Forget() {
  noise_.Reset();
  gains_.Reset();
}

void Broadband::Reset() {
  Forget();
  heard_.fill(0);
  overlap_.fill(0);
  inHop_ = 0;
  framesPartial_ = 0;
}

void Broadband::Process(std::span<const float> in, std::span<float> out) {
  constexpr std::size_t fresh = FrameSize - Hop;
  for (std::size_t i = 0; i < in.size(); ++i) {
    heard_[fresh + inHop_] = Tame(in[i]);
    out[i] = overlap_[inHop_];
    if (++inHop_ == Hop) ProcessFrame();
  }
}

void Broadband::ProcessFrame() {
  constexpr std::size_t partialFrames = FrameSize / Hop - 1;
  for (std::size_t i = 0; i < FrameSize; ++i) frame_[i] = heard_[i] * window_[i];
  kiss_fftr(forward_.get(), frame_.data(), spectrum_.data());
  // Frames that the sound does not fill yet would make the noise look less than it is.
  if (framesPartial_ < partialFrames) {
    ++framesPartial_;
  } else {
    ReduceNoise();
  }
  kiss_fftri(inverse_.get(), spectrum_.data(), frame_.data());

  constexpr float unity = 1.0F / (2 * FrameSize);
  std::copy(overlap_.begin() + Hop, overlap_.end(), overlap_.begin());
  std::fill(overlap_.end() - Hop, overlap_.end(), 0.0F);
  for (std::size_t i = 0; i < FrameSize; ++i) overlap_[i] += frame_[i] * window_[i] * unity * gain_;
  std::copy(heard_.begin() + Hop, heard_.end(), heard_.begin());
  inHop_ = 0;
}

void Broadband::ReduceNoise() {
  for (std::size_t k = 0; k < Lines; ++k) {
    power_[k] = std::max(spectrum_[k].r * spectrum_[k].r + spectrum_[k].i * spectrum_[k].i, FaintestPower);
  }
  noise_.Take(power_);
  const float deepest = 1 - (SmoothingOf(record_.mode) == NoiseSmoothing::None ? 0 : NoiseGains::KeptOfNoise);
  const NoiseGains::Spectrum& gains = gains_.Take(power_, noise_.Noise());
  for (std::size_t k = 0; k < Lines; ++k) {
    const float band = bands_[std::min(k, Lines - 2)];  // the line at half the rate has no band of its own
    const float kept = 1 - std::min(attenuation_ * band / deepest, 1.0F) * (1 - gains[k]);
    spectrum_[k].r *= kept;
    spectrum_[k].i *= kept;
  }
}

}  // namespace unit::sound
