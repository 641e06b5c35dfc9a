// The console program itself, with a listener that is not ours on a pseudo-terminal.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "Program.h"
#include "Pty.h"
#include "ScriptedUnit.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using support::Hex;
using support::Program;

// An install folder of its own, with the program and a port in it.
struct Installed : testing::Test {
  support::TempFolder folder;
  std::string program = folder.Path() + "/veltrana-console";
  Installed() {
    fs::copy_file(CONSOLE_PROGRAM, program);
    fs::create_directory(folder.Path() + "/ports");
  }
  void LinkPort(const std::string& path) const { fs::create_symlink(path, folder.Path() + "/ports/COM1"); }
};

TEST_F(Installed, FirstExchangesByteForByte) {
  support::Pty line;
  LinkPort(line.Path());
  Program console(program);
  const auto status = [&] {
    EXPECT_EQ(Hex(line.Read(7, 5000)), "3F 4D 50 E8 00 00 18");
    EXPECT_EQ(line.Rate(), 115200U);
    line.Write(support::MainStatusReply({20675, 0, 0, 0, 0, 0}));
  };
  status();
  EXPECT_EQ(Hex(line.Read(7, 5000)), "3F 4D 50 82 00 00 7E");
  line.Write("!VER401402");
  status();  // the full connect opens the port anew and asks again
  status();  // the first poll
  for (int i = 0; i < 5; ++i) status();
  console.Say("get lbInputLeft");
  EXPECT_EQ(console.Await("lbInputLeft"), "lbInputLeft\t83 0.0 dB");
  console.Say("menu mnuAbout");
  // A poll may be on its way; the version request follows when it is drained.
  auto frame = line.Read(7, 5000);
  if (frame.size() == 7 && frame[3] == 0xE8) {
    line.Write(support::MainStatusReply());
    frame = line.Read(7, 5000);
  }
  EXPECT_EQ(Hex(frame), "3F 4D 50 82 00 00 7E");
  line.Write("!VER401402");
  EXPECT_NE(console.Await("box").find("Firmware Version: 4.02\\nBoot ROM Version: 4.01"), std::string::npos);
  console.Say("quit");
  EXPECT_EQ(console.AwaitEnd(), 0);
  std::ostringstream log;
  log << std::ifstream(folder.Path() + "/ObjectLog.txt").rdbuf();
  EXPECT_NE(log.str().find("Total: 0"), std::string::npos);
}

TEST_F(Installed, LivesThroughALineThatGoes) {
  support::Pty line;
  LinkPort(line.Path());
  Program console(program);
  for (int i = 0; i < 4; ++i) {
    const auto frame = line.Read(7, 5000);
    ASSERT_EQ(frame.size(), 7U);
    line.Write(frame[3] == 0x82 ? "!VER401402" : support::MainStatusReply());
  }
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
  const std::string link = folder.Path() + "/ports/COM1";
  Program unit(UNIT_PROGRAM, {"--link", link, "--trace", folder.Path() + "/trace"});
  for (int i = 0; i < 500 && !fs::exists(link); ++i) usleep(5000);
  Program console(program);
  console.Say("run 1000");
  console.Say("get txtComInfo");
  EXPECT_EQ(console.Await("txtComInfo", 10000), "txtComInfo\tConnected COM 1 115200 Baud");
  console.Say("get lbInputLeft");
  EXPECT_NE(console.Await("lbInputLeft").find(" dB"), std::string::npos);
  console.Say("quit");
  EXPECT_EQ(console.AwaitEnd(), 0);
  unit.Signal(SIGTERM);
  EXPECT_EQ(unit.AwaitEnd(), 0);
  EXPECT_FALSE(fs::is_symlink(fs::symlink_status(link)));
  std::ostringstream trace;
  trace << std::ifstream(folder.Path() + "/trace").rdbuf();
  EXPECT_NE(trace.str().find("3F 4D 50 82 00 00 7E"), std::string::npos);
}

TEST_F(Installed, TakesNoArguments) {
  Program console(program, {"--anything"});
  EXPECT_EQ(console.AwaitEnd(), 2);
}

}  // namespace
