// The comb and its inverse: where the teeth are and how deep.
#include <array>

#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/Comb.h"

namespace sound_test::comb {
namespace {

using namespace measure;
using unit::sound::CombTaps;
using unit::sound::CombWords;

struct Case {
  bool inverse;
  int harmonics;  // 0 all, 1 odd, 2 even
  std::uint16_t period, limit;
  double depth, sampleRate;
};

CombWords WordsOf(const Case& c) {
  const long depth = std::lround((1.0 - Linear(6.0 - c.depth)) * 32768.0);
  const bool turned = c.inverse != (c.harmonics == 1);
  return {.period = static_cast<std::uint16_t>(c.harmonics == 0 ? c.period : c.period / 2),
          .limit = c.limit,
          .depth = static_cast<std::uint16_t>(turned ? -depth : depth)};
}

bool Chosen(const Case& c, int harmonic) { return c.harmonics == 0 || harmonic % 2 == c.harmonics % 2; }

const Case Cases[] = {
    {false, 0, 100, 2000, 30, 7200},  {false, 1, 144, 1500, 40, 7200}, {false, 2, 144, 1500, 60, 7200},
    {false, 0, 720, 2500, 20, 36000}, {true, 0, 100, 2000, 30, 7200},  {true, 1, 144, 1500, 40, 7200},
    {true, 2, 144, 1500, 20, 7200},   {true, 0, 60, 10000, 50, 24000},
};

TEST(Comb, TeethStandAtTheHarmonicsUpToTheLimit) {
  for (const Case& c : Cases) {
    SCOPED_TRACE(testing::Message() << c.inverse << c.harmonics << " period " << c.period);
    const Signal taps = CombTaps(c.inverse, WordsOf(c), c.sampleRate, 1024);
    const double fundamental = c.sampleRate / c.period;
    const double full = Decibels(0.5 + (0.5 - Linear(-c.depth)));
    for (int harmonic = 1; harmonic * fundamental <= c.limit; ++harmonic) {
      const bool tooth = Chosen(c, harmonic);
      const double wanted = tooth == c.inverse ? full : -c.depth;
      EXPECT_NEAR(GainAt(taps, harmonic * fundamental, c.sampleRate), wanted, 0.3) << harmonic;
    }
  }
}

TEST(Comb, AboveTheLimitItPassesAndTheInverseStops) {
  for (const Case& c : Cases) {
    const Signal taps = CombTaps(c.inverse, WordsOf(c), c.sampleRate, 1024);
    const Range gain = GainBetween(taps, c.limit + 0.05 * c.sampleRate, c.sampleRate / 2, c.sampleRate);
    const double wanted = c.inverse ? -c.depth : 0.0;
    EXPECT_NEAR(gain.least, wanted, 0.5);
    EXPECT_NEAR(gain.most, wanted, 0.5);
  }
}

}  // namespace
}  // namespace sound_test::comb
