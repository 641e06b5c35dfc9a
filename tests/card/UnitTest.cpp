// The simulated unit as a program, between two sound cards.
#include <chrono>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the system's

#include "Program.h"
#include "TempFolder.h"
#include "card/Jack.h"
#include "host/JsonLine.h"
#include "model/Kinds.h"
#include "sound/SoundRun.h"
#include "unit/HostLine.h"
#include "unit/MemoryFile.h"

namespace card_test {
namespace {

using std::chrono::milliseconds;
using vc::Said;

class UnitOnCards : public testing::Test {
 protected:
  void SetUp() override {
    server = JackServer::Start();
    if (!server) GTEST_SKIP() << "jackd is not installed or does not start: no live sound is tested";
    WriteMemories();
    program = std::make_unique<support::Program>(
        UNIT_PROGRAM,
        std::vector<std::string>{"--link", link, "--memories", memories, "--memory", "2", "--attached"});
  }

  // A unit with a notch at the hum in memory 2.
  void WriteMemories() const {
    support::SoundRun run;
    run.Put(1, vc::FilterKind::Notch);
    for (const auto& [field, value] :
         {std::pair{"notchFreq", "400"}, {"notchWidth", "300"}, {"notchAtten", "50"}})
      run.Edit(field, value, 1);
    run.Settle();
    run.session.panels.OpenMemory(2);
    run.test.desk.answers = {vc::Answer::Yes};
    run.Click("btnOK");
    std::ofstream(memories) << MemoryFileText(run.unit.Now().memories);
  }

  Said Ask(const std::string& command) const {
    program->Say(command);
    return host::ReadJsonLine(program->Await("{")).value_or(Said());
  }
  std::string Trouble() const { return Ask("state")["trouble"].Text(); }

  support::TempFolder folder;
  std::string link = folder.Path() + "/line", memories = folder.Path() + "/memories";
  std::unique_ptr<JackServer> server;
  std::unique_ptr<support::Program> program;
};

TEST_F(UnitOnCards, FilterWhatTheyHear) {
  Studio studio;
  ASSERT_TRUE(Ask("source card studio")["ok"].True());
  ASSERT_TRUE(Ask("output card studio")["ok"].True());
  studio.sounding = true;
  std::this_thread::sleep_for(milliseconds(1300));
  const std::vector<float> heard = studio.Heard();
  const measure::Signal last(heard.end() - 24000, heard.end());
  const double hum = measure::AmplitudeAt(last, Studio::Hum, 48000) / Studio::HumLevel;
  const double tone = measure::AmplitudeAt(last, Studio::Tone, 48000) / Studio::ToneLevel;
  EXPECT_LT(measure::Decibels(hum), -30);
  EXPECT_NEAR(measure::Decibels(tone), 0, 1);
}

// Ended in the midst: that is said, and the unit serves its line and its other commands as before.
TEST_F(UnitOnCards, SayThatTheyAreGone) {
  ASSERT_TRUE(Ask("source card system")["ok"].True());
  ASSERT_TRUE(Ask("output card system")["ok"].True());
  EXPECT_EQ(Trouble(), "");
  server->Kill(SIGTERM);
  ASSERT_TRUE(unit_test::Soon([&] { return !Trouble().empty(); }));
  EXPECT_EQ(Trouble(), "system: the sound card is gone");
  const Said state = Ask("state");
  EXPECT_EQ(state["output"]["kind"].Text(), "none");
  EXPECT_FALSE(state["playing"].True());
  EXPECT_EQ(unit_test::HostLine(link, 115200).Ask(unit_test::CommandFrame(130), 10), "!VER401402");
  EXPECT_EQ(Ask("output card system")["error"].Text(), "no sound device");
  EXPECT_TRUE(Ask("source scene")["ok"].True());
  program->CloseInput();
  EXPECT_GE(program->AwaitEnd(), 0);
}

}  // namespace
}  // namespace card_test
