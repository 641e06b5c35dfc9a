// A session with the real unit's program beside it: started, lost, started again, and never in the way.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Pty.h"
#include "TestSession.h"
#include "host/PosixFiles.h"
#include "host/PosixPrograms.h"
#include "host/PosixSerialPorts.h"
#include "host/SystemClock.h"
#include "model/Loans.h"
#include "model/Settings.h"
#include "sound/FrmUnit.h"
#include "widgets/ControlText.h"

namespace vc {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

// Real time and a real line, in a folder of its own.
struct LiveSession {
  explicit LiveSession(const std::string& folder)
      : desk(folder), links(folder + "/ports"), missing(folder + "/none") {
    fs::create_directories(links);
    desk.programFolder = fs::path(UNIT_PROGRAM).parent_path().string();
  }
  support::TestDesk desk;
  std::string links, missing;
  host::SystemClock clock;
  host::TimerLoop loop{clock};
  host::PosixSerialPorts ports{{.linkFolder = links, .classFolder = missing}};
  host::PosixFiles files;
  support::RecordingPrinters printers;
  support::TestPictures pictures;
  host::PosixPrograms programs;
  Session session{{clock, loop, desk, ports, files, printers, pictures, programs}};
  FrmUnit& window = session.windows.Get<FrmUnit>("FrmUnit");

