// Frames and replies of the simulated unit, byte for byte, and its way back into step after a bad frame.
#include <string>

#include <gtest/gtest.h>

#include "unit/Host.h"

namespace unit_test {
namespace {

constexpr std::int64_t LongSilence = 1'000'000;

TEST(Frames, UnknownCodesAreMetWithSilence) {
  Bench bench;
  for (const int code : {2, 3, 21, 49, 54, 62, 83, 90, 92, 103, 114, 131, 152, 160, 163, 193, 255}) {
    EXPECT_EQ(bench.Ask(CommandFrame(static_cast<std::uint8_t>(code))), "") << code;
    EXPECT_EQ(bench.device.HeldRegisters().counts[static_cast<std::size_t>(code)], 0U) << code;
  }
}

TEST(Replies, VersionHasTwoPlacesEach) {
  EXPECT_EQ(Bench().Ask({0x3F, 0x4D, 0x50, 0x82, 0x00, 0x00, 0x7E}), "!VER401402");
  unit::Options options;
  options.bootHundredths = 7;
  options.firmwareHundredths = 990;
  EXPECT_EQ(Bench(options).Ask(CommandFrame(130)), "!VER007990");
}

TEST(Replies, StatusRepliesHaveTheirLengthAndEndInAChecksum) {
  Bench bench;
  const Bytes main = bench.Exchange({0x3F, 0x4D, 0x50, 0xE8, 0x00, 0x00, 0x18});
  const Bytes equalizer = bench.Exchange({0x3F, 0x4D, 0x50, 0xEA, 0x00, 0x00, 0x16});
  ASSERT_EQ(main.size(), 46U);
  ASSERT_EQ(equalizer.size(), 8U);
  EXPECT_EQ(Text(main).substr(0, 3), "!MG");
  EXPECT_EQ(Text(equalizer).substr(0, 3), "!EG");
  for (const Bytes& reply : {main, equalizer}) {
    unsigned sum = 0;
    for (std::size_t i = 3; i < reply.size(); ++i) sum += reply[i];
    EXPECT_EQ(sum % 256, 0U);
  }
}

TEST(Step, LostByteCostsOneFrameOnly) {
  for (std::size_t lost = 0; lost < 7; ++lost) {
    Bench bench;
    Bytes frame = CommandFrame(17, 300);
    frame.erase(frame.begin() + static_cast<std::ptrdiff_t>(lost));
    EXPECT_EQ(bench.Ask(frame), "") << lost;
    bench.now += LongSilence;
    EXPECT_EQ(bench.Ask(CommandFrame(17, 400)), "!OK") << lost;
    EXPECT_EQ(bench.device.HeldRegisters().values[17], 400) << lost;
  }
}

TEST(Step, ShortSilenceInsideAFrameIsNoEnd) {
  const Bytes frame = CommandFrame(17, 300);
  for (const auto& [silence, answer] : {std::pair{50'000, "!OK"}, std::pair{51'000, ""}}) {
    Bench bench;
    EXPECT_EQ(bench.Ask({frame.begin(), frame.begin() + 4}), "");
    bench.now += silence;
    EXPECT_EQ(bench.Ask({frame.begin() + 4, frame.end()}), answer) << silence;
  }
}

TEST(Step, NoiseBeforeAFrameIsSkippedAndAFrameInsideAPacketIsPayload) {
  Bench bench;
  const Bytes frame = CommandFrame(17, 300);
  EXPECT_EQ(bench.Ask(Joined({'?', 'M', '?', '?', 'L', 0, '?'}, frame)), "!OK");
  EXPECT_EQ(bench.Ask(Bytes(1000, '?')), "");
  bench.now += LongSilence;

  Bytes packet = PacketFrame(0, 0);
  for (std::size_t i = 0; i < frame.size(); ++i) packet[10 + i] = frame[i];
  packet.back() = static_cast<std::uint8_t>(packet.back() - ('?' + 'M' + 'P'));
  EXPECT_EQ(bench.Ask(packet), "!OK");
  EXPECT_EQ(bench.device.HeldRegisters().counts[17], 1U);
}

TEST(Trace, SaysWhatWentOverTheLine) {
  Bench bench;
  bench.now = 12'345;
  bench.Ask(CommandFrame(232));
  bench.now = 61'000'007;
  bench.Ask(CommandFrame(1, 192));
  bench.Ask({'x', '?', 'M', 'P', 160, 2, 0, 0x5E});
  ASSERT_EQ(bench.trace.size(), 6U);
  EXPECT_EQ(bench.trace[0], "0.012345  host  3F 4D 50 E8 00 00 18  main status request");
  EXPECT_EQ(bench.trace[1].substr(0, 25), "0.012345  unit  21 4D 47 ");
  EXPECT_EQ(bench.trace[2], "61.000007  host  3F 4D 50 01 C0 00 3F  right level = 192");
  EXPECT_EQ(bench.trace[3], "61.000007  unit  21 4F 4B  acknowledged");
  EXPECT_EQ(bench.trace[4], "61.000007  host  78  no frame, skipped");
  EXPECT_EQ(bench.trace[5], "61.000007  host  3F 4D 50 A0 02 00 5E  unknown command 160 = 2");
}

}  // namespace
}  // namespace unit_test
