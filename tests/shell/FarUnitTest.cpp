// A unit at the end of a slow bridge: every frame costs the way there and back, and nothing costs more.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DelayedLine.h"
#include "TestSession.h"
#include "WatchedUnit.h"
#include "link/LineTrace.h"
#include "model/Fields.h"
#include "model/FrameText.h"

namespace vc {
namespace {

constexpr std::int64_t Away = 20'000;  // microseconds each way

struct FarRun {
  support::WatchedUnit unit;
  support::DelayedLine line;
  support::TestSession test{line.End()};
  Session& session = test.session;

  explicit FarRun(std::int64_t delay) : line(unit.End(), delay) { session.Start(); }

  // Microseconds and frames that an action costs.
  struct Cost {
    std::int64_t microseconds;
    std::size_t frames;
  };
  Cost Of(const std::function<void()>& action) {
    const std::size_t before = unit.frames.size();
    const std::int64_t start = test.clock.Microseconds();
    action();
    return {test.clock.Microseconds() - start, unit.frames.size() - before};
  }
  Cost Reconnect() {
    session.master.menus.mnuDisconnect.Click();
    return Of([this] { session.master.menus.mnuConnect.Click(); });
  }
  void Edit(const char* field, const std::string& text) {
    std::string error;
    EXPECT_TRUE(session.edits.ByText(*FindField(field), 1, 0, text, {field}, error)) << error;
  }
};

TEST(FarUnit, ADownloadCostsTheWayOfEachFrameAndNoMore) {
  FarRun near(0), far(Away);
  const auto there = near.Reconnect(), away = far.Reconnect();
  ASSERT_GT(there.frames, 100U);
  EXPECT_EQ(away.frames, there.frames);
  const auto ways = static_cast<std::int64_t>(away.frames) * 2 * Away;
  EXPECT_NEAR(static_cast<double>(away.microseconds - there.microseconds), static_cast<double>(ways),
              5'000.0);
  EXPECT_EQ(far.unit.Dump(), near.unit.Dump());
  EXPECT_EQ(far.session.device.CommRetryCount, 0);
  EXPECT_TRUE(far.test.desk.boxes.empty());
}

TEST(FarUnit, AnEditGoesOutInTheTickThatNearbyDoesIt) {
  FarRun far(Away);
  far.Edit("filterType", "2");
  far.test.loop.RunFor(1'500);
  LineTrace trace(far.test.clock);
  trace.Begin(far.session.portLibrary.tap);
  far.Edit("lpfCutoff", "1234");
  far.test.loop.RunFor(400);
  std::vector<std::string> sent;
  std::int64_t last = 0;
  for (std::size_t number = trace.First(); number < trace.Behind(); ++number) {
    const LineRow& row = trace.At(number);
    if ((KindsOf(row) & lineKind::Polls) != 0) continue;
    EXPECT_EQ(KindsOf(row) & lineKind::Errors, 0U) << FrameText(row);
    if (row.way == LineWay::ToUnit) sent.push_back(FrameText(row));
    last = row.microseconds;
  }
  EXPECT_THAT(sent,
              testing::ElementsAre("data packet 0", "data packet 1", testing::StartsWith("192 synthesize")));
  // The tick, the answer of a poll that is on its way, and three ways there and back.
  EXPECT_LT(last, 50'000 + 2 * Away + 3 * (2 * Away + 10'000));
}

// A poll is asked in one tick and looked for in the next ones: at 50 ms a tick there and back is in time.
TEST(FarUnit, LevelsComeAsOftenAsNearby) {
  FarRun near(0), far(Away), tooFar(3 * Away);
  for (FarRun* run : {&near, &far, &tooFar}) run->test.loop.RunFor(1'000);
  const auto polls = [](FarRun& run) { return run.Of([&run] { run.test.loop.RunFor(10'000); }).frames; };
  EXPECT_EQ(polls(near), 100U);
  EXPECT_EQ(polls(far), 100U);
  EXPECT_EQ(polls(tooFar), 50U);  // 120 ms there and back take a third tick, and a fourth asks anew
  EXPECT_EQ(tooFar.session.device.MissedReplyCount, 0);
}

}  // namespace
}  // namespace vc
