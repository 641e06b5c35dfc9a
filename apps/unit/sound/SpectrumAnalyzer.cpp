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

// Of all windows of four cosines whose side lobes, from 4.1 lines on, are as low as they get where a sine
// between two lines is not more than 0.3 dB too low: found by a simplex search (Nelder and Mead 1965) for the
// least maximum of the window's transform there. Flatter ones have a wider main lobe, narrower ones higher
// side lobes.
std::vector<float> Window() {
  constexpr std::array terms{1.0, -1.71247, 0.84961, -0.14630, 0.00121};
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
    : transform(kiss_fftr_alloc(SpectrumSize, 0, nullptr, nullptr)), meter(rate), window(Window()) {
  if (!transform) throw std::bad_alloc();
  SetRate(rate);
}

void SpectrumAnalyzer::SetRate(double rate) {
  meter.SetRate(rate);
  meter.Reset();
  samples.fill(0.0F);
  at = 0;
  Clear();
}

void SpectrumAnalyzer::SetAveraging(std::uint8_t byte) {
  if (byte != averaging) averaged = 0;
  averaging = byte;
}

void SpectrumAnalyzer::SetRun(std::uint8_t byte) {
  held = (byte & HoldBit) != 0;
  if ((byte & ClearBit) != 0) Clear();
}

void SpectrumAnalyzer::SetGain(std::uint16_t word) { gain = static_cast<float>(word) / UnityGain; }

// Nothing of before the clear may come back, so the next spectrum has to wait for samples of its own.
void SpectrumAnalyzer::Clear() {
  powers.fill(0.0F);
  averaged = 0;
  missing = SpectrumSize;
}

void SpectrumAnalyzer::Process(std::span<const float> in) {
  while (!in.empty()) {
    const std::size_t count = std::min({in.size(), missing, SpectrumSize - at});
    const std::span<float> place = std::span(samples).subspan(at, count);
    // The comparison fails for what is no number.
    std::transform(in.begin(), in.begin() + static_cast<std::ptrdiff_t>(count), place.begin(),
                   [this](float x) { return std::fabs(x) < MostSample ? x * gain : 0.0F; });
    meter.Process(place);
    in = in.subspan(count);
    at = (at + count) % SpectrumSize;
    missing -= count;
    if (missing > 0) continue;
    missing = SpectrumHop;
    if (!held) Analyze();
  }
}

void SpectrumAnalyzer::Analyze() {
  for (std::size_t i = 0; i < SpectrumSize; ++i) {
    windowed[i] = samples[(at + i) % SpectrumSize] * window[i];
  }
  std::array<kiss_fft_cpx, SpectrumLines + 1> bins{};
  kiss_fftr(transform.get(), windowed.data(), bins.data());
  const bool first = averaged == 0;
  averaged = std::min(averaged + 1, 1U << (averaging & CountBits));
  for (std::size_t line = 0; line < SpectrumLines; ++line) {
    const kiss_fft_cpx& bin = bins[line + 1];
    const float power = bin.r * bin.r + bin.i * bin.i;
    powers[line] = first ? power : Averaged(powers[line], power);
  }
}

float SpectrumAnalyzer::Averaged(float kept, float power) const {
  if ((averaging & PeakHoldBit) != 0) return std::max(kept, power);
  if ((averaging & ExponentialBit) != 0) return kept + (power - kept) / static_cast<float>(averaged);
  return power;
}

SpectrumBody SpectrumAnalyzer::Lines() const {
  SpectrumBody body{};
  std::transform(powers.begin(), powers.end(), body.begin(), ByteOf);
  return body;
}

}  // namespace unit::sound
