// The unit's sound on sound cards: the cards give the beat.
#include <chrono>
#include <cmath>
#include <thread>

#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the system's

#include "card/Jack.h"
#include "unit/sound/LiveSound.h"

namespace unit::sound {
namespace {

class LiveSoundOnCards : public testing::Test {
 protected:
  void SetUp() override {
    server = JackServer::Start();
    if (!server) GTEST_SKIP() << "jackd is not installed or does not start: no live sound is tested";
    live->failed = [this](const std::string& what) { troubles.push_back(what); };
  }
  std::int64_t Now() const {
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start)
        .count();
  }
  // As the program does it, for so many seconds.
  void Run(double seconds) const {
    const std::int64_t end = Now() + static_cast<std::int64_t>(seconds * 1e6);
    while (Now() < end) {
      live->RunUntil(Now());
      std::this_thread::sleep_for(
          std::chrono::microseconds(std::clamp<std::int64_t>(live->NextBlock() - Now(), 0, 50'000)));
    }
  }
  // What the studio has heard in the last quarter of a second.
  static double Level(const Studio& studio) {
    const std::vector<float> heard = studio.Heard();
    double sum = 0;
    for (std::size_t i = heard.size() - 12000; i < heard.size(); ++i) sum += double{heard[i]} * heard[i];
    return std::sqrt(sum / 12000);
  }

  std::unique_ptr<JackServer> server;
  std::unique_ptr<LiveSound> live = std::get<0>(LiveSound::Open({}));
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::vector<std::string> troubles;
};

TEST_F(LiveSoundOnCards, IsHeardBeforeAndAfterAtOneLoudness) {
  Studio studio;
  ASSERT_EQ(live->SetSource({.kind = SourceKind::Card, .name = Studio::Name}), "");
  const double begun = live->Seconds();
  Run(0.5);
  EXPECT_NEAR(live->Seconds() - begun, 0.5, 0.1) << "by the card that is heard";
  ASSERT_EQ(live->SetSink(SinkKind::Card, Studio::Name), "");
  // The unit takes 12 dB off.
  Setting setting;
  setting.registers[0] = setting.registers[1] = 192 - 24;
  live->engine.Apply(setting);
  studio.sounding = true;
  const double joined = live->Seconds();
  Run(1.2);
  EXPECT_NEAR(live->Seconds() - joined, 1.2, 0.15) << "by the card that plays";
  const double after = Level(studio);
  EXPECT_NEAR(after, Studio::Level / std::sqrt(2) / 3.98, 0.01);
  EXPECT_NEAR(live->comparison.GainDecibels(), -12, 0.5);
  live->comparison.SetBypass(true);
  Run(0.7);
  EXPECT_NEAR(20 * std::log10(Level(studio) / after), 0, 0.5);
  ASSERT_EQ(live->Source().SetPlaying(false), "");
  Run(0.6);
  EXPECT_LT(Level(studio), 1e-4);
  EXPECT_TRUE(troubles.empty());
}

TEST_F(LiveSoundOnCards, GoesOnByTheClockWhereTheCardIsGone) {
  ASSERT_EQ(live->SetSink(SinkKind::Card, "system"), "");
  ASSERT_EQ(live->SetSource({.kind = SourceKind::Card, .name = "system"}), "");
  Run(0.3);
  server->Kill(SIGKILL);
  Run(2);
  EXPECT_EQ(troubles.size(), 2U);
  EXPECT_EQ(live->CardName(), "");
  EXPECT_FALSE(live->Source().Playing());
  EXPECT_NE(live->Source().SetPlaying(true), "");
  const double before = live->Seconds();
  Run(0.3);
  EXPECT_NEAR(live->Seconds() - before, 0.3, 0.1);
  ASSERT_EQ(live->SetSource({}), "");
  EXPECT_TRUE(live->Source().Playing());
}

}  // namespace
}  // namespace unit::sound
