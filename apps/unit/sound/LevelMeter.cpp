// A level meter: what a bar of the host shows of a stream of samples.
#include "unit/sound/LevelMeter.h"

#include <algorithm>
#include <cmath>

namespace unit::sound {
namespace {

constexpr double FallDb = -20.0;
constexpr double FallSeconds = 1.7;
constexpr double OverloadSeconds = 0.5;
constexpr float Inaudible = 1e-9F;  // cuts the fall off before its numbers get too small to be fast

}  // namespace

LevelMeter::LevelMeter(double rate) { SetRate(rate); }

void LevelMeter::SetRate(double rate) {
  fall = static_cast<float>(std::pow(10.0, FallDb / 20.0 / (FallSeconds * rate)));
  hold = static_cast<std::size_t>(std::lround(OverloadSeconds * rate));
  overload = std::min(overload, hold);
}

void LevelMeter::Reset() {
  level = 0.0F;
  overload = 0;
}

void LevelMeter::Process(std::span<const float> in) {
  for (const float sample : in) {
    const float magnitude = std::fabs(sample);
    level = level > Inaudible ? level * fall : 0.0F;
    if (magnitude > level) level = std::min(magnitude, TopWord / FullScaleWord);
    if (magnitude >= 1.0F) {
      overload = hold;
    } else if (overload > 0) {
      --overload;
    }
  }
}

std::uint16_t LevelMeter::Word() const {
  return static_cast<std::uint16_t>(std::lround(std::min(level * FullScaleWord, TopWord)));
}

}  // namespace unit::sound
