// Sound cards by their names, and whether they still go.
#include <optional>
#include <thread>

#include <gtest/gtest.h>
#include <sched.h>

#include "unit/card/CardStream.h"
#include "unit/card/SoundCard.h"
#include "unit/card/Urgency.h"

namespace unit::sound {
namespace {

TEST(Pulse, StopsAfterHalfASecondAndMayBeginLater) {
  using std::chrono::milliseconds;
  const Pulse::Clock::time_point start;
  Pulse pulse(start);
  EXPECT_FALSE(pulse.Stopped(0, start + milliseconds(1900)));
  EXPECT_FALSE(pulse.Stopped(1, start + milliseconds(1950)));
  EXPECT_FALSE(pulse.Stopped(1, start + milliseconds(2400)));
  EXPECT_TRUE(pulse.Stopped(1, start + milliseconds(2460)));
}

TEST(Urgency, EndsWithTheLastOneAndIsNotInherited) {
  std::optional<Urgency> first(std::in_place), second(std::in_place);
  if (sched_getscheduler(0) == SCHED_OTHER) GTEST_SKIP() << "no permission for real-time priority";
  int ofThread = -1;
  std::thread([&ofThread] { ofThread = sched_getscheduler(0); }).join();
  EXPECT_EQ(ofThread, SCHED_OTHER);
  first.reset();
  EXPECT_EQ(sched_getscheduler(0) & ~SCHED_RESET_ON_FORK, SCHED_FIFO);
  second.reset();
  EXPECT_EQ(sched_getscheduler(0) & ~SCHED_RESET_ON_FORK, SCHED_OTHER);
}

// Whatever cards this computer has.
TEST(SoundCard, ThatIsNotThereIsSaid) {
  const std::string name = "no card is called so";
  const CardNames cards = SoundCards();
  const auto in = CardInput::Open(name, 18000);
  const auto out = CardOutput::Open(name, 18000);
  ASSERT_EQ(in.index(), 1U);
  ASSERT_EQ(out.index(), 1U);
  EXPECT_EQ(std::get<1>(in),
            cards.inputs.empty() ? "no sound device" : name + ": there is no such sound card for input");
  EXPECT_EQ(std::get<1>(out),
            cards.outputs.empty() ? "no sound device" : name + ": there is no such sound card for output");
}

}  // namespace
}  // namespace unit::sound
