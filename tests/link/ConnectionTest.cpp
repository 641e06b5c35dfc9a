// Opening and closing the link, first status and version.
#include <gtest/gtest.h>

#include "LinkFixture.h"
#include "link/ConnectionState.h"

namespace vc {
namespace {

struct Connection : support::LinkFixture {};

TEST_F(Connection, OpensConfiguresAndProbes) {
  unit.always = support::GoodReply;
  device.status.levelMidRight = 9;
  unit.Send({"of another session"}, test.clock.Microseconds());
  EXPECT_TRUE(device.InitComPort(false));
  EXPECT_EQ(test.ports.state.name, "COM1");
  EXPECT_TRUE(test.ports.state.config.dtr);
  EXPECT_EQ(test.ports.state.config.baud, 115200U);
  ASSERT_EQ(unit.sent.size(), 1U);
  EXPECT_EQ(support::Hex(unit.sent[0].bytes), "3F 4D 50 E8 00 00 18");
  EXPECT_EQ(device.status.levelMidRight, 0);  // cleared, and the probe reads the words alone
  EXPECT_EQ(device.status.levelInLeft, 0);
  EXPECT_FALSE(session.settings.linkReady);
  EXPECT_FALSE(session.periodic.tmrBargraph->Enabled());
  EXPECT_EQ(State(), "1");
  EXPECT_TRUE(session.master.menus.mnuConnect.Checked());
  EXPECT_FALSE(session.master.menus.mnuDisconnect.Checked());

  session.periodic.pollMode = 2;
  EXPECT_TRUE(device.InitComPort(true));
  EXPECT_EQ(test.ports.state.openings, 2);
  EXPECT_TRUE(session.settings.linkReady);
  EXPECT_TRUE(session.periodic.tmrBargraph->Enabled());
  EXPECT_EQ(session.periodic.pollMode, 0);
}

TEST_F(Connection, ProbeTakesTheOptionWithoutTellingOfAChange) {
  int told = 0;
  device.hooks.unitOptionChanged = [&] { ++told; };
  unit.always = [](const support::Bytes&) -> support::ScriptedReply {
    return {support::MainStatusReply({0, 0, 0, 0, 0, 0}, 0x200, 0x8000)};
  };
  EXPECT_TRUE(device.InitComPort(true));
  EXPECT_TRUE(device.status.unitOption);
  EXPECT_EQ(device.status.unitMode, 0x8000);
  device.RequestBargraphData();
  device.RequestBargraphData();
  EXPECT_EQ(told, 0);
}

TEST_F(Connection, AbsentPort) {
  OpenLink(true);
  test.ports.state.absent = true;
  session.settings.comPort = 7;
  EXPECT_FALSE(device.InitComPort(true));
  EXPECT_EQ(
      OnlyBox(),
      "48|Invalid/Unavailable for Local Veltrana Connection|COM7 is either invalid or unavailable. Please "
      "select another port for the Veltrana");
  EXPECT_EQ(State(), "2");
  EXPECT_TRUE(session.master.menus.mnuConnect.Checked());
  EXPECT_FALSE(session.periodic.tmrBargraph->Enabled());
  EXPECT_EQ(session.master.lblStatus.core.Caption(), "COM7 is not there");
}

TEST_F(Connection, PortThatRefusesItsConfigurationIsGivenBack) {
  test.ports.state.refusesConfig = true;
  EXPECT_FALSE(device.InitComPort(true));
  EXPECT_EQ(OnlyBox(),
            "48|Unable to Configure COM Port|Unable to configure COM1.  Please select another port.");
  EXPECT_FALSE(test.ports.state.open);
  EXPECT_TRUE(unit.sent.empty());
}

TEST_F(Connection, SilentUnitIsNotPresent) {
  session.settings.baudIndex = 0;
  const double seconds = SecondsFor([&] { EXPECT_FALSE(device.InitComPort(true)); });
  EXPECT_NEAR(seconds, 5 * (2.0 + 2 * 1.35 + 0.021), 0.05);  // and each time the line must be silent
  EXPECT_EQ(unit.sent.size(), 5U);
  EXPECT_EQ(OnlyBox(),
            "48|Veltrana Not Present|Veltrana not present on port COM1.  Please check all settings and "
            "connections, "
            "then attempt reconnect.");
  EXPECT_FALSE(device.comm.CommPortOpen);
  EXPECT_EQ(State(), "2");
  // A full connect leaves the polling on, which does nothing on a closed port.
  EXPECT_TRUE(session.periodic.tmrBargraph->Enabled());
  EXPECT_TRUE(session.settings.linkReady);
}

TEST_F(Connection, ComplaintsOfTheProbeCostTheirPause) {
  unit.script = {{std::string(46, 'R') + "T"}, {std::string("!RT") + std::string(43, '.')}};
  unit.always = support::GoodReply;
  const double seconds = SecondsFor([&] { EXPECT_TRUE(device.InitComPort(false)); });
  EXPECT_NEAR(seconds, 2.5, 0.05);  // the first reply was cut before its "RT"
  EXPECT_EQ(unit.sent.size(), 3U);
}

TEST_F(Connection, ReconnectGoesThroughTheClosedState) {
  OpenLink();
  std::vector<std::string> states;
  const auto tell = device.hooks.connectionState;
  device.hooks.connectionState = [&](const std::string& state) {
    states.push_back(state);
    tell(state);
  };
  unit.always = support::GoodReply;
  EXPECT_TRUE(device.InitComPort(true));
  EXPECT_EQ(states, (std::vector<std::string>{"2", "1"}));
}

TEST_F(Connection, DisconnectDropsDtrBeforeItCloses) {
  OpenLink();
  device.DisconnectZorq(false);
  EXPECT_FALSE(test.ports.state.configured.back().dtr);
  EXPECT_FALSE(test.ports.state.open);
  EXPECT_EQ(State(), "1");  // without the flag the display stays
  device.DisconnectZorq(true);
  EXPECT_EQ(State(), "2");
}

TEST_F(Connection, Version) {
  struct Case {
    const char* reply;
    bool good;
    int bootRom, firmware;
  };
  for (const Case& c :
       {Case{"!VER401402", true, 401, 402}, Case{"!VER999000", true, 999, 0}, Case{"!VER40x402", false, 0, 0},
        Case{"!VEX401402", false, 0, 0}, Case{"!VER4401402", false, 0, 0}}) {
    SCOPED_TRACE(c.reply);
    OpenLink();
    unit.always = [&c](const support::Bytes&) -> support::ScriptedReply { return {c.reply}; };
    int firmware = 0;
    int bootRom = 0;
    const double seconds = SecondsFor([&] { EXPECT_EQ(device.RequestVersion(firmware, bootRom), c.good); });
    // Silence behind each reply, and in the end time for the unit to come round.
    EXPECT_NEAR(seconds, c.good ? 0.01 : 2.6, 0.05);
    EXPECT_EQ(firmware, c.firmware);
    EXPECT_EQ(bootRom, c.bootRom);
    EXPECT_EQ(support::Hex(unit.sent[0].bytes), "3F 4D 50 82 00 00 7E");
    EXPECT_TRUE(device.comm.CommPortOpen);
    EXPECT_EQ(unit.sent.size(), c.good ? 1U : 5U);
  }
  EXPECT_EQ(OnlyBox(),
            "48|Veltrana Firmware Unreliable|Veltrana present but failed to respond to version request on "
            "port COM1.  "
            "The Veltrana firmware may be corrupted.  Please contact NRV at 000-555-0199 for tech support.");
}

TEST(ConnectionText, OfEveryState) {
  EXPECT_EQ(ConnectionText("1", 3, 1), "Connected COM 3 14400 Baud");
  EXPECT_EQ(ConnectionText("2", 3, 1), "COM 3 is closed");
  EXPECT_EQ(ConnectionText("3", 3, 9), "Remote connection.  Pass through enabled through COM 3 115200 Baud");
  EXPECT_EQ(ConnectionText("4", 3, 1), "Dialing connection with modem on COM 3");
  EXPECT_EQ(ConnectionText("9", 3, 1), "Modem disconnected from COM 3");
  EXPECT_TRUE(ConnectionAnimated("1") && ConnectionAnimated("3"));
  EXPECT_FALSE(ConnectionAnimated("2") || ConnectionAnimated("4") || ConnectionAnimated(""));
}

}  // namespace
}  // namespace vc
