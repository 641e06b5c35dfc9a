// The rings of cards in virtual time: the clocks of cards and unit, each with its own idea of a second.
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "unit/card/Capture.h"
#include "unit/card/Playback.h"
#include "unit/sound/Blocks.h"

namespace unit::sound {
namespace {

struct Card {
  int rate;            // Hz, as it says
  std::size_t period;  // frames
  double fast = 0;     // how much faster it really is
};

// A card that hears a tone and one that plays it, with a unit between them that looks after them every so
// often.
class Pair {
 public:
  Pair(Card hears, Card plays, int unitRate)
      : input(hears),
        output(plays),
        rate(unitRate),
        capture(*heard, hears.rate, 0, unitRate),
        playback(*played, plays.rate, 0, unitRate) {}

  // late: seconds by which the unit may come late.
  void Run(double seconds, double late) {
    const double end = now + seconds;
    std::uniform_real_distribution<double> delay(0, late);
    while (now < end) {
      now = std::min({nextIn, nextOut, nextLook});
      if (now == nextIn) HearTone();
      if (now == nextOut) PlayBuffer();
      if (now != nextLook) continue;
      while (!stalled && Due() >= BlockFrames) MoveBlock();
      // It sleeps until the next block is due, and comes late.
      const double missing = static_cast<double>(BlockFrames - std::min(Due(), BlockFrames)) / rate;
      nextLook = now + std::max(missing, 0.001) + delay(random);
    }
  }

  std::unique_ptr<CardShare> heard = std::make_unique<CardShare>(), played = std::make_unique<CardShare>();
  Card input, output;
  int rate;
  Capture capture;
  Playback playback;
  bool inputBeats = false;  // blocks are moved when the input has one
  bool stalled = false;
  double now = 0;
  std::size_t blocks = 0;
  double largestStep = 0;  // of what is played
  std::size_t inputFrames = 0;
  std::vector<float> out;

 private:
  static double Seconds(const Card& card) {
    return static_cast<double>(card.period) / card.rate / (1 + card.fast);
  }

  void HearTone() {
    std::vector<float> buffer(2 * input.period);
    for (std::size_t i = 0; i < buffer.size(); ++i) {
      const double second = static_cast<double>(inputFrames + i / 2) / input.rate;
      buffer[i] = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * 500 * second));
    }
    heard->Hear(buffer, 2, false);
    inputFrames += input.period;
    nextIn += Seconds(input);
  }

  void PlayBuffer() {
    std::vector<float> buffer(2 * output.period);
    played->Play(buffer, 2, false);
    for (std::size_t i = 0; i < buffer.size(); i += 2) {
      if (!out.empty())
        largestStep = std::max(largestStep, static_cast<double>(std::abs(buffer[i] - out.back())));
      out.push_back(buffer[i]);
    }
    nextOut += Seconds(output);
  }

  std::size_t Due() const { return inputBeats ? capture.Ready() : playback.Room(); }

  void MoveBlock() {
    std::array<float, BlockFrames> left, right;
    capture.Read(left, right);
    playback.Write(left, right);
    ++blocks;
  }

  double nextIn = 0.001, nextOut = 0, nextLook = 0;
  std::mt19937 random{1};
};

// The steepest step of the tone, with some room for the filters.
double StepOfTone(int cardRate) { return 0.5 * 2 * std::numbers::pi * 500 / cardRate * 1.1; }

struct Clocks {
  const char* what;
  Card in, out;
  int rate;
};

class TwoClocks : public testing::TestWithParam<Clocks> {};

TEST_P(TwoClocks, StayTogetherWithoutADropOut) {
  const auto& [what, in, out, rate] = GetParam();
  Pair pair(in, out, rate);
  pair.Run(1, 0.004);
  const std::uint64_t begun = pair.capture.DropOuts() + pair.playback.DropOuts();
  pair.out.clear();
  pair.largestStep = 0;
  pair.Run(12, 0.004);
  EXPECT_EQ(begun + pair.capture.DropOuts() + pair.playback.DropOuts(), 0U);
  EXPECT_LT(pair.largestStep, StepOfTone(out.rate));
  // As much is heard as there was: the sound is neither stretched nor cut.
  EXPECT_NEAR(static_cast<double>(pair.heard->ring.Fill()) / in.rate, pair.capture.Latency(), 0.07);
}

