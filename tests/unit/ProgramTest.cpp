// The simulated unit as a program: its link, its line, its visitors, its end.
#include <chrono>
#include <csignal>
#include <fstream>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "Program.h"
#include "TempFolder.h"
#include "unit/Download.h"
#include "unit/HostLine.h"

namespace unit_test {
namespace {

namespace fs = std::filesystem;
using support::Content;

constexpr int ShortWait = 150;  // milliseconds in which nothing may come

// Processor time used so far, in clock ticks of the system.
long ProcessorTicks(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string field;
  long user = 0;
  long system = 0;
  for (int i = 0; i < 13; ++i) file >> field;
  file >> user >> system;
  return user + system;
}

class UnitProgram : public testing::Test {
 protected:
  // Starts the program with its line at `link` and its complaints among its output; true once the link is
  // there, with nothing to complain of before.
  bool Start(std::vector<std::string> more = {}) {
    Launch(std::move(more));
    return Begins();
  }
  void Launch(std::vector<std::string> more) {
    more.insert(more.begin(), {"-c", "exec \"$0\" \"$@\" 2>&1", UNIT_PROGRAM, "--link", link.string()});
    program = std::make_unique<support::Program>("/bin/sh", more);
  }
  bool Begins() {
    return program->Await("veltrana-unit: ").starts_with("veltrana-unit: " + link.string()) &&
           fs::is_symlink(link);
  }

  // Runs it to its end with its complaints among its output.
  int Exit(const std::string& arguments) {
    const std::string command = std::string(UNIT_PROGRAM) + ' ' + arguments + " 2>&1";
    program = std::make_unique<support::Program>("/bin/sh", std::vector<std::string>{"-c", command});
    return program->AwaitEnd();
  }

