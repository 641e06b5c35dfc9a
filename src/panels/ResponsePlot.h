// What all pictures of a response have in common: the frequency axis that the operator has chosen, the curve
// over it, and the range that suits an attenuation.
#pragma once

#include <cstddef>
#include <cstdint>

#include "model/SystemSettings.h"
#include "widgets/Plot.h"

namespace vc {

inline constexpr double LowestFrequency = 20;  // Hz, where a logarithmic axis begins

// From 0, or from the lowest frequency of a logarithmic axis, up to the audio bandwidth.
PlotAxis FrequencyAxis(const SystemSettings& settings, AxisLaw law);
// The response of a stage at so many places evenly spaced on the axis as it is seen; without values where its
// kind has none to compute.
PlotTrace ResponseTrace(const SystemSettings& settings, int stage, std::int16_t filterType,
                        const PlotAxis& frequencies, std::size_t points);
// Levels for a stopband at so many dB below 0, in steps of 20 dB, so that it stays as it is while that
// changes a little.
PlotAxis LevelAxis(double attenuation);

}  // namespace vc
