#include "panels/ResponsePlot.h"

#include <algorithm>
#include <cmath>

namespace vc {

PlotAxis FrequencyAxis(const SystemSettings& settings, AxisLaw law) {
  const double from = law == AxisLaw::Linear ? 0.0 : LowestFrequency;
  return {from, static_cast<double>(settings.bandwidthHz), "Hz", law};
}

std::vector<double> ResponsePlaces(const SystemSettings& settings, const BlockKind& block,
                                   const PlotAxis& frequencies, std::size_t points) {
  const PlotScale scale(frequencies, 0.0, static_cast<double>(points - 1));
  std::vector<double> places;
  for (std::size_t i = 0; i < points; ++i) places.push_back(scale.ValueAt(static_cast<double>(i)));
  std::vector<bool> taken(points, false);
  taken.front() = taken.back() = true;
  for (const double telling : TellingFrequencies(settings, block)) {
    if (telling <= frequencies.from || telling >= frequencies.to) continue;
    const auto nearest = static_cast<std::size_t>(std::lround(scale.PixelOf(telling)));
    if (taken[nearest]) {
      places.push_back(telling);
    } else {
      places[nearest] = telling;
      taken[nearest] = true;
    }
  }
  std::ranges::sort(places);
  return places;
}

PlotTrace ResponseTrace(const SystemSettings& settings, const BlockKind& block, const PlotAxis& frequencies,
                        std::size_t points) {
  PlotTrace trace{.name = "Response", .values = {}};
  if (!HasResponse(block)) return trace;
  trace.places = ResponsePlaces(settings, block, frequencies, points);
  trace.values = FilterResponse(settings, block, trace.places);
  return trace;
}

std::vector<PlotTrace> ResponseTraces(const SystemSettings& settings, const BlockKind& block,
                                      const PlotAxis& frequencies, std::size_t points) {
  std::vector<PlotTrace> traces{ResponseTrace(settings, block, frequencies, points)};
  for (auto& part : ResponseParts(settings, block, traces.front().places)) {
    traces.push_back(
        {.name = "", .values = std::move(part), .colour = FaintCurve, .places = traces.front().places});
  }
  return traces;
}

PlotAxis LevelAxis(double attenuation) {
  constexpr double highest = 5, step = 20, clear = 5;  // dB; so much is clear below the stopband
  return {-step * std::ceil((attenuation + clear) / step), highest, "dB"};
}

}  // namespace vc
