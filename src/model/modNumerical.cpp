// Words from decibels.
#include "model/modNumerical.h"

#include <algorithm>
#include <cmath>

#include "model/Clamp.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::int16_t DeepestDecibels = 60;
constexpr double CombOffset = 6;  // dB: a comb of this depth takes nothing away

// The part that is missing at so many decibels below full scale.
double Missing(double decibelsBelow) { return (1.0 - AmplitudeRatio(-decibelsBelow)) * FullScaleWord; }

}  // namespace

double Bounded(double value, double lower, double upper) {
  return std::isnan(value) ? 0.0 : std::clamp(value, lower, upper);
}

std::uint16_t BoundedWord(double value) {
  return static_cast<std::uint16_t>(Nearest32(Bounded(value, -FullScaleWord, FullScaleWord)));
}

std::uint16_t NegatedWord(std::uint16_t word) { return static_cast<std::uint16_t>(-word); }

double AmplitudeRatio(double decibels) { return std::pow(10.0, decibels / 20.0); }

std::uint16_t AttenWord(std::int16_t decibels) {
  Clamp(decibels, 0, DeepestDecibels);
  return BoundedWord(FullScaleWord * AmplitudeRatio(-decibels));
}

CombDepthWord CombWord(std::int16_t combDepth) {
  Clamp(combDepth, -DeepestDecibels, DeepestDecibels);
  const double part = Missing(std::abs(combDepth) - CombOffset);
  return {BoundedWord(combDepth < 0 ? -part : part), combDepth};
}

std::uint16_t NotchWord(std::int16_t decibels) {
  Clamp(decibels, -DeepestDecibels, DeepestDecibels);
  const double part = Missing(std::abs(decibels));
  return BoundedWord(decibels < 0 ? -part : part);
}

}  // namespace vc
