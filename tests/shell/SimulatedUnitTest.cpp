// A session with the real unit's program beside it: started, lost, started again, and never in the way.
#include <cmath>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>

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

// Two seconds of a tone, 16 bits, mono.
std::string WriteRecording(const std::string& path) {
  constexpr std::uint32_t rate = 8000, frames = 2 * rate;
  std::ofstream file(path, std::ios::binary);
  const auto number = [&file](std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i)));
  };
  file << "RIFF";
  number(36 + 2 * frames, 4);
  file << "WAVEfmt ";
  for (const auto& [value, bytes] :
       {std::pair{16U, 4}, {1U, 2}, {1U, 2}, {rate, 4}, {2 * rate, 4}, {2U, 2}, {16U, 2}})
    number(value, bytes);
  file << "data";
  number(2 * frames, 4);
  for (std::uint32_t i = 0; i < frames; ++i) number((i / 20) % 2 == 0 ? 0x2000 : 0xE000, 2);
  return path;
}

struct Recordings : SimulatedUnit {
  Recordings() {
    InitSettings(session.settings);
    live.StartUnit();
  }
  void Open(const std::string& path) {
    window.btnSource.Click();
    auto& chooser = session.windows.Get<ChooseSound>("ChooseSound");
    chooser.chooser.txtFileName.SetText(path);
    chooser.btnOK.Click();
  }
  void Point(PointerAction action, double x) { window.wave.pbxWave.pointer({action, x, 0}); }
  const Said& State() const { return session.unit.state; }
  bool Looped(double from, double to) {
    return live.Await([&] {
      const auto& loop = State()["loop"].Items();
      return loop.size() == 2 && std::abs(loop[0].Number() - from) < 0.01 &&
             std::abs(loop[1].Number() - to) < 0.01;
    });
  }
  FrmUnit& window = live.window;
  std::string recording = WriteRecording(folder.Path() + "/a \"tone\".wav");
};

TEST_F(Recordings, ARecordingIsOpenedSoughtAndPlayedInParts) {
  Open(recording);
  ASSERT_TRUE(live.Await([&] { return !window.wave.pbxWave.Traces().empty(); }))
      << window.lblTrouble.core.Caption();
  EXPECT_TRUE(live.Await([&] { return window.btnPlay.core.Caption() == "&Pause"; }));
  window.btnPlay.Click();
  EXPECT_TRUE(live.Await([&] { return !State()["playing"].True(); }));
  EXPECT_EQ(window.txtSource.Text(), recording);
  EXPECT_EQ(window.lblLength.core.Caption(), "of 0:02.00");
  EXPECT_NEAR(*window.wave.pbxWave.LevelAt(window.wave.pbxWave.Traces()[0], 1.0), 0.0, 0.26);
  Point(PointerAction::Press, 1.5);
  Point(PointerAction::Release, 1.5);
  EXPECT_TRUE(live.Await([&] { return window.txtPosition.Text() == "0:01.50"; }))
      << window.txtPosition.Text();
  Point(PointerAction::Press, 1.0);
  Point(PointerAction::Move, 0.5);
  EXPECT_EQ(window.wave.pbxWave.Bands().size(), 1U);
  Point(PointerAction::Release, 0.25);
  EXPECT_TRUE(Looped(0.25, 1.0));
  window.txtTo.Type("0:00.75");
  window.txtTo.KeyPress(EnterKey);
  window.txtTo.LostFocus();
  EXPECT_TRUE(Looped(0.25, 0.75));
  window.btnPlay.Click();
  EXPECT_TRUE(
      live.Await([&] { return State()["playing"].True() && window.btnPlay.core.Caption() == "&Pause"; }));
  window.chkLoop.SetValue(false);
  EXPECT_TRUE(live.Await([&] { return State()["loop"].Nothing(); }));
}

TEST_F(Recordings, WhatCannotBeOpenedIsSaidAndTheChoiceIsAgainWhatTheUnitDoes) {
  std::ofstream(folder.Path() + "/b.wav") << "no sound";
  Open(folder.Path() + "/b.wav");
  ASSERT_TRUE(live.Await([&] { return !window.lblTrouble.core.Caption().empty(); }));
  EXPECT_THAT(window.lblTrouble.core.Caption(), HasSubstr("b.wav"));
  EXPECT_TRUE(live.Await([&] { return window.optSource.Selected() == 0; }));
}

// B twice in a row is what it was; the panel of a filter has the key, too.
TEST_F(Recordings, OneKeySwitchesBeforeAndAfterWhereverTheOperatorIs) {
  EXPECT_EQ(window.form.Press("B"), "");
  EXPECT_EQ(window.optHeard.Selected(), 0);
  EXPECT_EQ(session.master.lblHeard.core.Caption(), "Heard: before (B)");
  EXPECT_TRUE(live.Await([&] { return State()["bypass"].True(); }));
  session.panels.OpenFilter(1);
  EXPECT_EQ(session.forms.Top()->Press("B"), "");
  EXPECT_EQ(session.master.form.Press("B"), "");
  EXPECT_EQ(session.master.form.Press("B"), "");
  EXPECT_TRUE(live.Await([&] { return State()["bypass"].Number(-1) == -1 && !State()["bypass"].True(); }));
  EXPECT_EQ(window.optHeard.Selected(), 1);
  window.optHeard.Select(0);
  EXPECT_TRUE(
      live.Await([&] { return State()["bypass"].True() && session.master.menus.mnuHearBefore.Checked(); }));
}

// In the next run as well; a file that was written is not begun anew.
TEST_F(Recordings, TheUnitHearsAgainWhatItHeardLast) {
  Open(recording);
  const std::string written = folder.Path() + "/out.wav";
  session.unit.Ask("output file " + Quoted(written), nullptr);
  ASSERT_TRUE(live.Await([&] { return State()["output"]["kind"].Text() == "file"; }));
  session.Exit();
  const auto before = fs::last_write_time(written);
  LiveSession next(folder.Path());
  next.StartUnit();
  ASSERT_TRUE(next.Await([&] { return next.window.txtSource.Text() == recording; }));
  EXPECT_EQ(next.session.unit.state["output"]["kind"].Text(), "none");
  EXPECT_EQ(fs::last_write_time(written), before);
  fs::remove(recording);
  next.window.btnStop.Click();
  next.window.btnStart.Click();
  EXPECT_TRUE(
      next.Await([&] { return next.window.lblTrouble.core.Caption().find("tone") != std::string::npos; }));
}

}  // namespace
}  // namespace vc
