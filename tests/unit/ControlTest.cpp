// The simulated unit as a program that is told what to do on its standard input.
#include <chrono>
#include <csignal>
#include <fstream>
#include <memory>
#include <thread>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Program.h"
#include "SaidLine.h"
#include "TempFolder.h"
#include "unit/HostLine.h"

namespace unit_test {
namespace {

using support::Content;
using support::Program;
using vc::Said;

// Stereo of 16 bits at 12000 Hz: a slow rise that never repeats.
std::string WaveFile(std::uint32_t frames) {
  std::string text;
  const auto number = [&text](std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFFU);
  };
  text += "RIFF";
  number(36 + 4 * frames, 4);
  text += "WAVEfmt ";
  for (const auto& [value, bytes] :
       {std::pair{16U, 4}, {1U, 2}, {2U, 2}, {12000U, 4}, {48000U, 4}, {4U, 2}, {16U, 2}})
    number(value, bytes);
  text += "data";
  number(4 * frames, 4);
  for (std::uint32_t i = 0; i < frames; ++i) number(i % 32768 | (32767 - i % 32768) << 16U, 4);
  return text;
}

class UnitControl : public testing::Test {
 protected:
  void Start(const std::string& before = "exec", const std::string& behind = "--attached") {
    program = std::make_unique<Program>(
        "/bin/sh",
        std::vector<std::string>{"-c", before + ' ' + UNIT_PROGRAM + " --link " + link + ' ' + behind});
  }
  Said Answer() const { return support::SaidIn(program->Await("{")); }
  Said Ask(const std::string& command) const {
    program->Say(command);
    return Answer();
  }
  std::string Error(const std::string& command) const {
    const Said answer = Ask(command);
    return answer["ok"].True() ? "" : answer["error"].Text();
  }
  // The line is served, and at once.
  void ExpectAlive() const {
    ASSERT_TRUE(Soon([&] { return std::filesystem::is_symlink(link); }));
    EXPECT_EQ(HostLine(link, 115200).Ask(CommandFrame(130), 10), "!VER401402");
  }

  support::TempFolder folder;
  std::string link = folder.Path() + "/line";
  std::unique_ptr<Program> program;
};

TEST_F(UnitControl, AnswersEachLineInOrder) {
  Start();
  program->Say("help\n \t\nstate\nplay now\nfly\nseek\nseek nan\nsource file\nloop 2\npeaks 0\nbypass");
  const Said help = Answer();
  EXPECT_TRUE(help["ok"].True());
  EXPECT_GT(help["commands"].Items().size(), 10U);
  EXPECT_EQ(Answer()["source"]["kind"].Text(), "scene");
  for (const char* error :
       {"too much: \"now\"", "no command \"fly\"; help lists them", "seek needs a number of seconds",
        "seek needs a number of seconds", "source needs scene, file FILE or card NAME",
        "loop needs off or two numbers of seconds", "peaks needs a whole number from 1 to 4096",
        "bypass needs on or off"}) {
    const Said answer = Answer();
    EXPECT_FALSE(answer["ok"].True());
    EXPECT_EQ(answer["error"].Text(), error);
  }
  EXPECT_EQ(Error("seek 1"), "only a file has places to go to");
  EXPECT_EQ(Error("source file \"/none\\n\\\"\\\\ x\""),
            "/none\n\"\\ x: can't be read: No such file or directory");
  EXPECT_EQ(Error("source file \"x"), "a quote is not closed");
  EXPECT_EQ(Error("source file \"x\"y"), "a blank is missing behind a quote");
  EXPECT_EQ(Error("source file \"\\x\""), R"(in quotes a backslash stands before ", \ or n only)");
}

// Names of files are bytes, whatever they mean, and a pipe is none that could be waited for.
TEST_F(UnitControl, TakesEveryNameOfAFile) {
  Start();
  support::Put(folder.Path() + "/a b\"c\\d\xFF.wav", WaveFile(12000));
  EXPECT_EQ(Error("source file \"" + folder.Path() + "/a b\\\"c\\\\d\xFF.wav\""), "");
  EXPECT_EQ(Ask("state")["source"]["seconds"].Number(), 1.0);
  const std::string pipe = folder.Path() + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Error("source file " + pipe), pipe + ": is no file on a disk");
  EXPECT_EQ(Error("output file " + pipe), pipe + ": is no file on a disk");
  EXPECT_EQ(Ask("state")["source"]["rate"].Number(), 12000.0);
}

