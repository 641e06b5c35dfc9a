#include "unit/sound/FirDesign.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace unit::sound {
namespace {

constexpr double WordUnity = 32768.0;
constexpr double LobeBeta =
    15.3;  // half height at 1.5 bins from the centre: sinh(s) / s against sinh(beta) / beta

// The taps 0..n-1; those below 0 mirror them.
using Half = std::vector<double>;

double Sinc(double x) { return x == 0.0 ? 1.0 : std::sin(x) / x; }

// Kaiser's window.
class Kaiser {
 public:
  explicit Kaiser(double shape) : beta(shape), top(std::cyl_bessel_i(0.0, shape)) {}
  // At x, -1..1 from end to end.
  double At(double x) const {
    return std::cyl_bessel_i(0.0, beta * std::sqrt(std::max(0.0, 1.0 - x * x))) / top;
  }

 private:
  double beta, top;
};

double BetaFor(double attenuation) {
  if (attenuation > 50.0) return 0.1102 * (attenuation - 8.7);
  const double above = std::max(0.0, attenuation - 21.0);
  return 0.5842 * std::pow(above, 0.4) + 0.07886 * above;
}

double Cosine(double f, std::size_t k) {
  return std::cos(2.0 * std::numbers::pi * f * static_cast<double>(k));
}

void ScaleToUnityAt(Half& half, double f) {
  const double gain = GainAt(half, f);
  for (double& tap : half) tap /= gain;
}

Half Lowpass(std::size_t n, double f, double attenuation) {
  Half half(n);
  for (std::size_t k = 0; k < n; ++k) half[k] = Sinc(2.0 * std::numbers::pi * f * static_cast<double>(k));
  KaiserWindow(half, static_cast<double>(n) - 1.0, attenuation);
  ScaleToUnityAt(half, 0.0);
  return half;
}

Half Band(std::size_t n, double lower, double upper, double attenuation) {
  if (lower >= upper && lower > 0.0) return Half(n);
  Half band = Lowpass(n, upper, attenuation);
  if (lower <= 0.0) return band;
  const Half below = Lowpass(n, lower, attenuation);
  for (std::size_t k = 0; k < n; ++k) band[k] -= below[k];
  return band;
}

Half Lobe(std::size_t n, double f) {
  const Kaiser window(LobeBeta);
  Half half(n);
  for (std::size_t k = 0; k < n; ++k) {
    half[k] = window.At(static_cast<double>(k) / (static_cast<double>(n) + 1.0)) * Cosine(f, k);
  }
  ScaleToUnityAt(half, f);
  return half;
}

// direct at the middle tap, and the passed part of the band.
std::vector<float> Taps(Half band, double direct, double passed) {
  for (double& tap : band) tap *= passed;
  band[0] += direct;
  return Mirrored(band);
}

}  // namespace

double AttenuationFor(double stopGain) {
  constexpr double margin = 36.0;
  return margin - 20.0 * std::log10(std::max(stopGain, 1.0 / WordUnity));
}

void KaiserWindow(std::span<double> half, double end, double attenuation) {
  const Kaiser window(BetaFor(attenuation));
  for (std::size_t k = 0; k < half.size(); ++k) {
    half[k] *= window.At(static_cast<double>(k) / std::max(1.0, end));
  }
}

double GainAt(std::span<const double> half, double f) {
  double sum = half[0];
  for (std::size_t k = 1; k < half.size(); ++k) sum += 2.0 * half[k] * Cosine(f, k);
  return sum;
}

std::vector<float> Mirrored(std::span<const double> half) {
  const std::size_t n = half.size();
  std::vector<float> taps(2 * n - 1);
  for (std::size_t k = 0; k < n; ++k) {
    taps[n - 1 + k] = static_cast<float>(half[k]);
    taps[n - 1 - k] = taps[n - 1 + k];
  }
  return taps;
}

std::vector<double> LowpassTaps(std::size_t n, double f, double attenuation) {
  const Half half = Lowpass(n, f, attenuation);
  std::vector<double> taps(half.rbegin(), half.rend());
  taps.insert(taps.end(), half.begin() + 1, half.end());
  return taps;
}

double TransitionWidth(std::size_t n, double attenuation) {
  return (attenuation - 7.95) / (14.36 * static_cast<double>(2 * n - 2));
}

std::vector<float> FirTaps(FirKind kind, const FirWords& words, double sampleRate, std::size_t mostTaps) {
  const std::size_t n = std::clamp<std::size_t>(words[2], 1, std::max<std::size_t>(2, mostTaps / 2) - 1);
  const double first = std::min(words[0] / sampleRate, 0.5);
  const double second = std::min(words[1] / sampleRate, 0.5);
  const double gain = words[3] / WordUnity;
  const double depth = static_cast<std::int16_t>(words[3]) / WordUnity;
  const double attenuation = AttenuationFor(gain);
  switch (kind) {
    case FirKind::Lowpass:
      return Taps(Band(n, 0.0, first, attenuation), gain, 1.0 - gain);
    case FirKind::Highpass:
      return Taps(Band(n, 0.0, first, attenuation), 1.0, gain - 1.0);
    case FirKind::Notch:
      return Taps(Lobe(n, first), 1.0, -depth);
    case FirKind::Slot:
      return Taps(Lobe(n, first), gain, 1.0 - gain);
    case FirKind::Bandpass:
      return Taps(Band(n, first, second, attenuation), gain, 1.0 - gain);
    case FirKind::Bandstop:
      return Taps(Band(n, first, second, attenuation), 1.0, gain - 1.0);
  }
  return {1.0F};
}

}  // namespace unit::sound
