// Smoothing coefficients are stated at 12 kHz and scaled so that the time constants stay.
#include "model/BroadbandPresets.h"

#include <cmath>

#include "model/Bandwidth.h"
#include "model/Kinds.h"

namespace vc {
namespace {

constexpr double StatedRate = 12000;  // Hz
constexpr double StatedSpan = 24;     // points
constexpr double NoiseReducerSmoothing = 0.97;
constexpr double NoiseEqSmoothing = 0.8988253;

BroadbandParms Smoothing(double coefficient, double sampleRate) {
  BroadbandParms parms;
  parms.span = Nearest32(StatedSpan * sampleRate / StatedRate);
  parms.coefA = static_cast<float>(std::pow(coefficient, StatedRate / sampleRate));
  parms.coefB = parms.coefA;
  parms.coefD = 0.7F;
  parms.coefE = 0.00001F;
  return parms;
}

BroadbandParms Off() {
  constexpr float off = OffMode;
  return {OffMode, OffMode, off, off, off, off, off, {}};
}

std::int16_t Listed(std::int16_t kind) {
  return kind == BroadbandKind::NoiseReducer ? BroadbandKind::NoiseReducer : BroadbandKind::NoiseEq;
}

}  // namespace

void RebuildBroadbandPresets(SystemSettings& settings) {
  const auto old = settings.broadbandPresets;
  const double sampleRate = GetSampleRate(settings);
  settings.broadbandPresets[BroadbandKind::NoiseReducer] = Smoothing(NoiseReducerSmoothing, sampleRate);
  settings.broadbandPresets[BroadbandKind::NoiseEq] = Smoothing(NoiseEqSmoothing, sampleRate);
  settings.broadbandPresets[OffPreset] = Off();
  for (int stage = 1; stage <= 2; stage++) {
    const int kind = Listed(settings.broadbandType[stage]);
    BroadbandParms& parms = settings.broadbandParms[stage];
    if (parms == old[kind]) parms = settings.broadbandPresets[kind];
  }
}

void ChangeBroadbandKind(SystemSettings& settings, int stage, std::int16_t kind) {
  const int old = Listed(settings.broadbandType[stage]);
  const std::int16_t listed = Listed(kind);
  BroadbandParms& parms = settings.broadbandParms[stage];
  if (parms == settings.broadbandPresets[old]) parms = settings.broadbandPresets[listed];
  settings.broadbandType[stage] = listed;
  settings.broadbandChanged[stage] = -1;
}

}  // namespace vc
