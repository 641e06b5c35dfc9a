// Recordings that the console program has its own simulated unit clean.
#include <csignal>
#include <fstream>
#include <memory>

#include <gtest/gtest.h>

#include "Installed.h"
#include "NoisyWave.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using support::Content;
using support::Program;

constexpr int Patience = 20000;  // ms
constexpr double AnHour = 3600;  // s: seconds of work, so that it can be ended in the midst

struct Cleaning : testing::Test, support::Installed {
  const std::string at = folder.Path() + "/", in = at + "in.wav", out = at + "out.wav";
  std::unique_ptr<Program> console;
  Cleaning() : support::Installed(CONSOLE_PROGRAM) {
    fs::copy_file(UNIT_PROGRAM, at + "veltrana-unit");
    fs::create_symlink("nowhere", port);
  }
  void Start(const std::string& before = "exec") {
    const std::string line = "cd '" + folder.Path() + "' && " + before + " " + program;
    console = std::make_unique<Program>("/bin/sh", std::vector<std::string>{"-c", line});
    for (const char* word : {"unit start", "record broadbandActive(1) 1"}) console->Say(word);
  }
  void StartCleaning(double seconds, const std::string& before = "exec") {
    support::WriteNoisyWave(in, seconds);
    std::ofstream(out) << "from before";
    Start(before);
    console->Say("clean in.wav out.wav");
  }
  void ExpectAsBefore() const {
    EXPECT_EQ(Content(out), "from before");
    for (const auto& entry : fs::directory_iterator(folder.Path()))
      EXPECT_FALSE(entry.path().filename().string().starts_with("out.wav.part")) << entry.path();
  }
};

TEST_F(Cleaning, GivesTheSamplesThatTheUnitGivesByItself) {
  support::WriteNoisyWave(in, 3);
  Start();
  for (const char* word : {"clean in.wav out.wav", "clean in.wav part.wav from 1 to 0:02.5 adaptive learn",
                           "menu mnuMemorySelect(1)", "answer yes", "click btnOK", "run 1500", "quit"})
    console->Say(word);
  EXPECT_EQ(console->Await("report", Patience), "report\tRecording  " + in);
  EXPECT_NE(console->Await("report\tRounding").find("TPDF"), std::string::npos);
  EXPECT_EQ(console->AwaitEnd(Patience), 0);
  for (const auto& [more, name] : {std::pair<std::vector<std::string>, const char*>{{}, "out.wav"},
                                   {{"--from", "1", "--to", "2.5"}, "part.wav"}}) {
    std::vector<std::string> words{"--clean",  "--memories", at + "veltrana-unit.memories",
                                   "--memory", "1",          "--in",
                                   in,         "--out",      at + "alone.wav"};
    words.insert(words.end(), more.begin(), more.end());
    Program alone(UNIT_PROGRAM, words);
    EXPECT_EQ(alone.AwaitEnd(Patience), 0);
    EXPECT_TRUE(Content(at + "alone.wav") == Content(at + name)) << name;
    EXPECT_GT(Content(at + name).size(), 10000U);
  }
  EXPECT_EQ(fs::file_size(out) - fs::file_size(at + "part.wav"), 2U * 12000);
}

TEST_F(Cleaning, SaysWhyNotAndGoesOnAndItsStatusIsTrue) {
  support::WriteNoisyWave(in, 0.2);
  std::ofstream(at + "text.wav") << "no sound at all";
  fs::create_symlink(in, at + "link.wav");
  Start();
  for (const auto& [line, why] : {std::pair{"clean in.wav", "say clean IN OUT"},
                                  {"clean in.wav out.wav from soon", "soon is no time"},
                                  {"clean in.wav out.wav from 1 to 0.5", "has to end after it begins"},
                                  {"clean in.wav link.wav", "another one than the recording"},
                                  {"clean in.wav no/out.wav", "no folder"},
                                  {"clean none.wav out.wav", "no file"},
                                  {"clean text.wav out.wav", "text.wav"},
                                  {"unit seek x", "seek needs"}}) {
    console->Say(line);
    const std::string told = console->Await("error ", Patience);
    EXPECT_TRUE(told.starts_with(std::string("error ") + line) && told.find(why) != std::string::npos)
        << told;
  }
  console->Say("menu mnuDisconnect");
  console->Say("clean in.wav out.wav");
  EXPECT_NE(console->Await("error ").find("not connected to the simulated unit"), std::string::npos);
  console->Say("unit stop");
  console->Say("clean in.wav out.wav");
  EXPECT_NE(console->Await("error ").find("does not run"), std::string::npos);
  EXPECT_FALSE(fs::exists(out));
  console->CloseInput();
  EXPECT_EQ(console->AwaitEnd(Patience), 1);
}

TEST_F(Cleaning, AUnitThatIsKilledInTheMidstIsSaid) {
  StartCleaning(AnHour);
  ASSERT_FALSE(console->Await("progress\tCleaning", Patience).empty());
  const std::string id = std::to_string(console->Id());
  kill(static_cast<pid_t>(std::stol(Content("/proc/" + id + "/task/" + id + "/children"))), SIGKILL);
  EXPECT_NE(console->Await("error clean", Patience).find("has ended"), std::string::npos);
  EXPECT_EQ(Content(out), "from before");
  console->CloseInput();
  EXPECT_EQ(console->AwaitEnd(Patience), 1);
}

TEST_F(Cleaning, WhoeverEndsTheProgramInTheMidstLeavesTheFileAsItWas) {
  StartCleaning(AnHour);
  ASSERT_FALSE(console->Await("progress\tCleaning", Patience).empty());
  console->Signal(SIGTERM);
  EXPECT_EQ(console->AwaitEnd(Patience), 1);
  ExpectAsBefore();
}

TEST_F(Cleaning, AFullDiskLeavesTheFileAsItWas) {
  StartCleaning(60, "trap '' XFSZ; ulimit -f 600; exec");
  EXPECT_NE(console->Await("error clean", Patience).find("can't be written"), std::string::npos);
  console->CloseInput();
  EXPECT_EQ(console->AwaitEnd(Patience), 1);
  EXPECT_EQ(Content(out), "from before");
}

}  // namespace
