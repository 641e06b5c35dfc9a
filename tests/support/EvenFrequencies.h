// Frequencies to look at a response by.
#pragma once

#include <cstddef>
#include <vector>

#include "model/SystemSettings.h"

namespace support {

// So many, evenly spaced from 0 to the audio bandwidth; one alone is 0 Hz.
inline std::vector<double> EvenFrequencies(const vc::SystemSettings& settings, std::size_t points) {
  std::vector<double> frequencies;
  for (std::size_t i = 0; i < points; ++i) {
    const double part = points > 1 ? static_cast<double>(i) / static_cast<double>(points - 1) : 0.0;
    frequencies.push_back(settings.bandwidthHz * part);
  }
  return frequencies;
}

}  // namespace support
