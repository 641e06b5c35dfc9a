// One row a kind that has a response to compute.
#include "model/FilterResponse.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "model/CutOffFilter.h"
#include "model/Kinds.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

using Frequencies = std::vector<double>;  // cycles per sample, 0.0..0.5
using Amplitudes = std::vector<double>;   // of either sign, one a frequency

using ResponseLaw = Amplitudes (*)(const SystemSettings& settings, int stage, const Frequencies& frequencies);

template <CutOffFilter (*FilterOf)(const SystemSettings&, int)>
Amplitudes CutOffResponse(const SystemSettings& settings, int stage, const Frequencies& frequencies) {
  const std::vector<double> taps = CutOffTaps(FilterOf(settings, stage));
  Amplitudes amplitudes;
  amplitudes.reserve(frequencies.size());
  for (const double frequency : frequencies) amplitudes.push_back(AmplitudeAt(taps, frequency));
  return amplitudes;
}

struct ResponseRow {
  std::int16_t filterType;
  ResponseLaw law;
};

constexpr std::array responses{
    ResponseRow{FilterKind::Lowpass, CutOffResponse<LowpassOf>},
    ResponseRow{FilterKind::Highpass, CutOffResponse<HighpassOf>},
    ResponseRow{FilterKind::Bandpass, CutOffResponse<BandpassOf>},
    ResponseRow{FilterKind::Bandstop, CutOffResponse<BandstopOf>},
};

Frequencies Spread(const SystemSettings& settings, std::size_t points) {
  const double top = Bounded(settings.bandwidthHz / static_cast<double>(settings.sampleRate), 0.0, 0.5);
  const double steps = static_cast<double>(std::max<std::size_t>(points, 2) - 1);
  Frequencies frequencies;
  frequencies.reserve(points);
  for (std::size_t i = 0; i < points; i++) frequencies.push_back(top * static_cast<double>(i) / steps);
  return frequencies;
}

float Decibels(double amplitude) {
  return std::max(LowestResponse, static_cast<float>(20 * std::log10(std::abs(amplitude))));
}

std::vector<float> ResponseAt(const SystemSettings& settings, int stage, std::int16_t filterType,
                              const Frequencies& frequencies) {
  const auto row = std::ranges::find(responses, filterType, &ResponseRow::filterType);
  if (row == responses.end()) return {};
  const Amplitudes amplitudes = row->law(settings, stage, frequencies);
  std::vector<float> decibels(amplitudes.size());
  std::ranges::transform(amplitudes, decibels.begin(), Decibels);
  return decibels;
}

}  // namespace

std::vector<float> FilterResponse(const SystemSettings& settings, int stage, std::int16_t filterType,
                                  std::span<const double> frequencies) {
  Frequencies cycles;
  cycles.reserve(frequencies.size());
  for (const double frequency : frequencies) {
    cycles.push_back(Bounded(frequency / static_cast<double>(settings.sampleRate), 0.0, 0.5));
  }
  return ResponseAt(settings, stage, filterType, cycles);
}

std::vector<float> FilterResponse(const SystemSettings& settings, int stage, std::int16_t filterType,
                                  std::size_t points) {
  return ResponseAt(settings, stage, filterType, Spread(settings, points));
}

}  // namespace vc
