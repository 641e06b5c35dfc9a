#include "model/NoiseBands.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "model/BandFrequencies.h"
#include "model/BroadbandBlock.h"
#include "model/BroadbandPresets.h"
#include "model/Kinds.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

using S = SystemSettings;

constexpr int LastLine = static_cast<int>(NoiseLines) - 1;
constexpr int Frame = 2 * LastLine;

// What the preset records leave of white noise with all that can be asked for, in dB, by the presets' order.
struct DeepestFall {
  float sampleRate;
  std::array<double, 3> fall;  // noise reducer, noise equalizer, off
};
constexpr std::array deepestFalls{
    DeepestFall{7200, {17.0, 8.2, 8.3}},   DeepestFall{12000, {18.8, 10.1, 8.8}},
    DeepestFall{14400, {19.2, 10.8, 8.9}}, DeepestFall{18000, {19.8, 12.2, 9.1}},
    DeepestFall{24000, {20.0, 13.6, 9.3}}, DeepestFall{36000, {20.6, 16.7, 9.5}},
};

double LeastKept(const S& s, int stage, std::int16_t kind) {
  const auto* row = std::ranges::lower_bound(deepestFalls, s.sampleRate, {}, &DeepestFall::sampleRate);
  if (row == deepestFalls.end()) --row;
  const std::int32_t mode = s.broadbandParms[stage].mode;
  const int preset = mode == 0 || mode == 1 ? kind : OffPreset;
  return AmplitudeRatio(-row->fall.at(static_cast<std::size_t>(preset)));
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
  const double least = LeastKept(s, stage, Kind);
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
