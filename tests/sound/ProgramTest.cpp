// The simulated unit as a program that processes a recording, as an operator cleans one up.
#include <fstream>

#include <gtest/gtest.h>

#include "NotchMemory.h"
#include "Program.h"
#include "TempFolder.h"
#include "unit/sound/SoundFile.h"
#include "unit/sound/SoundWriter.h"

namespace sound_test::program {
namespace {

using namespace measure;
using unit::sound::SoundReader;
using unit::sound::SoundWriter;

constexpr int FileRate = 44100;
constexpr double Hum = 400, Voice = 1500;  // Hz

class Recording : public testing::Test {
 protected:
  // What the program says, in one line or more, and the code with which it ends.
  std::pair<int, std::string> Run(const std::string& arguments) const {
    const std::string said = (folder.Path() + "/said");
    support::Program program("/bin/sh",
                             {"-c", std::string(UNIT_PROGRAM) + ' ' + arguments + " >" + said + " 2>&1"});
    const int code = program.AwaitEnd();
    return {code, support::Content(said)};
  }

  void WriteRecording() const {
    auto writer = std::get<SoundWriter>(SoundWriter::Create(noisy, FileRate));
    Signal sound = Sine(Hum, FileRate, 2 * FileRate, 0.3);
    const Signal voice = Sine(Voice, FileRate, 2 * FileRate, 0.2);
    for (std::size_t i = 0; i < sound.size(); ++i) sound[i] += voice[i];
    writer.Write(sound, sound);
    EXPECT_EQ(writer.Close(), "");
  }

  // The left channel of the last second of a file, at the unit's rate.
  static Signal LastSecond(const std::string& path, int rate) {
    auto reader = std::get<SoundReader>(SoundReader::Open(path, rate, false));
    Signal left(3 * static_cast<std::size_t>(rate)), right(left.size());
    left.resize(reader.Read(left, right));
    const auto second = static_cast<std::size_t>(rate);
    return {left.end() - static_cast<std::ptrdiff_t>(second + second / 2),
            left.end() - static_cast<std::ptrdiff_t>(second / 2)};
  }

