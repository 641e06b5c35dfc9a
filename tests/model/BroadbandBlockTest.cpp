// Broadband blocks and their bytes as the unit finds them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/BroadbandBlock.h"
#include "model/Fresh.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using testing::Each;
using Bytes = std::vector<int>;

template <typename Content>
Bytes BytesOf(const Content& content, std::size_t first, std::size_t count) {
  Bytes bytes;
  for (std::size_t i = first; i < first + count; i++) bytes.push_back(content[i]);
  return bytes;
}

const Bytes One{0, 0, 0x80, 0x3F};  // 1.0, low byte first

TEST(FillBroadbandBlock, SpreadsTheTwentySlidersOverTheBands) {
  SystemSettings settings = Fresh();
  settings.broadbandType[1] = BroadbandKind::NoiseEq;
  for (int j = 0; j < 20; j++) settings.noiseEqVals[1][j] = static_cast<float>(j + 1) / 20.0F;
  BroadbandBlock block;
  FillBroadbandBlock(block, settings, 1);
  for (std::size_t j = 0; j < 20; j++) {
    EXPECT_THAT(std::span(block.bands).subspan(6 * j, 6), Each(static_cast<float>(j + 1) / 20.0F));
  }
  EXPECT_THAT(std::span(block.bands).subspan(120, 8), Each(1.0F));
  EXPECT_THAT(std::span(block.bands).last(4), Each(0.0F));
  const BroadbandBlock before = block;
  settings.noiseEqVals[1].Fill(0.0F);
  settings.broadbandType[1] = 2;
  FillBroadbandBlock(block, settings, 1);
  EXPECT_EQ(block, before);  // a type that it does not know
}

TEST(BroadbandBlock, GoesOutLowByteFirst) {
  BroadbandBlock block;
  block.record = {1, 0x01020304, 1.0F, -2.0F, 0.0F, 0.7F, 0.00001F, {}};
  block.record.flags[0] = 0xAA;
  block.record.flags[19] = 0xBB;
  block.bands[12] = 1.0F;
  block.bands[131] = 1.0F;
  const PacketContent record = RecordContent(block);
  EXPECT_EQ(BytesOf(record, 0, 16), (Bytes{1, 0, 0, 0, 4, 3, 2, 1, 0, 0, 0x80, 0x3F, 0, 0, 0, 0xC0}));
  EXPECT_EQ(BytesOf(record, 16, 12), (Bytes{0, 0, 0, 0, 0x33, 0x33, 0x33, 0x3F, 0xAC, 0xC5, 0x27, 0x37}));
  EXPECT_EQ(record[28], 0xAA);
  EXPECT_EQ(record[47], 0xBB);
  EXPECT_EQ(BytesOf(BandContent(block, 1), 0, 4), One);
  EXPECT_EQ(BytesOf(BandContent(block, 10), 44, 4), One);
  EXPECT_THROW(BandContent(block, 11), Fault);
}

template <int First, int Last>
std::string Refusal(int n) {
  BroadbandBlock block;
  try {
    InitBbData(block, {}, WithBounds(Row<float, First, Last>()), n);
  } catch (const Fault& fault) {
    return fault.source + ": " + fault.description;
  }
  return "";
}

TEST(InitBbData, CopiesTheFirstValuesAndRefusesBoundsAndCountsThatDoNotFit) {
  Row<float, 0, 132> values;
  values.Fill(0.5F);
  BroadbandBlock block;
  block.bands.fill(0.25F);
  InitBbData(block, {}, WithBounds(values), 12);
  EXPECT_EQ(block.bands[11] * 100 + block.bands[12], 50.0F);
  EXPECT_EQ((Refusal<1, 133>(12)),
            "InitBbData in modBroadBand: Invalid noiseEqVals array bounds passed to InitBbData");
  EXPECT_NE((Refusal<-1, 132>(12)), "");
  EXPECT_NE((Refusal<0, 131>(12)), "");
  EXPECT_EQ((Refusal<0, 132>(132)), "");
  for (const int n : {133, -1}) EXPECT_NE((Refusal<0, 132>(n)), "") << n;
}

}  // namespace
}  // namespace vc
