// One trace of the unit's spectrum analyzer: spectra of a stream of samples, averaged, as lines of one byte.
#include "unit/sound/SpectrumAnalyzer.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>

#include <kissfft/kiss_fftr.h>

namespace unit::sound {
namespace {

constexpr unsigned CountBits = 0x0F;
constexpr unsigned ExponentialBit = 0x10;
constexpr unsigned PeakHoldBit = 0x40;
constexpr unsigned HoldBit = 0x80;

constexpr float UnityGain = 128.0F;
constexpr double TopByte = 192.0;
constexpr double BytesPerDb = 185.0 / 70.0;
constexpr float LeastPower = 1e-12F;
constexpr float MostSample = 1e6F;  // keeps the powers of what is far out of range within a float

std::vector<float> Window() {
  constexpr std::array terms{0.35875, -0.48829, 0.14128, -0.01168};
  std::vector<float> window(SpectrumSize);
  for (std::size_t i = 0; i < SpectrumSize; ++i) {
    double value = 0.0;
    for (std::size_t k = 0; k < terms.size(); ++k) {
      value += terms[k] * std::cos(2.0 * std::numbers::pi * static_cast<double>(k * i) / SpectrumSize);
    }
    // A sine of peak 1 has half the window's sum in its line.
    window[i] = static_cast<float>(value * 2.0 / (terms[0] * SpectrumSize));
  }
  return window;
}

std::uint8_t ByteOf(float power) {
  const double db = 10.0 * std::log10(std::max(power, LeastPower));
  return static_cast<std::uint8_t>(std::clamp(std::round(TopByte + db * BytesPerDb), 0.0, 255.0));
}

}  // namespace

void SpectrumAnalyzer::Free::operator()(kiss_fftr_state* state) const { kiss_fftr_free(state); }

SpectrumAnalyzer::SpectrumAnalyzer(double rate)
    : transform_(kiss_fftr_alloc(SpectrumSize, 0, nullptr, nullptr)), meter_(rate), window_(Window()) {
  if (!transform_) throw std::bad_alloc();
  SetRate(rate);
}

void SpectrumAnalyzer::SetRate(double rate) {
  meter_.SetRate(rate);
  meter_.Reset();
  samples_.fill(0.0F);
  at_ = 0;
  Clear();
}

void SpectrumAnalyzer::SetAveraging(std::uint8_t byte) {
  if (byte != averaging_) averaged_ = 0;
  averaging_ = byte;
}

void SpectrumAnalyzer::SetRun(std::uint8_t byte) {
  held_ = (byte & HoldBit) != 0;
  if ((byte & ClearBit) != 0) Clear();
}

void SpectrumAnalyzer::SetGain(std::uint16_t word) { gain_ = static_cast<float>(word) / UnityGain; }

// Nothing of before the clear may come back, so the next spectrum has to wait for samples of its own.
void SpectrumAnalyzer::Clear() {
  powers_.fill(0.0F);
  averaged_ = 0;
  missing_ = SpectrumSize;
}

void SpectrumAnalyzer::Process(std::span<const float> in) {
  while (!in.empty()) {
    const std::size_t count = std::min({in.size(), missing_, SpectrumSize - at_});
    const std::span<float> place = std::span(samples_).subspan(at_, count);
    // The comparison fails for what is no number.
    std::transform(in.begin(), in.begin() + static_cast<std::ptrdiff_t>(count), place.begin(),
                   [this](float x) { return std::fabs(x) < MostSample ? x * gain_ : 0.0F; });
    meter_.Process(place);
    in = in.subspan(count);
    at_ = (at_ + count) % SpectrumSize;
    missing_ -= count;
    if (missing_ > 0) continue;
    missing_ = SpectrumHop;
    if (!held_) Analyze();
  }
}

void SpectrumAnalyzer::Analyze() {
  for (std::size_t i = 0; i < SpectrumSize; ++i) {
    windowed_[i] = samples_[(at_ + i) % SpectrumSize] * window_[i];
  }
  std::array<kiss_fft_cpx, SpectrumLines + 1> bins{};
  kiss_fftr(transform_.get(), windowed_.data(), bins.data());
  const bool first = averaged_ == 0;
  averaged_ = std::min(averaged_ + 1, 1U << (averaging_ & CountBits));
  for (std::size_t line = 0; line < SpectrumLines; ++line) {
    const kiss_fft_cpx& bin = bins[line + 1];
    const float power = bin.r * bin.r + bin.i * bin.i;
    powers_[line] = first ? power : Averaged(powers_[line], power);
  }
}

float SpectrumAnalyzer::Averaged(float kept, float power) const {
  if ((averaging_ & PeakHoldBit) != 0) return std::max(kept, power);
  if ((averaging_ & ExponentialBit) != 0) return kept + (power - kept) / static_cast<float>(averaged_);
  return power;
}

SpectrumBody SpectrumAnalyzer::Lines() const {
  SpectrumBody body{};
  std::transform(powers_.begin(), powers_.end(), body.begin(), ByteOf);
  return body;
}

}  // namespace unit::sound
