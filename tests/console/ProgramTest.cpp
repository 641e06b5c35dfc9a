// The console program itself, with a listener that is not ours on a pseudo-terminal.
#include <csignal>

#include <gtest/gtest.h>

#include "FrameListener.h"
#include "Installed.h"

namespace {

namespace fs = std::filesystem;
using support::Program;
using support::ReadFrame;

struct Installed : testing::Test, support::Installed {
  support::FrameListener listener;
  support::Pty& line = listener.line;
  Installed() : support::Installed(CONSOLE_PROGRAM) {}
};

TEST_F(Installed, LivesThroughALineThatGoes) {
  Program console = RunAt(line.Path());
  listener.UntilPolls(3);
  line.CloseMaster();
  EXPECT_EQ(
      console.Await("box"),
      "box\t48\tVeltrana Connection Lost\tVeltrana Connection Lost.  Please check all connections before "
      "attempting reconnect.\tok (default)");
  console.Say("run 200");
  console.Say("get txtComInfo");
  EXPECT_EQ(console.Await("txtComInfo"), "txtComInfo\tCOM 1 is closed");
  console.CloseInput();  // the end of the input is a quit
  EXPECT_EQ(console.AwaitEnd(), 0);
}

TEST_F(Installed, WorksWithTheSimulatedUnit) {
  Program unit(UNIT_PROGRAM, {"--link", port, "--trace", folder.Path() + "/trace"});
  unit.Await("veltrana-unit: ");
  Program console(program);
  console.Say("run 1000");
  console.Say("get txtComInfo");
  EXPECT_EQ(console.Await("txtComInfo", 10000), "txtComInfo\tConnected COM 1 115200 Baud");
  console.Say("get lbInputLeft");
  EXPECT_NE(console.Await("lbInputLeft").find(" dB"), std::string::npos);
  console.Say("menu mnuAbout");
  EXPECT_NE(console.Await("box").find("Firmware Version: 4.02\\nBoot ROM Version: 4.01"), std::string::npos);
  console.Say("quit");
  EXPECT_EQ(console.AwaitEnd(), 0);
  unit.Signal(SIGTERM);
  EXPECT_EQ(unit.AwaitEnd(), 0);
  EXPECT_FALSE(fs::is_symlink(fs::symlink_status(port)));
  EXPECT_NE(support::Content(folder.Path() + "/trace").find("3F 4D 50 82 00 00 7E"), std::string::npos);
}

TEST_F(Installed, PrintsAReportWithoutAUnit) {
  fs::create_symlink("nowhere", port);
  Program console(program);
  for (const char* word : {"menu mnuPrintReport", "click btnOK", "enter txtFileName mine"}) console.Say(word);
  const std::string file = folder.Path() + "/mine.pdf";
  const std::string told = console.Await("print");
  EXPECT_TRUE(told.starts_with("print\tSetup Report\t") && told.ends_with("\t" + file)) << told;
  console.Say("quit");
  EXPECT_EQ(console.AwaitEnd(), 0);
  EXPECT_TRUE(support::Content(file).starts_with("%PDF-"));
}

TEST_F(Installed, StartsAndBeginsANewSetupWhereTheCurrentFolderMayNotBeEntered) {
  const fs::path shut = folder.Path() + "/shut";
  fs::create_directory(shut);
  fs::permissions(folder.Path(), fs::perms::all);
  fs::create_symlink("nowhere", port);
  const std::string dropRoot = geteuid() == 0 ? "runuser -u nobody --" : "";
  Program console("/bin/sh",
                  {"-c", "cd '" + shut.string() + "' && chmod 0 . && exec " + dropRoot + " " + program});
  console.Say("record bandwidthIndex 3");
  console.Say("answer yes no");
  console.Say("menu mnuNew");
  console.Say("record bandwidthIndex");
  EXPECT_EQ(console.Await("box"),
            "box\t48\tInvalid/Unavailable for Local Veltrana Connection\tCOM1 is either "
            "invalid or unavailable. Please select another port for the Veltrana\tok "
            "(default)");
  EXPECT_EQ(console.Await("bandwidthIndex"), "bandwidthIndex\t3");
  EXPECT_EQ(console.Await("bandwidthIndex"), "bandwidthIndex\t0");
  console.CloseInput();
  EXPECT_EQ(console.AwaitEnd(), 0);
}

TEST_F(Installed, EverySignalAndALostReaderEndItInTheExitsOrder) {
  const std::string state = folder.Path() + "/veltrana.set", log = folder.Path() + "/ObjectLog.txt";
  fs::create_symlink("nowhere", port);
  constexpr int noneButNoReader = 0;
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, noneButNoReader}) {
    SCOPED_TRACE(number);
    Program console(program);
    console.Say("record ihpfCutoff 444");
    EXPECT_EQ(console.Await("ihpfCutoff"), "ihpfCutoff\t444");
    console.Signal(SIGPIPE);
    if (number == noneButNoReader) {
      console.CloseOutput();
      console.Say("forms");
    } else {
      console.Signal(number);
    }
    EXPECT_EQ(console.AwaitEnd(), number == noneButNoReader ? 1 : 0);
    EXPECT_NE(support::Content(state).find("\r\n444\r\n"), std::string::npos);
    EXPECT_TRUE(fs::remove(state) && fs::remove(log));
  }
}

TEST_F(Installed, ASignalEndsTheWaitForASilentUnit) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
    fs::remove(port);
    Program console = RunAt(line.Path());
    ASSERT_FALSE(ReadFrame(line).empty());
    console.Signal(number);
    EXPECT_EQ(console.AwaitEnd(2000), 0) << number;
  }
}

TEST_F(Installed, WithoutItsStreamsItPrintsIntoNoFile) {
  fs::create_symlink("nowhere", port);
  Program console("/bin/sh", {"-c", "exec " + program + " >&- 2>&-"});
  console.Say("forms");
  console.CloseInput();
  EXPECT_EQ(console.AwaitEnd(), 0);
  EXPECT_EQ(support::Content(folder.Path() + "/veltrana.lock"), "");
  EXPECT_TRUE(support::Content(folder.Path() + "/veltrana.set").starts_with("\"VELTRA\""));
}

TEST_F(Installed, TakesNoArguments) {
  Program console(program, {"--anything"});
  EXPECT_EQ(console.AwaitEnd(), 2);
}

}  // namespace