  support::TempFolder folder;
  fs::path directory = folder.Path();
  fs::path link = directory / "line";
  std::string memories = (directory / "memories").string();
  std::unique_ptr<support::Program> program;
};

TEST_F(UnitProgram, AnswersOverTheLine) {
  ASSERT_TRUE(Start());
  const HostLine host(link, 115200);
  ASSERT_TRUE(host.IsOpen());
  EXPECT_EQ(host.Ask(CommandFrame(232), 46).substr(0, 3), "!MG");
  EXPECT_EQ(host.Ask(CommandFrame(130), 10), "!VER401402");
  // Bytes that a terminal would change or take for itself come through as they are.
  for (const char byte : {'\x03', '\n', '\r', '\x11', '\x13', '\x1A', '\xFF'}) {
    const auto value = static_cast<std::uint8_t>(byte);
    EXPECT_EQ(host.Ask(PacketFrame(0, value), 3), "!OK") << int{value};
  }
}

TEST_F(UnitProgram, HearsTheHostsRate) {
  ASSERT_TRUE(Start({"--baud", "14400"}));
  {
    const HostLine host(link, 9600);
    const std::string heard = host.Ask(CommandFrame(232), 46, ShortWait);
    EXPECT_FALSE(heard.empty());
    EXPECT_FALSE(HasToken(heard));
  }
  const HostLine host(link, 14400);
  EXPECT_EQ(host.Ask(CommandFrame(1, 192), 3), "!OK");
}

TEST_F(UnitProgram, HostsComeAndGo) {
  ASSERT_TRUE(Start());
  for (int visit = 0; visit < 200; ++visit) {
    const HostLine host(link, 115200);
    ASSERT_EQ(host.Ask(CommandFrame(130), 10), "!VER401402") << visit;
    // It leaves an answer that it did not read, and half a frame.
    host.Write(Joined(CommandFrame(232), {'?', 'M', 'P'}));
    ASSERT_TRUE(Soon([&] { return host.Waiting() == 46; })) << visit;
  }
}

TEST_F(UnitProgram, AnAnswerThatIsDueAfterTheHostHasGoneIsNotForTheNext) {
  const fs::path trace = directory / "trace";
  ASSERT_TRUE(Start({"--delay", "300", "--trace", trace.string()}));
  {
    const HostLine host(link, 115200);
    host.Write(CommandFrame(130));
    ASSERT_TRUE(Soon([&] { return Content(trace).find("version request") != std::string::npos; }));
  }
  EXPECT_EQ(HostLine(link, 115200).Ask(CommandFrame(1, 192), 3), "!OK");
}

TEST_F(UnitProgram, IsIdleWithAndWithoutAHost) {
  ASSERT_TRUE(Start());
  { EXPECT_EQ(HostLine(link, 115200).Ask(CommandFrame(130), 10), "!VER401402"); }
  const long before = ProcessorTicks(program->Id());
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  const HostLine host(link, 115200);
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  EXPECT_LE(ProcessorTicks(program->Id()) - before, 4) << "hundredths of a second out of 80";
}

TEST_F(UnitProgram, DumpIsWrittenAtEverySignalThatAsksForIt) {
  const fs::path dump = directory / "dump";
  ASSERT_TRUE(Start({"--dump", dump.string()}));
  const HostLine host(link, 115200);
  for (const std::uint16_t value : {std::uint16_t{8196}, std::uint16_t{4}}) {
    EXPECT_EQ(host.Ask(CommandFrame(56, value), 3), "!OK");
    fs::remove(dump);
    program->Signal(SIGUSR1);
    ASSERT_TRUE(Soon([&] { return fs::exists(dump); }));
    const std::string first = "register 56 " + std::to_string(value) + "  stage 1 adaptation\nstage 1 class";
    EXPECT_EQ(Content(dump).substr(0, first.size()), first) << "whole as soon as it is there";
    EXPECT_EQ(Content(dump).back(), '\n');
  }
  fs::remove(dump);
  fs::create_directory(dump);
  program->Signal(SIGUSR1);
  EXPECT_EQ(host.Ask(CommandFrame(1, 192), 3), "!OK") << "a dump that fails does no harm";
  program->Signal(SIGTERM);
  EXPECT_EQ(program->AwaitEnd(), 0);
  EXPECT_FALSE(fs::exists(dump.string() + ".part"));
}

TEST_F(UnitProgram, MemoriesOutliveIt) {
  const fs::path dump = directory / "dump";
  const std::vector<std::string> options = {"--memories",  memories,       "--dump",
                                            dump.string(), "--store-time", "0"};
  const auto dumped = [&] {
    fs::remove(dump);
    program->Signal(SIGUSR1);
    EXPECT_TRUE(Soon([&] { return fs::exists(dump); }));
    const std::string text = Content(dump);
    return text.substr(std::min(text.find("memory "), text.size()));
  };
  std::string last;
  for (const int run : {1, 2, 3}) {
    ASSERT_TRUE(Start(options));
    EXPECT_EQ(dumped(), last) << run;
    const HostLine host(link, 115200);
    for (int number = run; number <= 10; ++number) {
      EXPECT_EQ(host.Ask(Command(56, run * 100 + number), 3), "!OK");
      EXPECT_EQ(host.Ask(Store(number, run), 3), "!OK");
    }
    last = dumped();
    for (const char* line : {"memory 1 register 56 101 ", "memory 10 register 56 "})
      EXPECT_TRUE(Has(last, line));
    program->Signal(SIGTERM);
    EXPECT_EQ(program->AwaitEnd(), 0);
    constexpr fs::perms owners = fs::perms::owner_read | fs::perms::owner_write;
    EXPECT_EQ(fs::status(memories).permissions() == owners, run > 1) << "who may read them is kept too";
    fs::permissions(memories, owners);
  }
}

TEST_F(UnitProgram, APowerCutDuringAStoreLeavesWholeMemories) {
  const std::string learned = (directory / "learned").string();
  std::ofstream file(learned);
  for (int i = 0; i < 8192; ++i) file << -8000000 - i << ' ';
  file.close();
  for (int cut = 0; cut < 5; ++cut) {
    ASSERT_TRUE(Start({"--memories", memories, "--store-time", "600000", "--coefficients", "0:" + learned,
                       "--coefficients", "5:" + learned}));
    program->Signal(SIGUSR2);
    const HostLine host(link, 115200);
    EXPECT_EQ(host.Ask(Command(56, cut), 3), "!OK");
    const auto begins = [&] { return fs::exists(memories + ".part"); };
    for (int number = 1; number <= 10; ++number) host.Write(Store(number, cut));
    EXPECT_TRUE(Soon([&] { return Has(Content(memories), "memory 1 register 56 " + std::to_string(cut)); }));
    for (int i = 0; i < 1000 && !begins(); ++i) std::this_thread::yield();
    program->Signal(SIGKILL);
    EXPECT_EQ(program->AwaitEnd(), -2);
    EXPECT_EQ(host.Waiting(), 0);
  }
  ASSERT_TRUE(Start({"--memories", memories}));
}

TEST_F(UnitProgram, DamagedMemoriesArePutAsideAndThoseThatCannotBeWrittenToldOf) {
  support::Put(memories, "memory 1 function 0\n");
  Launch({"--memories", memories, "--store-time", "0"});
  EXPECT_EQ(program->Await("veltrana-unit: "), "veltrana-unit: " + memories +
                                                   ": is damaged, now put aside as " + memories +
                                                   ".damaged; all memories are empty");
  ASSERT_TRUE(Begins());
  const HostLine host(link, 115200);
  EXPECT_EQ(host.Ask(Store(2, 0), 3), "!OK");
  EXPECT_TRUE(Content(memories).starts_with("memory 2 function 0\n"));
  EXPECT_EQ(Content(memories + ".damaged"), "memory 1 function 0\n");

  fs::remove(memories);
  fs::create_directory(memories);
  EXPECT_EQ(host.Ask(Store(3, 0), 3), "!OK");
  EXPECT_EQ(program->Await("veltrana-unit: "),
            "veltrana-unit: " + memories + ": can't be written: Is a directory");
}

TEST_F(UnitProgram, DamagedImagesLeaveItInItsBootRom) {
  const std::string images = (directory / "images").string();
  support::Put(images, "section 1 0\n");
  Launch({"--images", images, "--erase-time", "0", "--baud", "9600"});
  EXPECT_EQ(program->Await("veltrana-unit: "), "veltrana-unit: " + images +
                                                   ": is damaged, now put aside as " + images +
                                                   ".damaged; both sections are erased");
  ASSERT_TRUE(Begins());
  const HostLine host(link, 115200);
  EXPECT_EQ(host.Ask(CommandFrame(130), 1, ShortWait), "");
  EXPECT_EQ(host.Ask(unit::BytesOf("?TERMIN"), 9), "VELTRANUM");
  EXPECT_EQ(host.Ask(unit::BytesOf("?M"), 3), "MDL");
  EXPECT_EQ(host.Ask(unit::BytesOf("YY"), 5), "OK\r\n\x15");
  EXPECT_TRUE(Content(images).starts_with("section 1 0\nsection 2 0\nchecksum "));
}

TEST_F(UnitProgram, LearnsWhatIsInItsFilesAtEverySignal) {
  const fs::path file = directory / "learned";
  ASSERT_TRUE(Start({"--coefficients", "4:" + file.string()}));
  const HostLine host(link, 115200);
  for (const char* content : {"8388607 -8388608\n-1", "8388608", "1 2x", "0.5", "99999999999", "1"}) {
    std::ofstream(file) << content;
    program->Signal(SIGUSR2);
    EXPECT_EQ(host.Ask(CommandFrame(1, 192), 3), "!OK");  // it has seen the signal
    const std::string reply = host.Ask(CommandFrame(91, 0x4000), 815);
    const bool last = std::string_view(content) == "1";
    EXPECT_EQ(reply.substr(45, 5), last ? std::string("\0\0\1\0\0", 5) : std::string("\x7F\xFF\xFF\x80\0", 5))
        << content;
  }
}

TEST_F(UnitProgram, EndsCleanlyOnASignal) {
  for (const int number : {SIGTERM, SIGINT}) {
    ASSERT_TRUE(Start());
    program->Signal(SIGUSR1);  // no file is named, so it means nothing
    EXPECT_EQ(HostLine(link, 115200).Ask(CommandFrame(1, 192), 3), "!OK");
    program->Signal(number);
    EXPECT_EQ(program->AwaitEnd(), 0);
    EXPECT_FALSE(fs::is_symlink(link));
  }
}

TEST_F(UnitProgram, TakesOverALinkButNothingElse) {
  fs::create_symlink(directory / "gone", link);
  ASSERT_TRUE(Start());
  EXPECT_EQ(HostLine(link, 115200).Ask(CommandFrame(1, 192), 3), "!OK");

  // The link is somebody else's by now, so it stays.
  fs::remove(link);
  fs::create_symlink(directory / "other", link);
  program->Signal(SIGTERM);
  EXPECT_EQ(program->AwaitEnd(), 0);
  EXPECT_TRUE(fs::is_symlink(link));

  fs::remove(link);
  std::ofstream(link) << "kept";
  EXPECT_EQ(Exit("--link " + link.string()), 1);
  EXPECT_EQ(Content(link), "kept");
  EXPECT_EQ(program->Await(""),
            "veltrana-unit: " + link.string() + ": is there already and is no symbolic link");
}

TEST_F(UnitProgram, TellsWhatIsWrongAndHowItIsUsed) {
  EXPECT_EQ(Exit("--link " + link.string() + " --lose 2"), 2);
  EXPECT_EQ(program->Await(""), "veltrana-unit: --lose needs a number from 0 to 1, not \"2\"");
  EXPECT_EQ(program->Await("", 100), "");
  EXPECT_EQ(Exit("--help"), 0);
  EXPECT_NE(program->Await("usage: veltrana-unit --link PATH"), "");
  EXPECT_EQ(Exit("--link " + (directory / "none" / "line").string()), 1);
}

}  // namespace
}  // namespace unit_test
