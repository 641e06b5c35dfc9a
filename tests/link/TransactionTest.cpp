// Blocking transactions: the retry law, its pauses and how a failure becomes a closed port and a message.
#include <gtest/gtest.h>

#include "LinkFixture.h"

namespace vc {
namespace {

using support::Hex;

struct Transactions : support::LinkFixture {
  const std::vector<std::uint8_t> payload{1, 2, 3};
};

TEST_F(Transactions, PacketPausesAfterAComplaintAndOnlyThen) {
  struct Case {
    const char* reply;
    double seconds;  // until the second sending
  };
  for (const Case& c :
       {Case{"!RT", 2.5}, Case{"xRT", 2.5}, Case{"!T.", 2.5}, Case{"x!T", 2.5}, Case{"!R.", 2.5},
        Case{"x!R", 2.5}, Case{"NAK", 0.0}, Case{"R-T", 0.0}, Case{"TR!", 0.0}, Case{"x!OK", 0.0}}) {
    SCOPED_TRACE(c.reply);
    OpenLink();
    unit.script = {{c.reply}, {"!OK"}};
    EXPECT_TRUE(device.SendDataPacket(payload, 0, 5, false));
    ASSERT_EQ(unit.sent.size(), 2U);
    EXPECT_NEAR(static_cast<double>(unit.sent[1].time - unit.sent[0].time) / 1e6, c.seconds, 0.02);
    EXPECT_EQ(device.CommRetryCount, 1);
  }
}

TEST_F(Transactions, NoPauseFollowsTheLastAttempt) {
  OpenLink();
  unit.always = [](const support::Bytes&) -> support::ScriptedReply { return {"!RT"}; };
  EXPECT_NEAR(SecondsFor([&] { EXPECT_FALSE(device.SendDataPacket(payload, 0, 3, false)); }), 5.0, 0.1);
}

TEST_F(Transactions, CommandNeverPausesForAComplaint) {
  OpenLink();
  unit.script = {{"xRT"}, {"!RT"}, {"!OK"}};
  EXPECT_LT(SecondsFor([&] { EXPECT_FALSE(device.IssueCommand(0x156, 0x21234, 2)); }), 0.04);
  ASSERT_EQ(unit.sent.size(), 3U);
  EXPECT_EQ(Hex(unit.sent[2].bytes), "3F 4D 50 56 34 12 64");  // masked to 8 and 16 bits
}

TEST_F(Transactions, Command128AloneConfirmsTheConnection) {
  OpenLink();
  session.periodic.connectionState = "2";
  unit.script = {{"!OK"}, {"!OK"}};
  EXPECT_FALSE(device.IssueCommand(127, 0, 2));
  EXPECT_EQ(State(), "2");
  EXPECT_TRUE(device.IssueCommand(0x80, 3, 2));
  EXPECT_EQ(State(), "1");
}

TEST_F(Transactions, EveryByteRestartsTheTimeout) {
  OpenLink();
  // Two seconds between bytes stay just below the limit; the third comes after six.
  unit.script = {{"!OK", 2000000, 2000000}};
  EXPECT_NEAR(SecondsFor([&] { EXPECT_TRUE(device.SendDataPacket(payload, 0, 5, false)); }), 6.0, 0.05);
  EXPECT_EQ(unit.sent.size(), 1U);

  // A byte that comes later than that falls into the next attempt, and spoils it.
  unit.sent.clear();
  unit.script = {{"!OK", 0, 2600000}, {"!OK", 200000}, {"!OK"}};
  EXPECT_TRUE(device.SendDataPacket(payload, 0, 5, false));
  EXPECT_EQ(unit.sent.size(), 3U);
}

TEST_F(Transactions, LongerReplyCannotMatchPastItsLength) {
  OpenLink();
  unit.script = {{".!OK"}, {"!OKAY and more"}};
  EXPECT_TRUE(device.SendDataPacket(payload, 0, 2, false));
  unit.script = {{"!OK"}};
  EXPECT_TRUE(device.SendDataPacket(payload, 0, 1, false));  // nothing was left over
}

TEST_F(Transactions, TheRestOfABadReplyIsLetIn) {
  struct Case {
    std::int16_t baudIndex;
    std::int64_t gap, tooLong;  // between two bytes, in microseconds: belongs to the reply, does not
  };
  for (const Case& c : {Case{4, 9900, 10100}, Case{2, 10300, 10500}, Case{0, 20700, 20900}}) {
    session.settings.baudIndex = c.baudIndex;
    OpenLink();
    unit.script = {{"!!OK", 0, c.gap}, {"!OK"}};
    EXPECT_TRUE(device.SendDataPacket(payload, 0, 2, false));
    unit.script = {{"!!OK", 0, c.tooLong}, {"!OK", 1000}};
    EXPECT_FALSE(device.SendDataPacket(payload, 0, 2, false));  // the rest stood before the second answer
  }
  OpenLink();
  unit.script = {{std::string(20000, '!'), 0, 87}};  // a line that never rests must not hang
  EXPECT_LT(SecondsFor([&] { EXPECT_FALSE(device.SendDataPacket(payload, 0, 2, false)); }), 4.0);
}

TEST_F(Transactions, AFrameThatWasSentTwiceMayBeAnsweredTwice) {
  OpenLink();
  unit.script = {{"!OK", 2'500'000},
                 {"!OK", 49'000}};  // the first answer too late, the second close behind it
  EXPECT_TRUE(device.SendDataPacket(payload, 0, 5, false));
  EXPECT_FALSE(device.SendDataPacket(payload, 1, 1, false));  // and is not taken for that of the next frame
}

TEST_F(Transactions, GoneDeviceEndsAnyWaitAtOnce) {
  int versions = 0;
  const std::function<void()> waits[] = {[&] { device.IssueCommand(127, 0, 60); },
                                         [&] { device.SendDataPacket(payload, 0, 5, false); },
                                         [&] { device.RequestVersion(versions, versions); },
                                         [&] {
                                           unit.script = {{"!RT"}};  // its pause ends as well
                                           device.SendCommandFrame(192, 0, 5);
                                         }};
  for (const auto& wait : waits) {
    OpenLink();
    session.periodic.ShowLevelBars();
    device.hooks.waiting = [this](std::int32_t hundredths) {
      if (hundredths >= 100) test.ports.state.gone = true;
    };
    EXPECT_NEAR(SecondsFor(wait), 1.0, 0.06);
    device.ReportFailure(" while downloading");  // as the caller of the transaction would
    EXPECT_NE(OnlyBox().find("Connection Lost.  Please"), std::string::npos);
    EXPECT_EQ(State(), "2");
    EXPECT_EQ(session.master.chain.lbOutputLeft.Reading(), "no unit");
    test.ports.state.gone = false;
  }
  device.hooks.waiting = [this](std::int32_t) { test.ports.state.gone = true; };
  EXPECT_LT(SecondsFor([&] { EXPECT_FALSE(device.InitComPort(true)); }), 0.06);
  EXPECT_EQ(test.desk.boxes.back().title, "Veltrana Not Present");
}

TEST_F(Transactions, LineErrorsCostAPauseAndNoAttempt) {
  OpenLink();
  unit.script = {{"!OK"}};
  test.ports.state.framingErrors = true;
  EXPECT_NEAR(SecondsFor([&] { EXPECT_TRUE(device.SendDataPacket(payload, 0, 5, false)); }), 0.10, 0.02);
  EXPECT_EQ(unit.sent.size(), 1U);
}

TEST_F(Transactions, SlowRatesWaitLonger) {
  struct Case {
    std::int16_t baudIndex, extra;
    std::uint32_t baud;
  };
  for (const Case& c : {Case{0, 135, 9600}, Case{1, 50, 14400}, Case{2, 45, 19200}, Case{3, 45, 38400},
                        Case{4, 45, 115200}, Case{7, 45, 115200}, Case{-1, 45, 115200}}) {
    session.settings.baudIndex = c.baudIndex;
    OpenLink();
    EXPECT_EQ(device.BaudTimeoutExtra, c.extra);
    EXPECT_EQ(test.ports.state.config.baud, c.baud);
    EXPECT_NEAR(SecondsFor([&] { EXPECT_FALSE(device.SendDataPacket(payload, 0, 1, false)); }),
                2.0 + c.extra / 100.0, 0.035);
  }
  EXPECT_EQ(session.settings.baudIndex, 4);  // what was no rate has been corrected
}

TEST_F(Transactions, PendingPollIsDrainedFirst) {
  OpenLink();
  unit.script = {{support::MainStatusReply(), 300000}, {"!OK"}};
  device.RequestBargraphData();
  EXPECT_EQ(device.ReplyTicksLeft, 20);
  device.IssueCommand(5, 1, 2);
  ASSERT_EQ(unit.sent.size(), 2U);
  EXPECT_NEAR(static_cast<double>(unit.sent[1].time - unit.sent[0].time) / 1e6, 0.30, 0.02);
  EXPECT_EQ(device.ReplyTicksLeft, 0);
  EXPECT_EQ(device.ReplyBytesExpected, 0);
  EXPECT_TRUE(device.comm.CommPortOpen);
}

TEST_F(Transactions, RetryCountStaysInFourteenBits) {
  OpenLink();
  device.CommRetryCount = 0x3FFF;
  unit.script = {{"bad"}, {"!OK"}};
  EXPECT_TRUE(device.SendDataPacket(payload, 0, 5, false));
  EXPECT_EQ(device.CommRetryCount, 0);
}

}  // namespace
}  // namespace vc
