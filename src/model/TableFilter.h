// What a stage makes of a table of coefficients: a filter stage subtracts what they pass, an equalizer passes
// it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model/HostDesign.h"
#include "model/SystemSettings.h"

namespace vc {

// The gain of a filter stage at each frequency (cycles per sample), the delay taken off. The table is what
// BuildCoefficients gives, at the words that go to the unit; where it is the same read backwards from its
// middle, which its first tap alone has no partner for, the cost is that of a symmetric filter. An empty
// table subtracts nothing. filterAtten: how much of it is subtracted, 0..32767 (bounded).
std::vector<double> TableGains(std::span<const float> table, std::int16_t filterAtten,
                               std::span<const double> frequencies);

// Of a filter stage (1..6) run as a kind that the host designs, as it would be sent now, with the output gain
// where the kind has one.
std::vector<double> BuiltGains(const SystemSettings& settings, int stage, std::int16_t kind,
                               std::span<const double> frequencies);

// Of a filter stage with the coefficients of a drawn curve, all of which is subtracted.
std::vector<double> CurveGains(const SystemSettings& settings, DrawnCurve curve,
                               std::span<const double> frequencies);

// Of equalizer 1 or 2 with the coefficients of its drawn curve.
std::vector<double> EdgeGains(const SystemSettings& settings, int equalizer,
                              std::span<const double> frequencies);

// The lines where a curve (dB) goes one way and then the other, or stands, and turns by more than 3 dB: the
// bottom of a notch of a few lines, in cycles per sample.
std::vector<double> SharpTurns(std::span<const float> lines, double linesPerRate);

// Where the rows of its list are, in cycles per sample: middle and ends of each.
std::vector<double> TellingOfList(const SystemSettings& settings, int stage, std::int16_t kind);

}  // namespace vc
