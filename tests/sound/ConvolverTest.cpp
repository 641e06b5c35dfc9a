// Convolution of any length, and the stage that works with a table from the host.
#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/CoefficientStage.h"
#include "unit/sound/Convolver.h"

namespace sound_test::convolver {
namespace {

using namespace measure;
using namespace unit::sound;

// By the definition.
Signal Convolved(const Signal& taps, const Signal& x) {
  Signal y(x.size());
  for (std::size_t n = 0; n < x.size(); ++n) {
    double sum = 0.0;
    for (std::size_t k = 0; k < std::min(taps.size(), n + 1); ++k)
      sum += static_cast<double>(taps[k]) * x[n - k];
    y[n] = static_cast<float>(sum);
  }
  return y;
}

constexpr std::size_t Lengths[] = {1, 2, 255, 256, 511, 512, 513, 768, 769, 1024, 1025, 6144};

Convolver Ready(std::span<const float> taps, std::size_t mostTaps) {
  Convolver convolver(mostTaps);
  convolver.SetTaps(taps);
  convolver.Reset();
  return convolver;
}

TEST(Convolver, ConvolvesWithoutDelayForAnyLengthAndCutting) {
  const Signal x = Noise(8000);
  for (const std::size_t length : Lengths) {
    const Signal taps = Noise(length, 0.1F, 3);
    const Signal wanted = Convolved(taps, x);
    Convolver whole = Ready(taps, 6144), pieces = Ready(taps, length);
    EXPECT_LT(GreatestDifference(Processed(whole, x), wanted), 2e-5) << length;
    EXPECT_LT(GreatestDifference(ProcessedInPieces(pieces, x), wanted), 2e-5) << length;
  }
}

// Every pair of lengths: what has been before the change counts, and after one block only the new taps do.
TEST(Convolver, NewTapsFadeInOverOneBlock) {
  const Signal x = Noise(12000);
  for (const std::size_t before : {1U, 512U, 1024U}) {
    for (const std::size_t after : {3U, 513U, 4096U}) {
      const Signal old = Noise(before, 0.1F, 5), fresh = Noise(after, 0.1F, 6);
      Convolver convolver = Ready(old, 4096);
      Signal y = Processed(convolver, {x.begin(), x.begin() + 7001}, 100);
      convolver.SetTaps(Noise(900, 1.0F, 8));
      convolver.SetTaps(Noise(700, 1.0F, 9));  // never heard: the next one comes before its turn
      convolver.SetTaps(fresh);
      const Signal rest = ProcessedInPieces(convolver, {x.begin() + 7001, x.end()});
      y.insert(y.end(), rest.begin(), rest.end());
      const Signal oldWhole = Convolved(old, x), freshWhole = Convolved(fresh, x);
      EXPECT_LT(GreatestDifference(std::span(y).first(7001), oldWhole), 2e-5);
      EXPECT_LT(GreatestDifference(std::span(y).subspan(7001 + 2 * BlockFrames),
                                   std::span(freshWhole).subspan(7001 + 2 * BlockFrames)),
                2e-5)
          << before << " to " << after;
    }
  }
}

TEST(Convolver, FadeHasNoClick) {
  Convolver convolver = Ready(Signal{1.0F}, 1024);
  const Signal one(1000, 1.0F);
  Processed(convolver, one);
  convolver.SetTaps(Signal{-1.0F});
  const Signal y = Processed(convolver, one);
  for (std::size_t i = 1; i < y.size(); ++i) ASSERT_LE(std::abs(y[i] - y[i - 1]), 2.01F / BlockFrames);
  EXPECT_EQ(y[BlockFrames - 1], -1.0F);
}

// A table that takes everything away at its middle tap, so that what is left is told by the words alone.
TEST(CoefficientStage, SubtractsWhatTheTablePasses) {
  std::vector<std::int32_t> table(1024);
  table[512] = 8388607;
  struct Case {
    std::uint16_t attenuation, gain;
    double wanted;
  };
  for (const Case& c : {Case{0, 16, 0.0}, Case{16384, 16, -6.02}, Case{32735, 16, -60.2}, Case{0, 32, 6.02},
                        Case{32767, 16, -240.0}}) {
    CoefficientStage stage(1024);
    stage.Configure(table, {.attenuation = c.attenuation, .gain = c.gain});
    stage.Reset();
    EXPECT_NEAR(GainAt(Processed(stage, Impulse(2048)), 1000, 7200), c.wanted, 0.1);
  }
}

TEST(CoefficientStage, EqualizerGivesWhatTheTablePasses) {
  std::vector<std::int32_t> table(256);
  table[123] = 4194304;
  CoefficientStage stage(256);
  stage.Configure(table, {.subtracts = false, .attenuation = 32767, .gain = 32});
  stage.Reset();
  const Signal y = Processed(stage, Impulse(512));
  EXPECT_NEAR(y[123], 0.5F, 1e-6);
  EXPECT_EQ(std::ranges::count(y, 0.0F), 511);
}

}  // namespace
}  // namespace sound_test::convolver
