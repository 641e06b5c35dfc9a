// A finished file beside the recording that it came of.
#include <array>

#include <gtest/gtest.h>

#include "NoisyWave.h"
#include "TempFolder.h"
#include "unit/sound/CleanedSound.h"

namespace unit::sound {
namespace {

using Block = std::array<float, 256>;

TEST(CleanedSounds, StayInStepWhereverTheRecordingGoes) {
  const support::TempFolder folder;
  const std::string path = folder.Path() + "/a.wav";
  support::WriteNoisyWave(path, 3);
  constexpr int rate = 12000;
  constexpr double begins = 0.5;  // the same samples, half a second later
  auto recording = std::get<SoundReader>(SoundReader::Open(path, rate, false));
  auto cleaned = std::get<CleanedSound>(CleanedSound::Open(path, begins, rate));
  Block left, right, heardLeft, heardRight;
  const auto expectStep = [&] {
    cleaned.Read(recording.Position() + begins, heardLeft, heardRight);
    recording.Read(left, right);
    EXPECT_TRUE(heardLeft == left && heardRight == right) << recording.Position();
  };
  for (const double second : {0.0, 1.25, 0.3, 2.99}) {
    ASSERT_TRUE(recording.Seek(second));
    for (int block = 0; block < 5; ++block) expectStep();
  }
  cleaned.Read(0.1, heardLeft, heardRight);
  EXPECT_TRUE(heardLeft == Block{} && heardRight == Block{});
  EXPECT_TRUE(std::holds_alternative<std::string>(CleanedSound::Open(path + "x", 0, rate)));
}

}  // namespace
}  // namespace unit::sound
