// What a processor does to a sample before it lets it into its memory.
#pragma once

#include <cmath>

namespace unit::sound {

inline constexpr float Headroom = 4.0F;  // 12 dB above full scale

// The sample within the headroom; 0 for what is no number, and for what is too faint to matter but could make
// the arithmetic slow.
inline float Tame(float sample) {
  constexpr float faintest = 1e-15F;
  const float size = std::abs(sample);
  if (size <= Headroom) return size < faintest ? 0.0F : sample;
  return std::isnan(sample) ? 0.0F : std::copysign(Headroom, sample);
}

}  // namespace unit::sound
