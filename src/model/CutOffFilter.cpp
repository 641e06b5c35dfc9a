// Windowed sinc lowpasses, and what is made of one or two of them.
#include "model/CutOffFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "model/modNumerical.h"

namespace vc {
namespace {

using S = SystemSettings;
using std::numbers::pi;

// Element k of half a filter stands k samples from its centre, on both sides.
using HalfTaps = std::vector<double>;

double Edge(const S& s, std::int16_t hertz) {
  return Bounded(hertz / static_cast<double>(s.sampleRate), 0.0, 0.5);
}

CutOffFilter Filter(const S& s, int stage, std::int16_t slope, std::int16_t atten, bool rejects) {
  const int longest = std::max(s.maxFilterSize[stage] / 2 - 1, 1);
  return {.halfLength = std::clamp<int>(slope, 1, longest),
          .stopGain = AttenWord(atten) / FullScaleWord,
          .rejects = rejects};
}

template <auto Cutoff, auto Slope, auto Atten>
CutOffFilter OneEdge(const S& s, int stage, bool rejects) {
  CutOffFilter filter = Filter(s, stage, (s.*Slope)[stage], (s.*Atten)[stage], rejects);
  filter.upper = Edge(s, (s.*Cutoff)[stage]);
  return filter;
}

template <auto Lo, auto Hi, auto Slope, auto Atten>
CutOffFilter TwoEdges(const S& s, int stage, bool rejects) {
  CutOffFilter filter = Filter(s, stage, (s.*Slope)[stage], (s.*Atten)[stage], rejects);
  filter.lower = Edge(s, (s.*Lo)[stage]);
  filter.upper = std::max(Edge(s, (s.*Hi)[stage]), filter.lower);
  return filter;
}

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

// 1 in the middle, 1 / I0(beta) at the outermost tap.
HalfTaps KaiserWindow(int halfLength, double beta) {
  HalfTaps window;
  window.reserve(static_cast<std::size_t>(halfLength));
  const double last = std::max(halfLength - 1, 1);
  for (int k = 0; k < halfLength; k++) {
    const double place = k / last;
    window.push_back(BesselI0(beta * std::sqrt(1 - place * place)) / BesselI0(beta));
  }
  return window;
}

// Towards an edge of 0 the sinc becomes flat and the lowpass the window itself.
double Sinc(double x) { return x == 0 ? 1.0 : std::sin(pi * x) / (pi * x); }

double GainAtZero(const HalfTaps& taps) {
  double sum = taps.front();
  for (std::size_t k = 1; k < taps.size(); k++) sum += 2 * taps[k];
  return sum;
}

// With gain 1 at 0 Hz.
HalfTaps Lowpass(const HalfTaps& window, double edge) {
  HalfTaps taps = window;
  for (std::size_t k = 0; k < taps.size(); k++) taps[k] *= Sinc(2 * edge * static_cast<double>(k));
  const double gain = GainAtZero(taps);
  for (double& tap : taps) tap /= gain;
  return taps;
}

HalfTaps Band(const HalfTaps& window, const CutOffFilter& filter) {
  HalfTaps band = Lowpass(window, filter.upper);
  if (filter.lower <= 0) return band;
  const HalfTaps below = Lowpass(window, filter.lower);
  for (std::size_t k = 0; k < band.size(); k++) band[k] -= below[k];
  return band;
}

// delta - band where the band is rejected; then stopGain * delta + (1 - stopGain) * that.
void Finish(HalfTaps& band, const CutOffFilter& filter) {
  const double moved = 1 - filter.stopGain;
  for (double& tap : band) tap *= filter.rejects ? -moved : moved;
  band.front() += filter.rejects ? 1.0 : filter.stopGain;
}

}  // namespace

CutOffFilter LowpassOf(const S& settings, int stage) {
  return OneEdge<&S::lpfCutoff, &S::lpfTransSlope, &S::lpfAtten>(settings, stage, false);
}

// All but the band from 0 Hz to its edge.
CutOffFilter HighpassOf(const S& settings, int stage) {
  return OneEdge<&S::hpfCutoff, &S::hpfTransSlope, &S::hpfAtten>(settings, stage, true);
}

CutOffFilter BandpassOf(const S& settings, int stage) {
  return TwoEdges<&S::bpfLoCutoff, &S::bpfHiCutoff, &S::bpfTransSlope, &S::bpfAtten>(settings, stage, false);
}

CutOffFilter BandstopOf(const S& settings, int stage) {
  return TwoEdges<&S::bsfLoCutoff, &S::bsfHiCutoff, &S::bsfTransSlope, &S::bsfAtten>(settings, stage, true);
}

double WindowAttenuation(double stopGain) { return WindowMargin - 20 * std::log10(stopGain); }

double KaiserBeta(double attenuation) {
  if (attenuation > 50) return 0.1102 * (attenuation - 8.7);
  const double above = attenuation - 21;
  return 0.5842 * std::pow(above, 0.4) + 0.07886 * above;
}

std::vector<double> CutOffTaps(const CutOffFilter& filter) {
  const double beta = KaiserBeta(WindowAttenuation(filter.stopGain));
  HalfTaps half = Band(KaiserWindow(filter.halfLength, beta), filter);
  Finish(half, filter);
  std::vector<double> taps(half.rbegin(), half.rend());
  taps.insert(taps.end(), half.begin() + 1, half.end());
  return taps;
}

// Clenshaw's recurrence for the sum of tap * cos(k * angle) over both sides of the centre.
double AmplitudeAt(const std::vector<double>& taps, double frequency) {
  const double cosine = std::cos(2 * pi * frequency);
  const std::size_t centre = taps.size() / 2;
  double last = 0;
  double beforeLast = 0;
  for (std::size_t i = 0; i < centre; i++) {  // from the outermost tap inwards
    const double next = taps[i] + 2 * cosine * last - beforeLast;
    beforeLast = last;
    last = next;
  }
  return taps[centre] + 2 * (cosine * last - beforeLast);
}

}  // namespace vc
