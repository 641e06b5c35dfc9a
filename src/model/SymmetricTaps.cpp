#include "model/SymmetricTaps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace vc {
namespace {

using std::numbers::pi;

// The modified Bessel function of the first kind and order 0, by its power series, for an argument of 0
// to 20.
double BesselI0(double x) {
  const double quarter = x * x / 4;
  double sum = 1;
  double term = 1;
  for (int k = 1; term > sum * 1e-17; k++) {
    term *= quarter / (static_cast<double>(k) * k);
    sum += term;
  }
  return sum;
}

// Towards an edge of 0 the sinc becomes flat and the lowpass the window itself.
double Sinc(double x) { return x == 0 ? 1.0 : std::sin(pi * x) / (pi * x); }

double GainAtZero(const HalfTaps& taps) {
  double sum = taps.front();
  for (std::size_t k = 1; k < taps.size(); k++) sum += 2 * taps[k];
  return sum;
}

// One step of the recurrence waits for the one before it, so that several frequencies side by side cost
// little more than one.
constexpr std::size_t Lanes = 8;
using Lane = std::array<double, Lanes>;

// Clenshaw's recurrence for the sum of tap * cos(k * angle) over both sides of the centre.
Lane Clenshaw(const HalfTaps& half, const Lane& cosine) {
  Lane last{};
  Lane beforeLast{};
  for (std::size_t k = half.size() - 1; k > 0; k--) {
    for (std::size_t i = 0; i < Lanes; i++) {
      const double next = half[k] + 2 * cosine[i] * last[i] - beforeLast[i];
      beforeLast[i] = last[i];
      last[i] = next;
    }
  }
  Lane sums{};
  for (std::size_t i = 0; i < Lanes; i++) sums[i] = half[0] + 2 * (cosine[i] * last[i] - beforeLast[i]);
  return sums;
}

}  // namespace

double WindowAttenuation(double stopGain) { return WindowMargin - 20 * std::log10(stopGain); }

double KaiserBeta(double attenuation) {
  if (attenuation > 50) return 0.1102 * (attenuation - 8.7);
  const double above = attenuation - 21;
  return 0.5842 * std::pow(above, 0.4) + 0.07886 * above;
}

HalfTaps KaiserWindow(int halfLength, double beta, double last) {
  HalfTaps window;
  window.reserve(static_cast<std::size_t>(halfLength));
  const double top = BesselI0(beta);
  for (int k = 0; k < halfLength; k++) {
    const double place = k / last;
    window.push_back(BesselI0(beta * std::sqrt(1 - place * place)) / top);
  }
  return window;
}

double TransitionWidth(int halfLength, double attenuation) {
  return (attenuation - 7.95) / (14.36 * (2 * halfLength - 2));
}

HalfTaps LowpassTaps(const HalfTaps& window, double edge) {
  HalfTaps taps = window;
  for (std::size_t k = 0; k < taps.size(); k++) taps[k] *= Sinc(2 * edge * static_cast<double>(k));
  const double gain = GainAtZero(taps);
  for (double& tap : taps) tap /= gain;
  return taps;
}

std::vector<double> AmplitudesAt(const HalfTaps& half, std::span<const double> frequencies) {
  std::vector<double> amplitudes;
  amplitudes.reserve(frequencies.size());
  for (std::size_t at = 0; at < frequencies.size(); at += Lanes) {
    const std::size_t count = std::min(Lanes, frequencies.size() - at);
    Lane cosine{};
    for (std::size_t i = 0; i < count; i++) cosine[i] = std::cos(2 * pi * frequencies[at + i]);
    const Lane sums = Clenshaw(half, cosine);
    amplitudes.insert(amplitudes.end(), sums.begin(), sums.begin() + static_cast<std::ptrdiff_t>(count));
  }
  return amplitudes;
}

}  // namespace vc
