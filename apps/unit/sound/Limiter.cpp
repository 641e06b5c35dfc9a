// The gain that keeps the peaks at the threshold.
#include "unit/sound/Limiter.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/Samples.h"

namespace unit::sound {

LimiterSettings LimiterSettingsOf(std::uint16_t control, std::uint16_t threshold) {
  constexpr double fullScaleWord = 20675;
  constexpr double slowest = 1.0;
  const int release = (control >> 12) & 3;
  return {.enabled = (control & 0x8000) != 0,
          .linked = (control & 0x4000) != 0,
          .release = std::ldexp(slowest, -release),
          .threshold = std::clamp<double>(threshold, 1, fullScaleWord) / fullScaleWord};
}

void Limiter::Configure(const LimiterSettings& wanted, double sampleRate) {
  settings = wanted;
  for (PeakFollower& peak : peaks) peak.Configure(wanted.release, sampleRate);
}

void Limiter::Reset() {
  for (PeakFollower& peak : peaks) peak.Reset();
}

void Limiter::Process(std::span<float> left, std::span<float> right) {
  if (!settings.enabled) return;
  const auto limited = [&](PeakFollower& follower, float sample, float magnitude) {
    const double peak = follower.Next(magnitude);
    return peak > settings.threshold ? static_cast<float>(sample * settings.threshold / peak) : sample;
  };
  for (std::size_t i = 0; i < left.size(); ++i) {
    const float a = Tame(left[i]);
    const float b = right.empty() ? 0.0F : Tame(right[i]);
    const float louder = std::max(std::abs(a), std::abs(b));
    left[i] = limited(peaks[0], a, settings.linked ? louder : std::abs(a));
    if (!right.empty()) right[i] = limited(peaks[1], b, settings.linked ? louder : std::abs(b));
  }
}

}  // namespace unit::sound
