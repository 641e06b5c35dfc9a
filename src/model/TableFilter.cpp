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

// The lines where a curve goes one way and then the other, or stands, and turns by more than so much: the
// bottom of a notch of a few lines. Line 0 is at the bin `first`.
std::vector<double> SharpTurns(std::span<const float> lines, int first, double linesPerRate) {
  constexpr float sharp = 3;  // dB, from one step to the next
  std::vector<double> turns;
  for (std::size_t i = 1; i + 1 < lines.size(); i++) {
    const float before = lines[i] - lines[i - 1], behind = lines[i + 1] - lines[i];
    const bool extreme = std::min(before, behind) <= 0 && std::max(before, behind) >= 0;
    if (extreme && std::abs(behind - before) > sharp) {
      turns.push_back((static_cast<double>(i) + first) / linesPerRate);
    }
  }
  return turns;
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

std::vector<double> MiddlesAndEnds(std::span<const BinRange> rows) {
  std::vector<double> telling;
  for (const BinRange& bins : rows) {
    const int last = bins.end - 1;
    for (const double bin : {bins.first + 0.0, (bins.first + last) / 2.0, last + 0.0}) {
      telling.push_back(bin / FilterSpectrumScale);
    }
  }
  return telling;
}

std::vector<double> TellingOf(const SystemSettings& settings, int stage, std::int16_t kind) {
  if (kind == FilterKind::HiResGraphic) {
    return SharpTurns(DrawnLines(settings.hiResCurve[stage]), 0, FilterSpectrumScale);
  }
  if (kind == FilterKind::SpectralInverse) {
    return SharpTurns(DrawnLines(settings.sifCurve[stage]), 1, FilterSpectrumScale);
  }
  return MiddlesAndEnds(ListedBins(settings, stage, kind));
}

double Subtracted(std::int16_t atten) {
  return std::max<std::int16_t>(atten, 0) / static_cast<double>(FullEffect);
}

}  // namespace

TableFilter TableFilterOf(const SystemSettings& settings, int stage, std::int16_t kind) {
  const KindLaw& law = FilterLaw(kind);
  const double subtracted = Subtracted(law.masterAtten ? settings.filterAtten[stage] : law.plainAtten);
  const double gain =
      law.outputGain ? std::max<std::int16_t>(settings.filterGain[stage], 0) / OutputGainUnity : 1;
  return {StageDesign(settings, stage, kind, settings.generalStageTaps), gain, -gain * subtracted,
          TellingOf(settings, stage, kind)};
}

TableFilter CurveFilterOf(const SystemSettings& settings, DrawnCurve curve) {
  return {CurveDesign(curve, settings.generalStageTaps), 1, -1, SharpTurns(curve, 0, FilterSpectrumScale)};
}

TableFilter EdgeFilterOf(const SystemSettings& settings, int equalizer) {
  const std::span<const float> lines(settings.edgeCurve[equalizer].items);
  return {EdgeDesign(settings, equalizer), 0, 1, SharpTurns(lines.first(EdgeLines), 0, EdgeCurveScale)};
}

std::vector<double> GainsAt(const TableFilter& filter, std::span<const double> frequencies) {
  FilterTransform transform;
  return GainsWith(CoefficientsOf(transform, filter.design), filter.direct, filter.passed, frequencies);
}

std::vector<double> TellingAt(const TableFilter& filter) { return filter.telling; }

std::vector<double> TableGains(std::span<const float> table, std::int16_t filterAtten,
                               std::span<const double> frequencies) {
  return GainsWith(table, 1, -Subtracted(filterAtten), frequencies);
}

}  // namespace vc
