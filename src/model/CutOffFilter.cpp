// Windowed sinc lowpasses, and what is made of one or two of them.
#include "model/CutOffFilter.h"

#include <algorithm>
#include <cstddef>

#include "model/modNumerical.h"

namespace vc {
namespace {

using S = SystemSettings;

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

HalfTaps Band(const HalfTaps& window, const CutOffFilter& filter) {
  HalfTaps band = LowpassTaps(window, filter.upper);
  if (filter.lower <= 0) return band;
  const HalfTaps below = LowpassTaps(window, filter.lower);
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

HalfTaps CutOffTaps(const CutOffFilter& filter) {
  const double beta = KaiserBeta(WindowAttenuation(filter.stopGain));
  const double last = std::max(filter.halfLength - 1, 1);
  HalfTaps half = Band(KaiserWindow(filter.halfLength, beta, last), filter);
  Finish(half, filter);
  return half;
}

std::vector<double> GainsAt(const CutOffFilter& filter, std::span<const double> frequencies) {
  return AmplitudesAt(CutOffTaps(filter), frequencies);
}

}  // namespace vc
