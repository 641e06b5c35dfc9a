// Files in and out: real files in a folder of their own.
#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/resource.h>

#include "TempFolder.h"
#include "sound/Measure.h"
#include "unit/sound/SoundFile.h"
#include "unit/sound/SoundWriter.h"

namespace unit::sound {
namespace sound_test::sound_file {
namespace {

struct SoundFile : testing::Test {
  support::TempFolder folder;
  std::string In(const std::string& name) const { return folder.Path() + "/" + name; }
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

// What appears under its name has every sample, rounded to the nearest of 24 bits.
TEST_F(SoundFile, WritesWhatItReadsOnceItIsWhole) {
  std::vector<float> left = Tone(440.0, 36000, 1.0);
  std::vector<float> right = Tone(997.0, 36000, 1.0);
  right[5] = std::numeric_limits<float>::quiet_NaN();
  right[6] = 3.0F;
  right[7] = -std::numeric_limits<float>::infinity();
  left[8] = -0.6F / 8388608.0F;
  constexpr float step = 1.0F / 8388608.0F;
  for (const std::string name : {"out.wav", "out.FLAC", "out"}) {
    auto writer = std::get<SoundWriter>(SoundWriter::Create(In(name), 36000));
    EXPECT_EQ(writer.Write(left, right), "");
    EXPECT_FALSE(std::filesystem::exists(In(name)));
    if (name == "out.wav") {
      SoundReader early = Opened(In(name) + ".part", 36000, false);
      EXPECT_EQ(Play(early, 36000).sound, 36000U);
    }
    EXPECT_EQ(writer.Close(), "");
    EXPECT_FALSE(std::filesystem::exists(In(name) + ".part"));
    EXPECT_EQ(support::Content(In(name)).substr(0, 4), name == "out.FLAC" ? "fLaC" : "RIFF");
    SoundReader reader = Opened(In(name), 36000, false);
    const Played played = Play(reader, 36001);
    EXPECT_EQ(played.sound, 36000U);
    EXPECT_EQ(reader.Flaw(), "");
    EXPECT_EQ(played.right[5], 0.0F);
    EXPECT_EQ(played.right[6], 1.0F - step);
    EXPECT_EQ(played.right[7], -1.0F);
    EXPECT_EQ(played.left[8], -step);
    for (std::size_t i = 9; i < 36000; ++i) {
      ASSERT_LE(std::fabs(played.left[i] - left[i]), step / 2);
      ASSERT_LE(std::fabs(played.right[i] - right[i]), step / 2);
    }
  }
}

// Each frame of it says which one it is.
std::vector<float> Ramp(std::size_t frames) {
  std::vector<float> ramp(frames);
  for (std::size_t i = 0; i < frames; ++i) ramp[i] = static_cast<float>(i) / 8388608.0F;
  return ramp;
}

std::vector<int> Frames(const std::vector<float>& ramp) {
  std::vector<int> frames;
  for (const float sample : ramp) frames.push_back(static_cast<int>(std::lround(sample * 8388608.0F)));
  return frames;
}

TEST_F(SoundFile, GoesWhereItIsSentAndRoundAPart) {
  constexpr int rate = 12000;
  for (const auto& [name, format] : {std::pair{"ramp.wav", SF_FORMAT_WAV}, {"ramp.flac", SF_FORMAT_FLAC}}) {
    Save(In(name), rate, 1, format | SF_FORMAT_PCM_24, Ramp(3 * rate));
    SoundReader reader = Opened(In(name), rate, false);
    EXPECT_EQ(reader.What().seconds, 3.0);
    ASSERT_TRUE(reader.Seek(1.5));
    EXPECT_EQ(Frames(Play(reader, 300).left)[299], 18299);
    EXPECT_DOUBLE_EQ(reader.Position(), 18300.0 / rate);
    // The reader is ahead of what was played, and beyond the loop's end.
    ASSERT_TRUE(reader.SetLoop(SoundReader::Loop{1.4, 18400.0 / rate}));
    std::vector<int> frames = Frames(Play(reader, 4000, 77).left);
    for (int i = 0; i < 4000; ++i) ASSERT_EQ(frames[i], i < 100 ? 18300 + i : 16800 + (i - 100) % 1600);
    EXPECT_DOUBLE_EQ(reader.Position(), (16800 + 3900 % 1600) / 12000.0);
    // What was read beyond the seam does not come where there is no seam any more.
    reader.Seek(18390.0 / rate);
    Play(reader, 1);
    ASSERT_TRUE(reader.SetLoop(std::nullopt));
    frames = Frames(Play(reader, 100).left);
    EXPECT_EQ(frames[99], 18490);
    // From behind the loop at once; a rate in between keeps the place.
    ASSERT_TRUE(reader.SetLoop(SoundReader::Loop{0.5, 1.0}));
    EXPECT_EQ(reader.Position(), 0.5);
    reader.SetRate(36000);
    Play(reader, 900);
    reader.SetRate(rate);
    EXPECT_EQ(Frames(Play(reader, 2).left)[1], 6301);
    EXPECT_FALSE(reader.SetLoop(SoundReader::Loop{1.0, 1.01}));
    EXPECT_EQ(reader.Looped()->to, 1.0);
    // The reader has seen the file's end already.
    reader.SetLoop(std::nullopt);
    reader.Seek(2.99);
    Play(reader, 1);
    ASSERT_TRUE(reader.SetLoop(SoundReader::Loop{2.0, 3.0}));
    EXPECT_EQ(Frames(Play(reader, 200).left)[199], 24000 + 80);
    reader.SetLoop(std::nullopt);
    reader.Seek(99);
    EXPECT_EQ(Play(reader, 10).sound, 0U);
    EXPECT_TRUE(reader.Ended());
    EXPECT_EQ(reader.Position(), 3.0);
    ASSERT_TRUE(reader.Seek(2.9));
    EXPECT_EQ(Frames(Play(reader, 1).left)[0], 34800);
    EXPECT_EQ(reader.Flaw(), "");
  }
}

TEST_F(SoundFile, IsSoughtInWhatIsCompressedToo) {
  constexpr int rate = 44100;
  std::vector<float> tone = Tone(300.0, rate, 3.0);
  for (std::size_t i = 0; i < tone.size(); ++i)
    tone[i] *= static_cast<float>(i) / static_cast<float>(tone.size());
  for (const auto& [name, format] : {std::pair{"tone.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
                                     {"tone.mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III}}) {
    Save(In(name), rate, 1, format, tone);
    SoundReader reader = Opened(In(name), rate, false);
    const std::vector<float> whole = Play(reader, 3 * rate).left;
    for (const double second : {2.0, 0.7}) {
      ASSERT_TRUE(reader.Seek(second)) << name;
      const std::vector<float> part = Play(reader, 4000).left;
      float worst = 0;
      for (std::size_t i = 0; i < part.size(); ++i)
        worst = std::max(
            worst, std::fabs(part[i] - whole[static_cast<std::size_t>(std::lround(second * rate)) + i]));
      EXPECT_LT(worst, 1e-5F) << name << second;
    }
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
}

// None of these harms what is there.
TEST_F(SoundFile, IsNotWrittenWhereItMayNotBe) {
  std::ofstream(In("old.wav")) << "old";
  const auto busy = SoundWriter::Create(In("old.wav"), 36000);
  for (const auto& [name, text] : {std::pair{"none/out.wav", "can't be written: No such file"},
                                   {"old.wav", "can't be written: it is being written already"},
                                   {"old.mp3", "must end in .wav or .flac"},
                                   {".", "can't be written: Is a directory"}}) {
    const auto created = SoundWriter::Create(In(name), 36000);
    ASSERT_TRUE(std::holds_alternative<std::string>(created)) << name;
    EXPECT_NE(std::get<std::string>(created).find(text), std::string::npos) << std::get<std::string>(created);
  }
  EXPECT_EQ(support::Content(In("old.wav")), "old");
}

TEST_F(SoundFile, IsPutInPlaceBehindALinkAndNothingIsLeftElse) {
  std::filesystem::create_directory(In("far"));
  std::filesystem::create_symlink("far/there.wav", In("link.wav"));
  for (int i = 0; i < 2; ++i) {
    auto writer = std::get<SoundWriter>(SoundWriter::Create(In("link.wav"), 36000));
    writer.Write(Tone(440.0, 36000, 0.1), Tone(440.0, 36000, 0.1));
    EXPECT_EQ(writer.Close(), "");
    EXPECT_TRUE(std::filesystem::is_symlink(In("link.wav")));
    EXPECT_TRUE(std::filesystem::is_regular_file(In("far/there.wav")));
    std::filesystem::permissions(In("far/there.wav"), std::filesystem::perms::owner_all);
  }
  EXPECT_EQ(std::filesystem::status(In("far/there.wav")).permissions(), std::filesystem::perms::owner_all);
  std::get<SoundWriter>(SoundWriter::Create(In("far/other.wav"), 36000)).Write({}, {});
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(In("far")), {}), 1);
}

struct Kind {
  const char* name;
  int format;
};

constexpr Kind Kinds[] = {
    {"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16}, {"b.wav", SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM},
    {"c.wav", SF_FORMAT_RF64 | SF_FORMAT_FLOAT}, {"d.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_24},
    {"e.w64", SF_FORMAT_W64 | SF_FORMAT_PCM_16}, {"f.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
    {"g.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS}};

TEST_F(SoundFile, SaysThatItIsCutOff) {
  const auto flaw = [this](const Kind& kind, bool looped) {
    SoundReader reader = Opened(In(kind.name), 36000, looped);
    Play(reader, 150'000);
    return reader.Flaw();
  };
  for (const Kind& kind : Kinds) {
    Save(In(kind.name), 44100, 1, kind.format, Tone(1000.0, 44100, 4.001));
    EXPECT_EQ(flaw(kind, true), "");
    std::filesystem::resize_file(In(kind.name), std::filesystem::file_size(In(kind.name)) * 3 / 4);
    for (const bool looped : {false, true}) {
      EXPECT_EQ(flaw(kind, looped).find(In(kind.name) + ": is cut off: "), 0U) << kind.name;
    }
  }
  EXPECT_NE(flaw(Kinds[0], false).find("is cut off: 264655 of 352888 bytes of its sound are there"),
            std::string::npos)
      << flaw(Kinds[0], false);
}

// A program that writes to a pipe does not know how long the sound will be.
TEST_F(SoundFile, IsNotCutOffWhereItsLengthIsLeftOpen) {
  Save(In("a.wav"), 36000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, Tone(1000.0, 36000, 1.0));
  constexpr std::streamoff lengthOfSound = 40;
  for (const char* length : {"\xFF\xFF\xFF\xFF", "\x00\xF0\xFF\x7F"}) {
    std::fstream(In("a.wav"), std::ios::in | std::ios::out).seekp(lengthOfSound).write(length, 4);
    SoundReader reader = Opened(In("a.wav"), 36000, false);
    EXPECT_EQ(Play(reader, 40000).sound, 36000U);
    EXPECT_EQ(reader.Flaw(), "");
  }
}

TEST_F(SoundFile, CountsWhatIsNoNumberOnceAndPlaysItAsNothing) {
  std::vector<float> tone = Tone(1000.0, 36000, 1.0);
  tone[18000] = std::numeric_limits<float>::quiet_NaN();
  tone[18003] = tone[30000] = std::numeric_limits<float>::infinity();
  Save(In("a.wav"), 18000, 2, SF_FORMAT_WAV | SF_FORMAT_FLOAT, tone);
  SoundReader reader = Opened(In("a.wav"), 18000, true);
  Play(reader, 4096);
  EXPECT_FALSE(reader.Flawed());
  const Played played = Play(reader, 36000);
  EXPECT_EQ(reader.Flaw(),
            In("a.wav") + ": 1 sample is no number (NaN), 2 samples are infinite, from second 0.5 on");
  EXPECT_EQ(played.left[9000 - 4096], 0.0F);
  EXPECT_EQ(played.right[9001 - 4096], 0.0F);
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

// A file that may not grow beyond so many bytes.
struct Room {
  explicit Room(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit tight{bytes, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
  }
  ~Room() {
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
  }
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
  rlimit before{};
  void (*handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

// Early, and with the very last bytes, which come when the file is closed.
TEST_F(SoundFile, SaysWhenTheDiskIsFullAndKeepsWhatItHas) {
  const std::vector<float> tone = Tone(1000.0, 36000, 1.0);
  for (const std::string name : {"full.wav", "full.flac"}) {
    std::ofstream(In(name)) << "old";
    const auto writeAll = [&] {
      auto writer = std::get<SoundWriter>(SoundWriter::Create(In(name), 36000));
      const std::string failure = writer.Write(tone, tone);
      EXPECT_TRUE(failure.empty() || writer.Write(tone, tone) == failure);
      return writer.Close();
    };
    EXPECT_EQ(writeAll(), "");
    const auto whole = std::filesystem::file_size(In(name));
    std::ofstream(In(name)) << "old";
    for (const auto room : {whole / 2, whole - 1}) {
      const Room tight(room);
      EXPECT_EQ(writeAll(), In(name) + ": can't be written: File too large, what there is stands in " +
                                In(name) + ".part");
      EXPECT_EQ(support::Content(In(name)), "old");
    }
  }
  SoundReader reader = Opened(In("full.wav.part"), 36000, false);
  const Played played = Play(reader, 36000);
  EXPECT_GT(played.sound, 35000U);
  EXPECT_LT(FitTone(std::span(played.left).first(14400), 1000.0, 36000).residualDb, -90.0);
}

}  // namespace
}  // namespace sound_test::sound_file
}  // namespace unit::sound
