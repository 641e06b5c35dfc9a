// The line trace: every frame and every byte that came in, as what it is.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FaultyLine.h"
#include "LinkFixture.h"
#include "link/CountedNew.h"
#include "link/LineTrace.h"
#include "model/FrameText.h"

namespace vc {
namespace {

using support::Bytes;
using testing::ElementsAre;

using Story = std::vector<std::string>;

// Rows as "> frame", "< answer" and "* event", those of errors with a "!" before them.
Story StoryOf(const LineTrace& trace, std::size_t from = 0) {
  Story story;
  for (std::size_t number = std::max(from, trace.First()); number < trace.Behind(); ++number) {
    const LineRow& row = trace.At(number);
    const char* way = row.way == LineWay::Event ? "* " : row.way == LineWay::ToUnit ? "> " : "< ";
    story.push_back(((KindsOf(row) & lineKind::Errors) != 0 ? "!" : "") + (way + FrameText(row)));
  }
  return story;
}

struct Traced : support::LinkFixture {
  const std::vector<std::uint8_t> payload{1, 2, 3};
  LineTrace trace{test.clock};

  // Traces from an open link on.
  void Begin(bool fullConnect = false) {
    OpenLink(fullConnect);
    trace.Begin(session.portLibrary.tap);
  }
  Story Told() const { return StoryOf(trace); }
};

TEST_F(Traced, FramesAnswersAndWhatGoesWrongWithThem) {
  struct Case {
    std::vector<support::ScriptedReply> script;
    Story story;
  };
  const std::string sent = "> 4 limiter = 16383: off, independent, release 0.125 s";
  const std::string again = "!" + sent + ", sent again, attempt 2";
  for (const Case& c : {
           Case{{{"!OK"}}, {sent, "< acknowledged"}},
           Case{{{"x!OK"}, {"!OK"}},
                {sent, "!< not the answer: 78 21 4F", "!< thrown away: 4B", again, "< acknowledged"}},
           Case{{{"!RT"}, {"!OK"}}, {sent, "!< refused by the unit: 21 52 54", again, "< acknowledged"}},
           Case{{{"!O"}, {"!OK"}}, {sent, "!< incomplete, 2 of 3 bytes: 21 4F", again, "< acknowledged"}},
           Case{{{""}, {"!OK"}}, {sent, "!< no answer for 2450.0 ms", again, "< acknowledged"}},
       }) {
    trace.End();
    trace.Clear();
    Begin();
    trace.Clear();
    unit.script.assign(c.script.begin(), c.script.end());
    device.IssueCommand(4, 16383, 2);
    EXPECT_EQ(Told(), c.story);
  }
}

TEST_F(Traced, ALinkThatIsLostIsToldToItsEnd) {
  Begin();
  EXPECT_FALSE(device.SendDataPacket(payload, 7, 2, false));
  EXPECT_THAT(Told(), ElementsAre("> data packet 7", "!< no answer for 2450.0 ms",
                                  "!> data packet 7, sent again, attempt 2", "!< no answer for 2450.0 ms",
                                  "* 115200 baud, DTR off", "* port closed"));
  test.ports.state.absent = true;
  trace.Clear();
  device.InitComPort(true);
  EXPECT_THAT(Told(), ElementsAre("!* COM1 is not there"));
  test.ports.state.absent = false;
  test.ports.state.gone = true;
  trace.Clear();
  device.InitComPort(false);
  EXPECT_THAT(Told(), ElementsAre("* COM1 opened", "* 115200 baud, DTR on", "> 232 levels and status",
                                  "!* the line has gone", "* 115200 baud, DTR off", "* port closed"));
}

TEST_F(Traced, PollsAreOneRowAnAnswerWhateverIsReadOfIt) {
  Begin(true);
  unit.always = support::GoodReply;
  test.loop.RunFor(100);
  const std::string levels = "< in -20.0 and -26.3 dB, out 0.0 and -86.3 dB, status 0x0000, mode 0x0000";
  ASSERT_GE(trace.Behind(), 2U);
  EXPECT_EQ(trace.At(1).bytes.size(), 46U);
  EXPECT_EQ(KindsOf(trace.At(0)), lineKind::Polls);
  EXPECT_EQ(KindsOf(trace.At(1)), lineKind::Polls);
  EXPECT_THAT(Told()[0], "> 232 levels and status");
  EXPECT_THAT(Told()[1], testing::StartsWith("< in "));
}

TEST_F(Traced, APollThatIsSilentOrMadeWayFor) {
  Begin(true);
  test.loop.RunFor(1060);  // a tick, and a second of waiting
  EXPECT_THAT(Told(), ElementsAre("> 232 levels and status", testing::StartsWith("!< no answer for 1000.0")));
  trace.Clear();
  unit.script = {support::GoodReply({'?', 'M', 'P', 0xE8, 0, 0, 0x18}), {"!OK"}};
  test.loop.RunFor(40);  // asked, and the answer not looked at
  device.IssueCommand(17, 200, 2);
  EXPECT_THAT(Told(), ElementsAre("> 232 levels and status", testing::EndsWith("mode 0x0000, not used"),
                                  "> 17 input high-pass = 200: 200 Hz", "< acknowledged"));
}

TEST_F(Traced, WhatNobodyAskedForIsShownAsWell) {
  Begin();
  unit.Send({"junk"}, test.clock.Microseconds());
  device.DrainPendingReply();
  EXPECT_THAT(Told(), ElementsAre("!< thrown away: 6A 75 6E 6B"));
  test.ports.state.framingErrors = true;
  unit.script = {{"!OK"}};
  device.IssueCommand(17, 200, 2);
  EXPECT_EQ(Told()[2], "!* line error: framing");
}

TEST_F(Traced, TimesAreThoseOfTheClock) {
  Begin();
  test.clock.Sleep(1'500'000);
  unit.script = {{"!OK", 42'000, 1'000}};
  device.IssueCommand(17, 200, 2);
  EXPECT_EQ(StampText(trace.At(0)), "1500.0");
  EXPECT_EQ(StampText(trace.At(1)), "1544.0");
  EXPECT_EQ(DelayText(trace.At(1)), "44.0");
  EXPECT_EQ(DelayText(trace.At(0)), "");
}

TEST_F(Traced, ItKeepsTheLastRowsAndSaysWhatIsMissing) {
  Begin();
  for (int i = 0; i < 12'000; ++i) session.portLibrary.tap.Event(std::to_string(i), false);
  EXPECT_EQ(trace.Behind() - trace.First(), LineTrace::MostRows);
  EXPECT_EQ(trace.Dropped(), 2'000U);
  EXPECT_EQ(trace.First(), 2'000U);
  EXPECT_EQ(trace.At(trace.First()).bytes, "2000");
  EXPECT_EQ(trace.At(trace.Behind() - 1).bytes, "11999");
  trace.End();
  session.portLibrary.tap.Event("unheard", false);
  test.clock.Sleep(3'200'000);
  trace.Begin(session.portLibrary.tap);
  EXPECT_EQ(trace.At(trace.Behind() - 1).bytes, "not traced for 3.2 s");
  trace.Clear();
  EXPECT_EQ(trace.Dropped(), 0U);
  EXPECT_EQ(trace.First(), trace.Behind());
}

TEST_F(Traced, RawBytesAreJoinedWhileTheyFollowEachOther) {
  Begin();
  const LineTap& tap = session.portLibrary.tap;
  for (const char* part : {"?TER", "MIN"}) tap.RawSent(part);
  for (const char* part : {"Y", "Y"}) tap.RawCame(part);
  test.clock.Sleep(200'000);
  tap.RawCame(std::string(2000, '\x06'));
  trace.Settle();
  EXPECT_THAT(Told(), ElementsAre("> 3F 54 45 52 4D 49 4E", "< 59 59", testing::EndsWith("(1100 bytes)")));
  test.clock.Sleep(200'000);
  trace.Settle();
  EXPECT_THAT(Told().back(), testing::EndsWith("(900 bytes)"));
}

TEST_F(Traced, NobodyListeningCostsNoAllocation) {
  OpenLink();
  const LineTap& tap = session.portLibrary.tap;
  const std::size_t before = support::Allocations();
  for (int i = 0; i < 100'000; ++i) {
    tap.Sent(payload, 1);
    tap.Came();
    tap.Reply("!OK", 3, ReplyFate::Good);
    tap.RawSent("?M");
    tap.Event("opened", false);
    EXPECT_TRUE(session.portLibrary.Overheard(device.comm.CommPortId, 46).empty());
  }
  EXPECT_EQ(support::Allocations(), before);
  trace.Begin(session.portLibrary.tap);
  tap.Sent(MakePacketFrame(0, payload), 1);
  EXPECT_GT(support::Allocations(), before);
}

// Whatever a line does to the bytes, the rows hold all that were written and all that came, in their order.
TEST(LineTraceOfABadLine, HoldsEveryByte) {
  using Kind = support::ByteFault::Kind;
  for (const Kind kind : {Kind::Lost, Kind::Doubled, Kind::Changed, Kind::Late}) {
    for (const std::size_t place : {30U, 52U, 90U, 700U, 1500U}) {
      support::FaultyLine line;
      std::string written, came;
      support::FarEnd end = line.End(), watched = end;
      watched.receive = [&](std::span<const std::uint8_t> bytes, std::int64_t now, std::uint32_t baud) {
        written.append(bytes.begin(), bytes.end());
        end.receive(bytes, now, baud);
      };
      watched.transmit = [&](std::int64_t now) {
        const Bytes bytes = end.transmit(now);
        came.append(bytes.begin(), bytes.end());
        return bytes;
      };
      support::TestSession test(watched);
      LineTrace trace(test.clock);
      trace.Begin(test.session.portLibrary.tap);
      line.fault = support::ByteFault{kind, place, 3'000'000};
      test.session.Start();
      test.loop.RunFor(2'000);
      test.session.device.DisconnectZorq(true);
      std::string toUnit, fromUnit;
      for (std::size_t number = trace.First(); number < trace.Behind(); ++number) {
        const LineRow& row = trace.At(number);
        if (row.way == LineWay::ToUnit) toUnit += row.bytes;
        if (row.way == LineWay::FromUnit) fromUnit += row.bytes;
      }
      EXPECT_TRUE(toUnit == written) << place;
      EXPECT_TRUE(fromUnit == came) << place << ": " << fromUnit.size() << " of " << came.size();
      EXPECT_GT(written.size(), 1000U);
    }
  }
}

}  // namespace
}  // namespace vc
