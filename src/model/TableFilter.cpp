#include "model/TableFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "model/CoefficientPacking.h"
#include "model/HostDesign.h"
#include "model/Kinds.h"
#include "model/SymmetricTaps.h"

namespace vc {
namespace {

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

}  // namespace

std::vector<double> TableGains(std::span<const float> table, std::int16_t filterAtten,
                               std::span<const double> frequencies) {
  const TableHalves halves = HalvesOf(table);
  const double subtracted = std::max<std::int16_t>(filterAtten, 0) / static_cast<double>(FullEffect);
  std::vector<double> gains = AmplitudesAt(halves.even, frequencies);
  for (std::size_t i = 0; i < gains.size(); i++) {
    double aside = 0;
    for (const Uneven& tap : halves.uneven) {
      aside += tap.difference * std::sin(2 * std::numbers::pi * frequencies[i] * tap.samples);
    }
    gains[i] = std::hypot(1 - subtracted * gains[i], subtracted * aside);
  }
  return gains;
}

std::vector<double> BuiltGains(const SystemSettings& settings, int stage, std::int16_t kind,
                               std::span<const double> frequencies) {
  FilterTransform transform;
  const std::vector<float> table =
      BuildCoefficients(transform, settings, stage, kind, settings.generalStageTaps);
  return TableGains(table, settings.filterAtten[stage], frequencies);
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

}  // namespace vc
