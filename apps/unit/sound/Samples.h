// What a processor does to a sample before it lets it into its memory.
#pragma once

namespace unit::sound {

inline constexpr float Headroom = 4.0F;  // 12 dB above full scale

// The sample within the headroom; 0 for what is no number, and for what is too faint to matter but could make
// the arithmetic slow.
constexpr float Tame(float sample) {
  constexpr float faintest = 1e-15F;
  if (sample >= faintest) return sample <= Headroom ? sample : Headroom;
  if (sample <= -faintest) return sample >= -Headroom ? sample : -Headroom;
  return 0.0F;
}

}  // namespace unit::sound
