// What all pictures of a response have in common: the frequency axis that the operator has chosen, the curves
// over it, and the range that suits an attenuation.
#pragma once

#include <cstddef>
#include <vector>

#include "model/FilterResponse.h"
#include "model/SystemSettings.h"
#include "widgets/Plot.h"

namespace vc {

inline constexpr double LowestFrequency = 20;  // Hz, where a logarithmic axis begins

// From 0, or from the lowest frequency of a logarithmic axis, up to the audio bandwidth.
PlotAxis FrequencyAxis(const SystemSettings& settings, AxisLaw law);

// The frequencies in Hz at which a response is computed: so many places evenly spaced on the axis as it is
// seen, but that what a picture of the block must not miss takes the place of the nearest one, as two points
// in one pixel would be drawn darker than the line. Rising; more of them where several are near to one place.
std::vector<double> ResponsePlaces(const SystemSettings& settings, const BlockKind& block,
                                   const PlotAxis& frequencies, std::size_t points);

// The response of a block, without values where its kind has none to compute; and behind it, faint and
// without names, what it is made of.
PlotTrace ResponseTrace(const SystemSettings& settings, const BlockKind& block, const PlotAxis& frequencies,
                        std::size_t points);
std::vector<PlotTrace> ResponseTraces(const SystemSettings& settings, const BlockKind& block,
                                      const PlotAxis& frequencies, std::size_t points);

// Levels for a stopband at so many dB below 0, in steps of 20 dB, so that it stays as it is while that
// changes a little.
PlotAxis LevelAxis(double attenuation);

}  // namespace vc
