// Sound that really goes through a sound server, in real time.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the system's

#include "card/Jack.h"
#include "unit/card/SoundCard.h"
#include "unit/sound/Blocks.h"

namespace unit::sound {
namespace {

using testing::Contains;
using testing::Not;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

class LiveCards : public testing::Test {
 protected:
  void SetUp() override {
    server = JackServer::Start();
    if (!server) GTEST_SKIP() << "jackd is not installed or does not start: no live sound is tested";
  }

  std::unique_ptr<JackServer> server;
};

struct Cards {
  std::unique_ptr<CardInput> in;
  std::unique_ptr<CardOutput> out;
};

Cards Open(const std::string& input, const std::string& output, int rate) {
  auto in = CardInput::Open(input, rate);
  auto out = CardOutput::Open(output, rate);
  for (const auto* const wrong : {std::get_if<std::string>(&in), std::get_if<std::string>(&out)})
    if (wrong != nullptr) ADD_FAILURE() << *wrong;
  if (in.index() + out.index() > 0) return {};
  return {std::move(std::get<0>(in)), std::move(std::get<0>(out))};
}

// Takes what is heard to what is played for so long, or while nothing is wrong.
void Pass(const Cards& cards, double seconds) {
  std::array<float, BlockFrames> left, right;
  const auto start = Clock::now();
  while (SecondsSince(start) < seconds && (cards.in->Trouble() + cards.out->Trouble()).empty()) {
    while (cards.out->Room() >= BlockFrames) {
      cards.in->Read(left, right);
      cards.out->Write(left, right);
    }
    std::this_thread::sleep_for(milliseconds(1));
  }
}

TEST_F(LiveCards, ListsWhatIsThereNow) {
  EXPECT_THAT(SoundCards().inputs, Contains("system"));
  EXPECT_THAT(SoundCards().outputs, Not(Contains(Studio::Name)));
  const Cards cards = Open("system", "system", 18000);
  ASSERT_TRUE(cards.in && cards.out);
  // New ones are seen while cards are open.
  const Studio studio;
  const CardNames names = SoundCards();
  EXPECT_THAT(names.inputs, Contains(Studio::Name));
  EXPECT_THAT(names.outputs, Contains(Studio::Name));
  auto sorted = names.outputs;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end());
}

// Seconds from the studio's tone to its coming back, less what is said of it.
double Surplus(int rate) {
  Studio studio;
  const Cards cards = Open(Studio::Name, Studio::Name, rate);
  if (!cards.in || !cards.out) return 1;
  Pass(cards, 0.6);
  studio.sounding = true;
  Pass(cards, 0.4);
  const std::vector<float> heard = studio.Heard();
  const auto began = heard.begin() + static_cast<long>(studio.Began());
  const auto first = std::find_if(began, heard.end(), [](float sample) { return std::abs(sample) > 0.1F; });
  const double delay = static_cast<double>(first - began) / 48000;
  return delay - cards.in->Latency() - cards.out->Latency();
}

// A machine that is busy may have drop-outs of its own, but not each time.
TEST_F(LiveCards, GoesThroughInTheTimeThatIsSaid) {
  for (const int rate : {7200, 18000}) {
    double surplus = 1;
    for (int i = 0; i < 10 && std::abs(surplus) > 0.012; ++i) surplus = Surplus(rate);
    EXPECT_NEAR(surplus, 0, 0.012) << rate;
  }
}

// What happens to the server, and what is said of the card.
struct End {
  int signal;
  const char* said;
};

class LostServer : public LiveCards, public testing::WithParamInterface<End> {};

TEST_P(LostServer, IsSaidAndHoldsNobodyUp) {
  Cards cards = Open("system", "system", 18000);
  ASSERT_TRUE(cards.in && cards.out);
  Pass(cards, 0.3);
  ASSERT_EQ(cards.in->Trouble() + cards.out->Trouble(), "");
  if (GetParam().signal == SIGSTOP)
    server->Signal(SIGSTOP);
  else
    server->Kill(GetParam().signal);
  auto start = Clock::now();
  Pass(cards, 5);
  EXPECT_LT(SecondsSince(start), 1.5);
  while (cards.out->Trouble().empty() && SecondsSince(start) < 5)
    std::this_thread::sleep_for(milliseconds(10));
  EXPECT_EQ(cards.out->Trouble(), std::string("system: the sound card ") + GetParam().said);
  start = Clock::now();
  cards = {};
  EXPECT_LT(SecondsSince(start), 1);
  start = Clock::now();
  SoundCards();
  EXPECT_LT(SecondsSince(start), 3);
  // Another one serves as if nothing had been.
  server->Kill(SIGKILL);
  server = JackServer::Start();
  ASSERT_TRUE(server);
  EXPECT_TRUE(Open("system", "system", 7200).out);
}

INSTANTIATE_TEST_SUITE_P(Live, LostServer,
                         testing::Values(End{SIGKILL, "is gone"}, End{SIGSTOP, "has stopped"}),
                         [](const auto& each) { return "Signal" + std::to_string(each.param.signal); });

}  // namespace
}  // namespace unit::sound
