// How far a broadband stage brings steady noise down.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "model/SystemSettings.h"

namespace vc {

// The unit works on the lines of a spectrum, sampleRate / 512 apart from 0 to half of the rate.
inline constexpr std::size_t NoiseLines = 257;

struct NoiseBands {
  std::array<double, NoiseLines> kept{};  // of the amplitude of steady noise, in each line, 0..1
  double gain = 1;                        // of what leaves
  std::vector<double> centres{};          // of its bands, in cycles per sample; none where it has none
  bool operator==(const NoiseBands&) const = default;
};

// Of broadband stage 1, 2 run as each kind. A line belongs to the band of the nearest frequency
// (BandFrequencies). What is kept is what the attenuation and the bands ask for, but
// not less than the smoothing leaves: with a record that is none of the presets that is a rough value.
NoiseBands NoiseReducerOf(const SystemSettings& settings, int stage);
NoiseBands NoiseEqOf(const SystemSettings& settings, int stage);

// The amplitude of steady noise at each frequency (cycles per sample), against what comes in.
std::vector<double> GainsAt(const NoiseBands& bands, std::span<const double> frequencies);

inline std::vector<double> TellingAt(const NoiseBands& bands) { return bands.centres; }

}  // namespace vc
