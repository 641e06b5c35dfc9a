// One row a kind that has a response to compute.
#include "model/FilterResponse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "model/BandFilter.h"
#include "model/BandFrequencies.h"
#include "model/CombFilter.h"
#include "model/CutOffFilter.h"
#include "model/Kinds.h"
#include "model/LobeFilter.h"
#include "model/NoiseBands.h"
#include "model/ParametricSections.h"
#include "model/TableFilter.h"
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

template <std::int16_t Kind>
Amplitudes BuiltOf(const SystemSettings& settings, int number, const Frequencies& frequencies) {
  return BuiltGains(settings, number, Kind, frequencies);
}

Amplitudes EdgeOf(const SystemSettings& settings, int equalizer, const Frequencies& frequencies) {
  return EdgeGains(settings, equalizer, frequencies);
}

std::vector<double> InHertz(const SystemSettings& settings, std::vector<double> frequencies) {
  for (double& frequency : frequencies) frequency *= static_cast<double>(settings.sampleRate);
  return frequencies;
}

template <std::int16_t Kind>
std::vector<double> RowsOf(const SystemSettings& settings, int number) {
  return InHertz(settings, TellingOfList(settings, number, Kind));
}

template <auto Curve, int LinesBefore>
std::vector<double> TurnsOf(const SystemSettings& settings, int stage) {
  std::vector<double> turns = SharpTurns(DrawnLines((settings.*Curve)[stage]), FilterSpectrumScale);
  for (double& turn : turns) turn += LinesBefore / FilterSpectrumScale;
  return InHertz(settings, std::move(turns));
}

std::vector<double> EdgeTurns(const SystemSettings& settings, int equalizer) {
  const std::span<const float> lines(settings.edgeCurve[equalizer].items);
  return InHertz(settings, SharpTurns(lines.first(EdgeLines), EdgeCurveScale));
}

template <auto FilterOf>
std::vector<double> TellingOf(const SystemSettings& settings, int number) {
  return InHertz(settings, TellingAt(FilterOf(settings, number)));
}

template <auto FilterOf>
std::vector<Amplitudes> PartsOf(const SystemSettings& settings, int number, const Frequencies& frequencies) {
  return PartsAt(FilterOf(settings, number), frequencies);
}

std::vector<double> BandCentres(const SystemSettings& settings, int /*stage*/) {
  const auto bands = BandFrequencies(settings.bandwidthIndex);
  return {bands.begin(), bands.end()};
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
    ResponseRow{BlockFamily::Filter, FilterKind::Comb, GainsOf<CombOf>, nullptr, TellingOf<CombOf>},
    ResponseRow{BlockFamily::Filter, FilterKind::Notch, GainsOf<NotchOf>, nullptr, TellingOf<NotchOf>},
    ResponseRow{BlockFamily::Filter, FilterKind::MultipleNotch, BuiltOf<FilterKind::MultipleNotch>, nullptr,
                RowsOf<FilterKind::MultipleNotch>},
    ResponseRow{BlockFamily::Filter, FilterKind::MultipleSlot, BuiltOf<FilterKind::MultipleSlot>, nullptr,
                RowsOf<FilterKind::MultipleSlot>},
    ResponseRow{BlockFamily::Filter, FilterKind::Slot, GainsOf<SlotOf>, nullptr, TellingOf<SlotOf>},
    ResponseRow{BlockFamily::Filter, FilterKind::SpectralInverse, BuiltOf<FilterKind::SpectralInverse>,
                nullptr, TurnsOf<&SystemSettings::sifCurve, 1>},
    ResponseRow{BlockFamily::Filter, FilterKind::HiResGraphic, BuiltOf<FilterKind::HiResGraphic>, nullptr,
                TurnsOf<&SystemSettings::hiResCurve, 0>},
    ResponseRow{BlockFamily::Filter, FilterKind::BandGraphic, GainsOf<GraphicFilterOf>, nullptr, BandCentres},
    ResponseRow{BlockFamily::Filter, FilterKind::TriParametric, GainsOf<TriParametricOf>,
                PartsOf<TriParametricOf>, TellingOf<TriParametricOf>},
    ResponseRow{BlockFamily::Filter, FilterKind::InverseComb, GainsOf<InverseCombOf>, nullptr,
                TellingOf<InverseCombOf>},
    ResponseRow{BlockFamily::Equalizer, EqKind::BandGraphic, GainsOf<GraphicEqualizerOf>, nullptr,
                BandCentres},
    ResponseRow{BlockFamily::Equalizer, EqKind::SpectralGraphic, EdgeOf, nullptr, EdgeTurns},
    ResponseRow{BlockFamily::Equalizer, EqKind::DualParametric, GainsOf<DualParametricOf>,
                PartsOf<DualParametricOf>, TellingOf<DualParametricOf>},
    ResponseRow{BlockFamily::Broadband, BroadbandKind::NoiseReducer, GainsOf<NoiseReducerOf>},
    ResponseRow{BlockFamily::Broadband, BroadbandKind::NoiseEq, GainsOf<NoiseEqOf>, nullptr, BandCentres},
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

std::vector<double> WithinBand(const SystemSettings& settings, std::vector<double> hertz) {
  std::erase_if(hertz, [&](double one) { return !(one >= 0 && one <= settings.bandwidthHz); });
  return hertz;
}

}  // namespace

bool HasResponse(const BlockKind& block) { return RowOf(block) != nullptr; }

std::vector<float> FilterResponse(const SystemSettings& settings, const BlockKind& block,
                                  std::span<const double> frequencies) {
  const ResponseRow* row = RowOf(block);
  if (row == nullptr) return {};
  return InDecibels(row->law(settings, block.number, InCycles(settings, frequencies)));
}

std::vector<float> CurveResponse(const SystemSettings& settings, DrawnCurve curve,
                                 std::span<const double> frequencies) {
  return InDecibels(CurveGains(settings, curve, InCycles(settings, frequencies)));
}

std::vector<double> CurveTurns(const SystemSettings& settings, DrawnCurve curve) {
  return WithinBand(settings, InHertz(settings, SharpTurns(curve, FilterSpectrumScale)));
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
  return WithinBand(settings, row->telling(settings, block.number));
}

}  // namespace vc
