#include "model/TableFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "model/CoefficientPacking.h"
#include "model/HostDesign.h"
#include "model/KindLaws.h"
#include "model/Kinds.h"
#include "model/SymmetricTaps.h"

namespace vc {
namespace {

constexpr double OutputGainUnity = 16;

// What a tap so many samples before the middle has more than the one as many behind it.
struct Uneven {
  double samples, difference;
};

struct TableHalves {
  HalfTaps even;  // the mean of both
  std::vector<Uneven> uneven;
};

double TapAt(std::span<const float> table, std::size_t place) {
  return place < table.size() ? CoefficientWord(table[place]) / CoefficientUnity : 0.0;
}

// An even number of taps has a first one without a partner.
TableHalves HalvesOf(std::span<const float> table) {
  const std::size_t middle = table.size() / 2;
  TableHalves halves;
  for (std::size_t k = 0; k <= middle; k++) {
    const double before = TapAt(table, middle - k);
    const double behind = TapAt(table, middle + k);
    halves.even.push_back((before + behind) / 2);
    if (before != behind) halves.uneven.push_back({static_cast<double>(k), before - behind});
  }
  return halves;
}

// Of direct + passed h, h being the table.
std::vector<double> GainsWith(std::span<const float> table, double direct, double passed,
                              std::span<const double> frequencies) {
  const TableHalves halves = HalvesOf(table);
  std::vector<double> gains = AmplitudesAt(halves.even, frequencies);
  for (std::size_t i = 0; i < gains.size(); i++) {
    double aside = 0;
    for (const Uneven& tap : halves.uneven) {
      aside += tap.difference * std::sin(2 * std::numbers::pi * frequencies[i] * tap.samples);
    }
    gains[i] = std::hypot(direct + passed * gains[i], passed * aside);
  }
  return gains;
}

}  // namespace

std::vector<double> TableGains(std::span<const float> table, std::int16_t filterAtten,
                               std::span<const double> frequencies) {
  const double subtracted = std::max<std::int16_t>(filterAtten, 0) / static_cast<double>(FullEffect);
  return GainsWith(table, 1, -subtracted, frequencies);
}

std::vector<double> BuiltGains(const SystemSettings& settings, int stage, std::int16_t kind,
                               std::span<const double> frequencies) {
  FilterTransform transform;
  const std::vector<float> table =
      BuildCoefficients(transform, settings, stage, kind, settings.generalStageTaps);
  const KindLaw& law = FilterLaw(kind);
  const std::int16_t atten = law.masterAtten ? settings.filterAtten[stage] : law.plainAtten;
  std::vector<double> gains = TableGains(table, atten, frequencies);
  if (!law.outputGain) return gains;
  const double gain = std::max<std::int16_t>(settings.filterGain[stage], 0) / OutputGainUnity;
  for (double& one : gains) one *= gain;
  return gains;
}

std::vector<double> CurveGains(const SystemSettings& settings, DrawnCurve curve,
                               std::span<const double> frequencies) {
  FilterTransform transform;
  return TableGains(DesignCurve(transform, curve, settings.generalStageTaps), FullEffect, frequencies);
}

// The transform fills fewer taps than are sent, which are symmetric about their own middle.
std::vector<double> EdgeGains(const SystemSettings& settings, int equalizer,
                              std::span<const double> frequencies) {
  constexpr auto designed = static_cast<std::size_t>(EqualizerSpectrumScale);
  FilterTransform transform;
  const std::vector<float> table = DesignEdgeFilter(transform, settings, equalizer);
  return GainsWith(std::span(table).first(designed), 0, 1, frequencies);
}

std::vector<double> TellingOfList(const SystemSettings& settings, int stage, std::int16_t kind) {
  std::vector<double> telling;
  for (const BinRange& bins : ListedBins(settings, stage, kind)) {
    const int last = bins.end - 1;
    for (const double bin : {bins.first + 0.0, (bins.first + last) / 2.0, last + 0.0}) {
      telling.push_back(bin / FilterSpectrumScale);
    }
  }
  return telling;
}

std::vector<double> SharpTurns(std::span<const float> lines, double linesPerRate) {
  constexpr float sharp = 3;  // dB, from one step to the next
  std::vector<double> turns;
  for (std::size_t i = 1; i + 1 < lines.size(); i++) {
    const float before = lines[i] - lines[i - 1], behind = lines[i + 1] - lines[i];
    const bool extreme = std::min(before, behind) <= 0 && std::max(before, behind) >= 0;
    if (extreme && std::abs(behind - before) > sharp) turns.push_back(static_cast<double>(i) / linesPerRate);
  }
  return turns;
}

}  // namespace vc
