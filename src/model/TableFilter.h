// What a stage passes that subtracts what a table of coefficients passes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model/SystemSettings.h"

namespace vc {

// The gain of a filter stage at each frequency (cycles per sample), the delay taken off. The table is what
// BuildCoefficients gives, at the words that go to the unit; where it is the same read backwards from its
// middle, which its first tap alone has no partner for, the cost is that of a symmetric filter. An empty
// table subtracts nothing. filterAtten: how much of it is subtracted, 0..32767 (bounded).
std::vector<double> TableGains(std::span<const float> table, std::int16_t filterAtten,
                               std::span<const double> frequencies);

// Of a filter stage (1..6) run as a kind that the host designs, as it would be sent now.
std::vector<double> BuiltGains(const SystemSettings& settings, int stage, std::int16_t kind,
                               std::span<const double> frequencies);

// Where the rows of its list are, in cycles per sample: middle and ends of each.
std::vector<double> TellingOfList(const SystemSettings& settings, int stage, std::int16_t kind);

}  // namespace vc
