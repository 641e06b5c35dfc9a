// The law of notch and slot: a lobe around one frequency that is taken away, or that alone passes.
#pragma once

#include <span>
#include <vector>

#include "model/SymmetricTaps.h"
#include "model/SystemSettings.h"

namespace vc {

// The filter is direct at its middle tap, and `passed` times a lobe that is 1 at its centre.
struct LobeFilter {
  double centre = 0;   // cycles per sample, 0.0..0.5
  int halfLength = 1;  // n: the filter has 2n - 1 taps, and the lobe is 1.5 / (n + 1) wide at half its height
  double direct = 1;
  double passed = 0;
  bool operator==(const LobeFilter&) const = default;
};

// The filter of a stage (1..6) run as each kind. What is out of range is bounded as for a cut-off filter.
LobeFilter NotchOf(const SystemSettings& settings, int stage);
LobeFilter SlotOf(const SystemSettings& settings, int stage);

// Half of the impulse response, n taps; always finite.
HalfTaps LobeTaps(const LobeFilter& filter);

// The gain at each frequency (cycles per sample), of either sign.
std::vector<double> GainsAt(const LobeFilter& filter, std::span<const double> frequencies);

// The centre and the edges at half its height, in cycles per sample.
std::vector<double> TellingAt(const LobeFilter& filter);

}  // namespace vc
