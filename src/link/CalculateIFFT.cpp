#include "link/CalculateIFFT.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace vc {

void CalculateIFFT(std::int16_t size, std::int16_t /*mode*/, std::span<float, IfftCapacity> buffer) {
  if (size < 2 || size % 2 != 0 || static_cast<std::size_t>(size) > IfftCapacity) return;
  const auto taps = static_cast<std::size_t>(size);
  const std::size_t half = taps / 2;

  std::vector<double> cosine(taps);
  for (std::size_t i = 0; i < taps; ++i) {
    cosine[i] = std::cos(2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(taps));
  }
  std::vector<double> magnitude(half + 1);
  for (std::size_t k = 0; k <= half; ++k) magnitude[k] = static_cast<double>(buffer[k]);

  // Tap half+d and tap half-d are equal, so each distance from the centre is summed once.
  for (std::size_t d = 0; d <= half; ++d) {
    double sum = magnitude[0] + magnitude[half] * cosine[half * d % taps];
    std::size_t phase = 0;
    for (std::size_t k = 1; k < half; ++k) {
      phase += d;
      if (phase >= taps) phase -= taps;
      sum += 2.0 * magnitude[k] * cosine[phase];
    }
    const auto tap = static_cast<float>(sum / static_cast<double>(taps));
    buffer[half - d] = tap;
    if (d < half) buffer[half + d] = tap;
  }
}

}  // namespace vc
