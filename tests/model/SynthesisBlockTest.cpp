// Parameter blocks: what the unit would make of their words, against the filters that were asked for.
#include <bit>
#include <cmath>
#include <complex>
#include <limits>
#include <map>
#include <numbers>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/SynthesisBlock.h"

namespace vc {
namespace {

using testing::Each;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double HighPartStep = 1.0 / 32768.0;

int WordAt(const StageBlock& block, std::size_t place) { return block[place] + 256 * block[place + 1]; }
int SignedWordAt(const StageBlock& block, std::size_t place) {
  return std::bit_cast<std::int16_t>(static_cast<std::uint16_t>(WordAt(block, place)));
}
std::int64_t LongAt(const StageBlock& block, std::size_t place) {
  return WordAt(block, place) + 65536LL * WordAt(block, place + 2);
}

// A substage as the unit reads it: 31-bit fractions of 2^30 from a high part with the sign and a low part of
// 15 bits; of a0 and its negative only the high parts are sent.
struct ReadSubstage {
  double oldest, a2, a1, a0, k;

  ReadSubstage(const StageBlock& block, std::size_t substage) {
    const std::size_t at = 14 * substage + 2;
    const auto joined = [&](std::size_t low, std::size_t high) {
      return (SignedWordAt(block, at + high) * 32768.0 + WordAt(block, at + low)) / 1073741824.0;
    };
    oldest = SignedWordAt(block, at) * HighPartStep;
    a2 = joined(2, 4);
    a1 = joined(6, 8);
    a0 = SignedWordAt(block, at + 10) * HighPartStep;
    k = SignedWordAt(block, at + 12) / 4096.0;
  }

