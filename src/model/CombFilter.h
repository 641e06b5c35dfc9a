// The law of comb and inverse comb: a harmonic series up to a limit that is taken away, or that alone passes.
#pragma once

#include <span>
#include <vector>

#include "model/SystemSettings.h"

namespace vc {

// Up to the limit the signal and itself a period later, added or subtracted; beyond it a plain gain.
struct CombFilter {
  int period = 1;       // samples
  double now = 1;       // of the signal; positive
  double later = 0;     // of the delayed signal
  double limit = 0;     // cycles per sample, 0.0..0.5
  double beyond = 1;    // gain above the limit
  int halfLength = 2;   // of the lowpass that makes the limit
  double stopGain = 1;  // which that lowpass must keep clear of
  bool operator==(const CombFilter&) const = default;
};

// The filter of a stage (1..6) run as each kind. What is out of range is bounded: the limit to 0 and half the
// sample rate, the period to 1 and to what leaves the stage (maxFilterSize) three taps for the limit.
CombFilter CombOf(const SystemSettings& settings, int stage);
CombFilter InverseCombOf(const SystemSettings& settings, int stage);

// The gain at each frequency (cycles per sample); the filter is not linear in phase.
std::vector<double> GainsAt(const CombFilter& filter, std::span<const double> frequencies);

// Where the response is lowest and highest up to the limit, in cycles per sample, rising.
std::vector<double> TellingAt(const CombFilter& filter);

}  // namespace vc
