// Cleaning when something goes wrong: a sentence, the old file or none, and no half of one.
#include <chrono>
#include <thread>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "CleanedFile.h"
#include "Program.h"
#include "unit/MemoryFile.h"

namespace sound_test::clean_trouble {
namespace {

using namespace support;
using testing::HasSubstr;
using unit::clean::Cleaning;
using unit::clean::CleaningState;
using unit::clean::CleaningWish;

constexpr int Rate = 44100, Pcm16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

class CleanTrouble : public testing::Test {
 protected:
  CleanTrouble() {
    unit::Memories kept;
    kept[0] = unit::Memory{};
    Put(memories, MemoryFileText(kept));
  }

  void WriteRecording(double seconds) const {
    WriteSound(in, StereoNoise(Rate, static_cast<std::size_t>(seconds * Rate), Pcm16));
  }

  // What the program says, and the code with which it ends.
  std::pair<int, std::string> Run(const std::string& arguments, const std::string& before = "") const {
    const std::string said = folder.Path() + "/said";
    Program program("/bin/sh", {"-c", before + UNIT_PROGRAM + " --clean --memories " + memories +
                                          " --memory 1 " + arguments + " >" + said + " 2>&1"});
    const int code = program.AwaitEnd(20'000);
    return {code, Content(said)};
  }
  std::string InTo(const std::string& to) const { return "--in " + in + " --out " + to; }
  bool IsThere(const std::string& path) const { return std::filesystem::exists(path); }
  CleaningWish Wish() const {
    CleaningWish wish;
    wish.in = in;
    wish.out = out;
    return wish;
  }

  TempFolder folder;
  std::string in = folder.Path() + "/in.wav", out = folder.Path() + "/out.wav",
              memories = folder.Path() + "/memories", part = out + ".part";
};

TEST_F(CleanTrouble, IsToldInASentenceAndLeavesTheOldFile) {
  WriteRecording(1);
  const std::string six = folder.Path() + "/six.wav", cut = folder.Path() + "/cut.wav", text = memories,
                    none = folder.Path() + "/none.wav", nan = folder.Path() + "/nan.wav",
                    pipe = folder.Path() + "/pipe.wav", link = folder.Path() + "/link.wav";
  WriteSound(six, {Rate, 6, Pcm16, std::vector<double>(600)});
  std::filesystem::copy_file(in, cut);
  std::filesystem::resize_file(cut, 100'000);
  SoundContent bad{Rate, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT, std::vector<double>(Rate)};
  bad.samples[4410] = NAN;
  WriteSound(nan, bad);
  mkfifo(pipe.c_str(), 0600);
  std::filesystem::create_symlink(in, link);
  Put(out, "old");
  struct Case {
    std::string arguments, told;
    int code = 1;
  };
  for (const auto& [arguments, told, code] :
       {Case{"--in " + six + " --out " + out, "six.wav: has 6 channels: one or two can be cleaned"},
        {"--in " + none + " --out " + out, "none.wav: can't be read: No such file"},
        {"--in " + text + " --out " + out, "no sound that can be read"},
        {"--in " + pipe + " --out " + out, "pipe.wav: is no file"},
        {"--in " + folder.Path() + " --out " + out, "is no file"},
        {"--in " + cut + " --out " + out,
         "is cut off: 99956 of 176400 bytes of its sound are there (--lenient"},
        {"--in " + nan + " --out " + out, "1 sample is no number (NaN), from second 0.1 on (--lenient"},
        {InTo(in), "in.wav: is the recording itself"},
        {InTo(link), "link.wav: is the recording itself"},
        {InTo(out + ".txt"), "a name that ends in .wav, .flac,"},
        {InTo(folder.Path() + "/no/out.wav"), "can't be written: No such file or directory"},
        {InTo("/dev/full"), "/dev/full: can't be written: No space left on device"},
        {InTo(out) + " --from 2", "ends at 1.000 s, before the part begins"},
        {InTo(out) + " --from 2 --to 1", "--to must be", 2},
        {"--in " + in, "--clean needs --in FILE and --out FILE", 2}}) {
    const auto [ended, said] = Run(arguments);
    EXPECT_EQ(ended, code) << arguments;
    EXPECT_THAT(said, HasSubstr(told)) << arguments;
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
    EXPECT_EQ(Content(out), "old") << arguments;
    EXPECT_FALSE(IsThere(part)) << arguments;
  }
  const auto [code, said] = Run("--lenient --in " + nan + " --out " + out);
  EXPECT_EQ(code, 0);
  EXPECT_THAT(said, HasSubstr("Flaws      " + nan + ": 1 sample is no number"));
  EXPECT_EQ(ReadSound(out).samples.size(), bad.samples.size());
}

// However far it has come.
TEST_F(CleanTrouble, EndsAtOnceWhereverItIsCancelledKilledOrHasNoRoom) {
  WriteRecording(30);
  Put(out, "old");
  for (const double wanted : {0.0, 0.3, 0.6, 0.9}) {
    Cleaning cleaning(Wish());
    cleaning.Start();
    while (cleaning.Progress().done < wanted && !cleaning.Finished()) std::this_thread::yield();
    const auto asked = std::chrono::steady_clock::now();
    cleaning.Cancel();
    cleaning.Wait();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - asked;
    EXPECT_LT(taken.count(), 0.1 * TIME_ALLOWANCE) << wanted;
    EXPECT_EQ(cleaning.State(), CleaningState::Cancelled);
    EXPECT_EQ(cleaning.Report().size(), 0U);
    EXPECT_FALSE(IsThere(part));
    // In blocks of 512 bytes.
    const auto blocks = static_cast<int>(wanted * 30 * Rate * 4 / 512);
    const auto [code, said] = Run(InTo(out), "trap '' XFSZ; ulimit -f " + std::to_string(blocks) + "; exec ");
    EXPECT_EQ(code, 1);
    EXPECT_THAT(said, HasSubstr(blocks > 0 ? "out.wav: can't be written: File too large" : ""));
    EXPECT_FALSE(IsThere(part));
    EXPECT_EQ(Content(out), "old");
  }
  for (const int signal : {SIGKILL, SIGTERM, SIGINT}) {
    Program program(UNIT_PROGRAM,
                    {"--clean", "--memories", memories, "--memory", "1", "--in", in, "--out", out});
    while (!IsThere(part)) std::this_thread::yield();
    program.Signal(signal);
    EXPECT_EQ(program.AwaitEnd(), signal == SIGKILL ? -2 : 1);
    EXPECT_EQ(std::filesystem::remove(part), signal == SIGKILL);
    EXPECT_EQ(Content(out), "old");
  }
  Put(part, "left by one that was killed");
  EXPECT_EQ(Run(InTo(out)).first, 0);
  EXPECT_FALSE(IsThere(part));
  EXPECT_EQ(ReadSound(out).samples.size(), ReadSound(in).samples.size());
}

TEST_F(CleanTrouble, SaysThatTheRecordingWasCutOffWhileItWasRead) {
  WriteRecording(30);
  Cleaning cleaning(Wish());
  cleaning.Start();
  while (cleaning.Progress().done < 0.1) std::this_thread::yield();
  std::filesystem::resize_file(in, 3'000'000);
  cleaning.Wait();
  EXPECT_THAT(cleaning.Error(), HasSubstr("in.wav: is cut off: 749989 of 1323000 samples are there"));
  EXPECT_TRUE(cleaning.Flawed());
  EXPECT_FALSE(IsThere(out) || IsThere(part));

  // One that is taken away is still read.
  WriteRecording(5);
  Cleaning other(Wish());
  other.Start();
  while (other.Progress().done == 0) std::this_thread::yield();
  std::filesystem::remove(in);
  other.Wait();
  EXPECT_EQ(other.State(), CleaningState::Done) << other.Error();
}

// On a unit that is at work, the same samples come out, and its end ends a cleaning.
TEST_F(CleanTrouble, IsTheSameBesideTheLine) {
  WriteRecording(30);
  ASSERT_EQ(Run(InTo(out)).first, 0);
  const std::string line = folder.Path() + "/line", other = folder.Path() + "/o \"ther.wav";
  Program unit(UNIT_PROGRAM, {"--link", line, "--memories", memories, "--memory", "1"});
  const auto answer = [&](const std::string& command) {
    unit.Say(command);
    return unit.Await("{", 30'000);
  };
  EXPECT_NE(unit.Await("veltrana-unit: "), "");
  EXPECT_THAT(answer("clean " + in), HasSubstr("needs a recording and a file"));
  EXPECT_THAT(answer("cancel"), HasSubstr("nothing is being cleaned"));
  const std::string command = "clean " + in + " \"" + folder.Path() + "/o \\\"ther.wav\"";
  EXPECT_EQ(answer(command), R"({"ok":true})");
  EXPECT_THAT(answer("clean a b"), HasSubstr("already"));
  EXPECT_THAT(answer("state"), HasSubstr(R"("state":"running")"));
  EXPECT_THAT(answer("wait"),
              testing::AllOf(HasSubstr(R"("state":"done")"), HasSubstr("30.000, 1323000 samples")));
  EXPECT_EQ(Content(other), Content(out));
  std::filesystem::remove(other);
  answer(command);
  EXPECT_THAT(answer("cancel"), HasSubstr(R"("state":"cancelled")"));
  answer(command);
  while (!IsThere(other + ".part")) std::this_thread::yield();
  unit.Signal(SIGTERM);
  EXPECT_EQ(unit.AwaitEnd(), 0);
  EXPECT_FALSE(IsThere(other) || IsThere(other + ".part"));
}

}  // namespace
}  // namespace sound_test::clean_trouble
