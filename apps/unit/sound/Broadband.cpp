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

// The record's averages are told for frames that are so many samples apart.
constexpr std::size_t RecordHop = 64;

float PerFrame(float average) {
  return std::pow(average, static_cast<float>(Broadband::Hop) / static_cast<float>(RecordHop));
}

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

Broadband::Broadband(double rate)
    : forward(kiss_fftr_alloc(FrameSize, 0, nullptr, nullptr)),
      inverse(kiss_fftr_alloc(FrameSize, 1, nullptr, nullptr)),
      sampleRate(rate),
      sent(UsualRecord(rate)),
      valueOf(ValuesOfLines(rate)) {
  // The squares of four windows, a hop apart, add up to 2; the transforms to the size of a frame.
  for (std::size_t i = 0; i < FrameSize; ++i) {
    window[i] = static_cast<float>(std::sin(std::numbers::pi * static_cast<double>(i) / FrameSize));
  }
  UseRecord();
  Reset();
}

void Broadband::Configure(double rate) {
  sampleRate = rate;
  valueOf = ValuesOfLines(rate);
  UseRecord();
  Forget();
}

void Broadband::TakePiece(unsigned piece, std::span<const std::uint8_t> bytes) {
  constexpr std::size_t valuesPerPiece = PieceSize / sizeof(float);
  if (piece >= PieceCount || bytes.size() < PieceSize) return;
  if (piece == 0) {
    TakeRecord(bytes);
    return;
  }
  for (std::size_t i = 0; i < valuesPerPiece; ++i) {
    const float value = Float(bytes, i * sizeof(float));
    values[(piece - 1) * valuesPerPiece + i] = std::isnan(value) ? 0.0F : std::clamp(value, 0.0F, 1.0F);
  }
  sharesKnown = false;
}

void Broadband::TakeRecord(std::span<const std::uint8_t> bytes) {
  sent = {.mode = static_cast<std::int32_t>(Word(bytes, 0)),
          .buffers = static_cast<std::int32_t>(Word(bytes, 4)),
          .signalAveraging = Float(bytes, 8),
          .averageSpectrum = Float(bytes, 12),
          .noiseAverage = Float(bytes, 16),
          .noiseEstimation = Float(bytes, 20),
          .subtractionFloor = Float(bytes, 24)};
  UseRecord();
}

void Broadband::UseRecord() {
  const BroadbandRecord usual = UsualRecord(sampleRate);
  const bool known = sent.buffers >= 0 && sent.buffers <= MostBuffers;
  record = {.mode = sent.mode,
            .buffers = known ? sent.buffers : usual.buffers,
            .signalAveraging = FractionOr(sent.signalAveraging, usual.signalAveraging),
            .averageSpectrum = FractionOr(sent.averageSpectrum, usual.averageSpectrum),
            .noiseAverage = FractionOr(sent.noiseAverage, usual.noiseAverage),
            .noiseEstimation = FractionOr(sent.noiseEstimation, usual.noiseEstimation),
            .subtractionFloor = FractionOr(sent.subtractionFloor, usual.subtractionFloor)};
  noise.Configure(FloorSettings());
  gains.Configure(GainSettings());
  taken.reset();
  sharesKnown = false;
}

NoiseFloorSettings Broadband::FloorSettings() const {
  return {.averaging = PerFrame(record.averageSpectrum),
          .noiseAveraging = PerFrame(record.noiseAverage),
          .compensation = record.noiseEstimation,
          .buffers = static_cast<std::size_t>(record.buffers)};
}

NoiseGainSettings Broadband::GainSettings() const {
  return {.smoothing = SmoothingOf(record.mode),
          .averaging = PerFrame(record.signalAveraging),
          .floor = std::sqrt(record.subtractionFloor),
          .sampleRate = sampleRate};
}

void Broadband::SetAttenuation(std::uint16_t word) {
  constexpr float unity = 32768;
  const float wanted = static_cast<float>(word & 0x7FFFU) / unity;
  if (wanted != attenuation) sharesKnown = false;
  attenuation = wanted;
}

void Broadband::FindShares() {
  constexpr float reachable = 0.999F;  // no gain takes more of a noise
  for (std::size_t k = 0; k < Lines; ++k) {
    const float asked = attenuation * values[valueOf[k]];
    shares[k] = asked < reachable ? 0.0F : 1.0F;
    if (asked <= 0 || asked >= reachable) continue;
    if (!taken) taken = TakenOfNoise(FloorSettings(), GainSettings(), window, forward.get());
    shares[k] = taken->ShareFor(1 - asked);
  }
  sharesKnown = true;
}

void Broadband::Forget() {
  noise.Reset();
  gains.Reset();
}

void Broadband::Reset() {
  Forget();
  heard.fill(0);
  overlap.fill(0);
  inHop = 0;
  framesPartial = 0;
}

void Broadband::Process(std::span<const float> in, std::span<float> out) {
  constexpr std::size_t fresh = FrameSize - Hop;
  for (std::size_t i = 0; i < in.size(); ++i) {
    heard[fresh + inHop] = Tame(in[i]);
    out[i] = overlap[inHop];
    if (++inHop == Hop) ProcessFrame();
  }
}

void Broadband::ProcessFrame() {
  constexpr std::size_t partialFrames = FrameSize / Hop - 1;
  for (std::size_t i = 0; i < FrameSize; ++i) frame[i] = heard[i] * window[i];
  kiss_fftr(forward.get(), frame.data(), spectrum.data());
  // Frames that the sound does not fill yet would make the noise look less than it is.
  if (framesPartial < partialFrames) {
    ++framesPartial;
  } else {
    ReduceNoise();
  }
  kiss_fftri(inverse.get(), spectrum.data(), frame.data());

  constexpr float unity = 1.0F / (2 * FrameSize);
  std::copy(overlap.begin() + Hop, overlap.end(), overlap.begin());
  std::fill(overlap.end() - Hop, overlap.end(), 0.0F);
  for (std::size_t i = 0; i < FrameSize; ++i) overlap[i] += frame[i] * window[i] * unity * gain;
  std::copy(heard.begin() + Hop, heard.end(), heard.begin());
  inHop = 0;
}

void Broadband::ReduceNoise() {
  for (std::size_t k = 0; k < Lines; ++k) {
    power[k] = std::max(spectrum[k].r * spectrum[k].r + spectrum[k].i * spectrum[k].i, FaintestPower);
  }
  noise.Take(power);
  if (!sharesKnown) FindShares();
  const NoiseGains::Spectrum& lineGains = gains.Take(power, noise.Noise());
  for (std::size_t k = 0; k < Lines; ++k) {
    const float kept = 1 - shares[k] * (1 - lineGains[k]);
    spectrum[k].r *= kept;
    spectrum[k].i *= kept;
  }
}

}  // namespace unit::sound
