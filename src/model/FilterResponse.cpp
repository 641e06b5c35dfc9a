#include "model/FilterResponse.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

#include "model/ResponseBasis.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

using Frequencies = std::vector<double>;  // cycles per sample, 0.0..0.5
using Amplitudes = std::vector<double>;   // of either sign, one a frequency

std::vector<double> InHertz(float sampleRate, std::vector<double> frequencies) {
  for (double& frequency : frequencies) frequency *= static_cast<double>(sampleRate);
  return frequencies;
}

// What a filter can tell follows from which of these there are for it.
template <typename T>
concept HasGains = requires(const T& filter, const Frequencies& frequencies) {
  GainsAt(filter, frequencies);
};
template <typename T>
concept HasParts = requires(const T& filter, const Frequencies& frequencies) {
  PartsAt(filter, frequencies);
};
template <typename T>
concept HasTelling = requires(const T& filter) {
  TellingAt(filter);
};

Frequencies InCycles(float sampleRate, std::span<const double> frequencies) {
  Frequencies cycles;
  cycles.reserve(frequencies.size());
  for (const double frequency : frequencies) {
    cycles.push_back(Bounded(frequency / static_cast<double>(sampleRate), 0.0, 0.5));
  }
  return cycles;
}

// The last digits of a sum are noise, which would make of a flat response a zigzag that is drawn as dots.
std::vector<float> InDecibels(const Amplitudes& amplitudes) {
  constexpr double fine = 1e5;  // a decibel
  std::vector<float> decibels(amplitudes.size());
  std::ranges::transform(amplitudes, decibels.begin(), [](double amplitude) {
    const double exact = 20 * std::log10(std::abs(amplitude));
    return std::max(LowestResponse, static_cast<float>(std::nearbyint(exact * fine) / fine));
  });
  return decibels;
}

std::vector<double> WithinBand(std::int16_t bandwidthHz, std::vector<double> hertz) {
  std::erase_if(hertz, [&](double one) { return !(one >= 0 && one <= bandwidthHz); });
  return hertz;
}

}  // namespace

std::vector<double> GainsAt(const ResponseBasis& basis, std::span<const double> frequencies) {
  return std::visit(
      [&](const auto& filter) -> std::vector<double> {
        if constexpr (HasGains<decltype(filter)>) {
          return GainsAt(filter, InCycles(basis.sampleRate, frequencies));
        }
        return {};
      },
      basis.filter);
}

std::vector<double> TellingAt(const ResponseBasis& basis) {
  return std::visit(
      [&](const auto& filter) -> std::vector<double> {
        if constexpr (HasTelling<decltype(filter)>) {
          return WithinBand(basis.bandwidthHz, InHertz(basis.sampleRate, TellingAt(filter)));
        }
        return {};
      },
      basis.filter);
}

std::vector<float> FilterResponse(const SystemSettings& settings, const BlockKind& block,
                                  std::span<const double> frequencies) {
  return InDecibels(GainsAt(BasisOf(settings, block), frequencies));
}

std::vector<float> CurveResponse(const SystemSettings& settings, DrawnCurve curve,
                                 std::span<const double> frequencies) {
  return InDecibels(GainsAt(CurveFilterOf(settings, curve), InCycles(settings.sampleRate, frequencies)));
}

std::vector<std::vector<float>> ResponseParts(const SystemSettings& settings, const BlockKind& block,
                                              std::span<const double> frequencies) {
  std::vector<std::vector<float>> parts;
  std::visit(
      [&](const auto& filter) {
        if constexpr (HasParts<decltype(filter)>) {
          for (const Amplitudes& part : PartsAt(filter, InCycles(settings.sampleRate, frequencies))) {
            parts.push_back(InDecibels(part));
          }
        }
      },
      BasisOf(settings, block).filter);
  return parts;
}

std::vector<double> TellingFrequencies(const SystemSettings& settings, const BlockKind& block) {
  return TellingAt(BasisOf(settings, block));
}

}  // namespace vc