INSTANTIATE_TEST_SUITE_P(Card, TwoClocks,
                         testing::Values(Clocks{"slowest", {48000, 256, 3e-4}, {48000, 256}, 7200},
                                         Clocks{"usual", {44100, 441, -3e-4}, {48000, 256}, 18000},
                                         Clocks{"fastest", {48000, 128}, {44100, 512, 3e-4}, 36000},
                                         Clocks{"long periods", {48000, 1024, -3e-4}, {48000, 1024}, 36000}),
                         [](const auto& each) { return std::to_string(each.index); });

TEST(Clock, OfTheInputIsFollowedWithoutAChangeOfPitch) {
  Pair pair({48000, 256, 2e-4}, {48000, 256}, 18000);
  pair.inputBeats = true;
  pair.Run(12, 0.003);
  const std::size_t before = pair.blocks;
  pair.Run(5, 0.003);
  // Blocks a second by the card's own clock: 5 s of it.
  const double expected = 5.0 * 18000 / BlockFrames * (1 + 2e-4);
  EXPECT_NEAR(static_cast<double>(pair.blocks - before), expected, 1.0);
  EXPECT_EQ(pair.capture.DropOuts(), 0U);
}

TEST(Stall, IsCountedFadedAndOver) {
  Pair pair({48000, 256}, {48000, 256}, 18000);
  pair.Run(2, 0.003);
  pair.stalled = true;
  pair.Run(0.3, 0.003);
  pair.stalled = false;
  pair.Run(1, 0.003);
  EXPECT_EQ(pair.playback.DropOuts(), 1U);
  EXPECT_EQ(pair.capture.DropOuts(), 1U);
  EXPECT_LT(pair.largestStep, 0.06);
  pair.Run(2, 0.003);
  EXPECT_EQ(pair.playback.DropOuts() + pair.capture.DropOuts(), 2U);
  EXPECT_LT(static_cast<double>(pair.heard->ring.Fill()) / 48000, 0.08);
}

TEST(Rest, IsNoDropOut) {
  Pair pair({48000, 256}, {48000, 256}, 18000);
  pair.Run(2, 0.003);
  pair.playback.Rest();
  pair.capture.Rest();
  pair.stalled = true;
  pair.Run(3, 0.003);
  pair.stalled = false;
  pair.Run(2, 0.003);
  EXPECT_EQ(pair.playback.DropOuts() + pair.capture.DropOuts(), 0U);
}

// What lies between the unit and the card is what was promised, but for the blocks of the lowest rate.
TEST(Latency, IsWithinFiftyMilliseconds) {
  for (const int rate : {7200, 12000, 18000, 36000}) {
    Pair pair({48000, 256}, {48000, 256}, rate);
    pair.Run(1, 0.002);
    double most = 0;
    for (int i = 0; i < 250; ++i) {
      pair.Run(0.002, 0.002);
      most = std::max(most, static_cast<double>(pair.played->ring.Fill() + pair.output.period) / 48000);
    }
    EXPECT_GT(most, 0.020) << rate;
    EXPECT_LT(most, rate == 7200 ? 0.060 : 0.050) << rate;
  }
}

TEST(Input, IsANumberAndNeverFarAboveFullScale) {
  CardShare share;
  Capture capture(share, 48000, 0, 18000);
  std::vector<float> buffer(2 * 256);
  for (std::size_t i = 0; i < buffer.size(); ++i) buffer[i] = std::array{NAN, INFINITY, -1e30F, 0.1F}[i % 4];
  std::array<float, BlockFrames> left, right;
  for (int i = 0; i < 40; ++i) {
    share.Hear(buffer, 2, false);
    while (capture.Ready() >= BlockFrames) {
      capture.Read(left, right);
      for (const float sample : left) ASSERT_LT(std::abs(sample), 20);
      for (const float sample : right) ASSERT_LT(std::abs(sample), 20);
    }
  }
}

}  // namespace
}  // namespace unit::sound
