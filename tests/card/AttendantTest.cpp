// Processes that may hang or crash without harm to this one.
#include <chrono>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the system's
#include <unistd.h>

#include "unit/card/Attendant.h"

namespace unit::sound {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

TEST(Attendant, TellsWhateverANameHolds) {
  auto attendant = Attendant::Begin([](const Employer& employer) {
    employer.Tell({"a \"name\"\n", std::string(100'000, 'x')});
    employer.Tell({});
  });
  ASSERT_TRUE(attendant);
  EXPECT_EQ(attendant->Hear(milliseconds(5000)), (Records{"a \"name\"\n", std::string(100'000, 'x')}));
  EXPECT_EQ(attendant->Hear(milliseconds(5000)), Records());
  EXPECT_EQ(attendant->Hear(milliseconds(5000)), std::nullopt);
}

TEST(Attendant, ThatHangsOrCrashesHoldsNobodyUp) {
  for (const auto& end : {+[] { pause(); }, +[] { kill(getpid(), SIGKILL); }}) {
    const auto start = Clock::now();
    {
      auto attendant = Attendant::Begin([end](const Employer&) { end(); });
      ASSERT_TRUE(attendant);
      EXPECT_EQ(attendant->Hear(milliseconds(300)), std::nullopt);
    }
    EXPECT_LT(Clock::now() - start, milliseconds(2000));
  }
}

TEST(Attendant, HasNothingOpenButTheConversationAndLeavesWhenLetGo) {
  auto attendant = Attendant::Begin([](const Employer& employer) {
    std::string open;
    for (int i = 3; i < 1024; ++i) open += fcntl(i, F_GETFD) < 0 ? "" : std::to_string(i) + ' ';
    employer.Tell({open});
    while (employer.Stays(milliseconds(10))) continue;
    employer.Tell({"left"});
  });
  ASSERT_TRUE(attendant);
  EXPECT_EQ(attendant->Hear(milliseconds(5000)), Records{"3 "});
  EXPECT_TRUE(attendant->Alive());
}

}  // namespace
}  // namespace unit::sound
