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
  for (const Bytes& reply : Poll(bench, 20)) {
    EXPECT_LE(Word(reply, 3), 32767U);
    EXPECT_LE(Word(reply, 5), 1U);
  }
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

// Whatever the sound is, it stands in the replies where the host looks for it.
TEST(Signal, RepliesTellWhatTheSoundReports) {
  Bench bench;
  bench.device.sound.status = [] {
    unit::Status status;
    status.unitMode = 0xC080;
    for (std::size_t i = 0; i < 10; ++i) {
      status.stageStatus[i] = static_cast<std::uint16_t>(0x9000 + i);
      status.stageNibble[i] = static_cast<std::uint8_t>(i);
    }
    return status;
  };
  bench.device.sound.spectrum = [](unsigned trace) {
    unit::SpectrumLines lines{};
    for (std::size_t i = 0; i < lines.size(); ++i) lines[i] = static_cast<std::uint8_t>(i + trace);
    return lines;
  };
  const Bytes main = bench.Exchange(CommandFrame(232));
  EXPECT_EQ(Word(main, UnitMode), 0xC080U);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(Word(main, StageStatus + 2 * i), 0x9000U + i);
  for (std::size_t i = 0; i < 10; ++i) EXPECT_EQ(main[StageNibble + (i ^ 1U)], i) << "in swapped pairs";
  const Bytes equalizers = bench.Exchange(CommandFrame(234));
  EXPECT_EQ(Word(equalizers, 5), 0x9009U);
  for (const unsigned trace : {0U, 1U}) {
    const Bytes spectrum = bench.Exchange(CommandFrame(static_cast<std::uint8_t>(161U + trace)));
    ASSERT_EQ(spectrum.size(), 558U);
    EXPECT_EQ(Text(spectrum).substr(0, 3), trace == 0 ? "!S1" : "!S2");
    EXPECT_TRUE(std::equal(spectrum.begin() + 3, spectrum.begin() + 45, main.begin() + 3));
    EXPECT_EQ(spectrum[45 + 300], (300U + trace) % 256);
  }
}

}  // namespace
}  // namespace unit_test
