#include "model/EndHighpass.h"

#include <cmath>
#include <numbers>

#include "model/modNumerical.h"

namespace vc {

EndHighpass EndHighpassOf(const SystemSettings& settings, ChainEnd end) {
  constexpr double lowest = 100, highest = 500;  // Hz
  const double hertz = end == ChainEnd::Input ? settings.ihpfCutoff : settings.ohpfCutoff;
  return {Bounded(hertz, lowest, highest) / static_cast<double>(settings.sampleRate)};
}

std::vector<double> GainsAt(const EndHighpass& filter, std::span<const double> frequencies) {
  constexpr int poles = 4;
  const auto warped = [](double cycles) { return std::tan(std::numbers::pi * cycles); };
  const double edge = warped(filter.cutoff);
  std::vector<double> gains;
  gains.reserve(frequencies.size());
  for (const double frequency : frequencies) {
    const double below = frequency > 0 ? edge / warped(frequency) : HUGE_VAL;
    gains.push_back(1 / std::sqrt(1 + std::pow(below, 2 * poles)));
  }
  return gains;
}

}  // namespace vc