TEST_F(UnitControl, PlaysAFileAndGoesToPlacesOfIt) {
  Start();
  const std::string in = folder.Path() + "/in.wav", out = folder.Path() + "/out.wav";
  support::Put(in, WaveFile(24000));
  EXPECT_EQ(Error("source file " + in), "");
  EXPECT_FALSE(Ask("state")["playing"].True());
  EXPECT_EQ(Error("output file " + in), in + ": is the file that is heard, so it is not written");
  EXPECT_EQ(Error("output file " + out), "");
  EXPECT_EQ(Error("source file " + out + ".part"), out + ".part: is being written");
  EXPECT_EQ(Error("loop 0.5 0.52"), "a loop takes 0.05 seconds of the file at least");
  EXPECT_EQ(Error("loop 0.5 0.7"), "");
  EXPECT_EQ(Error("play"), "");
  // It goes round in the loop, and out of it to the end.
  EXPECT_TRUE(Soon([&] { return Ask("state")["position"].Number() > 0.5; }));
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  Said state = Ask("state");
  EXPECT_LE(state["position"].Number(), 0.7);
  EXPECT_EQ(state["loop"].Items().back().Number(), 0.7);
  EXPECT_EQ(Error("loop off"), "");
  EXPECT_EQ(Error("seek 1.8"), "");
  EXPECT_TRUE(Soon([&] { return !Ask("state")["playing"].True(); }));
  EXPECT_EQ(Ask("state")["position"].Number(), 2.0);
  EXPECT_EQ(Error("play"), "");
  EXPECT_LT(Ask("state")["position"].Number(), 0.3);
  EXPECT_FALSE(std::filesystem::exists(out));
  EXPECT_EQ(Error("output none"), "");
  EXPECT_GT(std::filesystem::file_size(out), 20'000U);
  EXPECT_TRUE(Soon([&] { return Ask("peaks 2")["loaded"].Number() == 1; }));
  const Said peaks = Ask("peaks 2");
  EXPECT_EQ(peaks["high"].Items().size(), 2U);
  EXPECT_EQ(peaks["low"].Items()[0].Number(), 0);
}

TEST_F(UnitControl, GarbageIsRefusedAndTheLineIsServedMeanwhile) {
  std::ofstream garbage(folder.Path() + "/garbage", std::ios::binary);
  unsigned state = 1;
  for (int i = 0; i < 300'000; ++i)
    garbage << static_cast<char>((state = state * 1664525 + 1013904223) >> 24U);
  garbage << '\n' << std::string(3'000'000, 'x') << "\nbypass on\nstate\nbypass off";
  garbage.close();
  Start("(cat " + folder.Path() + "/garbage; sleep 1) |");
  ExpectAlive();
  EXPECT_NE(program->Await("{\"error\":\"a line has 65536 bytes at most\""), "");
  EXPECT_TRUE(Answer()["ok"].True());
  // What has no end was cut off.
  EXPECT_TRUE(Answer()["bypass"].True());
  EXPECT_EQ(program->AwaitEnd(), 0);
}

TEST_F(UnitControl, LivesOnWhereNobodyReadsItsAnswers) {
  for (const char* reader : {"sleep 1", "true"}) {
    Start("timeout 0.7 yes \"$(printf 'help%128s' '')\" |", "--attached | " + std::string(reader));
    for (int i = 0; i < 5; ++i) {
      ExpectAlive();
      std::this_thread::sleep_for(std::chrono::milliseconds(60));
    }
    EXPECT_EQ(program->AwaitEnd(), 0) << reader;
    EXPECT_TRUE(Soon([&] { return !std::filesystem::exists(link); })) << reader;
  }
}

TEST_F(UnitControl, TheEndOfItsInputEndsAnAttachedOneAlone) {
  Start();
  program->Say("state");
  program->CloseInput();
  EXPECT_NE(program->Await("{"), "");
  EXPECT_EQ(program->AwaitEnd(), 0);
  for (const char* input : {"</dev/null", "<&-"}) {
    Start("exec", input);
    ExpectAlive();
    program->Signal(SIGTERM);
    EXPECT_EQ(program->AwaitEnd(), 0) << input;
  }
}

// In the background of a terminal it may not read, and must not stop for that nor try without a pause.
TEST_F(UnitControl, GoesOnInTheBackgroundOfATerminal) {
  const std::string process = folder.Path() + "/process";
  Start("exec script -qfc 'set -m; echo begun; (exec",
        "--attached) & echo $! >" + process + "; sleep 30' /dev/null");
  ASSERT_NE(program->Await("begun"), "");
  program->Say("state");
  ExpectAlive();
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  ExpectAlive();
  std::ifstream stat("/proc/" + Content(process).substr(0, Content(process).find('\n')) + "/stat");
  std::string field;
  for (int i = 0; i < 3; ++i) stat >> field;
  EXPECT_NE(field, "T");
  long user = 0;
  for (int i = 0; i < 10; ++i) stat >> field;
  stat >> user;
  EXPECT_LE(user, 20) << "hundredths of a second";
  // With the terminal it ends.
  program.reset();
  EXPECT_TRUE(Soon([&] { return !std::filesystem::exists(link); }));
}

}  // namespace
}  // namespace unit_test
