// The static curve of the limiter, compressor and expander: which level comes out for one that goes in. And
// the laws by which its points and lines are taken elsewhere.
#pragma once

#include <array>
#include <optional>

#include "model/SystemSettings.h"

namespace vc {

// Levels in dB of full scale.
struct CurvePoint {
  double input, output;
};

struct TransferCurve {
  static constexpr double Lowest = -100;         // dB, where the curve begins; it ends at 0
  static constexpr double LeastThreshold = -90;  // dB
  static constexpr double LeastRatio = 1, MostRatio = 100, RatioSteps = 10;  // a ratio is kept in tenths

  double limit = 0, compression = 0;  // thresholds in dB, -90..0, the second at most the first
  double compressionRatio = 1, expansionRatio = 1;

  // Stays at the limit above that; rises by 1 dB for as many dB of input as the compression ratio says
  // between the thresholds; falls by as many for 1 dB as the expansion ratio says below them.
  double OutputAt(double input) const;
  double GainAt(double input) const { return OutputAt(input) - input; }
  // Rising: where it begins, which may be far below the lowest output that is of interest; the compression
  // knee; the limit knee; where it ends.
  std::array<CurvePoint, 4> Points() const;
  CurvePoint CompressionKnee() const;
  CurvePoint LimitKnee() const { return {limit, limit}; }

  // Where something is taken to. None where that has no answer: thresholds are not moved below the least of
  // them, and a line that goes through its fixed point alone has no slope.
  std::optional<double> LimitAt(double input) const;
  std::optional<double> CompressionAt(double input) const;
  // Of a line through the point and a knee that stays: the limit knee for the compression line, the
  // compression knee for the expansion line.
  std::optional<double> CompressionRatioAt(const CurvePoint& point) const;
  std::optional<double> ExpansionRatioAt(const CurvePoint& point) const;
};

// Of a filter stage 1..6 and of an equalizer 1 or 2, the values held to their ranges.
TransferCurve CurveOfFilter(const SystemSettings& settings, int stage);
TransferCurve CurveOfEqualizer(const SystemSettings& settings, int equalizer);

}  // namespace vc
