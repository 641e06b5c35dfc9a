// Polled requests: one step a tick, misses and the loss of the link.
#include <gtest/gtest.h>

#include "LinkFixture.h"

namespace vc {
namespace {

struct Polling : support::LinkFixture {
  void Polls(int count) {
    for (int i = 0; i < count; ++i) device.RequestBargraphData();
  }
  static constexpr const char* LostBox =
      "48|Veltrana Connection Lost|Veltrana Connection Lost.  Please check all connections before attempting "
      "reconnect.";
};

TEST_F(Polling, SendsThenTakesTheReply) {
  OpenLink();
  unit.script = {{support::MainStatusReply({100, 200, 300, 400, 500, 600}, 0x200, 0x4000) + "surplus"}};
  Polls(1);
  EXPECT_EQ(support::Hex(unit.sent[0].bytes), "3F 4D 50 E8 00 00 18");
  EXPECT_EQ(device.ReplyTicksLeft, 20);
  EXPECT_EQ(device.ReplyBytesExpected, 46);
  const int looks = test.ports.state.errorLooks;
  Polls(1);
  EXPECT_GE(test.ports.state.errorLooks, looks + 1);
  EXPECT_EQ(device.status.levelInLeft, 100);
  EXPECT_EQ(device.status.levelOutRight, 600);
  EXPECT_TRUE(device.status.unitOption);
  EXPECT_EQ(device.status.unitMode, 0x4000);
  EXPECT_EQ(device.ReplyTicksLeft, 0);
  unit.script = {{std::string("!EG\x01\x80\x02\x90\x00", 8)}};
  device.RequestEQData();
  EXPECT_EQ(support::Hex(unit.sent[1].bytes), "3F 4D 50 EA 00 00 16");
  device.RequestEQData();
  EXPECT_EQ(device.status.stageStatus[8], 0x8001);
  EXPECT_EQ(device.status.stageStatus[9], 0x9002);
}

TEST_F(Polling, WrongTokenIsAGoodPollThatChangesNothing) {
  OpenLink();
  std::string reply = support::MainStatusReply({100, 200, 300, 400, 500, 600});
  reply[1] = 'X';
  device.MissedReplyCount = 5;
  unit.script = {{reply}};
  const UnitStatus before = device.status;
  Polls(2);
  EXPECT_EQ(device.status.levelInLeft, before.levelInLeft);
  EXPECT_EQ(device.MissedReplyCount, 0);
  EXPECT_EQ(device.ReplyTicksLeft, 0);
}

TEST_F(Polling, AfterAWrongTokenTheLineMustBeSilent) {
  OpenLink();
  const auto tick = [this] {
    test.clock.Sleep(50000);
    Polls(1);
  };
  // A status whose rest comes later than its first 46 bytes: they are no answer to the next request.
  const std::string late = "!" + support::MainStatusReply({1, 2, 3, 4, 5, 6});
  unit.script = {{late + late, 0, 900}, {support::MainStatusReply({100, 200, 300, 400, 500, 600})}};
  Polls(1);
  tick();
  EXPECT_EQ(device.ReplyTicksLeft, 0);
  tick();
  EXPECT_EQ(unit.sent.size(), 1U);  // there was more
  tick();
  EXPECT_EQ(unit.sent.size(), 2U);
  tick();
  EXPECT_EQ(device.status.levelInLeft, 100);

  unit.script = {{late + late, 0, 900}, {"!OK"}};
  Polls(1);
  tick();
  EXPECT_NEAR(SecondsFor([&] { device.IssueCommand(5, 1, 2); }), 0.045, 0.01);  // the same, but waited for
  EXPECT_TRUE(device.comm.CommPortOpen);
  EXPECT_EQ(device.CommRetryCount, 0);
}

TEST_F(Polling, KnowsHowLongNobodyHasAnswered) {
  OpenLink();
  const auto pass = [this](int seconds) {
    for (int ticks = 0; ticks < 20 * seconds; ++ticks) {
      test.clock.Sleep(50000);
      Polls(1);
    }
  };
  for (int second = 1; second < 5; ++second) {
    pass(1);
    EXPECT_NEAR(device.UnansweredHundredths, 100 * second, 12);
  }
  // The answer to a poll ends it, so does any other, and so does the end of the link.
  const auto answers = [](bool there) { return there ? support::GoodReply : nullptr; };
  for (const std::function<void()>& end :
       {std::function<void()>([&] { pass(2); }), std::function<void()>([&] { device.IssueCommand(5, 1, 2); }),
        std::function<void()>([&] { device.DisconnectZorq(true); })}) {
    pass(2);
    EXPECT_GE(device.UnansweredHundredths, 180);
    unit.always = answers(true);
    end();
    EXPECT_EQ(device.UnansweredHundredths, 0);
    unit.always = answers(false);
  }
}

TEST_F(Polling, SilenceLosesTheLinkAtThe201stMiss) {
  OpenLink();
  Polls(200 * 21);  // one tick to send, twenty to wait
  EXPECT_EQ(device.MissedReplyCount, 200);
  EXPECT_TRUE(test.desk.boxes.empty());
  EXPECT_EQ(State(), "1");
  Polls(20);
  EXPECT_TRUE(device.comm.CommPortOpen);
  Polls(1);
  EXPECT_EQ(OnlyBox(), LostBox);
  EXPECT_EQ(State(), "2");
  EXPECT_FALSE(device.comm.CommPortOpen);
  EXPECT_EQ(device.MissedReplyCount, 0);
  const std::size_t sent = unit.sent.size();
  Polls(50);
  EXPECT_EQ(unit.sent.size(), sent);  // nobody reconnects by himself
}

TEST_F(Polling, ErrorsOnEveryTickTakeTwoTicksAMiss) {
  OpenLink();
  test.ports.state.framingErrors = true;
  Polls(2 * 200);
  EXPECT_EQ(device.MissedReplyCount, 200);
  EXPECT_TRUE(test.desk.boxes.empty());
  Polls(2);
  EXPECT_EQ(OnlyBox(), LostBox);
  EXPECT_EQ(device.MissedReplyCount, 201);  // this branch leaves the count to the next connect
  EXPECT_EQ(State(), "2");

  test.ports.state.framingErrors = false;
  OpenLink();
  EXPECT_EQ(device.MissedReplyCount, 0);
}

TEST_F(Polling, GoneDeviceLosesTheLinkOnTheFirstTickThatShowsIt) {
  OpenLink();
  Polls(1);
  test.ports.state.gone = true;
  Polls(1);
  EXPECT_EQ(OnlyBox(), LostBox);
  EXPECT_FALSE(test.ports.state.open);
}

TEST_F(Polling, OptionBitIsBookedBeforeItIsTold) {
  OpenLink(true);
  int told = 0;
  device.hooks.unitOptionChanged = [&] {
    ++told;
    EXPECT_EQ(device.ReplyTicksLeft, 0);  // a fit may talk to the unit now
    EXPECT_EQ(device.status.unitOption, device.status.unitOptionPrev);
  };
  const auto poll = [&](int word) {
    unit.script = {{support::MainStatusReply({0, 0, 0, 0, 0, 0}, word)}};
    Polls(2);
  };
  poll(0);
  EXPECT_EQ(told, 0);
  poll(0x200);
  EXPECT_EQ(told, 1);
  poll(0x200);
  EXPECT_EQ(told, 1);
  session.settings.linkReady = false;
  poll(0);
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(device.status.unitOptionPrev);
}

TEST_F(Polling, UnexpectedErrorAsksWhetherToStop) {
  OpenLink(true);
  device.hooks.unitOptionChanged = [] { throw Fault{"Overflow"}; };
  unit.script = {{support::MainStatusReply({0, 0, 0, 0, 0, 0}, 0x200)}};
  Polls(2);
  EXPECT_EQ(OnlyBox(), "20|RequestBargraphData_Err|Error, do you wish to stop?");
  EXPECT_FALSE(test.loop.Ending());
  test.desk.answers = {Answer::Yes};
  unit.script = {{support::MainStatusReply({0, 0, 0, 0, 0, 0}, 0)}};
  Polls(2);
  EXPECT_TRUE(test.loop.Ending());
}

}  // namespace
}  // namespace vc
