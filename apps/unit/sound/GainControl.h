// The automatic gain control at the input: a faint sound is brought up, by so much at most.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "unit/sound/PeakFollower.h"

namespace unit::sound {

struct GainControlSettings {
  bool enabled = false;
  bool linked = false;     // one gain for both channels, by the louder one
  double release = 0.4;    // seconds, the time constant
  double maximumGain = 1;  // linear, from 1
};

// From registers 19 (automatic gain control) and 20 (gain word): the gain is at most 4095 / gain word. A gain
// word of 0, which was never sent, leaves it to the low bits of the first.
GainControlSettings GainControlSettingsOf(std::uint16_t control, std::uint16_t gainWord);

// Peaks below half of full scale are brought up to it, as far as the maximum gain goes; louder ones pass as
// they are. The gain falls with a time constant of 1 ms and rises by 8.7 dB in the release time. No latency.
class GainControl {
 public:
  static constexpr double Target = 0.5;  // peak, full scale 1.0
  static constexpr double AttackSeconds = 0.001;

  GainControl(const GainControlSettings& wanted, double sampleRate) { Configure(wanted, sampleRate); }

  // The sound goes on; a control that is out passes it as it is.
  void Configure(const GainControlSettings& wanted, double sampleRate);
  void Reset();
  // In place, any number of samples; right is as long as left, or empty in mono.
  void Process(std::span<float> left, std::span<float> right);

 private:
  struct Channel {
    PeakFollower peak;
    double gain = 1;
  };
  float Controlled(Channel& channel, float sample, float magnitude) const;

  GainControlSettings settings;
  double attack = 0;  // of the way to the new gain that goes in one sample
  std::array<Channel, 2> channels;
};

}  // namespace unit::sound
