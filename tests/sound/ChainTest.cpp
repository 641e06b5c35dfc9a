// The unit's sound as a whole: levels, routing and what the host sees of it.
#include <algorithm>
#include <cmath>
#include <memory>

#include <gmock/gmock.h>

#include "SoundRun.h"
#include "TempFolder.h"
#include "model/Kinds.h"
#include "unit/sound/LiveSound.h"

namespace sound_test::chain {
namespace {

using namespace measure;
using support::SoundRun;
using vc::FilterKind;

constexpr double HalfScale = 20675 / 2.0;

TEST(Chain, KeepsTheChannelsApartUntilTheyAreSwapped) {
  SoundRun run(vc::ConfigMode::StereoIndependent);
  run.Put(1, FilterKind::Lowpass);
  run.Edit("lpfCutoff", "1000", 1);
  run.Edit("lpfTransSlope", "300", 1);
  run.Edit("lpfAtten", "60", 1);
  run.Take();
  const Signal tone = Sine(3000, run.Rate(), 12000, 0.5);
  const auto level = [&](const Signal& sound) {
    return AmplitudeAt(std::span(sound).last(6000), 3000, run.Rate());
  };
  SoundRun::Stereo out = run.Through({tone, tone});
  EXPECT_LT(Decibels(level(out[0]) / 0.5), -58);
  EXPECT_NEAR(level(out[1]), 0.5, 0.001);
  run.Edit("channelSwap", "1");
  run.Take();
  out = run.Through({tone, tone});
  EXPECT_NEAR(level(out[0]), 0.5, 0.001);
  EXPECT_LT(Decibels(level(out[1]) / 0.5), -58);

  run.Edit("procEnabled", "0");  // unprocessed, but swapped
  run.Edit("levelControl", "180", 1);
  run.Take();
  out = run.Through({tone, Signal(tone.size())});
  EXPECT_NEAR(Decibels(level(out[1]) / 0.5), -6, 0.01);
  EXPECT_EQ(out[0], Signal(tone.size()));
}

TEST(Chain, MeasuresFromTheInputToTheOutput) {
  SoundRun run;
  run.Edit("agcEnabled", "1");
  run.Edit("agcGain", "1");  // 10 dB
  run.Edit("limiterEnabled", "1");
  run.Edit("limiterThreshold", "1");  // -9 dB
  run.Edit("ihpfEnabled", "1");
  run.Edit("ihpfCutoff", "500");
  run.Take();
  const auto size = static_cast<std::size_t>(4 * run.Rate());
  run.Left(Sine(1500, run.Rate(), size, 0.1));
  const unit::Status faint = run.engine.Readings();
  EXPECT_NEAR(faint.levels[unit::InLeft], 2067.5, 10);
  EXPECT_NEAR(Decibels(faint.levels[unit::MidLeft] / 2067.5), 10, 0.5);
  EXPECT_NEAR(faint.levels[unit::OutLeft], faint.levels[unit::MidLeft], 30);
  run.Left(Sine(1500, run.Rate(), size, 0.5));
  EXPECT_NEAR(run.engine.Readings().levels[unit::MidLeft], HalfScale, 150)
      << "loud sounds pass the gain control";
  EXPECT_NEAR(Decibels(run.engine.Readings().levels[unit::OutLeft] / 20675.0), -9, 0.1);
  run.Left(Sine(100, run.Rate(), size, 0.5));
  EXPECT_NEAR(run.engine.Readings().levels[unit::InLeft], HalfScale, 50);
  EXPECT_LT(run.engine.Readings().levels[unit::MidLeft], 400);
  run.Edit("ihpfEnabled", "0");
  run.Edit("ohpfEnabled", "1");
  run.Edit("ohpfCutoff", "500");
  run.Take();
  run.Left(Sine(100, run.Rate(), size, 0.5));
  EXPECT_NEAR(run.engine.Readings().levels[unit::MidLeft], HalfScale, 150);
  EXPECT_LT(run.engine.Readings().levels[unit::OutLeft], 400);
}

TEST(Chain, ACompressorReportsWhatItDoes) {
  SoundRun run;
  run.Put(1, FilterKind::Compressor);
  run.Edit("lceCompThresh", "-40", 1);
  run.Edit("lceLimitThresh", "-10", 1);
  run.Edit("lceCompRatio", "2", 1);
  run.Edit("lceExpRatio", "2", 1);
  run.Take();
  // Up to the threshold it expands by 2, from there on it compresses by 2, up to the limit.
  for (const auto& [in, out] : {std::pair{-50.0, -45.0},
                                {-40.0, -25.0},
                                {-30.0, -20.0},
                                {-20.0, -15.0},
                                {-10.0, -10.0},
                                {-3.0, -10.0}}) {
    for (const double hertz : {120.0, 700.0, 4000.0}) {  // of the last no sample stands on a top
      const Signal sound =
          run.Left(Sine(hertz, run.Rate(), static_cast<std::size_t>(3 * run.Rate()), Linear(in)));
      EXPECT_NEAR(Decibels(AmplitudeAt(std::span(sound).last(6000), hertz, run.Rate())), out, 0.5)
          << in << " at " << hertz;
      const unsigned word = run.engine.Readings().stageStatus[0];
      EXPECT_NEAR(Decibels(std::exp2((word & 255U) / 8.0) / 32768), in, 0.5) << hertz;
      EXPECT_NEAR(Decibels(std::exp2(static_cast<std::int8_t>(word >> 8U) / 8.0)), out - in, 0.8);
    }
  }
}

TEST(Chain, SurvivesAChangeOfBandwidthInMidSound) {
  SoundRun run(vc::ConfigMode::StereoLinked);
  run.Put(1, FilterKind::OneChAdaptive);
  run.Put(2, FilterKind::Comb);
  run.Edit("broadbandActive", "1", 1);
  unit::sound::Scene scene(run.Rate(), 1, {});
  for (const char* bandwidth : {"5", "0", "3", "4", "1"}) {
    run.Edit("bandwidthIndex", bandwidth);
    run.Take();
    EXPECT_EQ(run.Rate(), run.record.sampleRate);
    scene.SetRate(run.Rate());
    SoundRun::Stereo sound{Signal(40000), Signal(40000)};
    scene.Process(sound[0], sound[1]);
    sound = run.Through(sound);
    for (const Signal& side : sound) {
      EXPECT_TRUE(std::ranges::all_of(side, [](float x) { return std::abs(x) <= 1; }));
      EXPECT_TRUE(std::ranges::any_of(side, [](float x) { return std::abs(x) > 0.01F; }));
    }
  }
}

TEST(Chain, GivesTheSameForAnyCuttingOfTheSound) {
  SoundRun run(vc::ConfigMode::Mono, "5");
  run.Edit("numFilters", "6");
  for (const auto& [stage, kind] : {std::pair{1, FilterKind::OneChAdaptive},
                                    {2, FilterKind::RefCanceller},
                                    {3, FilterKind::Comb},
                                    {4, FilterKind::TriParametric},
                                    {5, FilterKind::Compressor},
                                    {6, FilterKind::HiResGraphic}}) {
    run.Put(stage, kind);
    run.Edit("filterAdapt", "1", stage);
  }
  for (const char* field : {"adaptEnabled", "ihpfEnabled", "ohpfEnabled", "agcEnabled", "limiterEnabled"}) {
    run.Edit(field, "1");
  }
  run.Edit("broadbandActive", "1", 1);
  run.Settle();
  std::array<unit::sound::Engine, 2> engines;
  std::array<SoundRun::Stereo, 2> outs;
  for (const std::size_t i : {0U, 1U}) {
    engines[i].Apply(run.unit.Now().Held());
    SoundRun::Stereo& sound = outs[i] = {Noise(40000, 0.2F, 1), Noise(40000, 0.2F, 2)};
    for (std::size_t at = 0, size = 0; at < sound[0].size(); at += size) {
      size = i == 0 ? sound[0].size() : std::min(1 + (at * 7 + size * 13) % 600, sound[0].size() - at);
      const std::span left = std::span(sound[0]).subspan(at, size);
      const std::span right = std::span(sound[1]).subspan(at, size);
      engines[i].Process(left, right, left, right);
    }
    EXPECT_GT(std::ranges::max(sound[0]), 0.01F);
  }
  EXPECT_LT(GreatestDifference(outs[0][0], outs[1][0]), 1e-4);
  EXPECT_EQ(engines[0].Readings().levels, engines[1].Readings().levels);
}

// What a host in its senses never sends: it passes the sound.
TEST(Chain, StagesThatMakeNoSensePassTheSound) {
  SoundRun run;
  run.Edit("eqActive", "1", 1);
  run.Put(1, FilterKind::Lowpass);
  run.Take();
  unit::Setting setting = run.unit.Now().Held();
  setting.programs.stages[0].block.reset();
  setting.programs.stages[8].stageClass = 0;
  setting.registers[88] = 0xFFFF;
  run.engine.Apply(setting);
  const Signal tone = Sine(3000, run.Rate(), 12000, 0.25);
  EXPECT_LT(GreatestDifference(run.Left(tone), tone), 1e-6);
  EXPECT_EQ(run.engine.Readings().unitMode & 0xFF, 0);
}

// The session on a unit that hears the built-in scene, in virtual time.
struct LiveRun : SoundRun {
  std::unique_ptr<unit::sound::LiveSound> live = std::get<0>(unit::sound::LiveSound::Open({}));
  LiveRun() {
    live->Attach(unit.Now());
    Settle();
  }
};

TEST(LiveSound, ShowsItsLevelsAndSpectraToTheHost) {
  LiveRun run;
  run.test.loop.RunFor(3000);
  EXPECT_GT(run.session.device.status.levelInLeft, 1000);
  EXPECT_GT(run.session.device.status.levelOutLeft, 1000);
  EXPECT_GT(run.session.master.chain.inputs[0].bar.Value(), 20);

  run.Edit("averagerMode", "1");
  run.Edit("specAverages", "5");
  run.Edit("yellowSignal", "0");
  run.Edit("blueSignal", "1");
  run.Edit("specDisplayMode", "2");
  run.Click("btnSpecAnalyzer");
  run.test.loop.RunFor(8000);
  // The scene's steady tone stands out on the left; the right has the reference noise alone.
  const auto line = static_cast<std::size_t>(std::lround(unit::sound::Scene::ToneHz * 1024 / run.Rate()) - 1);
  const vc::RawTrace& left = run.session.spectrumReader.RawTrace1;
  const vc::RawTrace& right = run.session.spectrumReader.RawTrace2;
  EXPECT_GT(left[line], left[line + 12] + 10);
  EXPECT_LT(right[line], right[line + 12] + 10);
  EXPECT_GT(right[100], 20);
}

TEST(LiveSound, AnAdaptiveFilterLearnsAndIsReadBack) {
  LiveRun run;
  run.Put(1, FilterKind::OneChAdaptive);
  run.Edit("ch1Taps", "1024", 1);
  run.Edit("ch1Mu", "40", 1);
  run.Edit("ch1AutoNormalize", "1", 1);
  run.Edit("filterAdapt", "1", 1);
  run.Edit("adaptEnabled", "1");
  run.test.loop.RunFor(5000);
  EXPECT_EQ(run.session.device.status.unitMode & 0x80, 0x80) << "stage 1 adapts";
  vc::CoefSpan::value_type none{};
  std::array<std::int32_t, vc::CoefCapacity> read{};
  ASSERT_TRUE(run.session.coefReader.ReadFilterCoefficients(1, read));
  EXPECT_NE(std::ranges::count(read, none), static_cast<std::ptrdiff_t>(read.size()));
  run.Edit("filterAdapt", "0", 1);
  run.Settle();
  ASSERT_TRUE(run.session.coefReader.ReadFilterCoefficients(1, read));
  const unit::sound::Coefficients learned = run.live->engine.Learned(1);
  ASSERT_EQ(learned.size(), 1024U);
  EXPECT_TRUE(std::ranges::equal(learned, std::span(read).first(learned.size())));

  // A memory has them, too: another unit that starts with it goes on where this one was.
  run.session.panels.OpenMemory(3);
  run.test.desk.answers = {vc::Answer::Yes};
  run.Click("btnOK");
  ASSERT_TRUE(run.unit.Now().memories[2]);
  unit::Unit another({});
  another.memories = run.unit.Now().memories;
  auto sound = std::get<0>(unit::sound::LiveSound::Open({}));
  sound->Attach(another);
  EXPECT_FALSE(another.Recall(4));
  ASSERT_TRUE(another.Recall(3));
  EXPECT_EQ(sound->engine.Learned(1), learned);
  EXPECT_EQ(SettingText(another.Present()), SettingText(run.unit.Now().Present()));

  run.Click("btnFilterClear(1)");
  run.Settle();
  EXPECT_EQ(run.live->engine.Learned(1), unit::sound::Coefficients(1024));
}

// A later file may have the recording's name, and a flaw may come late: the sound goes on.
TEST(LiveSound, ComplainsOnceAndGoesOn) {
  const support::TempFolder folder;
  const std::string in = folder.Path() + "/out-2.wav";
  auto writer = std::get<unit::sound::SoundWriter>(unit::sound::SoundWriter::Create(in, 12000));
  const Signal tone(120'000, 0.25F);
  writer.Write(tone, tone);
  writer.Close();
  const std::string before = support::Content(in);
  SoundRun run;
  auto live = std::get<0>(unit::sound::LiveSound::Open({.in = in, .out = folder.Path() + "/out.wav"}));
  std::vector<std::string> said;
  live->failed = [&said](const std::string& what) { said.push_back(what); };
  live->Attach(run.unit.Now());
  run.test.loop.RunFor(1000);
  EXPECT_TRUE(live->Whole());
  run.Edit("bandwidthIndex", "5");
  run.test.loop.RunFor(1000);
  EXPECT_FALSE(live->Whole());
  EXPECT_EQ(said, std::vector{in + ": is the file that is heard, so it is not written"});
  EXPECT_EQ(support::Content(in), before);
  EXPECT_TRUE(std::filesystem::exists(folder.Path() + "/out.wav"));
  std::filesystem::resize_file(in, 400'000);
  run.test.loop.RunFor(10'000);
  live->Close();
  ASSERT_EQ(said.size(), 2U);
  EXPECT_EQ(said.back().find(in + ": is cut off: "), 0U) << said.back();
}

TEST(LiveSound, WritesAFileForEachRateAndKeepsToTheTime) {
  const support::TempFolder folder;
  SoundRun run;
  auto live = std::get<0>(unit::sound::LiveSound::Open({.in = "", .out = folder.Path() + "/out.wav"}));
  live->Attach(run.unit.Now());
  run.test.loop.RunFor(3000);
  run.Edit("bandwidthIndex", "5");
  run.test.loop.RunFor(3000);
  live->Close();
  for (const auto& [name, rate] : {std::pair{"/out.wav", 12000}, {"/out-2.wav", 36000}}) {
    auto reader =
        std::get<unit::sound::SoundReader>(unit::sound::SoundReader::Open(folder.Path() + name, rate, false));
    Signal left(static_cast<std::size_t>(4 * rate)), right(left.size());
    EXPECT_NEAR(static_cast<double>(reader.Read(left, right)) / rate, 3, 0.5) << name;
  }
  // A machine that slept does not make up for it.
  const double before = live->Seconds();
  live->RunUntil(live->NextBlock() + 3'600'000'000);
  EXPECT_NEAR(live->Seconds() - before, 0.5, 0.1);
  EXPECT_TRUE(std::holds_alternative<std::string>(
      unit::sound::LiveSound::Open({.in = "", .out = "/nowhere/out.wav"})));
}

}  // namespace
}  // namespace sound_test::chain
