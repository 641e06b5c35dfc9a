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

using ResponseLaw = Amplitudes (*)(const SystemSettings& settings, int number,
                                   const Frequencies& frequencies);
using PartsLaw = std::vector<Amplitudes> (*)(const SystemSettings& settings, int number,
                                             const Frequencies& frequencies);
using TellingLaw = std::vector<double> (*)(const SystemSettings& settings, int number);  // Hz

template <auto FilterOf>
Amplitudes GainsOf(const SystemSettings& settings, int number, const Frequencies& frequencies) {
  return GainsAt(FilterOf(settings, number), frequencies);
}

struct ResponseRow {
  BlockFamily family;
  std::int16_t kind;
  ResponseLaw law;
  PartsLaw parts = nullptr;      // none where the whole is made of nothing else
  TellingLaw telling = nullptr;  // none where nothing is narrow
};

constexpr std::array responses{
    ResponseRow{BlockFamily::Filter, FilterKind::Lowpass, GainsOf<LowpassOf>},
    ResponseRow{BlockFamily::Filter, FilterKind::Highpass, GainsOf<HighpassOf>},
    ResponseRow{BlockFamily::Filter, FilterKind::Bandpass, GainsOf<BandpassOf>},
    ResponseRow{BlockFamily::Filter, FilterKind::Bandstop, GainsOf<BandstopOf>},
};

const ResponseRow* RowOf(const BlockKind& block) {
  const auto* row = std::ranges::find_if(responses, [&block](const ResponseRow& one) {
    return one.family == block.family && one.kind == block.kind;
  });
  return row == responses.end() ? nullptr : row;
}

Frequencies InCycles(const SystemSettings& settings, std::span<const double> frequencies) {
  Frequencies cycles;
  cycles.reserve(frequencies.size());
  for (const double frequency : frequencies) {
    cycles.push_back(Bounded(frequency / static_cast<double>(settings.sampleRate), 0.0, 0.5));
  }
  return cycles;
}

std::vector<float> InDecibels(const Amplitudes& amplitudes) {
  std::vector<float> decibels(amplitudes.size());
  std::ranges::transform(amplitudes, decibels.begin(), [](double amplitude) {
    return std::max(LowestResponse, static_cast<float>(20 * std::log10(std::abs(amplitude))));
  });
  return decibels;
}

}  // namespace

bool HasResponse(const BlockKind& block) { return RowOf(block) != nullptr; }

std::vector<float> FilterResponse(const SystemSettings& settings, const BlockKind& block,
                                  std::span<const double> frequencies) {
  const ResponseRow* row = RowOf(block);
  if (row == nullptr) return {};
  return InDecibels(row->law(settings, block.number, InCycles(settings, frequencies)));
}

std::vector<std::vector<float>> ResponseParts(const SystemSettings& settings, const BlockKind& block,
                                              std::span<const double> frequencies) {
  const ResponseRow* row = RowOf(block);
  if (row == nullptr || row->parts == nullptr) return {};
  std::vector<std::vector<float>> parts;
  for (const Amplitudes& part : row->parts(settings, block.number, InCycles(settings, frequencies))) {
    parts.push_back(InDecibels(part));
  }
  return parts;
}

std::vector<double> TellingFrequencies(const SystemSettings& settings, const BlockKind& block) {
  const ResponseRow* row = RowOf(block);
  if (row == nullptr || row->telling == nullptr) return {};
  std::vector<double> telling = row->telling(settings, block.number);
  std::erase_if(telling, [&](double hertz) { return !(hertz >= 0 && hertz <= settings.bandwidthHz); });
  return telling;
}

}  // namespace vc