  support::TempFolder folder;
  std::string noisy = folder.Path() + "/noisy.wav", clean = folder.Path() + "/clean.wav",
              memories = folder.Path() + "/memories";
  std::string fast = "--fast --memories " + memories + " --in " + noisy + " --out " + clean;
};

TEST_F(Recording, IsCleanedByTheSettingOfAMemory) {
  WriteRecording();
  support::WriteNotchMemory(memories, std::to_string(static_cast<int>(Hum)));
  const auto [code, said] = Run(fast + " --memory 2");
  ASSERT_EQ(code, 0) << said;
  EXPECT_TRUE(said.starts_with("veltrana-unit: 2")) << said;
  constexpr int rate = 12000;
  const Signal before = LastSecond(noisy, rate), after = LastSecond(clean, rate);
  EXPECT_LT(Decibels(AmplitudeAt(after, Hum, rate) / AmplitudeAt(before, Hum, rate)), -40);
  EXPECT_NEAR(Decibels(AmplitudeAt(after, Voice, rate) / AmplitudeAt(before, Voice, rate)), 0, 0.5);

  // The same again is the same file.
  const std::string first = support::Content(clean);
  EXPECT_EQ(Run(fast + " --memory 2").first, 0);
  EXPECT_EQ(support::Content(clean), first);

  // As much of it as is asked for, and nothing behind that.
  EXPECT_EQ(Run(fast + " --memory 2 --seconds 1").first, 0);
  Signal left(2 * rate), right(left.size());
  const std::size_t heard = std::get<SoundReader>(SoundReader::Open(clean, rate, false)).Read(left, right);
  EXPECT_NEAR(static_cast<double>(heard), rate, rate / 50.0);
}

// By whatever name or link.
TEST_F(Recording, IsNeverWrittenOver) {
  WriteRecording();
  support::WriteNotchMemory(memories, std::to_string(static_cast<int>(Hum)));
  const std::string before = support::Content(noisy), link = folder.Path() + "/link.wav",
                    hard = folder.Path() + "/hard.wav";
  std::filesystem::create_symlink("noisy.wav", link);
  std::filesystem::create_hard_link(noisy, hard);
  for (const std::string& out : {noisy, folder.Path() + "/./noisy.wav", link, hard}) {
    for (const std::string& in : {noisy, link, "/dev/stdin <" + noisy}) {
      const auto [code, said] =
          Run("--fast --memory 2 --memories " + memories + " --out " + out + " --in " + in);
      EXPECT_EQ(code, 1) << in << out;
      EXPECT_EQ(said, "veltrana-unit: " + out + ": is the file that is heard, so it is not written\n");
      EXPECT_EQ(support::Content(noisy), before);
    }
  }
}

// What came out of an earlier run stays until there is something better.
TEST_F(Recording, WithAFlawIsTakenOnlyByTheLenient) {
  support::WriteNotchMemory(memories, std::to_string(static_cast<int>(Hum)));
  WriteRecording();
  std::filesystem::resize_file(noisy, 400'000);
  const std::string told = "veltrana-unit: " + noisy + ": is cut off";
  const std::string words = told + ": 399888 of 529200 bytes of its sound are there";
  support::Put(clean, "old");
  EXPECT_EQ(Run(fast + " --memory 2"), std::pair(1, words + " (--lenient takes it as it is)\n"));
  EXPECT_EQ(support::Content(clean), "old");
  EXPECT_FALSE(std::filesystem::exists(clean + ".part"));
  const auto [code, said] = Run(fast + " --memory 2 --lenient");
  EXPECT_EQ(code, 0);
  EXPECT_TRUE(said.starts_with(words + "\n")) << said;
  EXPECT_EQ(support::Content(clean).substr(0, 4), "RIFF");

  const std::string live = "--link " + folder.Path() + "/line --in " + noisy,
                    heard = folder.Path() + "/heard.flac";
  EXPECT_EQ(Run(live).first, 1);
  WriteRecording();
  support::Program program("/bin/sh", {"-c", std::string("exec ") + UNIT_PROGRAM + " " + live +
                                                 " --loop --out " + heard + " 2>&1"});
  EXPECT_NE(program.Await("veltrana-unit: " + folder.Path() + "/line"), "");
  std::filesystem::resize_file(noisy, 300'000);
  EXPECT_NE(program.Await(told), "");
  EXPECT_TRUE(std::filesystem::exists(heard + ".part"));
  program.Signal(SIGTERM);
  EXPECT_EQ(program.AwaitEnd(), 1);
  EXPECT_FALSE(std::filesystem::exists(heard + ".part"));
  EXPECT_EQ(support::Content(heard).substr(0, 4), "fLaC");
}

TEST_F(Recording, WhatIsMissingIsTold) {
  WriteRecording();
  support::WriteNotchMemory(memories, std::to_string(static_cast<int>(Hum)));
  for (const auto& [arguments, complaint] :
       {std::pair{fast + " --memory 3", memories + ": memory 3 is empty"},
        {"--fast --memory 2 --memories " + memories + " --in " + folder.Path() + "/none.wav --out " + clean,
         "none.wav"},
        {"--fast --memory 2 --memories " + memories + " --in " + memories + " --out " + clean,
         "no sound that can be read"},
        {"--fast --memory 2 --memories " + memories + " --in " + noisy + " --out /dev/full", "/dev/full"},
        {"--fast --memory 2 --memories " + memories + " --in " + noisy + " --out " + clean + ".mp3", ".flac"},
        {"--fast --memory 2 --memories " + memories + " --out " + clean, "--seconds"},
        {"--fast --memories " + memories + " --in " + noisy + " --out " + clean, "--memory"},
        {"--fast --memory 2 --in " + noisy + " --out " + clean, "--memories"},
        {fast + " --memory 11", "1 to 10"}}) {
    const auto [code, said] = Run(arguments);
    EXPECT_NE(code, 0) << arguments;
    EXPECT_NE(said.find(complaint), std::string::npos) << arguments << "\n" << said;
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
  }
}

}  // namespace
}  // namespace sound_test::program
