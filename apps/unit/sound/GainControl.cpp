// The gain from the peaks.
#include "unit/sound/GainControl.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/Samples.h"

namespace unit::sound {

GainControlSettings GainControlSettingsOf(std::uint16_t control, std::uint16_t gainWord) {
  constexpr int fullWord = 4095;
  constexpr double slowest = 0.4;
  const int word = gainWord != 0 ? gainWord : control & fullWord;
  return {.enabled = (control & 0x8000) != 0,
          .linked = (control & 0x4000) != 0,
          .release = std::ldexp(slowest, -((control >> 12) & 3)),
          .maximumGain = double{fullWord} / std::clamp(word, 1, fullWord)};
}

void GainControl::Configure(const GainControlSettings& wanted, double sampleRate) {
  settings = wanted;
  attack = 1 - std::exp(-1 / (AttackSeconds * sampleRate));
  for (Channel& channel : channels) channel.peak.Configure(wanted.release, sampleRate);
}

void GainControl::Reset() {
  for (Channel& channel : channels) {
    channel.peak.Reset();
    channel.gain = 1;
  }
}

float GainControl::Controlled(Channel& channel, float sample, float magnitude) const {
  const double peak = channel.peak.Next(magnitude);
  const double highest = settings.maximumGain;
  const double wanted = peak * highest <= Target ? highest : std::max(Target / peak, 1.0);
  // On the way up the peak has the release time already.
  channel.gain = wanted < channel.gain ? channel.gain + (wanted - channel.gain) * attack : wanted;
  return static_cast<float>(sample * channel.gain);
}

void GainControl::Process(std::span<float> left, std::span<float> right) {
  if (!settings.enabled) return;
  for (std::size_t i = 0; i < left.size(); ++i) {
    const float a = Tame(left[i]);
    const float b = right.empty() ? 0.0F : Tame(right[i]);
    const float louder = std::max(std::abs(a), std::abs(b));
    left[i] = Controlled(channels[0], a, settings.linked ? louder : std::abs(a));
    if (!right.empty()) right[i] = Controlled(channels[1], b, settings.linked ? louder : std::abs(b));
  }
}

}  // namespace unit::sound
