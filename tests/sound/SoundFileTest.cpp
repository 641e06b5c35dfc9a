// Files in and out: real files in a folder of their own.
#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/resource.h>

#include "sound/Measure.h"
#include "unit/sound/SoundFile.h"

namespace unit::sound {
namespace sound_test::sound_file {
namespace {

class SoundFile : public testing::Test {
 protected:
  SoundFile() {
    std::string name = (std::filesystem::temp_directory_path() / "soundXXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~SoundFile() override { std::filesystem::remove_all(folder_); }

  std::string In(const std::string& name) const { return folder_ / name; }

  std::filesystem::path folder_;
};

std::vector<float> Tone(double hertz, int rate, double seconds) {
  return measure::Sine(hertz, rate, static_cast<std::size_t>(seconds * rate), 0.5);
}

void Save(const std::string& path, int rate, int channels, int format, const std::vector<float>& samples) {
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = channels;
  info.format = format;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr);
  sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size()));
  sf_close(file);
}

struct Played {
  std::vector<float> left, right;
  std::size_t sound = 0;
};

Played Play(SoundReader& reader, std::size_t frames, std::size_t block = 256) {
  Played played{std::vector<float>(frames), std::vector<float>(frames)};
  for (std::size_t at = 0; at < frames; at += block) {
    const std::size_t count = std::min(block, frames - at);
    played.sound +=
        reader.Read(std::span(played.left).subspan(at, count), std::span(played.right).subspan(at, count));
  }
  return played;
}

struct Fit {
  double amplitude, residualDb;  // the residual against the tone
};

// Of samples that hold whole periods.
Fit FitTone(std::span<const float> samples, double hertz, int rate) {
  const double amplitude = measure::AmplitudeAt(samples, hertz, rate);
  const double tone = amplitude * amplitude / 2.0;
  double power = 0.0;
  for (const float sample : samples) power += double{sample} * sample / static_cast<double>(samples.size());
  return {amplitude, 10.0 * std::log10(std::fabs(power - tone) / tone + 1e-14)};
}

SoundReader Opened(const std::string& path, int rate, bool looped) {
  return std::get<SoundReader>(SoundReader::Open(path, rate, looped));
}

TEST_F(SoundFile, ComesAtTheUnitsRateFromAnyKindOfFile) {
  Save(In("mono.flac"), 44100, 1, SF_FORMAT_FLAC | SF_FORMAT_PCM_24, Tone(1000.0, 44100, 2.0));
  Save(In("low.wav"), 8000, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT, Tone(1000.0, 8000, 2.0));
  for (const char* name : {"mono.flac", "low.wav"}) {
    for (const int rate : {7200, 18000, 36000}) {
      SoundReader reader = Opened(In(name), rate, false);
      const auto second = static_cast<std::size_t>(rate);
      const Played played = Play(reader, 3 * second);
      EXPECT_EQ(played.left, played.right);
      EXPECT_NEAR(static_cast<double>(played.sound), 2.0 * rate, 2.0);
      EXPECT_TRUE(reader.Ended());
      const Fit fit = FitTone(std::span(played.left).subspan(second / 2, second), 1000.0, rate);
      EXPECT_NEAR(fit.amplitude, 0.5, 0.001) << name << rate;
      EXPECT_LT(fit.residualDb, -90.0) << name << rate;
      SoundReader again = Opened(In(name), rate, false);
      EXPECT_EQ(Play(again, 3 * second, 77).left, played.left);
    }
  }
}

// The file holds whole periods, so that a seam would be seen as a residual.
TEST_F(SoundFile, LoopsWithoutASeamAndChangesItsRate) {
  Save(In("loop.wav"), 44100, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT, Tone(1000.0, 44100, 0.25));
  for (const int rate : {7200, 44100}) {
    SoundReader reader = Opened(In("loop.wav"), rate, true);
    const auto second = static_cast<std::size_t>(rate);
    const Played played = Play(reader, 4 * second);
    EXPECT_EQ(played.sound, 4 * second);
    EXPECT_LT(FitTone(std::span(played.left).subspan(second, second), 1000.0, rate).residualDb, -90.0);
    reader.SetRate(36000);
    const Played faster = Play(reader, 72000);
    EXPECT_LT(FitTone(std::span(faster.left).subspan(36000), 1000.0, 36000).residualDb, -90.0);
  }
}

TEST_F(SoundFile, WritesWhatItReads) {
  const std::vector<float> left = Tone(440.0, 36000, 1.0);
  std::vector<float> right = Tone(997.0, 36000, 1.0);
  right[5] = std::numeric_limits<float>::quiet_NaN();
  right[6] = 3.0F;
  for (const auto format : {SoundWriter::Format::Pcm24, SoundWriter::Format::Float}) {
    auto writer = std::get<SoundWriter>(SoundWriter::Create(In("out.wav"), 36000, format));
    EXPECT_EQ(writer.Write(left, right), "");
    SoundReader early = Opened(In("out.wav"), 36000, false);
    EXPECT_EQ(Play(early, 36000).sound, 36000U);
    EXPECT_EQ(writer.Close(), "");
    SoundReader reader = Opened(In("out.wav"), 36000, false);
    const Played played = Play(reader, 36001);
    EXPECT_EQ(played.sound, 36000U);
    EXPECT_EQ(played.right[5], 0.0F);
    EXPECT_NEAR(played.right[6], format == SoundWriter::Format::Pcm24 ? 1.0F : 3.0F, 1e-6F);
    for (std::size_t i = 7; i < 36000; ++i) {
      ASSERT_NEAR(played.left[i], left[i], 1.3e-7F);
      ASSERT_NEAR(played.right[i], right[i], 1.3e-7F);
    }
    EXPECT_EQ(std::filesystem::file_size(In("out.wav")) / 1000,
              format == SoundWriter::Format::Pcm24 ? 216U : 288U);
  }
}

TEST_F(SoundFile, SaysInOneLineWhatIsWrong) {
  std::ofstream(In("empty.wav")).close();
  std::ofstream(In("text.wav")) << "not a sound\nat all\n";
  Save(In("slow.wav"), 100, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, Tone(10.0, 100, 1.0));
  const std::pair<const char*, const char*> cases[] = {{"none.wav", "No such file"},
                                                       {"", "no sound that can be read"},
                                                       {"empty.wav", "no sound that can be read"},
                                                       {"text.wav", "no sound that can be read"},
                                                       {"slow.wav", "100 Hz"}};
  for (const auto& [name, text] : cases) {
    const auto opened = SoundReader::Open(In(name), 36000, false);
    ASSERT_TRUE(std::holds_alternative<std::string>(opened)) << name;
    const std::string& line = std::get<std::string>(opened);
    EXPECT_EQ(line.rfind(In(name) + ": ", 0), 0U) << line;
    EXPECT_NE(line.find(text), std::string::npos) << line;
    EXPECT_EQ(line.find('\n'), std::string::npos) << line;
  }
  const auto created = SoundWriter::Create(In("none/out.wav"), 36000, SoundWriter::Format::Pcm24);
  ASSERT_TRUE(std::holds_alternative<std::string>(created));
  EXPECT_NE(std::get<std::string>(created).find("can't be written: No such file"), std::string::npos);
}

TEST_F(SoundFile, EndsWhereAnEmptyOrShortenedFileEnds) {
  for (const bool looped : {false, true}) {
    Save(In("zero.wav"), 44100, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_16, {});
    SoundReader zero = Opened(In("zero.wav"), 7200, looped);
    EXPECT_EQ(Play(zero, 5000).sound, 0U);
    EXPECT_TRUE(zero.Ended());
    Save(In("one.wav"), 44100, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, {0.5F});
    SoundReader one = Opened(In("one.wav"), 44100, looped);
    EXPECT_EQ(Play(one, 1000).sound, looped ? 1000U : 1U);
    Save(In("cut.wav"), 36000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, Tone(1000.0, 36000, 2.0));
    SoundReader cut = Opened(In("cut.wav"), 36000, looped);
    Play(cut, 1000);
    std::filesystem::resize_file(In("cut.wav"), looped ? 0 : 40000);
    EXPECT_LT(Play(cut, 100000).sound, 20000U);
    EXPECT_TRUE(cut.Ended());
  }
}

TEST_F(SoundFile, SaysWhenTheDiskIsFullAndKeepsWhatItHas) {
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit tight{100000, before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  auto writer = std::get<SoundWriter>(SoundWriter::Create(In("full.wav"), 36000, SoundWriter::Format::Pcm24));
  setrlimit(RLIMIT_FSIZE, &tight);
  const std::vector<float> tone = Tone(1000.0, 36000, 1.0);
  const std::string failure = writer.Write(tone, tone);
  EXPECT_EQ(writer.Write(tone, tone), failure);
  EXPECT_EQ(writer.Close(), failure);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(failure, In("full.wav") + ": can't be written: File too large");
  SoundReader reader = Opened(In("full.wav"), 36000, false);
  const Played played = Play(reader, 36000);
  EXPECT_GT(played.sound, 16000U);
  EXPECT_LT(FitTone(std::span(played.left).first(14400), 1000.0, 36000).residualDb, -90.0);
}

}  // namespace
}  // namespace sound_test::sound_file
}  // namespace unit::sound
