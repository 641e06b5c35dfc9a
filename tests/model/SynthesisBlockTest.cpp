// Parameter blocks at the ends of what they hold; what filters they make is measured in the unit's sound.
#include <bit>
#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/SynthesisBlock.h"

namespace vc {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

int WordAt(const StageBlock& block, std::size_t place) { return block[place] + 256 * block[place + 1]; }
int SignedWordAt(const StageBlock& block, std::size_t place) {
  return std::bit_cast<std::int16_t>(static_cast<std::uint16_t>(WordAt(block, place)));
}
std::int64_t LongAt(const StageBlock& block, std::size_t place) {
  return WordAt(block, place) + 65536LL * WordAt(block, place + 2);
}

// The words of the first substage's section: the oldest tap, low and high part of a2 and of a1, and a0.
std::vector<int> Section(const StageBlock& block) {
  std::vector<int> words;
  for (std::size_t place = 2; place < 14; place += 2) words.push_back(SignedWordAt(block, place));
  return words;
}

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
  EXPECT_THAT(Section(ParametricBlock(192, {{{0.25, 0.0, 0.0, true}}})), ElementsAre(0, 0, -32768, 0, 0, 0));
  EXPECT_THAT(Section(ParametricBlock(192, {{{0.0, 1.5, 0.0, true}}})),
              ElementsAre(0, 0, -32768, 32767, 32767, 0));  // the highest that 31 bits hold
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
