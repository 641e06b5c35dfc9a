// Words from decibels and coefficients as packet bytes, against numbers worked out with 50 decimal digits.
#include <array>
#include <limits>
#include <map>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/CoefficientPacking.h"
#include "model/modNumerical.h"

namespace vc {
namespace {

using testing::ElementsAre;
using Table = std::map<std::int16_t, int>;  // dB to word as a signed number; 32768 is the pattern 0x8000

std::uint16_t Pattern(int word) { return static_cast<std::uint16_t>(word & 0xFFFF); }

TEST(Words, FollowTheirLawsAndBoundTheDecibels) {
  const Table atten{{-1, 32768}, {0, 32768}, {6, 16423}, {10, 10362}, {20, 3277}, {60, 33}, {61, 33}};
  for (const auto& [decibels, word] : atten) EXPECT_EQ(AttenWord(decibels), Pattern(word)) << decibels;
  const Table comb{{-32768, -32703}, {-60, -32703}, {-20, -26230}, {-7, -3563}, {-6, 0},     {-1, 25503},
                   {0, -32613},      {1, -25503},   {6, 0},        {10, 12093}, {20, 26230}, {32767, 32703}};
  for (const auto& [decibels, word] : comb) EXPECT_EQ(CombWord(decibels).word, Pattern(word)) << decibels;
  const Table notch{{-99, -32735}, {-60, -32735}, {-10, -22406}, {0, 0},
                    {6, 16345},    {10, 22406},   {99, 32735}};
  for (const auto& [decibels, word] : notch) EXPECT_EQ(NotchWord(decibels), Pattern(word)) << decibels;
  const Table depths{{-61, -60}, {-59, -59}, {60, 60}, {32767, 60}};
  for (const auto& [given, corrected] : depths) EXPECT_EQ(CombWord(given).combDepth, corrected);
}

TEST(Words, RoundHalvesToEvenAndKeepFullScale) {
  EXPECT_EQ(BoundedWord(0.5), 0);
  EXPECT_EQ(BoundedWord(1.5), 2);
  EXPECT_EQ(BoundedWord(-2.5), Pattern(-2));
  EXPECT_EQ(BoundedWord(1e300), 0x8000);
  EXPECT_EQ(BoundedWord(-1e300), 0x8000);
  EXPECT_EQ(BoundedWord(std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(NegatedWord(Pattern(-26230)), 26230);
  EXPECT_EQ(NegatedWord(0x8000), 0x8000);
}

std::vector<int> Packed(float coefficient) {
  std::array<float, CoefficientsPerPacket> sixteen{};
  sixteen[15] = coefficient;
  const PacketContent content = PackCoefficients(sixteen);
  EXPECT_THAT(std::vector(content.begin(), content.end() - 3), testing::Each(0));
  return {content.end() - 3, content.end()};
}

TEST(PackCoefficients, PutsTheHighByteFirst) {
  EXPECT_THAT(Packed(1.0F), ElementsAre(0x7F, 0xFF, 0xFF));
  EXPECT_THAT(Packed(-1.0F), ElementsAre(0x80, 0x00, 0x01));
  EXPECT_THAT(Packed(0.5F), ElementsAre(0x40, 0x00, 0x00));  // 4194303.5: the even neighbour
  EXPECT_THAT(Packed(0.0123F), ElementsAre(0x01, 0x93, 0x0C));
  EXPECT_THAT(Packed(-1e-7F), ElementsAre(0xFF, 0xFF, 0xFF));
}

TEST(PackCoefficients, BoundsWhatDoesNotFit) {
  constexpr float infinite = std::numeric_limits<float>::infinity();
  for (const float high : {1.0000001F, 2.0F, infinite}) {
    EXPECT_THAT(Packed(high), ElementsAre(0x7F, 0xFF, 0xFF)) << high;
  }
  for (const float low : {-1.0000002F, -2.0F, -infinite}) {
    EXPECT_THAT(Packed(low), ElementsAre(0x80, 0x00, 0x00)) << low;
  }
  EXPECT_THAT(Packed(std::numeric_limits<float>::quiet_NaN()), ElementsAre(0, 0, 0));
}

}  // namespace
}  // namespace vc
