// The law of the high-pass filters at the two ends of the chain.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "model/SystemSettings.h"

namespace vc {

enum class ChainEnd : std::uint8_t { Input, Output };

// Butterworth of the fourth order: -3 dB at the cut-off (cycles per sample), 24 dB an octave below it.
struct EndHighpass {
  double cutoff = 0;
  bool operator==(const EndHighpass&) const = default;
};

// As the unit runs it: the cut-off is bounded to 100..500 Hz.
EndHighpass EndHighpassOf(const SystemSettings& settings, ChainEnd end);

// The gain at each frequency (cycles per sample, 0..0.5). The filter is the bilinear transform of the analog
// one (Oppenheim and Schafer, "Discrete-Time Signal Processing", 7.1), so that frequencies lie by their
// tangents.
std::vector<double> GainsAt(const EndHighpass& filter, std::span<const double> frequencies);

}  // namespace vc
