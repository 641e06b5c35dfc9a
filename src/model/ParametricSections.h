// What a parametric equalizer does, by the coefficients that its block carries.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "model/SynthesisBlock.h"
#include "model/SystemSettings.h"

namespace vc {

// 1 + gain times the bandpass input (1 - z^-2) / (1 - feedback1 z^-1 - feedback2 z^-2).
struct ParametricSection {
  double input = 0;
  double feedback1 = 0, feedback2 = 0;
  double gain = 0;
  bool in = false;  // the operator has it in; one that is out has no gain
  bool operator==(const ParametricSection&) const = default;
};

// All in a row, and then the level.
struct ParametricFilter {
  double level = 1;
  std::array<ParametricSection, ParametricSubstages> sections;
  bool operator==(const ParametricFilter&) const = default;
};

// Of filter stage 1..6, and of equalizer 1, 2, each run as its parametric kind: as the unit reads the block
// that it gets. A section that would not be stable passes what it gets.
ParametricFilter TriParametricOf(const SystemSettings& settings, int stage);
ParametricFilter DualParametricOf(const SystemSettings& settings, int equalizer);

// The gain at each frequency (cycles per sample); the filter is not linear in phase.
std::vector<double> GainsAt(const ParametricSection& section, std::span<const double> frequencies);
std::vector<double> GainsAt(const ParametricFilter& filter, std::span<const double> frequencies);

// The gains of each section that is in and does something, alone.
std::vector<std::vector<double>> PartsAt(const ParametricFilter& filter, std::span<const double> frequencies);

// The centres of the sections that are in, in cycles per sample.
std::vector<double> TellingAt(const ParametricFilter& filter);

}  // namespace vc
