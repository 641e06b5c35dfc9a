// Programs that are started beside this one, whatever they do.
#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

#include "TempFolder.h"
#include "host/PosixPrograms.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class ShellProgram : public testing::Test {
 protected:
  void Start(const std::string& script) {
    std::string reason;
    program = PosixPrograms().Start("/bin/sh", {"-c", script}, reason);
    ASSERT_TRUE(program) << reason;
  }
  // Within some seconds; none of the calls may take longer than a look.
  bool Await(const std::function<bool()>& reached) {
    for (const auto end = steady_clock::now() + milliseconds(4000 * TIME_ALLOWANCE);
         steady_clock::now() < end;) {
      const auto start = steady_clock::now();
      const bool yes = reached();
      slowest = std::max(slowest, steady_clock::now() - start);
      if (yes) return true;
      std::this_thread::sleep_for(milliseconds(1));
    }
    return false;
  }
  // Nothing where none comes.
  vc::Said NextAnswer() {
    vc::Said answer;
    Await([&] {
      std::optional<vc::Said> taken = program->TakeAnswer();
      if (taken) answer = std::move(*taken);
      return taken.has_value();
    });
    return answer;
  }
  double Number() { return NextAnswer()["n"].Number(-1); }

  std::unique_ptr<vc::RunningProgram> program;
  steady_clock::duration slowest{};
};

TEST_F(ShellProgram, AnswersComeInTheirOrderAndWhatIsNoneIsPassedOver) {
  Start(
      "echo hello; echo '{broken'; while read x; do echo '[1]'; echo \"{\\\"n\\\": $x, \\\"row\\\": [true, "
      "null, "
      "\\\"\\\\u00e9\\\"]}\"; done");
  for (const char* line : {"1", "2", "3"}) program->Say(line);
  EXPECT_EQ(Number(), 1);
  const vc::Said second = NextAnswer();
  EXPECT_EQ(second["n"].Number(), 2);
  ASSERT_EQ(second["row"].Items().size(), 3U);
  EXPECT_TRUE(second["row"].Items()[0].True());
  EXPECT_TRUE(second["row"].Items()[1].Nothing());
  EXPECT_EQ(second["row"].Items()[2].Text(), "\xC3\xA9");
  EXPECT_EQ(Number(), 3);
  EXPECT_TRUE(program->Running());
}

// The last line without its end, and one of the complaints, count too. A child of its own that still holds
// the pipes does not keep it alive.
TEST_F(ShellProgram, ADeathIsSeenOnceItsAnswersAreTaken) {
  Start("sleep 5 & echo '{\"n\": 1}'; printf '{\"n\": 2}'; echo one >&2; printf 'two words' >&2; kill -9 $$");
  std::this_thread::sleep_for(milliseconds(100));
  EXPECT_TRUE(program->Running());
  EXPECT_EQ(Number(), 1);
  EXPECT_EQ(Number(), 2);
  EXPECT_TRUE(Await([&] { return !program->Running(); }));
  EXPECT_EQ(program->LastWords(), "two words");
  program->Say("anybody there?");
  EXPECT_FALSE(program->TakeAnswer());
}

TEST_F(ShellProgram, AFloodDoesNotHoldACallUp) {
  for (const char* flood : {"yes", "cat /dev/zero", "yes >&2"}) {
    SCOPED_TRACE(flood);
    slowest = {};
    Start(std::string("exec ") + flood);
    constexpr int looks = 30;
    int calls = 0;
    Await([&] {
      program->TakeAnswer();
      return ++calls == looks;
    });
    EXPECT_EQ(calls, looks);
    EXPECT_LT(slowest, milliseconds(200 * TIME_ALLOWANCE));
    program.reset();
  }
}

// It is asked to end by the end of its input, and is killed where it does not.
TEST_F(ShellProgram, EndsWithTheObjectWithinASecond) {
  const support::TempFolder folder;
  const std::string note = folder.Path() + "/note";
  Start("cat >/dev/null; echo done >" + note);
  program.reset();
  EXPECT_TRUE(std::ifstream(note).good());
  Start("trap '' TERM; echo '{}'; while :; do sleep 1; done");
  EXPECT_FALSE(NextAnswer().Nothing());
  const auto start = steady_clock::now();
  program.reset();
  EXPECT_LT(steady_clock::now() - start, milliseconds(1500 * TIME_ALLOWANCE));
}

TEST(Programs, OneThatIsNotThereIsToldInWords) {
  std::string reason;
  EXPECT_FALSE(PosixPrograms().Start("/no/such/program", {}, reason));
  EXPECT_EQ(reason, "/no/such/program: No such file or directory");
}

}  // namespace
}  // namespace host
