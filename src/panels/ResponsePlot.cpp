#include "panels/ResponsePlot.h"

#include <cmath>
#include <vector>

#include "model/FilterResponse.h"

namespace vc {

PlotAxis FrequencyAxis(const SystemSettings& settings, AxisLaw law) {
  const double from = law == AxisLaw::Linear ? 0.0 : LowestFrequency;
  return {from, static_cast<double>(settings.bandwidthHz), "Hz", law};
}

PlotTrace ResponseTrace(const SystemSettings& settings, int stage, std::int16_t filterType,
                        const PlotAxis& frequencies, std::size_t points) {
  PlotTrace trace{.name = "Response", .values = {}};
  if (frequencies.law == AxisLaw::Linear) {
    trace.values = FilterResponse(settings, stage, filterType, points);
    return trace;
  }
  const PlotScale places(frequencies, 0.0, static_cast<double>(points - 1));
  for (std::size_t i = 0; i < points; ++i) trace.places.push_back(places.ValueAt(static_cast<double>(i)));
  trace.values = FilterResponse(settings, stage, filterType, trace.places);
  return trace;
}

PlotAxis LevelAxis(double attenuation) {
  constexpr double highest = 5, step = 20, clear = 5;  // dB; so much is clear below the stopband
  return {-step * std::ceil((attenuation + clear) / step), highest, "dB"};
}

}  // namespace vc