  // Of y = x + k * v with v[n] = a0 x[n] + oldest x[n-2] + 2 a1 v[n-1] + a2 v[n-2].
  double Response(double frequency) const {
    const std::complex<double> delay = std::polar(1.0, -2.0 * std::numbers::pi * frequency);
    const std::complex<double> bandpass =
        (a0 + oldest * delay * delay) / (1.0 - 2.0 * a1 * delay - a2 * delay * delay);
    return std::abs(1.0 + k * bandpass);
  }
};

TEST(TwentyBandBlock, HoldsTheGainOfEachBand) {
  const StageBlock block = TwentyBandBlock(
      std::to_array<std::int16_t>({0, 6, -1, -32768, 32767, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 20, 40}));
  EXPECT_EQ(WordAt(block, 0), 32767);
  EXPECT_EQ(WordAt(block, 2), 16422);
  EXPECT_EQ(WordAt(block, 4), 32767);
  EXPECT_EQ(WordAt(block, 6), 32767);
  EXPECT_EQ(WordAt(block, 8), 0);
  EXPECT_EQ(WordAt(block, 36), 3277);
  EXPECT_EQ(WordAt(block, 38), 328);
  EXPECT_THAT(std::vector(block.begin() + 40, block.end()), Each(0));
}

// The outer coefficients may each be one step off, which a gain of 1 / (2 a0 sin w) brings to the centre.
TEST(ParametricBlock, BoostsAtTheCentreByTheAmountAsked) {
  for (const double center : {0.01, 0.05, 0.1, 0.25, 0.4, 0.45}) {
    for (const double ratio : {1.0, 1.5, 6.0}) {
      for (const double boost : {-60.0, -3.0, 6.0, 16.0}) {
        const ReadSubstage read(ParametricBlock(192, {{{}, {center, ratio, boost, true}}}), 1);
        const double stepGain = 1.0 / (std::abs(read.a0) * std::sin(2.0 * std::numbers::pi * center));
        const double tolerance = std::abs(read.k) * HighPartStep * stepGain + 0.0002;
        EXPECT_NEAR(read.Response(center), std::pow(10.0, boost / 20.0), tolerance) << center << " " << ratio;
        EXPECT_NEAR(read.oldest, -read.a0, HighPartStep);
      }
    }
  }
}

// The bandpass is at half its power where T - 1/T times the square of the centre's is the width t, T being
// the tangent of half the angle.
TEST(ParametricBlock, HasTheWidthOfItsRatio) {
  const ReadSubstage read(ParametricBlock(192, {{{0.2, 4.0, 20.0 * std::log10(2.0), true}}}), 0);
  const double middle = std::tan(std::numbers::pi * 0.2);
  const double width = std::tan(std::numbers::pi * 0.2 / 4.0);
  const double upper = width / 2.0 + std::hypot(width / 2.0, middle);
  for (const double edge : {upper - width, upper}) {
    EXPECT_NEAR(read.Response(std::atan(edge) / std::numbers::pi), std::sqrt(2.5),
                0.002);  // |1 + (1 +- j) / 2|
  }
}

TEST(ParametricBlock, KeepsTheSectionOfAnInactiveSubstage) {
  const StageBlock in = ParametricBlock(192, {{{0.1, 2.0, 10.0, true}}});
  StageBlock out = ParametricBlock(192, {{{0.1, 2.0, 10.0, false}}});
  EXPECT_EQ(WordAt(in, 14), 8857);
  EXPECT_EQ(WordAt(out, 14), 0);
  out[14] = in[14];
  out[15] = in[15];
  EXPECT_EQ(out, in);
}

TEST(ParametricBlock, BoundsLevelAndBoostAtFullScale) {
  for (const auto& [level, word] : std::map<std::int16_t, int>{{-32768, 0},
                                                               {96, 130},
                                                               {152, 3277},
                                                               {191, 30934},
                                                               {192, 32767},
                                                               {193, 32767},
                                                               {255, 32767},
                                                               {32767, 32767}}) {
    EXPECT_EQ(WordAt(ParametricBlock(level, {}), 0), word) << level;
  }
  EXPECT_EQ(SignedWordAt(ParametricBlock(192, {{{0.2, 1.5, 32767.0, true}}}), 14), 32767);
  EXPECT_EQ(SignedWordAt(ParametricBlock(192, {{{0.2, 1.5, -32768.0, true}}}), 14), -4096);
}

// With a t of 0 nothing passes and the poles lie on the circle.
TEST(ParametricBlock, TakesNoWidthFromZeroAndNothingFromNoNumber) {
  const ReadSubstage noRatio(ParametricBlock(192, {{{0.25, 0.0, 0.0, true}}}), 0);
  EXPECT_EQ(noRatio.a0, 0.0);
  EXPECT_EQ(noRatio.a1, 0.0);
  EXPECT_EQ(noRatio.a2, -1.0);
  const ReadSubstage noCenter(ParametricBlock(192, {{{0.0, 1.5, 0.0, true}}}), 0);
  EXPECT_EQ(noCenter.a0, 0.0);
  EXPECT_NEAR(noCenter.a1, 1.0, 1e-8);  // the highest that 31 bits hold
  EXPECT_EQ(noCenter.a2, -1.0);
  const StageBlock nothing = ParametricBlock(192, {{{NotANumber, 1.5, 0, true}, {0.2, NotANumber, 0, true}}});
  EXPECT_THAT(std::vector(nothing.begin() + 2, nothing.begin() + 30), Each(0));
}

TEST(CompressorBlock, HoldsTimesLevelsAndRatios) {
  const StageBlock block = CompressorBlock(10500, {-20, -35, 3.0, 2.5, 50, 200});
  EXPECT_EQ(LongAt(block, 0), 4090445);  // 2147483647 / 525
  EXPECT_EQ(LongAt(block, 4), 1022611);  // and / 2100
  EXPECT_EQ(WordAt(block, 8), 2990);     // 256 (15 - log2 10) + 0.5
  EXPECT_EQ(WordAt(block, 10), 10923);
  EXPECT_EQ(WordAt(block, 12), 2352);
  EXPECT_EQ(WordAt(block, 14), 40);
  EXPECT_THAT(std::vector(block.begin() + 16, block.end()), Each(0));
  const StageBlock most = CompressorBlock(3200, {0, -90, 1.0, 100.0, 1, 2000});
  EXPECT_EQ(LongAt(most, 0), 671088640);
  EXPECT_EQ(WordAt(most, 8), 3840);  // 3840.5: the even neighbour
  EXPECT_EQ(WordAt(most, 10), 0x8000);
  EXPECT_EQ(WordAt(most, 12), 14);
  EXPECT_EQ(WordAt(most, 14), 1600);
  const StageBlock hostile = CompressorBlock(0, {-32768, 32767, 0.0, NotANumber, 0, -1});
  EXPECT_EQ(LongAt(hostile, 0), 2147483647);
  EXPECT_EQ(WordAt(hostile, 10), 0x8000);
  EXPECT_EQ(WordAt(hostile, 14), 0);
}

}  // namespace
}  // namespace vc
