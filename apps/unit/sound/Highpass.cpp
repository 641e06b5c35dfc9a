// Two second-order sections.
#include "unit/sound/Highpass.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "unit/sound/Samples.h"

namespace unit::sound {
namespace {

// What is left of a sound that ended must not decay into numbers that slow the arithmetic.
double Flushed(double memory) { return std::abs(memory) < 1e-30 ? 0.0 : memory; }

}  // namespace

void Highpass::Configure(double cutoff, double sampleRate) {
  constexpr std::array qualities = {0.54119610014619698,
                                    1.3065629648763766};  // 1 / (2 cos of pi/8, of 3 pi/8)
  const double warped =
      std::tan(std::numbers::pi * std::clamp(cutoff, HighpassLowest, HighpassHighest) / sampleRate);
  for (std::size_t i = 0; i < sections.size(); ++i) {
    Section& section = sections[i];
    section.gain = 1 / (1 + warped / qualities[i] + warped * warped);
    section.feedback1 = 2 * (warped * warped - 1) * section.gain;
    section.feedback2 = (1 - warped / qualities[i] + warped * warped) * section.gain;
  }
}

void Highpass::Reset() {
  for (Section& section : sections) section.memory1 = section.memory2 = 0;
}

double Highpass::Section::Next(double sample) {
  const double out = gain * sample + memory1;
  memory1 = Flushed(-2 * gain * sample - feedback1 * out + memory2);
  memory2 = Flushed(gain * sample - feedback2 * out);
  return out;
}

void Highpass::Process(std::span<const float> in, std::span<float> out) {
  for (std::size_t i = 0; i < in.size(); ++i) {
    out[i] = static_cast<float>(sections[1].Next(sections[0].Next(Tame(in[i]))));
  }
}

}  // namespace unit::sound
