// The law of the cut-off filters: from the settings of a stage to the taps of the filter that they stand for.
#pragma once

#include <span>
#include <vector>

#include "model/SymmetricTaps.h"
#include "model/SystemSettings.h"

namespace vc {

// A band with the filter that passes or rejects it. Edges are in cycles per sample, 0.0..0.5.
struct CutOffFilter {
  double lower = 0;     // 0: the band has no lower edge
  double upper = 0;     // not below lower
  int halfLength = 1;   // n: the filter has 2n - 1 taps
  double stopGain = 1;  // amplitude in the stopband, above 0 and at most 1
  bool rejects = false;
  bool operator==(const CutOffFilter&) const = default;
};

// The filter of a stage (1..6) run as each kind. Settings out of range are bounded: an edge to 0 and half the
// sample rate, an upper edge to the lower one, n to 1 and to what the stage can hold, which is
// maxFilterSize / 2 - 1, the attenuation to 0..60 dB.
CutOffFilter LowpassOf(const SystemSettings& settings, int stage);
CutOffFilter HighpassOf(const SystemSettings& settings, int stage);
CutOffFilter BandpassOf(const SystemSettings& settings, int stage);
CutOffFilter BandstopOf(const SystemSettings& settings, int stage);

// Half of the impulse response, n taps; always finite.
HalfTaps CutOffTaps(const CutOffFilter& filter);

// The gain at each frequency (cycles per sample), of either sign.
std::vector<double> GainsAt(const CutOffFilter& filter, std::span<const double> frequencies);

}  // namespace vc
