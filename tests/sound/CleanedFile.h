// Recordings that tests write, clean and read again.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sndfile.h>

#include "Measure.h"
#include "TempFolder.h"
#include "unit/clean/Cleaning.h"
#include "unit/sound/EncodedFile.h"

namespace support {

struct SoundContent {
  int rate = 0, channels = 0, format = 0;
  std::vector<double> samples;  // channels side by side

  measure::Signal Side(std::size_t channel) const {
    measure::Signal side;
    for (std::size_t i = channel; i < samples.size(); i += static_cast<std::size_t>(channels))
      side.push_back(static_cast<float>(samples[i]));
    return side;
  }
};

inline void WriteSound(const std::string& path, const SoundContent& sound) {
  auto file = std::get<unit::sound::EncodedFile>(unit::sound::EncodedFile::Create(
      path, {.rate = sound.rate, .channels = sound.channels, .format = sound.format}));
  EXPECT_TRUE(file.Write(sound.samples)) << file.Failure();
  EXPECT_TRUE(file.Close()) << file.Failure();
}

inline SoundContent ReadSound(const std::string& path) {
  SF_INFO info{};
  const unit::sound::SoundHandle file(sf_open(path.c_str(), SFM_READ, &info));
  if (!file) return {};
  SoundContent sound{info.samplerate, info.channels, info.format, {}};
  sound.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
  sf_readf_double(file.get(), sound.samples.data(), info.frames);
  return sound;
}

// Stereo, with another noise on either side.
inline SoundContent StereoNoise(int rate, std::size_t frames, int format, float amplitude = 0.3F) {
  SoundContent sound{rate, 2, format, {}};
  const measure::Signal left = measure::Noise(frames, amplitude, 5),
                        right = measure::Noise(frames, amplitude, 6);
  for (std::size_t i = 0; i < frames; ++i) {
    sound.samples.push_back(double{left[i]});
    sound.samples.push_back(double{right[i]});
  }
  return sound;
}

// The report, or what went wrong.
inline std::string Cleaned(const unit::clean::CleaningWish& wish) {
  unit::clean::Cleaning cleaning(wish);
  cleaning.Start();
  cleaning.Wait();
  std::string text = cleaning.Error();
  for (const std::string& line : cleaning.Report()) text += line + '\n';
  return text;
}

}  // namespace support
