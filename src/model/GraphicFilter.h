// The law of the twenty-band graphic filters: from the words of a stage to the taps that the unit makes of
// them.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "model/BandFrequencies.h"
#include "model/SymmetricTaps.h"
#include "model/SystemSettings.h"

namespace vc {

struct GraphicFilter {
  std::array<int, BandCount> places{};    // BandPlaces
  std::array<double, BandCount> gains{};  // asked for there, 0.0..1.0
  int halfLength = 512;                   // n: the filter has 2n - 1 taps
  bool operator==(const GraphicFilter&) const = default;
};

// The filter of stage 1..6, and that of equalizer 1, 2, by the words that go to the unit. As many taps as a
// stage holds at that bandwidth.
GraphicFilter GraphicFilterOf(const SystemSettings& settings, int stage);
GraphicFilter GraphicEqualizerOf(const SystemSettings& settings, int equalizer);

// Half of the impulse response, n taps. Between two bands the gain goes straight from one to the other,
// outside of them it stays; Kaiser's window for 50 dB rounds the bends, and the line is drawn so that the
// gains come out right at the bands.
HalfTaps GraphicTaps(const GraphicFilter& filter);

// The gain at each frequency (cycles per sample), of either sign.
std::vector<double> GainsAt(const GraphicFilter& filter, std::span<const double> frequencies);

// The bands, in cycles per sample.
std::vector<double> TellingAt(const GraphicFilter& filter);

}  // namespace vc
