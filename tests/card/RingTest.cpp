// Frames from thread to thread, and what the sound thread makes of them.
#include <cmath>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "unit/card/CardShare.h"

namespace unit::sound {
namespace {

using Frames = std::vector<StereoFrame>;

TEST(Ring, LosesAndDoublesNothingBetweenTwoThreads) {
  constexpr std::size_t count = 2'000'000;  // sixty times round
  auto ring = std::make_unique<Ring>();
  std::thread producer([&ring] {
    std::mt19937 random(1);
    Frames frames;
    for (std::size_t next = 0; next < count;) {
      frames.resize(std::min<std::size_t>(1 + random() % 700, count - next));
      // Whole numbers up to 2^24 are exact.
      for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i] = {static_cast<float>(next + i), -static_cast<float>(next + i)};
      next += ring->Push(frames);
      if (random() % 16 == 0) std::this_thread::yield();
    }
  });
  std::mt19937 random(2);
  Frames frames;
  std::size_t next = 0, wrong = 0;
  while (next < count) {
    frames.assign(1 + random() % 700, {});
    const std::size_t there = ring->Pop(frames);
    for (std::size_t i = 0; i < there; ++i, ++next)
      wrong += frames[i] == StereoFrame{static_cast<float>(next), -static_cast<float>(next)} ? 0 : 1;
  }
  producer.join();
  EXPECT_EQ(wrong, 0U);
  EXPECT_EQ(ring->Fill(), 0U);
}

TEST(Ring, TakesNoMoreThanItHolds) {
  auto ring = std::make_unique<Ring>();
  EXPECT_EQ(ring->Push(Frames(Ring::Capacity + 5)), Ring::Capacity);
  EXPECT_EQ(ring->Push(Frames(1)), 0U);
  ring->Skip(10);
  EXPECT_EQ(ring->Push(Frames(11)), 10U);
  ring->Skip(Ring::Capacity + 1);
  EXPECT_EQ(ring->Fill(), 0U);
}

float LargestStep(const std::vector<float>& samples, std::size_t channels) {
  float largest = 0;
  for (std::size_t i = channels; i < samples.size(); ++i)
    largest = std::max(largest, std::abs(samples[i] - samples[i - channels]));
  return largest;
}

// A steady sound at full scale, of which a stretch in the midst comes too late.
TEST(SoundThread, FadesIntoAGapAndOutOfItAndCountsItOnce) {
  auto share = std::make_unique<CardShare>();
  share->enough = 512;
  share->resting = false;
  std::vector<float> heard;
  for (int call = 0; call < 100; ++call) {
    if (call < 40 || call >= 60) share->ring.Push(Frames(256, StereoFrame{1, 1}));
    std::vector<float> buffer(512, 7.0F);
    share->Play(buffer, 2, false);
    heard.insert(heard.end(), buffer.begin(), buffer.end());
  }
  EXPECT_EQ(share->dropOuts, 1U);
  EXPECT_LT(LargestStep(heard, 2), 0.06F);
  EXPECT_EQ(heard[std::size_t{50} * 512], 0.0F);
  EXPECT_EQ(heard.back(), 1.0F);
}

TEST(SoundThread, CountsNoStopByIntention) {
  auto share = std::make_unique<CardShare>();
  std::vector<float> buffer(512);
  share->Play(buffer, 2, true);  // before the first sound
  share->resting = false;
  share->ring.Push(Frames(300, StereoFrame{1, 1}));
  share->Play(buffer, 2, false);
  share->resting = true;
  share->Play(buffer, 2, false);
  share->Play(buffer, 2, true);
  EXPECT_EQ(share->dropOuts, 0U);
}

TEST(SoundThread, CountsWhatTheCardSaysItLost) {
  auto share = std::make_unique<CardShare>();
  share->resting = false;
  std::vector<float> buffer(128);
  share->Hear(buffer, 2, true);
  share->ring.Push(Frames(500, StereoFrame{1, 1}));
  share->Play(buffer, 2, false);
  share->Play(buffer, 2, true);
  EXPECT_EQ(share->dropOuts, 2U);
}

TEST(SoundThread, ServesCardsOfOneAndOfManyChannels) {
  auto share = std::make_unique<CardShare>();
  share->Hear(std::vector<float>{0.5F, 0.25F}, 1, false);
  share->Hear(std::vector<float>{0.1F, 0.2F, 0.3F}, 3, false);
  Frames frames(3);
  share->ring.Pop(frames);
  EXPECT_EQ(frames, (Frames{{0.5F, 0.5F}, {0.25F, 0.25F}, {0.1F, 0.2F}}));
  share->ring.Push(Frames(300, StereoFrame{1, 0}));
  std::vector<float> mono(100), five(500, 7.0F);
  share->Play(mono, 1, false);
  EXPECT_EQ(mono.back(), 0.5F);
  share->Play(five, 5, false);
  EXPECT_EQ(std::vector<float>(five.end() - 5, five.end()), (std::vector<float>{1, 0, 0, 0, 0}));
}

}  // namespace
}  // namespace unit::sound
