// Packets of a firmware image, byte by byte.
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "firmware/Xmodem.h"

namespace vc::xmodem {
namespace {

std::vector<std::uint8_t> Image(std::size_t size) {
  std::vector<std::uint8_t> image(size);
  for (std::size_t i = 0; i < size; ++i) image[i] = static_cast<std::uint8_t>(i % 251 + 1);
  return image;
}

TEST(XmodemPackets, WhatIsLeftOverIsSentFromMoreThanHalfAPacketOn) {
  const std::vector<std::pair<std::size_t, int>> cases{{0, 0},   {64, 0},  {65, 1},  {128, 1},    {192, 2},
                                                       {300, 2}, {320, 2}, {321, 3}, {65536, 512}};
  for (const auto& [size, count] : cases) EXPECT_EQ(PacketCount(size), count) << size;
}

TEST(XmodemPackets, HoldNumberComplementDataAndSum) {
  const auto image = Image(200);
  const Packet packet = MakePacket(DataOf(image, 2), 2);
  ASSERT_EQ(packet.size(), 132U);
  EXPECT_THAT(std::vector(packet.begin(), packet.begin() + 6),
              testing::ElementsAre(1, 2, 253, 129, 130, 131));
  EXPECT_EQ(packet[3 + 71], 200);  // the last byte of the image, zeros behind it
  EXPECT_THAT(std::vector(packet.begin() + 75, packet.end() - 1), testing::Each(0));
  EXPECT_EQ(packet[131], (129 + 200) * 72 / 2 % 256);
}

TEST(XmodemPackets, NumbersBeginAnewBehind255) {
  EXPECT_EQ(MakePacket({}, 255)[1], 255);
  EXPECT_EQ(MakePacket({}, 255)[2], 0);
  EXPECT_EQ(MakePacket({}, 256)[1], 0);
  EXPECT_EQ(MakePacket({}, 256)[2], 255);
  EXPECT_EQ(DataOf(Image(257 * 128), 257)[0], 256 * 128 % 251 + 1);
}

TEST(XmodemAnswer, IsTheLowHalfOfTheSumInFourDigits) {
  EXPECT_EQ(ChecksumText({}), "0000");
  EXPECT_EQ(ChecksumText(std::vector<std::uint8_t>{0xA0, 0x0B}), "00AB");
  EXPECT_EQ(ChecksumText(std::vector<std::uint8_t>(300, 0xFF)), "2AD4");  // 0x12AD4
}

}  // namespace
}  // namespace vc::xmodem
