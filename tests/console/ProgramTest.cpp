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
    fs::copy_file(PROGRAM_FOLDER "/Factory Defaults.nrv", folder.Path() + "/Factory Defaults.nrv");
  }
  void LinkPort(const std::string& path) const { fs::create_symlink(path, folder.Path() + "/ports/COM1"); }
};

// The next frame on the line, whole; empty where none comes.
support::Bytes ReadFrame(const support::Pty& line) {
  support::Bytes frame = line.Read(4, 5000);
  if (frame.size() < 4) return {};
  const auto rest = line.Read(frame[1] == 'L' ? 49 : 3, 1000);
  frame.insert(frame.end(), rest.begin(), rest.end());
  return frame;
}

void Answer(const support::Pty& line, const support::Bytes& frame) {
  if (!frame.empty()) line.Write(support::GoodReply(frame).bytes);
}

// Answers what comes until the levels are polled, and that poll too.
void AnswerUntilPoll(const support::Pty& line) {
  for (int i = 0; i < 1000; ++i) {
    const auto frame = ReadFrame(line);
    Answer(line, frame);
    if (frame.empty() || Hex(frame) == "3F 4D 50 E8 00 00 18") return;
  }
}

TEST_F(Installed, FirstExchangesByteForByte) {
  support::Pty line;
  LinkPort(line.Path());
  Program console(program);
  // The probe, the version, and the full connect, which opens the port anew and asks again.
  for (const char* expected : {"3F 4D 50 E8 00 00 18", "3F 4D 50 82 00 00 7E", "3F 4D 50 E8 00 00 18"}) {
    const auto frame = ReadFrame(line);
    EXPECT_EQ(Hex(frame), expected);
    EXPECT_EQ(line.Rate(), 115200U);
    Answer(line, frame);
  }
  for (int i = 0; i < 5; ++i) AnswerUntilPoll(line);
  console.Say("get lbInputLeft");
  EXPECT_EQ(console.Await("lbInputLeft"), "lbInputLeft\t40 -20.0 dB");
  console.Say("menu mnuAbout");
  // A poll may be on its way; the version request follows when it is drained.
  auto frame = ReadFrame(line);
  if (frame.size() == 7 && frame[3] == 0xE8) {
    Answer(line, frame);
    frame = ReadFrame(line);
  }
  EXPECT_EQ(Hex(frame), "3F 4D 50 82 00 00 7E");
  Answer(line, frame);
  EXPECT_NE(console.Await("box").find("Firmware Version: 4.02\\nBoot ROM Version: 4.01"), std::string::npos);
  console.Say("menu mnuDisconnect");  // this listener has no coefficients for the exit to read
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
  Answer(line, ReadFrame(line));
  Answer(line, ReadFrame(line));
  Answer(line, ReadFrame(line));
  AnswerUntilPoll(line);
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
