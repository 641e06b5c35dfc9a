#include "unit/sound/BroadbandGrid.h"

#include <algorithm>

#include "unit/sound/BandGraphic.h"

namespace unit::sound {
namespace {

constexpr std::size_t ValuesPerBand = 6, ValuesAbove = 8;

// In Hz, from 0 to the end of what lies above the bands.
std::array<double, GraphicBands + 2> Edges(double sampleRate) {
  const BandValues centres = BandCentres(sampleRate);
  std::array<double, GraphicBands + 2> edges{};
  for (std::size_t j = 1; j < GraphicBands; ++j) edges[j] = (centres[j - 1] + centres[j]) / 2;
  edges[GraphicBands] = 2 * centres.back() - edges[GraphicBands - 1];  // as far above the last as below it
  edges.back() = sampleRate / 2;
  return edges;
}

}  // namespace

std::array<std::uint8_t, NoiseFloor::Lines> ValuesOfLines(double sampleRate) {
  constexpr std::size_t last = NoiseFloor::Lines - 1;
  const auto edges = Edges(sampleRate);
  std::array<std::uint8_t, NoiseFloor::Lines> values{};
  std::size_t band = 0;
  for (std::size_t line = 0; line <= last; ++line) {
    const double frequency = edges.back() * static_cast<double>(line) / last;
    while (band < GraphicBands && frequency >= edges[band + 1]) ++band;
    const std::size_t count = band < GraphicBands ? ValuesPerBand : ValuesAbove;
    const double part = (frequency - edges[band]) / (edges[band + 1] - edges[band]);
    const auto within = std::min(count - 1, static_cast<std::size_t>(part * static_cast<double>(count)));
    values[line] = static_cast<std::uint8_t>(band * ValuesPerBand + within);
  }
  return values;
}

}  // namespace unit::sound
