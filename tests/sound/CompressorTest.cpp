// The compressor's two time constants, on sines.
#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/Compressor.h"

namespace sound_test::compressor {
namespace {

using namespace measure;
using namespace unit::sound;

constexpr double Rate = 18000.0, Bandwidth = 8000.0;

std::int16_t Threshold(double decibels) {
  return static_cast<std::int16_t>(std::lround(256.0 * std::log2(32768.0 * Linear(decibels)) + 0.5));
}

std::uint32_t TimeWord(double milliseconds) {
  return static_cast<std::uint32_t>(std::lround(2147483647.0 / (Bandwidth / 1000.0 * milliseconds)));
}

// Milliseconds until 63 % of the change of the gain in dB after a step of the level, told in sines.
double MeasuredTime(double attack, double release, double before, double after) {
  Compressor compressor(Rate);
  compressor.Configure({.attack = TimeWord(attack),
                        .release = TimeWord(release),
                        .limitThreshold = Threshold(0),
                        .compressionRatio = 32768 / 3,
                        .compressionThreshold = Threshold(-60),
                        .expansionRatio = 16},
                       Bandwidth);
  Processed(compressor, Sine(1000, Rate, 180000, Linear(before)));
  const double from = compressor.Gain();
  Compressor settled = compressor;
  Processed(settled, Sine(1000, Rate, 180000, Linear(after)));
  const double mark = from + (1.0 - std::exp(-1.0)) * (settled.Gain() - from);
  const Signal signal = Sine(1000, Rate, 180000, Linear(after));
  std::size_t at = 0;
  while (at < signal.size() && (compressor.Gain() < mark) == (from < mark)) {
    float out = 0.0F;
    compressor.Process(std::span(signal).subspan(at++, 1), {&out, 1});
  }
  return 1000.0 * static_cast<double>(at) / Rate;
}

TEST(Compressor, TimeConstantsHold) {
  for (const double attack : {10.0, 50.0, 250.0})
    EXPECT_NEAR(MeasuredTime(attack, 500, -40, -10), attack, 0.1 * attack);
  for (const double release : {50.0, 100.0, 2000.0}) {
    EXPECT_NEAR(MeasuredTime(10, release, -10, -40), release, 0.1 * release);
  }
}

}  // namespace
}  // namespace sound_test::compressor
