// Recordings that are cleaned: which samples come out.
#include <algorithm>
#include <cmath>
#include <numeric>

#include <gmock/gmock.h>

#include "CleanedFile.h"
#include "Signals.h"
#include "SoundRun.h"
#include "model/Kinds.h"
#include "unit/clean/SampleCoder.h"

namespace sound_test::clean_file {
namespace {

using namespace measure;
using namespace support;
using testing::HasSubstr;
using unit::clean::CleaningWish;
using unit::clean::Learning;
using vc::FilterKind;

constexpr int UnitRate = 12000;

class CleanFile : public testing::Test {
 protected:
  CleaningWish Wish(const std::string& recording, const std::string& cleaned,
                    const unit::Setting& setting = {}) {
    CleaningWish wish;
    wish.in = folder.Path() + '/' + recording;
    wish.out = folder.Path() + '/' + cleaned;
    wish.setting = setting;
    return wish;
  }

  TempFolder folder;
};

struct Kind {
  const char* name;
  int format;
  const char* told;
};

// What the unit does not process stays as it is, in every depth and in every part.
TEST_F(CleanFile, StaysBitForBitWhereNothingIsProcessed) {
  for (const auto& [name, format, told] :
       {Kind{"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, "WAV, 8 bits"},
        Kind{"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, "WAV, 16 bits"},
        Kind{"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, "WAV, 24 bits"},
        Kind{"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_32, "WAV, 32 bits"},
        Kind{"a.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, "WAV, 32 bits, floating point"},
        Kind{"a.wav", SF_FORMAT_WAV | SF_FORMAT_DOUBLE, "WAV, 64 bits, floating point"},
        Kind{"a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_S8, "FLAC, 8 bits"},
        Kind{"a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, "FLAC, 16 bits"},
        Kind{"a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, "FLAC, 24 bits"},
        Kind{"a.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, "AIFF, 24 bits"},
        Kind{"a.w64", SF_FORMAT_W64 | SF_FORMAT_FLOAT, "W64, 32 bits"},
        Kind{"a.wav", SF_FORMAT_WAV | SF_FORMAT_ULAW, "WAV, 16 bits"}}) {
    WriteSound(folder.Path() + '/' + name, StereoNoise(UnitRate, 20000, format, 0.9F));
    CleaningWish wish = Wish(name, std::string("clean-") + name);
    EXPECT_THAT(Cleaned(wish), testing::AllOf(HasSubstr(told), HasSubstr("not changed")));
    const SoundContent before = ReadSound(wish.in), after = ReadSound(wish.out);
    EXPECT_EQ(after.samples, before.samples) << told;
    EXPECT_EQ(std::pair(after.rate, after.channels), std::pair(UnitRate, 2));
    wish.from = 1;
    wish.to = 1.25;
    Cleaned(wish);
    EXPECT_EQ(ReadSound(wish.out).samples,
              std::vector(before.samples.begin() + 24000, before.samples.begin() + 30000));
  }
}

// At any rate, and with another delay on either side.
TEST_F(CleanFile, LiesUponTheRecordingSampleBySample) {
  SoundRun run(vc::ConfigMode::StereoIndependent);
  run.Put(1, FilterKind::Lowpass);
  run.Edit("broadbandActive", "1", 2);
  run.Edit("filterAtten", "0", 8);
  run.Take();
  for (const int rate : {8000, 12000, 44100, 96000}) {
    const std::size_t frames = static_cast<std::size_t>(rate) + 77;
    WriteSound(folder.Path() + "/a.wav", StereoNoise(rate, frames, SF_FORMAT_WAV | SF_FORMAT_PCM_24));
    CleaningWish wish = Wish("a.wav", "b.wav", run.unit.Now().Held());
    EXPECT_THAT(Cleaned(wish), HasSubstr("rounded to 24 bits"));
    const SoundContent before = ReadSound(wish.in), after = ReadSound(wish.out);
    ASSERT_EQ(after.samples.size(), before.samples.size()) << rate;
    for (const std::size_t side : {0U, 1U}) {
      const Signal in = before.Side(side), out = after.Side(side);
      const auto alike = [&](std::ptrdiff_t late) {
        return std::inner_product(in.begin() + 1000, in.end() - 1000, out.begin() + 1000 + late, 0.0);
      };
      EXPECT_GT(alike(0), std::max(alike(1), alike(-1))) << rate << ' ' << side;
      // Where no half of a sample is lost, both neighbours are alike to the same degree.
      EXPECT_NEAR(alike(1) / alike(0), alike(-1) / alike(0), 0.02) << rate << ' ' << side;
    }
    wish.from = 0.6;
    wish.out += ".part.wav";
    Cleaned(wish);
    const Signal whole = after.Side(0), part = ReadSound(wish.out).Side(0);
    const auto first = static_cast<std::size_t>(std::lround(0.6 * rate));
    ASSERT_EQ(part.size(), frames - first);
    EXPECT_LT(GreatestDifference(std::span(whole).subspan(first), part), 1e-4) << rate;
  }
}

// Up to the end of the unit's bandwidth, also at a rate that has nothing in common with the unit's. The rest,
// images among it, is 100 dB below.
TEST_F(CleanFile, LosesNothingOfTheBandwidthToTheConversion) {
  for (const auto& [bandwidth, hertz] : {std::pair{"0", 3200}, {"1", 5400}, {"5", 16000}}) {
    SoundRun run(vc::ConfigMode::Mono, bandwidth);
    run.Take();
    for (const int rate : {44100, 47999, 192000}) {
      SoundContent tone{rate, 1, SF_FORMAT_WAV | SF_FORMAT_DOUBLE, {}};
      for (const float sample : Sine(hertz, rate, 20000, 0.5)) tone.samples.push_back(double{sample});
      WriteSound(folder.Path() + "/a.wav", tone);
      const CleaningWish wish = Wish("a.wav", "b.wav", run.unit.Now().Held());
      Cleaned(wish);
      const Signal before = tone.Side(0), after = ReadSound(wish.out).Side(0);
      EXPECT_LT(
          GreatestDifference(std::span(before).subspan(8000, 4000), std::span(after).subspan(8000, 4000)),
          0.5e-5)
          << hertz << " Hz at " << rate;
    }
  }
}

// Every other thing in one recording: mono, clipped, silence at its end, and two runs.
TEST_F(CleanFile, IsTheSameAtEveryRunAndCountsWhatIsClipped) {
  SoundRun run;
  run.Edit("levelControl", "210", 1);  // 9 dB more
  run.Take();
  SoundContent mono{16000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, {}};
  for (const float sample : Sine(440, 16000, 8000, 1.5))
    mono.samples.push_back(std::clamp(double{sample}, -1.0, 32767 / 32768.0));
  mono.samples.resize(16000);
  WriteSound(folder.Path() + "/a.wav", mono);
  CleaningWish wish = Wish("a.wav", "b.wav", run.unit.Now().Held());
  wish.setup = "loud.nrv";
  const std::string report = Cleaned(wish);
  EXPECT_THAT(report, testing::AllOf(HasSubstr("mono"), HasSubstr("dithered"), HasSubstr("loud.nrv"),
                                     HasSubstr("0:00:01.000")));
  const auto clipped = [](const SoundContent& sound) {
    return std::to_string(std::ranges::count_if(
        sound.samples, [](double sample) { return std::abs(sample) >= 32767 / 32768.0; }));
  };
  EXPECT_THAT(report, testing::ContainsRegex("Clipped +" + clipped(ReadSound(wish.in)) + " +" +
                                             clipped(ReadSound(wish.out)) + " samples"));
  EXPECT_EQ(ReadSound(wish.out).samples.back(), 0) << "silence is not dithered";
  const std::string first = Content(wish.out);
  Cleaned(wish);
  EXPECT_EQ(Content(wish.out), first);
}

// A level between two steps is heard on the average, whatever it is, and the noise is that of such a dither:
// a quarter of a squared step with the rounding.
TEST(Dither, KeepsWhatIsFinerThanAStep) {
  constexpr double step = 1 / 32768.0, samples = 200'000;
  for (const double level : {0.1, 0.5, 0.75, -0.3}) {
    unit::clean::SampleCoder coder(16);
    double sum = 0, squares = 0;
    for (int i = 0; i < samples; ++i) {
      const double error = coder.Coded(level * step) / step - level;
      sum += error;
      squares += error * error;
    }
    EXPECT_NEAR(sum / samples, 0, 0.005) << level;
    EXPECT_NEAR(squares / samples, 0.25, 0.005) << level;
  }
  unit::clean::SampleCoder coder(16), fine(24);
  EXPECT_EQ(coder.Coded(100 * step), 100 * step);
  EXPECT_EQ(fine.Coded(1.3 / 8388608), 1 / 8388608.0);
  EXPECT_EQ(coder.Coded(1.5), 1 - step);
}

// A filter that has learned the hum and keeps it takes it out from the first sample on, and one that begins
// anew does not; one that is kept without having learned anything never does.
TEST_F(CleanFile, AdaptsFromTheBeginningOrKeepsWhatWasLearned) {
  SoundRun run;
  run.Put(1, FilterKind::OneChAdaptive);
  run.Edit("ch1Taps", "256", 1);
  run.Edit("ch1Mu", "4", 1);
  run.Edit("ch1AdaptSelect", "0", 1);
  run.Edit("ch1AutoNormalize", "1", 1);
  run.Edit("filterAdapt", "1", 1);
  run.Edit("adaptEnabled", "1");
  run.Take();
  SoundContent hum{UnitRate, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_24, {}};
  for (const float sample : Sine(300, UnitRate, 24000, 0.3)) hum.samples.push_back(double{sample});
  WriteSound(folder.Path() + "/a.wav", hum);
  CleaningWish wish = Wish("a.wav", "b.wav", run.unit.Now().Held());
  const auto levels = [&](const char* told) {
    EXPECT_THAT(Cleaned(wish), HasSubstr(told));
    const Signal out = ReadSound(wish.out).Side(0);
    return std::pair(test::signals::Rms(std::span(out).subspan(600, 600)),
                     test::signals::Rms(std::span(out).last(2400)));
  };
  const auto learned = levels("learned from the beginning");
  EXPECT_LT(learned.second, 0.02);
  wish.adaptive = Learning::Kept;
  const auto nothing = levels("kept as they were");
  EXPECT_NEAR(nothing.first, nothing.second, 0.001);
  EXPECT_GT(nothing.second, 0.2);
  run.Left(Sine(300, UnitRate, 24000, 0.3));
  wish.setting.programs.stages[0].coefficients = run.engine.Learned(1);
  const auto kept = levels("kept as they were");
  EXPECT_LT(kept.first, learned.first / 2);
  wish.adaptive = Learning::FromBeginning;
  EXPECT_EQ(levels("learned from the beginning"), learned);
}

}  // namespace
}  // namespace sound_test::clean_file
