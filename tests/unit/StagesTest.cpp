// What the simulated unit makes of a download: blocks, coefficients and broadband pieces in their stages, and
// the frames that it won't take.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "unit/Download.h"
#include "unit/Dump.h"

namespace unit_test {
namespace {

std::string DumpAfter(const Frames& frames) {
  Bench bench;
  ExpectTaken(bench, frames);
  return DumpText(bench.device);
}

std::string Times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(Stages, TheDumpOfASmallDownloadIsThisText) {
  const Bytes ends = {0x7F, 0xFF, 0xFF, 0x80, 0x00, 0x01, 0x80, 0x00,
                      0x00, 0xFF, 0xFF, 0xFF, 0x00, 0x01, 0x02};
  const Frames frames =
      Frames{Command(56, 8196), Command(52, 0x0CFF), Command(55, 0xF509), Command(113, 3)} + classes +
      Frames{PacketFrame(0, 0, ends), Synthesis(6, 0),      PacketFrame(0, 0x0A),   PacketFrame(1, 0xF0),
             Synthesis(4, 9),         PacketFrame(0, 0x22), Command(102, 4096 + 3), PacketFrame(0, 0)};
  EXPECT_EQ(DumpAfter(frames),
            "register 52 3327  size of stages 3 and 4\n"
            "register 55 62729  size of stages 9 and 10\n"
            "register 56 8196  stage 1 adaptation\n"
            "register 85 4255  classes of stages 1 to 5\n"
            "register 86 4106  classes of stages 6, 9, 10\n"
            "stage 1 class 1 size unknown algorithm none\n"
            "stage 2 class 0 size unknown algorithm none\n"
            "stage 3 class 2 size 12 algorithm none\n"
            "stage 4 class 3 size 255 algorithm 9\n"
            "block 4" +
                Times(48, " 0A") + Times(48, " F0") +
                "\n"
                "stage 5 class 7 size unknown algorithm none\n"
                "stage 6 class 1 size unknown algorithm 0\n"
                "table 6 16 8388607 -8388607 -8388608 -1 258" +
                Times(11, " 0") +
                "\n"
                "stage 9 class 1 size 245 algorithm none\n"
                "stage 10 class 2 size 9 algorithm none\n"
                "broadband 2 3" +
                Times(48, " 22") +
                "\n"
                "waiting 1\n"
                "image 1 complete, version 4.02, 128 bytes\n"
                "image 2 complete, version 4.02, 128 bytes\n"
                "application runs\n");
}

TEST(Stages, TheLastSynthesisCounts) {
  const std::string host = DumpAfter(classes + Packets(64) + Frames{Synthesis(1, 0)});
  const std::string own = DumpAfter(classes + Packets(2) + Frames{Synthesis(1, 10)});
  EXPECT_TRUE(Has(host, "table 1 1024 1052688 "));
  EXPECT_EQ(DumpAfter(classes + Packets(3) + Packets(2) + Frames{Synthesis(1, 10)}), own);
  EXPECT_EQ(
      DumpAfter(classes + Packets(2) + Frames{Synthesis(1, 10)} + Packets(64) + Frames{Synthesis(1, 0)}),
      host);
  EXPECT_EQ(
      DumpAfter(classes + Packets(64) + Frames{Synthesis(1, 0)} + Packets(2) + Frames{Synthesis(1, 10)}),
      own);
}

TEST(Stages, ImpossibleSynthesesAreMetWithSilence) {
  struct Case {
    int packets, position, algorithm;
  };
  const Case cases[] = {{2, 11, 1}, {2, 16, 1}, {2, 1, 11}, {2, 1, 0x801},              // no such thing
                        {2, 7, 1},  {2, 8, 0},                                          // broadband
                        {2, 1, 9},  {2, 2, 1},  {2, 3, 1},  {2, 4, 8},     {2, 10, 8},  // of another class
                        {2, 5, 0},  {2, 5, 1},  {2, 3, 0},  {2, 4, 0},     {2, 10, 0},  // no coefficients
                        {0, 1, 1},  {1, 1, 1},  {3, 1, 1},  {64, 3, 9},                 // not a block
                        {0, 1, 0},  {0, 2, 0},  {17, 9, 0}, {65, 1, 0}};                // not a table
  for (const auto& [packets, position, algorithm] : cases) {
    Bench bench;
    ExpectTaken(bench, classes + Packets(packets));
    const std::string before = DumpText(bench.device);
    EXPECT_EQ(bench.Ask(Synthesis(position, algorithm)), "")
        << packets << ' ' << position << ' ' << algorithm;
    EXPECT_EQ(DumpText(bench.device), before);
    EXPECT_TRUE(Has(bench.trace.back(), ", refused: ")) << bench.trace.back();
  }
  Bench bench;
  ExpectTaken(bench, Packets(2));
  EXPECT_EQ(bench.Ask(Synthesis(1, 1)), "") << "no class was ever told";
  ExpectTaken(bench, {Command(86, 0)});
  EXPECT_EQ(bench.Ask(Synthesis(9, 0)), "") << "an equalizer does not adapt";
}

TEST(Stages, PacketsComeInOrderAndNotDuringAHold) {
  Bench bench;
  ExpectTaken(bench, classes);
  EXPECT_EQ(bench.Ask(PacketFrame(1, 0)), "");
  ExpectTaken(bench, Packets(3) + Packets(64));
  for (const int number : {1, 62, 65, 255}) {
    EXPECT_EQ(bench.Ask(PacketFrame(static_cast<std::uint8_t>(number), 0)), "") << number;
  }
  ExpectTaken(bench, {Synthesis(6, 0), Command(85, Hold)});
  ExpectTaken(bench, Packets(1));  // stages 1 to 5 may all be idle
  ExpectTaken(bench, {Command(85, 0), Command(86, Hold)});
  ExpectTaken(bench, Packets(1) + Frames{Command(85, Hold)});
  EXPECT_EQ(bench.Ask(PacketFrame(0, 0)), "");
  EXPECT_FALSE(Has(DumpText(bench.device), "waiting"));
  ExpectTaken(bench, {Command(86, 1 << 12 | 7 << 3 | 7)});
  EXPECT_EQ(bench.Ask(Synthesis(6, 0)), "") << "the packet before the hold is gone";
  ExpectTaken(bench, Packets(1));
  bench.device.LineClosed();
  EXPECT_EQ(bench.Ask(Synthesis(6, 0)), "") << "the packet of a host that has gone";
}

TEST(Stages, ResetEmptiesTheStagesOfItsBits) {
  const Frames sized = Frames{Command(51, 0xFF7F), Command(53, 0x1122)} + classes;
  const Frames filled = sized + Packets(2) + Frames{Synthesis(1, 1)} + Packets(2) + Frames{Synthesis(2, 0)} +
                        Packets(2) + Frames{Synthesis(6, 0)} + Packets(2) + Frames{Synthesis(10, 9)} +
                        Packets(1) + Frames{Command(102, 5)};
  const std::string some = DumpAfter(filled + Frames{Command(89, 0x84)});
  EXPECT_TRUE(
      Has(some, "stage 1 class unknown size 255 algorithm none\nstage 2 class 0 size 127 algorithm 0\n"));
  EXPECT_TRUE(Has(some, "stage 6 class unknown size 34 algorithm none\nstage 9 "));
  EXPECT_TRUE(Has(some, "block 10 "));
  const std::string all = DumpAfter(filled + Frames{Command(89, 255)});
  EXPECT_FALSE(Has(all, "block ") || Has(all, "table ") || Has(all, "class 1") || Has(all, "class 2"));
  EXPECT_TRUE(Has(all, "broadband 1 5 "));
  Bench bench;
  ExpectTaken(bench, filled + Frames{Command(89, 0x80)} + Packets(2));
  EXPECT_EQ(bench.Ask(Synthesis(1, 1)), "");
}

TEST(Stages, AnAdaptiveFilterIsGivenAsManyCoefficientsAsPacketsCanCarry) {
  EXPECT_TRUE(Has(DumpAfter(classes + Packets(256) + Frames{Synthesis(2, 0)}), "table 2 4096 "));
}

TEST(Stages, LinkedCoefficientsCountForThePair) {
  const Frames linked = Frames{Command(42, 0x8000 + 462)} + classes + Packets(1);
  const std::string filter = DumpAfter(linked + Frames{Synthesis(1, 0)});
  EXPECT_TRUE(Has(filter, "table 1 16 ") && Has(filter, "table 2 16 ") && !Has(filter, "table 3 "));
  EXPECT_TRUE(Has(DumpAfter(linked + Packets(16) + Frames{Synthesis(9, 0)}), "table 10 256 "));
  EXPECT_FALSE(Has(DumpAfter(linked + Packets(2) + Frames{Synthesis(1, 1)}), "block 2 "));
  Bench bench;
  ExpectTaken(bench, linked);
  EXPECT_EQ(bench.Ask(Synthesis(2, 0)), "");
  ExpectTaken(bench, {Command(42, 462), Synthesis(1, 0)});
  EXPECT_FALSE(Has(DumpText(bench.device), "table 2 "));
}

TEST(Stages, CoefficientsAreReadInBlocksOfTheirPage) {
  Bench bench;
  ExpectTaken(bench, classes + Frames{PacketFrame(0, 0, {0x7F, 0xFF, 0xFF, 0x80}), Synthesis(2, 0)});
  std::vector<std::int32_t> learned(9000, -2);
  learned[31 * 256] = 0x123456;
  bench.device.Learn(2, learned);
  const auto block = [&bench](int address) {
    const Bytes reply = bench.Exchange(Command(91, address));
    EXPECT_EQ(Text(reply).substr(0, 45), "!CV" + bench.Ask(Command(232, 0)).substr(3, 42));
    EXPECT_EQ(reply.size(), 815U) << address;
    return unit::HexText(std::span(reply).subspan(45, 6));
  };
  EXPECT_EQ(block(0x1000), "7F FF FF 80 00 00");
  EXPECT_EQ(block(0x201F), "12 34 56 FF FF FE");
  EXPECT_TRUE(Has(bench.trace[bench.trace.size() - 4], "coefficient request, page 2, block 31"));
  ExpectTaken(bench, {Command(89, 0x20)});
  EXPECT_EQ(block(0x201F), "00 00 00 00 00 00");
  for (const int address : {0x0020, 0x6000}) EXPECT_EQ(bench.Ask(Command(91, address)), "") << address;
}

TEST(Stages, BroadbandPiecesStandBehindOnePacket) {
  Bench bench;
  EXPECT_EQ(bench.Ask(Command(102, 0)), "");
  ExpectTaken(bench, Packets(1));
  for (const int argument : {12, 4096 + 12, 8192})
    EXPECT_EQ(bench.Ask(Command(102, argument)), "") << argument;
  ExpectTaken(bench, {Command(102, 11)});
  EXPECT_EQ(bench.Ask(Command(102, 10)), "") << "the packet is used up";
  ExpectTaken(bench, {PacketFrame(0, 0x99), Command(102, 11)});
  EXPECT_TRUE(Has(DumpText(bench.device), "broadband 1 11 99 ")) << "the same command with another packet";
  ExpectTaken(bench, Packets(2));
  EXPECT_EQ(bench.Ask(Command(102, 0)), "");
}

}  // namespace
}  // namespace unit_test
