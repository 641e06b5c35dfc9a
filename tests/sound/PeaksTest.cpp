// The waveform of a recording, as far as it was read.
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "TempFolder.h"
#include "unit/sound/Peaks.h"
#include "unit/sound/SoundWriter.h"

namespace sound_test::peaks {
namespace {

using unit::sound::Peaks;

void AwaitLoaded(const Peaks& peaks) {
  for (int i = 0; i < 5000 && peaks.Loaded() < 1; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  ASSERT_EQ(peaks.Loaded(), 1.0);
}

struct Waveform : testing::Test {
  support::TempFolder folder;
  std::string path = folder.Path() + "/sound.wav";

  void Save(const std::vector<float>& left, const std::vector<float>& right) const {
    auto writer = std::get<unit::sound::SoundWriter>(unit::sound::SoundWriter::Create(path, 8000));
    writer.Write(left, right);
    ASSERT_EQ(writer.Close(), "");
  }
};

TEST_F(Waveform, HasTheExtentsOfBothSidesWhateverItsResolution) {
  std::vector<float> left(80'000, 0.1F), right(80'000, 0.2F);
  left[20'001] = -0.5F;
  right[79'999] = 0.75F;
  Save(left, right);
  const Peaks peaks(path);
  AwaitLoaded(peaks);
  for (const std::size_t parts : {1U, 4U, 100U, 4096U}) {
    const Peaks::Extents extents = peaks.In(parts);
    ASSERT_EQ(extents.low.size(), parts);
    for (std::size_t i = 0; i < parts; ++i) {
      EXPECT_EQ(extents.low[i], i == parts / 4 ? -50000 : 10000) << parts << ' ' << i;
      EXPECT_EQ(extents.high[i], i == parts - 1 ? 75000 : 20000) << parts << ' ' << i;
    }
  }
}

TEST_F(Waveform, OfAShortFileHasNoHoles) {
  Save(std::vector<float>(10, 0.5F), std::vector<float>(10, 0.25F));
  const Peaks peaks(path);
  AwaitLoaded(peaks);
  const Peaks::Extents extents = peaks.In(1000);
  EXPECT_GT(extents.low.size(), 899U);
  EXPECT_EQ(extents.low, std::vector<std::int32_t>(extents.low.size(), 25000));
  EXPECT_EQ(extents.high, std::vector<std::int32_t>(extents.high.size(), 50000));
}

TEST_F(Waveform, OfWhatIsNoSoundIsEmpty) {
  const Peaks peaks(folder.Path());
  AwaitLoaded(peaks);
  EXPECT_TRUE(peaks.In(10).low.empty());
}

}  // namespace
}  // namespace sound_test::peaks
