// The simulated unit as a program, between two sound cards.
#include <chrono>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): the system's

#include "Program.h"
#include "SaidLine.h"
#include "TempFolder.h"
#include "card/Jack.h"
#include "sound/NotchMemory.h"
#include "unit/HostLine.h"

namespace card_test {
namespace {

using vc::Said;

class UnitOnCards : public testing::Test {
 protected:
  void SetUp() override {
    server = JackServer::Start();
    if (!server) GTEST_SKIP() << "jackd is not installed or does not start: no live sound is tested";
    support::WriteNotchMemory(memories, "440");  // the studio's tone
    program = std::make_unique<support::Program>(
        UNIT_PROGRAM,
        std::vector<std::string>{"--link", link, "--memories", memories, "--memory", "2", "--attached"});
  }

  Said Ask(const std::string& command) const {
    program->Say(command);
    return support::SaidIn(program->Await("{"));
  }
  // The studio hears its tone so loud, in decibels, before long: a busy machine has drop-outs.
  static bool Hears(const Studio& studio, double least, double most) {
    return unit_test::Soon([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
      const std::vector<float> heard = studio.Heard();
      const measure::Signal last(heard.end() - 4800, heard.end());
      const double level = measure::Decibels(measure::AmplitudeAt(last, Studio::Tone, 48000) / Studio::Level);
      return least <= level && level <= most;
    });
  }

  support::TempFolder folder;
  std::string link = folder.Path() + "/line", memories = folder.Path() + "/memories";
  std::unique_ptr<JackServer> server;
  std::unique_ptr<support::Program> program;
};

TEST_F(UnitOnCards, FiltersWhatItHearsAndSaysWhenTheyAreGone) {
  Studio studio;
  ASSERT_TRUE(Ask("source card studio")["ok"].True());
  ASSERT_TRUE(Ask("output card studio")["ok"].True());
  studio.sounding = true;
  EXPECT_TRUE(Hears(studio, -60, -30));
  const unit_test::HostLine host(link, 115200);
  host.Ask(unit_test::CommandFrame(6, 0), 3);
  host.Ask(unit_test::CommandFrame(7, 0), 3);
  EXPECT_TRUE(Hears(studio, -0.3, 0.3));

  server->Kill(SIGTERM);
  ASSERT_TRUE(unit_test::Soon([&] { return !Ask("state")["trouble"].Text().empty(); }));
  EXPECT_EQ(Ask("state")["trouble"].Text(), "studio: the sound card is gone");
  // One way may hear of it before the other.
  EXPECT_TRUE(
      unit_test::Soon([&] { return Ask("output card studio")["error"].Text() == "no sound device"; }));
  EXPECT_EQ(host.Ask(unit_test::CommandFrame(130), 10), "!VER401402");
}

}  // namespace
}  // namespace card_test
