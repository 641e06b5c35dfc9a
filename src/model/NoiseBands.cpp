#include "model/NoiseBands.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "model/BandFrequencies.h"
#include "model/BroadbandBlock.h"
#include "model/Kinds.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

using S = SystemSettings;

constexpr int LastLine = static_cast<int>(NoiseLines) - 1;
constexpr int Frame = 2 * LastLine;

// What the preset records leave of white noise with all that can be asked for, in dB, at every rate: with
// smoothing and without.
constexpr double SmoothedFall = 21.9, PlainFall = 7.5;

double LeastKept(const S& s, int stage) {
  const std::int32_t mode = s.broadbandParms[stage].mode;
  return AmplitudeRatio(mode == 0 || mode == 1 ? -SmoothedFall : -PlainFall);
}

// The band that a frequency in Hz belongs to: the nearest.
int BandAt(const std::array<double, BandCount>& bands, double hertz) {
  const auto distance = [hertz](double frequency) { return std::abs(frequency - hertz); };
  return static_cast<int>(std::ranges::min_element(bands, {}, distance) - bands.begin());
}

template <std::int16_t Kind>
NoiseBands BandsOf(const S& s, int stage) {
  constexpr double attenuationUnity = 32768, gainUnity = 16;
  const int entry = FilterStages + stage;
  const double attenuation = std::max<std::int16_t>(s.filterAtten[entry], 0) / attenuationUnity;
  const double least = LeastKept(s, stage);
  NoiseBands bands{.gain = std::max<std::int16_t>(s.filterGain[entry], 0) / gainUnity};
  const std::array frequencies = BandFrequencies(s.bandwidthIndex);
  for (int line = 0; line <= LastLine; line++) {
    const int band = BandAt(frequencies, line * static_cast<double>(s.sampleRate) / Frame);
    const double asked = attenuation * Bounded(BandReduction(s, stage, Kind, band), 0, 1);
    bands.kept[static_cast<std::size_t>(line)] = std::max(1 - asked, least);
  }
  return bands;
}

// What a sine so many lines away gets of a line's gain: the power of the frame's window, half a sine, there.
double Share(double lines) {
  const double pole = 1 - 4 * lines * lines;
  if (std::abs(pole) < 1e-9) return 0.5;
  const double side = std::cos(std::numbers::pi * lines) / pole;
  return 8 / (std::numbers::pi * std::numbers::pi) * side * side;
}

double KeptAt(const NoiseBands& bands, double frequency) {
  constexpr int reach = 6;  // beyond it the shares add up to less than 1e-4
  const double place = frequency * Frame;
  const int nearest = static_cast<int>(std::lround(place));
  double sum = 0;
  double shares = 0;
  for (int line = nearest - reach; line <= nearest + reach; line++) {
    const int mirrored = std::abs(line) <= LastLine ? std::abs(line) : Frame - line;
    const double share = Share(place - line);
    sum += share * bands.kept[static_cast<std::size_t>(mirrored)];
    shares += share;
  }
  return sum / shares;
}

}  // namespace

NoiseBands NoiseReducerOf(const S& settings, int stage) {
  return BandsOf<BroadbandKind::NoiseReducer>(settings, stage);
}

NoiseBands NoiseEqOf(const S& settings, int stage) {
  NoiseBands bands = BandsOf<BroadbandKind::NoiseEq>(settings, stage);
  for (const int place : BandPlaces(settings.bandwidthIndex)) {
    bands.centres.push_back(place / static_cast<double>(BandSteps));
  }
  return bands;
}

std::vector<double> GainsAt(const NoiseBands& bands, std::span<const double> frequencies) {
  std::vector<double> gains;
  gains.reserve(frequencies.size());
  for (const double frequency : frequencies) gains.push_back(bands.gain * KeptAt(bands, frequency));
  return gains;
}

}  // namespace vc
