// Whole updates as the operator meets them: by Alt+U and at the start, with all that follows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BootRom.h"
#include "RecordDifference.h"
#include "ScriptedUnit.h"
#include "TestSession.h"
#include "firmware/FrmFirmwareUpload.h"

namespace vc {
namespace {

using support::Bytes;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct Updates : testing::Test {
  support::ScriptedUnit application;
  support::BootRom rom;
  std::string version = "!VER401400";
  bool inBootRom = false;
  support::TestSession test{End()};
  Session& session = test.session;
  MasterControl& master = session.master;
  FrmFirmwareUpload& window = session.windows.Get<FrmFirmwareUpload>("FrmFirmwareUpload");
  std::vector<std::string> status;  // all that the status line has said, with the number of boxes before it

  Updates() {
    application.always = [this](const Bytes& frame) {
      return frame[3] == 0x82 ? support::ScriptedReply{version} : support::GoodReply(frame);
    };
    for (const char* name : {"vlnamain.fwr", "vlnadaug.fwr"})
      support::Put(test.folder.Path() + "/" + name, std::string(1280, 'x'));
    master.form.controlChanged = [this](const ControlCore& core, std::string_view /*property*/) {
      if (core.name == "lblStatus" && !core.Caption().empty())
        status.push_back(std::to_string(test.desk.boxes.size()) + " " + core.Caption());
    };
  }

  // The application until the boot ROM is asked for, and again when that one restarts the unit.
  support::FarEnd End() {
    return {.receive =
                [this, app = application.End(), boot = rom.End()](auto bytes, std::int64_t now, auto baud) {
                  const bool asked = std::string(bytes.begin(), bytes.end()) == "?TERMIN" && baud == 115200;
                  inBootRom = inBootRom || asked;
                  (inBootRom ? boot : app).receive(bytes, now, baud);
                  if (!rom.restarted) return;
                  inBootRom = rom.restarted = false;
                  version = "!VER401410";
                },
            .transmit = [this, app = application.End(), boot = rom.End()](
                            std::int64_t now) { return (inBootRom ? boot : app).transmit(now); },
            .nextEvent = [this, app = application.End(),
                          boot = rom.End()] { return (inBootRom ? boot : app).nextEvent(); },
            .closed = application.End().closed};
  }
  void Start() {
    version = "!VER401402";
    session.Start();
    application.sent.clear();
  }
  void PressTwice(Answer answer = Answer::Yes) {
    test.desk.answers = {answer};
    for (int press = 0; press < 2; ++press) EXPECT_EQ(master.form.Press("Alt+U"), "");
  }
  void AwaitEnd() {
    for (int second = 0; second < 600 && session.forms.Find("FrmFirmwareUpload") != nullptr; ++second) {
      test.loop.RunFor(1000);
    }
    EXPECT_EQ(session.forms.Find("FrmFirmwareUpload"), nullptr);
  }
  std::string Boxes() const {
    std::string titles;
    for (const support::ShownBox& box : test.desk.boxes) titles += box.title + ";";
    return titles;
  }
  bool Sent(std::uint8_t command) const {
    return std::ranges::any_of(application.sent,
                               [command](const auto& frame) { return frame.bytes[3] == command; });
  }
};

TEST_F(Updates, OnDemandDisconnectsUpdatesAndConnectsAgainWithAFullDownload) {
  Start();
  const SystemSettings before = session.settings;
  session.panels.OpenFilter(1);
  PressTwice();
  EXPECT_FALSE(test.ports.state.open);
  EXPECT_FALSE(session.forms.Operable(master.form));
  EXPECT_FALSE(session.periodic.tmrBargraph->Enabled());
  EXPECT_EQ(window.lblVersion.core.Caption(), "Firmware in the unit: 4.02");
  AwaitEnd();
  EXPECT_EQ(rom.sections[1], Bytes(1280, 'x'));
  EXPECT_THAT(rom.protests, IsEmpty());
  EXPECT_EQ(Boxes(), "Firmware Needs Update;Upload Complete;");
  EXPECT_EQ(master.lblStatus.core.Caption(), "Firmware 4.02 before the update, 4.10 after it");
  EXPECT_TRUE(session.device.comm.CommPortOpen && session.periodic.tmrBargraph->Enabled());
  EXPECT_TRUE(Sent(0x55) && Sent(0x56));
  EXPECT_EQ(support::Difference(session.settings, before), "");
  EXPECT_FALSE(session.history.CanUndo());
  EXPECT_EQ(session.forms.open.size(), 2U);  // the panel is still there
}

// The boot ROM has no frames: its bytes are told as they are, all of them.
TEST_F(Updates, TheLineTraceHasWhatTheBootRomHearsAndSays) {
  Start();
  session.lineTrace.Begin(session.portLibrary.tap);
  PressTwice();
  AwaitEnd();
  std::string sent, said, story;
  for (std::size_t number = session.lineTrace.First(); number < session.lineTrace.Behind(); ++number) {
    const LineRow& row = session.lineTrace.At(number);
    if (row.way == LineWay::Event) story += row.bytes + ";";
    if (row.fate == ReplyFate::Raw) (row.way == LineWay::ToUnit ? sent : said) += row.bytes;
  }
  EXPECT_THAT(story, HasSubstr("port closed;COM1 opened for an update, 115200 baud;"));
  EXPECT_TRUE(sent.starts_with("?TERMIN"));
  constexpr std::size_t packets = 2 * 10, packetBytes = 132;
  EXPECT_GT(sent.size(), packets * packetBytes);
  EXPECT_EQ(std::ranges::count(said, '\x06'), 2 * 11);  // each packet, and each end
}

TEST_F(Updates, AtTheStartTheRestOfItComesBehind) {
  test.desk.answers = {Answer::Yes};
  session.Start();
  EXPECT_TRUE(session.settings.loadingSetup);
  EXPECT_EQ(session.forms.Find("MasterControl"), nullptr);
  AwaitEnd();
  EXPECT_EQ(session.forms.Top(), &master.form);
  EXPECT_EQ(session.forms.open.size(), 1U);
  EXPECT_FALSE(session.settings.loadingSetup || test.desk.hourglass);
  EXPECT_TRUE(session.settings.linkReady && Sent(0x55));
  EXPECT_EQ(master.lblStatus.core.Caption(), "Firmware 4.00 before the update, 4.10 after it");
  EXPECT_EQ(Boxes(), "Firmware Needs Update;Upload Complete;");
}

TEST_F(Updates, AMissingFileIsNamedBeforeTheQuestion) {
  Start();
  std::filesystem::remove(test.folder.Path() + "/vlnadaug.fwr");
  PressTwice(Answer::No);
  EXPECT_THAT(status, testing::ElementsAre("0 The firmware cannot be updated: vlnadaug.fwr is missing."));
  EXPECT_EQ(Boxes(), "Firmware Needs Update;Firmware Update Postponed;");
  EXPECT_TRUE(session.device.comm.CommPortOpen);
  PressTwice();
  AwaitEnd();
  EXPECT_EQ(rom.sections[0], Bytes(1280, 'x'));
  EXPECT_EQ(rom.Count("?D"), 0);
  EXPECT_THAT(
      master.lblStatus.core.Caption(),
      "vlnadaug.fwr is missing.  Section 1 is written.  Section 2 has not been changed.  The unit waits in "
      "its boot ROM: leave it switched on and press Alt+U twice to update it again.");
  EXPECT_THAT(Boxes(), HasSubstr("Firmware Upload Error;Veltrana Not Present;"));
  support::Put(test.folder.Path() + "/vlnadaug.fwr", std::string(1280, 'y'));
  PressTwice();
  AwaitEnd();
  EXPECT_EQ(rom.sections[1], Bytes(1280, 'y'));
  EXPECT_EQ(master.lblStatus.core.Caption(), "Firmware unknown before the update, 4.10 after it");
}

TEST_F(Updates, AUnitThatIsNotThereIsNotErasedAndAddsNoBox) {
  session.Start();
  test.desk.boxes.clear();
  application.always = nullptr;
  master.menus.mnuDisconnect.Click();
  rom.instead = [](auto&, int) { return std::string(); };
  PressTwice();
  AwaitEnd();
  EXPECT_EQ(Boxes(), "Firmware Needs Update;Firmware Upload Error;Veltrana Not Present;");
  EXPECT_THAT(
      master.lblStatus.core.Caption(),
      StartsWith(
          "The unit did not answer at 115200 baud.  The unit was not reached and has not been changed."));
}

TEST_F(Updates, NothingClosesItWhileASectionIsWritten) {
  Start();
  rom.instead = [this](const std::string& heard, int count) {
    const bool here = (heard == "YY" || heard == "packet 5" || heard == "EOT" || heard == "?D") && count < 3;
    const std::vector<std::function<void()>> ways{
        [this] { session.forms.Close(window.form); }, [this] { window.form.Press("Escape"); },
        [this] { master.menus.mnuExit.Click(); }, [this] { test.loop.RequestEnd(); }};
    for (const auto& way : ways) {
      if (!here) break;
      const int beeps = test.desk.beeps;
      window.lblNotice.core.SetVisible(false);
      way();
      EXPECT_EQ(test.desk.beeps, beeps + 1) << heard;
      EXPECT_THAT(window.lblNotice.core.Caption(), StartsWith("The firmware is being written: "));
      EXPECT_TRUE(window.lblNotice.core.Shown());
      EXPECT_FALSE(test.loop.Ending());
    }
    return std::optional<std::string>();
  };
  PressTwice();
  AwaitEnd();
  EXPECT_EQ(Boxes(), "Firmware Needs Update;Upload Complete;");
  EXPECT_EQ(window.form.refusal, "");
  master.menus.mnuExit.Click();
  EXPECT_TRUE(test.loop.Ending());
}

TEST_F(Updates, BeforeThatItIsStoppedWithoutABox) {
  for (const bool started : {false, true}) {
    test.desk.boxes.clear();
    Start();
    rom.instead = [this](auto&, int) {
      session.forms.Close(window.form);
      return std::string();
    };
    PressTwice();
    if (!started) session.forms.Close(window.form);
    AwaitEnd();
    EXPECT_EQ(rom.sections[0], Bytes{1});
    EXPECT_THAT(master.lblStatus.core.Caption(), StartsWith("The update has been stopped.  The unit "));
    EXPECT_THAT(Boxes(), testing::Not(HasSubstr("Upload")));
  }
}

TEST_F(Updates, TheEndOfTheProgramBeforeThatEndsBoth) {
  Start();
  rom.instead = [this](auto&, int) {
    test.loop.RequestEnd();
    return std::string();
  };
  PressTwice();
  test.loop.RunFor(20000);
  EXPECT_TRUE(test.loop.Ending());
  session.Exit();
  EXPECT_EQ(Boxes(), "Firmware Needs Update;");
  EXPECT_TRUE(session.forms.open.empty());
  EXPECT_THAT(support::Content(test.folder.Path() + "/ObjectLog.txt"), HasSubstr("Total: 0\r\n"));
}

TEST_F(Updates, TheWindowShowsHowFarItIs) {
  Start();
  std::vector<std::string> seen;
  rom.instead = [&](const std::string& heard, int) {
    if (heard == "YY" || heard == "packet 6" || heard == "EOT") {
      seen.push_back(window.lblSection.core.Caption() + "|" + window.lblDoing.core.Caption() + "|" +
                     window.pbMain.Reading() + "|" + window.lblPacketNumber.core.Caption() +
                     (window.tmrBlink->Enabled() ? "|blinks" : ""));
    }
    return std::optional<std::string>();
  };
  PressTwice();
  AwaitEnd();
  ASSERT_EQ(seen.size(), 6U);
  EXPECT_EQ(seen[0], "Connecting to Veltrana|Erasing section 1|0 of 0|0|blinks");
  EXPECT_EQ(seen[1], "Updating Section 1 of 2|Sending section 1|5 of 10|5");
  EXPECT_EQ(seen[2], "Updating Section 1 of 2|Sending section 1|10 of 10|10|blinks");
  EXPECT_EQ(seen[4], "Updating Section 2 of 2|Sending section 2|5 of 10|5");
}

}  // namespace
}  // namespace vc
