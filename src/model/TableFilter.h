// What a stage makes of coefficients that the host designs: a filter stage subtracts what they pass, an
// equalizer passes it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model/HostDesign.h"
#include "model/SystemSettings.h"

namespace vc {

// direct, and `passed` times what the coefficients pass.
struct TableFilter {
  HostDesign design;
  double direct = 1, passed = 0;
  // Cycles per sample: middle and ends of each row of a list, and the lines where a curve turns by more than
  // 3 dB.
  std::vector<double> telling;
  bool operator==(const TableFilter&) const = default;
};

// Of a filter stage (1..6) run as a kind that the host designs, as it would be sent now, with the output gain
// where the kind has one.
TableFilter TableFilterOf(const SystemSettings& settings, int stage, std::int16_t kind);
// Of a filter stage with the coefficients of a drawn curve, all of which is subtracted.
TableFilter CurveFilterOf(const SystemSettings& settings, DrawnCurve curve);
// Of equalizer 1 or 2 with the coefficients of its drawn curve.
TableFilter EdgeFilterOf(const SystemSettings& settings, int equalizer);

// The gain at each frequency (cycles per sample), the delay taken off.
std::vector<double> GainsAt(const TableFilter& filter, std::span<const double> frequencies);
std::vector<double> TellingAt(const TableFilter& filter);

// The gains of a filter stage with this table, at the words that go to the unit; where it is the same read
// backwards from its middle, which its first tap alone has no partner for, the cost is that of a symmetric
// filter. An empty table subtracts nothing. filterAtten: how much of it is subtracted, 0..32767 (bounded).
std::vector<double> TableGains(std::span<const float> table, std::int16_t filterAtten,
                               std::span<const double> frequencies);

}  // namespace vc
