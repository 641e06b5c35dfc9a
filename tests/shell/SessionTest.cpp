// Start, run and exit of a session against a scripted unit.
#include <gtest/gtest.h>

#include "LinkFixture.h"

namespace vc {
namespace {

struct Sessions : support::LinkFixture {
  MasterControl& master = session.master;
  std::string version = "!VER401402";

  // A unit that answers everything, with the version above.
  void Start() {
    unit.always = [this](const support::Bytes& frame) {
      if (frame[3] == 0x82) return support::ScriptedReply{version};
      return support::GoodReply(frame);
    };
    session.Start();
  }
  std::string Codes() const {
    std::string codes;
    for (const auto& frame : unit.sent) codes += support::Hex({frame.bytes[3]}) + " ";
    return codes;
  }
  const std::string& Shown() const { return master.top.txtComInfo.Text(); }
};

TEST_F(Sessions, StartConnectsInTheToldOrder) {
  Start();
  EXPECT_EQ(Codes().substr(0, 18), "E8 82 E8 55 56 00 ");  // then the whole of the record
  EXPECT_EQ(test.ports.state.openings, 2);
  EXPECT_TRUE(test.desk.boxes.empty());
  EXPECT_FALSE(test.desk.hourglass);
  EXPECT_FALSE(session.settings.loadingSetup);
  EXPECT_TRUE(session.settings.linkReady);
  ASSERT_EQ(session.forms.open.size(), 1U);  // the splash has gone
  EXPECT_EQ(session.forms.Top(), &master.form);
  test.loop.RunFor(150);
  EXPECT_EQ(Shown(), "Connected COM 1 115200 Baud");
}

TEST_F(Sessions, StartWithoutAUnitWorksOn) {
  std::string told;
  session.windows.FormOf("FrmSplash").controlChanged =
      [&](const ControlCore& core, std::string_view /*property*/) { told += core.Caption() + ";"; };
  session.Start();
  EXPECT_EQ(told, "Waiting for Veltrana on COM1 at 115200 baud;Fitting the filters;");
  EXPECT_EQ(OnlyBox().substr(0, 23), "48|Veltrana Not Present");
  test.loop.RunFor(150);
  EXPECT_EQ(Shown(), "COM 1 is closed");
  EXPECT_EQ(master.chain.inputs[0].bar.Value(), 0);
  EXPECT_EQ(master.chain.inputs[0].bar.Reading(), "no unit");
  EXPECT_EQ(session.forms.Top(), &master.form);
  const int image = master.top.pbxInfoPic.Image();
  test.loop.RunFor(1000);
  EXPECT_EQ(master.top.pbxInfoPic.Image(), image);  // the icon stands still
}

TEST_F(Sessions, AnEndThatIsAskedForWhileTheStartWaitsEndsTheWaitWithoutAWord) {
  for (const int silentAt : {0xE8, 0x82, 0x55}) {  // the probe, the version, the first of the setup
    SCOPED_TRACE(silentAt);
    support::ScriptedUnit silent;
    support::TestSession run(silent.End());
    double asked = 0;
    silent.always = [&](const support::Bytes& frame) {
      if (frame[3] != silentAt) return support::GoodReply(frame);
      run.loop.RequestEnd();
      asked = run.clock.Seconds();
      return support::ScriptedReply{};
    };
    run.session.Start();
    EXPECT_GT(asked, 0);
    EXPECT_LT(run.clock.Seconds() - asked, 0.5);
    EXPECT_TRUE(run.desk.boxes.empty());
    run.session.Exit();
    EXPECT_FALSE(run.ports.state.open);
  }
}

TEST_F(Sessions, PollingKeepsBarsAndIconAlive) {
  Start();
  unit.sent.clear();
  test.loop.RunFor(1000);
  EXPECT_NEAR(static_cast<double>(unit.sent.size()), 10.0, 1.0);  // one tick sends, the next one reads
  EXPECT_EQ(master.chain.inputs[0].bar.Reading(), "-20.0 dB");
  EXPECT_EQ(master.chain.inputs[0].bar.Value(), DbToBarPosition(-20.0));
  EXPECT_EQ(master.chain.lbOutputLeft.Reading(), "0.0 dB");
  EXPECT_EQ(master.chain.lbOutputLeft.Value(), 83);
  EXPECT_EQ(master.chain.lbOutputRight.Value(), 0);
  const int image = master.top.pbxInfoPic.Image();
  test.loop.RunFor(100);
  EXPECT_EQ(master.top.pbxInfoPic.Image(), image % 8 + 1);
  unit.always = nullptr;
  test.loop.RunFor(2500);
  EXPECT_EQ(Shown(), "Connected COM 1 115200 Baud, no answer for 2 s");
}

TEST_F(Sessions, FirmwareBelowItsVersionIsOfferedAnUpdate) {
  version = "!VER401400";
  Start();
  ASSERT_EQ(test.desk.boxes.size(), 2U);
  EXPECT_EQ(test.desk.boxes[0].code, 0x44);
  EXPECT_EQ(test.desk.boxes[0].title, "Firmware Needs Update");
  EXPECT_EQ(
      test.desk.boxes[0].text,
      "The firmware on the Veltrana unit needs to be updated.  Would you like to update it now or wait until "
      "later (you will be prompted the next time you start the Veltrana software.)  Click 'Yes' to update "
      "the "
      "firmware or 'No' to continue.");
  EXPECT_EQ(test.desk.boxes[1].title, "Firmware Update Postponed");
  EXPECT_EQ(test.desk.boxes[1].text,
            "Some features in the Veltrana may not work propertly until the firmware is updated.");
  EXPECT_TRUE(device.comm.CommPortOpen);
}

TEST_F(Sessions, AUnitThatGoesWhileItIsAskedForItsVersionIsOfferedNone) {
  unit.always = [this](const support::Bytes& frame) {
    test.ports.state.gone = frame[3] == 0x82;
    return support::GoodReply(frame);
  };
  session.Start();
  ASSERT_EQ(test.desk.boxes.size(), 1U);  // and is not asked a second time
  EXPECT_EQ(test.desk.boxes[0].title, "Veltrana Connection Lost");
}

TEST_F(Sessions, YesToTheUpdateFreesThePortFirst) {
  version = "not a version";
  Start();  // the version box, the question (No), the postponement
  ASSERT_EQ(test.desk.boxes.size(), 3U);
  test.desk.boxes.clear();
  test.desk.answers = {Answer::Yes};
  bool portWasFree = false;
  device.hooks.portClosed = [&] { portWasFree = test.desk.boxes.size() == 1; };
  master.connection.CheckFirmwareVersion(false, [](bool /*present*/) {});
  EXPECT_TRUE(portWasFree);
  EXPECT_EQ(test.desk.boxes.size(), 1U);
  EXPECT_EQ(session.forms.Top()->name, "FrmFirmwareUpload");
}

TEST_F(Sessions, ChangeOfThePortAsksWhileConnected) {
  Start();
  master.menus.mnuComSelect(4).Click();  // Cancel is the safe answer
  EXPECT_EQ(OnlyBox(),
            "1|COM Port Change|Changing the COM Port will disconnect the current session.  To connect using "
            "the new "
            "COM Port setting use the 'Connect to Veltrana' menu option under the 'Settings' menu.");
  EXPECT_TRUE(device.comm.CommPortOpen);
  EXPECT_EQ(session.settings.comPort, 1);
  EXPECT_TRUE(master.menus.mnuComSelect(1).Checked());
  EXPECT_FALSE(master.menus.mnuComSelect(4).Checked());

  test.desk.answers = {Answer::Ok};
  master.menus.mnuComSelect(4).Click();
  EXPECT_FALSE(device.comm.CommPortOpen);
  EXPECT_EQ(session.settings.comPort, 4);
  EXPECT_TRUE(master.menus.mnuComSelect(4).Checked());
  test.loop.RunFor(150);
  EXPECT_EQ(Shown(), "COM 4 is closed");

  test.desk.boxes.clear();
  master.menus.mnuComSelect(9).Click();  // closed: no question, and the text follows
  EXPECT_TRUE(test.desk.boxes.empty());
  test.loop.RunFor(150);
  EXPECT_EQ(Shown(), "COM 9 is closed");
}

TEST_F(Sessions, ChangeOfTheRateAsksEvenForTheSameOne) {
  Start();
  test.desk.answers = {Answer::Ok};
  master.menus.mnuBaudSelect(4).Click();
  EXPECT_EQ(test.desk.boxes.size(), 1U);
  EXPECT_FALSE(device.comm.CommPortOpen);
  master.menus.mnuBaudSelect(1).Click();
  EXPECT_EQ(session.settings.baudIndex, 1);
  EXPECT_TRUE(master.menus.mnuBaudSelect(1).Checked());
  EXPECT_FALSE(master.menus.mnuBaudSelect(4).Checked());
  master.menus.mnuConnect.Click();
  test.loop.RunFor(150);
  EXPECT_EQ(Shown(), "Connected COM 1 14400 Baud");
  EXPECT_EQ(test.ports.state.config.baud, 14400U);
  master.menus.mnuDisconnect.Click();
  test.loop.RunFor(150);
  EXPECT_EQ(Shown(), "COM 1 is closed");
  EXPECT_EQ(master.chain.lbOutputLeft.Reading(), "no unit");
}

TEST_F(Sessions, AboutWithoutAUnitKnowsNoVersions) {
  Start();
  master.menus.mnuDisconnect.Click();
  master.menus.mnuAbout.Click();
  EXPECT_NE(test.desk.boxes[0].text.find("Firmware Version: Unknown\nBoot ROM Version: Unknown"),
            std::string::npos);
}

TEST_F(Sessions, ExitLeavesNothingButTheObjectLog) {
  Start();
  master.menus.mnuExit.Click();
  EXPECT_TRUE(test.loop.Ending());
  EXPECT_FALSE(test.ports.state.open);
  EXPECT_FALSE(test.ports.state.config.dtr);
  EXPECT_TRUE(session.forms.open.empty());
  EXPECT_FALSE(session.periodic.tmrIcon->Enabled());
  const std::string log = test.folder.Path() + "/ObjectLog.txt";
  EXPECT_NE(support::Content(log).find("Total: 0\r\n"), std::string::npos);
  std::filesystem::remove(log);
  session.Exit();  // once is enough
  EXPECT_FALSE(std::filesystem::exists(log));
}

}  // namespace
}  // namespace vc
