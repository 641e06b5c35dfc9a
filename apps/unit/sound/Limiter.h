// The limiter at the output: what exceeds the threshold is turned down at once and comes back slowly.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "unit/sound/PeakFollower.h"

namespace unit::sound {

struct LimiterSettings {
  bool enabled = false;
  bool linked = false;   // both channels are turned down alike, by the louder one
  double release = 1;    // seconds, the time constant
  double threshold = 1;  // peak, full scale 1.0
};

// From registers 4 (limiter) and 8 (threshold, of which 20675 is full scale).
LimiterSettings LimiterSettingsOf(std::uint16_t control, std::uint16_t threshold);

// No attack time and no latency: no sample leaves it above the threshold.
class Limiter {
 public:
  Limiter(const LimiterSettings& wanted, double sampleRate) { Configure(wanted, sampleRate); }

  // The sound goes on. Whether the limiter is in or out changes with the next sample.
  void Configure(const LimiterSettings& wanted, double sampleRate);
  void Reset();
  // In place, any number of samples; right is as long as left, or empty in mono.
  void Process(std::span<float> left, std::span<float> right);

 private:
  LimiterSettings settings;
  std::array<PeakFollower, 2> peaks;
};

}  // namespace unit::sound
