// How many packets a firmware image makes, and what the unit is to answer to it.
#include <vector>

#include <gtest/gtest.h>

#include "firmware/Xmodem.h"

namespace vc::xmodem {
namespace {

TEST(XmodemPackets, WhatIsLeftOverIsSentFromMoreThanHalfAPacketOn) {
  const std::vector<std::pair<std::size_t, int>> cases{{0, 0},   {64, 0},  {65, 1},  {128, 1},    {192, 2},
                                                       {300, 2}, {320, 2}, {321, 3}, {65536, 512}};
  for (const auto& [size, count] : cases) EXPECT_EQ(PacketCount(size), count) << size;
}

TEST(XmodemAnswer, IsTheLowHalfOfTheSumInFourDigits) {
  EXPECT_EQ(ChecksumText({}), "0000");
  EXPECT_EQ(ChecksumText(std::vector<std::uint8_t>{0xA0, 0x0B}), "00AB");
  EXPECT_EQ(ChecksumText(std::vector<std::uint8_t>(300, 0xFF)), "2AD4");  // 0x12AD4
}

}  // namespace
}  // namespace vc::xmodem
