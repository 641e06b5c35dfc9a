// What goes over the wire and what the numbers in the replies mean.
#include <gtest/gtest.h>

#include "ScriptedUnit.h"
#include "link/Frames.h"
#include "link/Status.h"
#include "text/Convert.h"

namespace vc {
namespace {

using support::Hex;

TEST(PacketFrame, ClampsItsNumberAndFillsItsPayload) {
  const std::uint8_t content[] = {1, 2, 3};
  const PacketFrame high = MakePacketFrame(300, content);
  EXPECT_EQ(high[3], 255);
  EXPECT_EQ(high[52], static_cast<std::uint8_t>(-(255 + 6)));
  EXPECT_EQ(MakePacketFrame(-7, content)[3], 0);
  EXPECT_EQ(Hex({high.begin(), high.begin() + 8}), "3F 4C 50 FF 01 02 03 00");
  const std::vector<std::uint8_t> tooLong(60, 9);
  const PacketFrame cut = MakePacketFrame(0, tooLong);
  EXPECT_EQ(cut[51], 9);
  EXPECT_EQ(cut[52], static_cast<std::uint8_t>(-(48 * 9)));
}

TEST(LevelScale, FromLevelToBar) {
  EXPECT_DOUBLE_EQ(LevelToDb(20675, true), 0.0);
  EXPECT_NEAR(LevelToDb(32767, true), 4.0, 0.0005);
  EXPECT_NEAR(LevelToDb(0, true), -86.309, 0.001);
  EXPECT_EQ(LevelToDb(20675, false), LevelToDb(1, true));
  struct Case {
    double decibels;
    int bar;  // (step - 1) * 100 / 42
  };
  for (const Case& c :
       {Case{9.0, 100}, Case{3.6, 100}, Case{3.59, 98}, Case{3.4, 98}, Case{3.39, 95}, Case{3.2, 95},
        Case{3.19, 90}, Case{0.0, 83}, Case{-18.0, 40}, Case{-18.01, 43}, Case{-30.0, 29}, Case{-30.01, 29},
        Case{-66.0, 0}, Case{-66.01, -2}, Case{-86.3, -2}}) {
    EXPECT_EQ(DbToBarPosition(c.decibels), c.bar) << c.decibels;
  }
}

TEST(StatusReply, FieldByField) {
  std::string reply = support::MainStatusReply({1, 0x7FFF, 0xFF34, 4, 0x8000, 6}, 0x8200, 0xC001);
  for (int i = 0; i < 16; ++i) reply[static_cast<std::size_t>(19 + i)] = static_cast<char>(0xF0 + i);
  for (int i = 0; i < 10; ++i) reply[static_cast<std::size_t>(35 + i)] = static_cast<char>(0xA0 + i);
  UnitStatus status;
  DecodeLevels(status, reply);
  DecodeUnitStatus(status, reply);
  DecodeUnitMode(status, reply);
  DecodeStages(status, reply);
  EXPECT_EQ(status.levelInLeft, 1);
  EXPECT_EQ(status.levelInRight, 0x7FFF);
  EXPECT_EQ(status.levelMidLeft, 0x7F34);  // the top bit is dropped
  EXPECT_EQ(status.levelMidRight, 4);
  EXPECT_EQ(status.levelOutLeft, 0);
  EXPECT_EQ(status.levelOutRight, 6);
  EXPECT_EQ(status.unitStatus, 0x8200);
  EXPECT_TRUE(status.unitOption);
  EXPECT_EQ(status.unitMode / 16384, 3);
  EXPECT_EQ(status.stageStatus[0], 0xF1F0);
  EXPECT_EQ(status.stageStatus[7], 0xFFFE);
  const std::array<std::int16_t, 10> swapped{1, 0, 3, 2, 5, 4, 7, 6, 9, 8};
  EXPECT_EQ(status.stageNibble, swapped);
  DecodeEqualizerStages(status, std::string("!EG\x34\xF2\x78\x56", 7));
  EXPECT_EQ(status.stageStatus[8], 0xF234);
  EXPECT_EQ(status.stageStatus[9], 0x5678);
  EXPECT_THROW(DecodeStages(status, "!MG short"), Fault);
}

}  // namespace
}  // namespace vc
