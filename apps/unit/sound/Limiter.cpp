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

void Limiter::Configure(const LimiterSettings& settings, double sampleRate) {
  settings_ = settings;
  for (PeakFollower& peak : peaks_) peak.Configure(settings.release, sampleRate);
}

void Limiter::Reset() {
  for (PeakFollower& peak : peaks_) peak.Reset();
}

void Limiter::Process(std::span<float> left, std::span<float> right) {
  if (!settings_.enabled) return;
  const auto limited = [&](PeakFollower& follower, float sample, float magnitude) {
    const double peak = follower.Next(magnitude);
    return peak > settings_.threshold ? static_cast<float>(sample * settings_.threshold / peak) : sample;
  };
  for (std::size_t i = 0; i < left.size(); ++i) {
    const float a = Tame(left[i]);
    const float b = right.empty() ? 0.0F : Tame(right[i]);
    const float louder = std::max(std::abs(a), std::abs(b));
    left[i] = limited(peaks_[0], a, settings_.linked ? louder : std::abs(a));
    if (!right.empty()) right[i] = limited(peaks_[1], b, settings_.linked ? louder : std::abs(b));
  }
}

}  // namespace unit::sound
