#include "unit/sound/Parametric.h"

#include <algorithm>
#include <cmath>

#include "unit/sound/Samples.h"

namespace unit::sound {
namespace {

constexpr std::size_t Words = 7;
constexpr double CoefficientUnity = 1073741824.0;  // 2^30
constexpr double HighWordUnity = 32768.0;
constexpr double GainUnity = 4096.0;
constexpr double LevelUnity = 32767.0;
constexpr double Silence = 1.0e-30;  // keeps the states out of the denormal numbers

std::uint16_t WordAt(std::span<const std::uint8_t> block, std::size_t word) {
  return static_cast<std::uint16_t>(block[2 * word] | block[2 * word + 1] << 8);
}

// 31 bits with sign.
double Coefficient(std::uint16_t low, std::uint16_t high) {
  return (static_cast<std::int16_t>(high) * HighWordUnity + (low & 0x7FFF)) / CoefficientUnity;
}

// Only the high words of the input's coefficient and of its negative are sent, each rounded down. Those of a
// band filter with a gain of 1 at its centre follow from the feedback, which is sent to the last bit.
double InputCoefficient(std::uint16_t positive, std::uint16_t negative, double feedback2) {
  const double sent =
      (static_cast<std::int16_t>(positive) - static_cast<std::int16_t>(negative)) / (2.0 * HighWordUnity);
  const double exact = (1.0 + feedback2) / 2.0;
  return std::abs(exact - sent) <= 1.0 / HighWordUnity ? exact : sent;
}

bool Stable(double feedback1, double feedback2) {
  return std::abs(feedback2) < 1.0 && std::abs(feedback1) < 1.0 - feedback2;
}

}  // namespace

void Parametric::Configure(std::span<const std::uint8_t, BlockSize> block) {
  level = WordAt(block, 0) / LevelUnity;
  for (std::size_t i = 0; i < Sections; ++i) {
    const auto word = [&](std::size_t number) { return WordAt(block, 1 + i * Words + number); };
    Section& section = sections[i];
    section.feedback2 = Coefficient(word(1), word(2));
    section.feedback1 = 2.0 * Coefficient(word(3), word(4));  // sent as half
    section.input = InputCoefficient(word(5), word(0), section.feedback2);
    section.gain = static_cast<std::int16_t>(word(6)) / GainUnity;
    if (!Stable(section.feedback1, section.feedback2)) section = Section{};
  }
}

void Parametric::Reset() {
  for (Section& section : sections) section.state1 = section.state2 = 0.0;
}

void Parametric::Process(std::span<const float> in, std::span<float> out) {
  for (std::size_t i = 0; i < in.size(); ++i) {
    double x = Tame(in[i]);
    for (Section& section : sections) {
      const double band = section.input * x + section.state1;
      section.state1 = section.feedback1 * band + section.state2;
      section.state2 = section.feedback2 * band - section.input * x;
      x += section.gain * band;
    }
    out[i] = static_cast<float>(level * x);
  }
  for (Section& section : sections) {
    if (std::abs(section.state1) + std::abs(section.state2) < Silence) section.state1 = section.state2 = 0.0;
  }
}

}  // namespace unit::sound