  bool Await(const std::function<bool()>& reached) {
    const auto end = clock.Microseconds() + 5'000'000LL * TIME_ALLOWANCE;
    while (!reached() && clock.Microseconds() < end) loop.RunEvents(10);
    return reached();
  }
  void StartUnit() {
    session.windows.Open("FrmUnit");
    window.btnStart.Click();
    EXPECT_TRUE(session.unitConnection.Connected()) << window.lblTrouble.core.Caption();
  }
  // The process that serves a port of this folder; 0 where there is none.
  pid_t UnitOn(int port) const {
    const std::string link = links + "/COM" + std::to_string(port);
    for (const auto& entry : fs::directory_iterator("/proc")) {
      std::ifstream file(entry.path() / "cmdline");
      const std::string words((std::istreambuf_iterator<char>(file)), {});
      if (words.find("veltrana-unit") != std::string::npos && words.find(link + '\0') != std::string::npos) {
        return std::stoi(entry.path().filename());
      }
    }
    return 0;
  }
  bool HasLink(int port) const {
    std::error_code ignored;
    return fs::is_symlink(fs::symlink_status(links + "/COM" + std::to_string(port), ignored));
  }
};

struct SimulatedUnit : testing::Test {
  support::TempFolder folder;
  LiveSession live{folder.Path()};
  Session& session = live.session;
};

TEST_F(SimulatedUnit, IsOfferedOnceInARunWhereNoUnitWasFound) {
  live.desk.answers = {Answer::Ok, Answer::No};
  session.Start();
  ASSERT_EQ(live.desk.boxes.size(), 2U);
  EXPECT_THAT(live.desk.boxes[0].text, HasSubstr("COM1 is either invalid or unavailable."));
  EXPECT_THAT(live.desk.boxes[1].text, StartsWith("Would you like to start the simulated unit?"));
  EXPECT_FALSE(session.unit.Running());
  session.master.menus.mnuConnect.Click();
  EXPECT_EQ(live.desk.boxes.size(), 3U) << "asked again";
  session.Exit();
}

TEST_F(SimulatedUnit, TakenUpAtTheStartItIsConnectedAndItsWindowOpen) {
  live.desk.answers = {Answer::Ok, Answer::Yes};
  session.Start();
  EXPECT_TRUE(session.unitConnection.Connected());
  EXPECT_EQ(live.desk.boxes.size(), 2U);
  EXPECT_NE(session.forms.Find("FrmUnit"), nullptr);
  EXPECT_EQ(live.window.lblUnit.core.Caption(), "Running on COM1, connected.");
  const pid_t unit = live.UnitOn(1);
  EXPECT_GT(unit, 0);
  session.Exit();
  EXPECT_EQ(live.UnitOn(1), 0);
  EXPECT_FALSE(live.HasLink(1));
}

// The operator's port is what is kept, whatever becomes of the unit.
TEST_F(SimulatedUnit, LeavesPortsWithADeviceAloneAndGivesTheOperatorsBack) {
  const support::Pty device;
  fs::create_symlink(device.Path(), live.links + "/COM1");
  InitSettings(session.settings);
  live.StartUnit();
  EXPECT_EQ(session.unit.Port(), 2);
  EXPECT_EQ(session.settings.comPort, 2);
  EXPECT_EQ(OperatorsRecord(session.settings).comPort, 1);
  // Another program beside this one.
  LiveSession other(folder.Path());
  other.StartUnit();
  EXPECT_EQ(other.session.unit.Port(), 3);
  EXPECT_TRUE(session.unitConnection.Connected());
  other.window.btnStop.Click();
  EXPECT_FALSE(live.HasLink(3));

  session.NewSetup();
  EXPECT_TRUE(session.unitConnection.Connected());
  EXPECT_EQ(OperatorsRecord(session.settings).comPort, 1);
  live.desk.answers = {Answer::Ok};
  session.master.menus.mnuComSelect(5).Click();
  EXPECT_FALSE(session.device.comm.CommPortOpen);
  EXPECT_EQ(live.window.lblUnit.core.Caption(), "Running on COM2, connected.");
  live.window.Follow();
  EXPECT_EQ(live.window.lblUnit.core.Caption(), "Running on COM2, not connected.");
  live.window.btnStart.Click();
  EXPECT_TRUE(session.unitConnection.Connected());
  live.window.btnStop.Click();
  EXPECT_EQ(session.settings.comPort, 5);
  EXPECT_TRUE(session.settings.loans.empty());
}

TEST_F(SimulatedUnit, KilledItIsALostCarrierAndStartsAgainWithAllThatIsSet) {
  session.Start();
  live.StartUnit();
  session.settings.ihpfCutoff = 300;
  int answers = 0;
  Said last;
  ASSERT_EQ(kill(live.UnitOn(1), SIGKILL), 0);
  session.unit.Ask("state", [&](const Said& answer) {
    ++answers;
    last = answer;
  });
  ASSERT_TRUE(live.Await([&] { return answers > 0 && !session.device.comm.CommPortOpen; }));
  EXPECT_FALSE(last["ok"].True());
  EXPECT_NE(last["error"].Text(), "");
  EXPECT_EQ(live.desk.boxes.back().title, "Veltrana Connection Lost");
  EXPECT_THAT(session.master.lblStatus.core.Caption(), StartsWith("The simulated unit has ended by itself."));
  EXPECT_EQ(live.window.lblUnit.core.Caption(), "The unit has ended by itself.");
  EXPECT_EQ(live.window.btnStart.core.Caption(), "&Start It Again");
  EXPECT_TRUE(live.HasLink(1));  // which leads nowhere
  live.window.btnStart.Click();
  EXPECT_TRUE(session.unitConnection.Connected());
  EXPECT_EQ(session.unit.Port(), 1);
  EXPECT_EQ(session.settings.ihpfCutoff, 300);
  EXPECT_EQ(session.master.lblStatus.core.Caption(), "");
  live.loop.RunEvents(200);
  EXPECT_EQ(answers, 1);
}

TEST_F(SimulatedUnit, WhatCannotBeStartedIsSaid) {
  live.desk.programFolder = folder.Path();
  std::ofstream(folder.Path() + "/veltrana-unit") << "#!/bin/sh\necho the lead is broken >&2\nexit 1\n";
  session.windows.Open("FrmUnit");
  live.window.btnStart.Click();
  EXPECT_THAT(live.window.lblTrouble.core.Caption(), HasSubstr("Permission denied"));
  fs::permissions(folder.Path() + "/veltrana-unit", fs::perms::owner_all);
  live.window.btnStart.Click();
  EXPECT_EQ(live.window.lblTrouble.core.Caption(), "The lead is broken");
  EXPECT_EQ(session.StartUnit(), "the lead is broken");
  EXPECT_FALSE(session.unit.Running());
  EXPECT_EQ(session.unit.Port(), 0);
}

}  // namespace
}  // namespace vc
