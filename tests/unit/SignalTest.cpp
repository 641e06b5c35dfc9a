// The built-in signal of the simulated unit as the host sees it in the status replies.
#include <algorithm>
#include <cmath>
#include <set>

#include <gtest/gtest.h>

#include "unit/Host.h"

namespace unit_test {
namespace {

constexpr std::size_t Levels = 3;
constexpr std::size_t UnitStatus = 15;
constexpr std::size_t UnitMode = 17;
constexpr std::size_t StageStatus = 19;
constexpr std::size_t StageNibble = 35;

double Db(unsigned word) { return 20.0 * std::log10(std::max(word, 1U) / 20675.0); }

// One status reply every 50 ms, as the host polls, for some seconds.
std::vector<Bytes> Poll(Bench& bench, int seconds) {
  std::vector<Bytes> replies;
  for (int i = 0; i < seconds * 20; ++i) {
    replies.push_back(bench.Exchange(CommandFrame(232)));
    bench.now += 50'000;
  }
  return replies;
}

TEST(Signal, RisesAndFallsAsSpeechDoes) {
  Bench bench;
  const auto replies = Poll(bench, 120);
  for (std::size_t channel = 0; channel < 2; ++channel) {
    int speech = 0;
    int pause = 0;
    double loudest = -100.0;
    for (const Bytes& reply : replies) {
      const unsigned word = Word(reply, Levels + 2 * channel);
      ASSERT_LE(word, 32767U);
      const double db = Db(word);
      speech += db > -30.5 && db < -5.5;
      pause += db > -58.0 && db < -50.0;
      loudest = std::max(loudest, db);
    }
    EXPECT_GT(speech, 1200) << "of 2400 polls";
    EXPECT_GT(pause, 400);
    EXPECT_LT(speech + pause, 2400) << "there is a way between the two";
    EXPECT_GT(loudest, 0.0);
    EXPECT_LT(loudest, 4.0);
  }
}

TEST(Signal, ChannelsDifferAndEveryRunIsTheSame) {
  Bench bench;
  Bench again;
  const auto replies = Poll(bench, 30);
  EXPECT_EQ(replies, Poll(again, 30));
  int apart = 0;
  for (const Bytes& reply : replies) apart += std::abs(Db(Word(reply, 3)) - Db(Word(reply, 5))) > 3.0;
  EXPECT_GT(apart, 300) << "of 600 polls";
}

TEST(Signal, OutputIsBelowInputAndFollowsTheInputControls) {
  for (const int control : {192, 172, 200}) {
    Bench bench;
    const Bytes before = bench.Exchange(CommandFrame(232));
    bench.Exchange(CommandFrame(0, static_cast<std::uint16_t>(0xC000 + control)));
    const Bytes after = bench.Exchange(CommandFrame(232));
    const double gain = 0.5 * (control - 192);
    EXPECT_NEAR(Db(Word(after, 3)), Db(Word(before, 3)) + gain, 0.5) << control;
    EXPECT_EQ(Word(after, 5), Word(before, 5)) << "the right channel has a control of its own";
    bench.Exchange(CommandFrame(1, static_cast<std::uint16_t>(control)));
    EXPECT_NEAR(Db(Word(bench.Exchange(CommandFrame(232)), 5)), Db(Word(before, 5)) + gain, 0.5);
  }
  Bench bench;
  for (const Bytes& reply : Poll(bench, 10)) {
    EXPECT_GT(Word(reply, 3), Word(reply, 7));
    EXPECT_GT(Word(reply, 7), Word(reply, 11));
  }
}

TEST(Signal, ControlsAtTheirEndsKeepTheLevelsInRange) {
  Bench bench;
  bench.Exchange(CommandFrame(0, 255));
  bench.Exchange(CommandFrame(1, 0));
  std::set<unsigned> modes;
  for (const Bytes& reply : Poll(bench, 20)) {
    EXPECT_LE(Word(reply, 3), 32767U);
    EXPECT_LE(Word(reply, 5), 1U);
    modes.insert(Word(reply, UnitMode) / 16384);
  }
  EXPECT_EQ(modes, (std::set<unsigned>{0, 2})) << "the left channel overloads in speech, the right one never";
}

TEST(Signal, OptionIsBitNineAndCanChangeAtAnyTime) {
  Bench bench;
  EXPECT_EQ(Word(bench.Exchange(CommandFrame(232)), UnitStatus) & 0x200U, 0U);
  bench.device.option = true;
  EXPECT_EQ(Word(bench.Exchange(CommandFrame(232)), UnitStatus) & 0x200U, 0x200U);
  unit::Options options;
  options.option = true;
  EXPECT_EQ(Word(Bench(options).Exchange(CommandFrame(232)), UnitStatus) & 0x200U, 0x200U);
}

TEST(Signal, StagesReportLevelsAndNibblesInSwappedPairs) {
  Bench bench;
  std::set<unsigned> presence;
  std::set<unsigned> firstNibbles;
  for (const Bytes& reply : Poll(bench, 20)) {
    presence.insert(Word(reply, StageStatus) >> 15U);
    firstNibbles.insert(reply[StageNibble + 1] & 15U);
    // Nibble k + 1 is one above nibble k; on the wire each even one stands behind its odd partner.
    for (std::size_t pair = StageNibble; pair < StageNibble + 10; pair += 2) {
      EXPECT_EQ(reply[pair] & 15U, (reply[pair + 1] + 1U) & 15U);
    }
    EXPECT_LT(Word(reply, StageStatus) & 0x7FFFU, 32767U);
  }
  EXPECT_EQ(presence.size(), 2U);
  EXPECT_EQ(firstNibbles.size(), 16U);
}

}  // namespace
}  // namespace unit_test
