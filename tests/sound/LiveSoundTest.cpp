// What goes in and comes out while sources and outputs change, in the sound's own time.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "TempFolder.h"
#include "model/Kinds.h"
#include "unit/sound/LiveSound.h"

namespace sound_test::live_sound {
namespace {

using namespace unit::sound;
using measure::Signal;

constexpr int Rate = 12000;  // the unit's, as long as nobody tells it another

struct Live : testing::Test {
  support::TempFolder folder;
  std::string In(const std::string& name) const { return folder.Path() + '/' + name; }

  // Samples that 24 bits can hold, the lowest and the highest among them.
  Signal Save(const std::string& name, std::size_t frames) const {
    std::mt19937 random(7);
    Signal left(frames), right(frames);
    for (std::size_t i = 0; i < frames; ++i) {
      left[i] = static_cast<float>(static_cast<int>(random() >> 8U) - 8388608) / 8388608.0F;
      right[i] = -left[i] / 2;
    }
    left[5] = -1.0F;
    left[6] = 8388607.0F / 8388608.0F;
    auto writer = std::get<SoundWriter>(SoundWriter::Create(In(name), Rate));
    writer.Write(left, right);
    EXPECT_EQ(writer.Close(), "");
    return left;
  }
  Signal Left(const std::string& name, std::size_t most) const {
    auto reader = std::get<SoundReader>(SoundReader::Open(In(name), Rate, false));
    Signal left(most), right(most);
    left.resize(reader.Read(left, right));
    return left;
  }
  static void Run(LiveSound& live, int blocks) {
    for (int i = 0; i < blocks; ++i) live.RunBlock();
  }
};

TEST_F(Live, NothingIsChangedWhereNothingIsProcessed) {
  for (const char* name : {"in.wav", "in.flac"}) {
    const Signal sound = Save(name, 40 * BlockFrames);
    auto live = std::get<0>(LiveSound::Open({}));
    ASSERT_EQ(live->SetSource({.kind = SourceKind::File, .name = In(name)}), "");
    ASSERT_EQ(live->SetSink(SinkKind::File, In("out.flac")), "");
    live->comparison.SetBypass(true);  // concerns no file
    Run(*live, 2);
    ASSERT_EQ(live->Source().SetPlaying(true), "");
    Run(*live, 30);
    ASSERT_EQ(live->Source().SetPlaying(false), "");
    Run(*live, 1);
    ASSERT_EQ(live->Source().SetPlaying(true), "");
    Run(*live, 20);
    EXPECT_FALSE(live->Source().Playing());
    ASSERT_EQ(live->SetSink(SinkKind::Nowhere, ""), "");
    Signal wanted(2 * BlockFrames);
    wanted.insert(wanted.end(), sound.begin(), sound.begin() + 30 * BlockFrames);
    wanted.insert(wanted.end(), BlockFrames, 0.0F);
    wanted.insert(wanted.end(), sound.begin() + 30 * BlockFrames, sound.end());
    wanted.resize(53 * BlockFrames);
    EXPECT_EQ(Left("out.flac", 100 * BlockFrames), wanted);
  }
}

// With a filter that learns and a noise reducer that listens: what they have found stays.
TEST_F(Live, AChangeOfSourceOrOutputDisturbsNoFilter) {
  support::SoundRun run;
  run.Put(1, vc::FilterKind::OneChAdaptive);
  run.Edit("broadbandActive", "1", 1);
  run.Settle();
  const auto heard = [&](bool changes) {
    auto live = std::get<0>(LiveSound::Open({}));
    live->engine.Apply(run.unit.Now().Held());
    EXPECT_EQ(live->SetSink(SinkKind::File, In("one.wav")), "");
    Run(*live, 200);
    const Coefficients learned = live->engine.Learned(1);
    EXPECT_FALSE(std::ranges::all_of(learned, [](std::int32_t each) { return each == 0; }));
    if (changes) {
      EXPECT_EQ(live->SetSink(SinkKind::File, In("two.wav")), "");
      EXPECT_NE(live->SetSource({.kind = SourceKind::File, .name = In("none.wav")}), "");
      EXPECT_NE(live->SetSink(SinkKind::File, In("two.mp3")), "");
      EXPECT_NE(live->SetSink(SinkKind::Card, "no such card"), "");
      EXPECT_EQ(live->engine.Learned(1), learned);
    }
    Run(*live, 200);
    live->Close();
    Signal sound = Left("one.wav", 500 * BlockFrames);
    if (!changes) return sound;
    const Signal rest = Left("two.wav", 500 * BlockFrames);
    EXPECT_EQ(rest.size(), 200 * BlockFrames);
    sound.insert(sound.end(), rest.begin(), rest.end());
    return sound;
  };
  EXPECT_EQ(heard(true), heard(false));
}

}  // namespace
}  // namespace sound_test::live_sound
