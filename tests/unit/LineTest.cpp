// The simulated unit's line: its rate, its pace, its faults on request, its end.
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "unit/Host.h"

namespace unit_test {
namespace {

const Bytes statusRequest = CommandFrame(232);

unit::Options Paced(int baud) {
  unit::Options options;
  options.baud = baud;
  options.pace = true;
  return options;
}

TEST(Rate, AtAnotherRateNothingIsUnderstoodAndNothingCanBeRead) {
  for (const int rate : {0, 9600, 14400, 38400, 115201}) {
    Bench bench;
    bench.rate = rate;
    EXPECT_EQ(bench.Exchange(statusRequest).size(), 3U);  // too short for a status reply
    std::string heard;
    for (int attempt = 0; attempt < 300; ++attempt) {
      heard += bench.Ask(statusRequest);
      heard += bench.Ask(CommandFrame(17, 300));
      heard += bench.Ask(PacketFrame(0, 1));
      bench.now += 2'900'000;
    }
    EXPECT_FALSE(heard.empty());
    EXPECT_FALSE(HasToken(heard));
    EXPECT_EQ(bench.device.HeldRegisters().counts[17], 0U);
    EXPECT_EQ(bench.device.HeldRegisters().packetCounts[0], 0U);
    for (const std::string& line : bench.trace) EXPECT_FALSE(HasToken(line)) << line;

    bench.rate = 115200;
    EXPECT_EQ(bench.Ask(CommandFrame(17, 300)), "!OK");
  }
}

TEST(Pace, EveryCharacterTakesTenBitTimes) {
  Bench bench(Paced(9600));
  bench.now = 1'000'000;
  bench.device.Receive(statusRequest, bench.now, 9600);
  const std::int64_t requestEnd = bench.now + 7 * 10'000'000 / 9600;
  EXPECT_TRUE(bench.device.Transmit(requestEnd + 1041 - 1).empty());
  Bytes heard;
  for (int i = 1; i <= 46; ++i) {
    const std::int64_t due = requestEnd + std::int64_t{i} * 10'000'000 / 9600;
    EXPECT_EQ(bench.device.NextEvent(), due);
    EXPECT_TRUE(bench.device.Transmit(due - 1).empty()) << i;
    EXPECT_EQ(bench.device.Transmit(due).size(), 1U) << i;
  }
  EXPECT_EQ(bench.device.NextEvent(), std::nullopt);
}

TEST(Faults, SilentAfterSoManyAnswersAndDeafToo) {
  unit::Options options;
  options.silentAfter = 2;
  Bench bench(options);
  EXPECT_EQ(bench.Ask(CommandFrame(1, 1)), "!OK");
  EXPECT_EQ(bench.Ask(CommandFrame(200)), "") << "silence is no answer, so it does not count";
  EXPECT_EQ(bench.Ask({'?', 'M', 'P', 1, 2, 0, 0}), "!RT");
  EXPECT_EQ(bench.Ask(CommandFrame(1, 3)), "");
  EXPECT_EQ(bench.device.HeldRegisters().values[1], 1);
}

TEST(Faults, RefusedFramesGetThreeBytesOfComplaintAndNoEffect) {
  unit::Options options;
  options.refuse = 1.0;
  Bench bench(options);
  std::set<std::string> complaints;
  for (int i = 0; i < 100; ++i) complaints.insert(bench.Ask(CommandFrame(1, 192)));
  EXPECT_EQ(complaints, (std::set<std::string>{"!RT", std::string("!T\0", 3), std::string("!R\0", 3)}));
  EXPECT_EQ(bench.device.HeldRegisters().counts[1], 0U);
}

// What comes back for a hundred packets, and how many of them the unit took.
struct Series {
  std::string heard;
  unsigned taken;
  bool operator==(const Series&) const = default;
};

Series HundredPackets(const unit::Options& options) {
  Bench bench(options);
  std::string heard;
  for (int i = 0; i < 100; ++i) {
    heard += bench.Ask(PacketFrame(0, static_cast<std::uint8_t>(i)));
    bench.now += 1'000'000;
  }
  return {heard, bench.device.HeldRegisters().packetCounts[0]};
}

TEST(Faults, SameSeedSameFaults) {
  for (double unit::ByteFaultChances::*const kind :
       {&unit::ByteFaultChances::lose, &unit::ByteFaultChances::corrupt, &unit::ByteFaultChances::twice}) {
    unit::Options options;
    options.faults.*kind = 0.01;
    const Series first = HundredPackets(options);
    EXPECT_EQ(first, HundredPackets(options));
    // A packet gets through whole with probability 0.99^53 = 0.59.
    EXPECT_GT(first.taken, 40U);
    EXPECT_LT(first.taken, 80U);
    options.seed = 2;
    EXPECT_NE(first, HundredPackets(options));
  }
}

TEST(Faults, RepliesSufferToo) {
  unit::Options options;
  options.faults.twice = 1.0;
  EXPECT_EQ(Bench(options).Exchange(CommandFrame(0)).size(), 0U) << "every doubled header is noise";

  options = {};
  options.faults.corrupt = 0.02;
  Bench bench(options);
  std::set<std::string> versions;
  for (int i = 0; i < 200; ++i) {
    bench.now += 1'000'000;
    versions.insert(bench.Ask(CommandFrame(130)));
  }
  EXPECT_GT(versions.size(), 10U);
  EXPECT_EQ(versions.count("!VER401402"), 1U);

  options = {};
  options.faults.lose = 1.0;
  EXPECT_EQ(Bench(options).Ask(CommandFrame(0)), "");
}

TEST(Close, HalfHeardAndHalfSaidAreDropped) {
  Bench bench(Paced(9600));
  bench.device.Receive(statusRequest, 0, 9600);
  EXPECT_FALSE(bench.device.Transmit(20'000).empty());
  bench.device.LineClosed();
  EXPECT_EQ(bench.device.NextEvent(), std::nullopt);
  EXPECT_TRUE(bench.device.Transmit(20'001).empty());
  bench.now = 20'001;
  EXPECT_EQ(bench.Ask(CommandFrame(1, 192)), "!OK");
  EXPECT_NEAR(static_cast<double>(bench.now), 20'001 + 10 * 1e7 / 9600, 3.0) << "the line is free at once";

  Bench unpaced;
  unpaced.Ask({'?', 'M', 'P'});
  unpaced.device.LineClosed();
  EXPECT_EQ(unpaced.Ask(CommandFrame(1, 192)), "!OK");
}

}  // namespace
}  // namespace unit_test
