// What the unit makes of a bad recording once an operator has set it up: hum, noise with a reference and
// broadband noise, measured in the built-in scene.
#include <array>
#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

#include "Cleaning.h"
#include "Intelligibility.h"
#include "Signals.h"
#include "unit/sound/Broadband.h"

namespace sound_test::cleaning_recordings {
namespace {

using namespace cleaning;
using namespace test::signals;

constexpr std::size_t HumHarmonics = 10;
constexpr double Minute = 60;

std::size_t Samples(const SoundRun& run, double seconds) {
  return static_cast<std::size_t>(std::lround(seconds * run.Rate()));
}

// The levels of the hum's harmonics in dB. Over 90 s what the speech has at the same frequencies stays 26 dB
// below the hum.
std::array<double, HumHarmonics> Harmonics(std::span<const float> sound, double rate) {
  std::array<double, HumHarmonics> levels{};
  for (std::size_t k = 0; k < HumHarmonics; ++k)
    levels[k] = Decibels(AmplitudeAt(sound, Scene::HumHz * static_cast<double>(k + 1), rate));
  return levels;
}

// In dB, of all harmonics together.
double Together(const std::array<double, HumHarmonics>& levels) {
  return 10 * std::log10(std::accumulate(levels.begin(), levels.end(), 0.0, [](double sum, double level) {
           return sum + std::pow(10, level / 10);
         }));
}

Sound Less(Sound sound, std::span<const float> part) {
  for (std::size_t i = 0; i < sound.size(); ++i) sound[i] -= part[i];
  return sound;
}

TEST(Cleaning, TakesTheHumFromUnderTheSpeech) {
  SoundRun run;
  SetHumFilter(run, 1024, 16);
  const std::size_t size = Samples(run, 3 * Minute), measured = size / 2;
  const Sound before = SceneSound(run.Rate(), size, SpeechAndHum())[0], after = run.Left(before);
  const Sound speech = SceneSound(run.Rate(), size, SpeechAlone())[0];
  const Sound added = Less(before, speech), wrong = Less(after, speech);
  const auto hum = Harmonics(LastOf(added, measured), run.Rate());
  const auto left = Harmonics(LastOf(wrong, measured), run.Rate());
  EXPECT_LT(Together(left) - Together(hum), -28);
  for (std::size_t k = 0; k < 3; ++k) EXPECT_LT(left[k] - hum[k], -30) << k + 1;
  EXPECT_LT(Decibels(Rms(LastOf(wrong, measured)) / Rms(LastOf(speech, measured))), -18)
      << "the speech itself stays";
}

// Harmonics that lie 20 dB and more below the noise are out of reach: of a tone with a ratio r to the noise N
// taps can at best leave 1 / (1 + N r / 2), and what is left of those counts for most of the rest.
TEST(Cleaning, TakesTheHumFromUnderSpeechAndNoise) {
  SoundRun run;
  SetHumFilter(run, 6144, 64);
  const std::size_t size = Samples(run, Minute);
  const Sound before = SceneSound(run.Rate(), 2 * size, {})[0];
  run.Left(Sound(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(size)));
  run.Edit("ch1Mu", "8", 1);  // learned quickly, now finely
  run.Take();
  const Sound after = run.Left(Sound(before.end() - static_cast<std::ptrdiff_t>(size), before.end()));
  const auto hum = Harmonics(LastOf(before, size), run.Rate());
  const auto left = Harmonics(after, run.Rate());
  EXPECT_LT(left[0] - hum[0], -30);
  EXPECT_LT(Together(left) - Together(hum), -15);
}

TEST(Cleaning, TakesOutTheNoiseThatTheReferenceCarries) {
  SoundRun run;
  SetCanceller(run);
  const std::size_t size = Samples(run, Minute), measured = size / 3;
  const SoundRun::Stereo heard = SceneSound(run.Rate(), size, {});
  const Sound kept = SceneSound(run.Rate(), size, WithoutNoise())[0];
  const Sound before = Less(heard[0], kept), after = Less(run.Through(heard)[0], kept);
  EXPECT_LT(Decibels(Rms(LastOf(after, measured)) / Rms(LastOf(before, measured))), -20);
}

TEST(Cleaning, LiftsSpeechOutOfTheWholeScene) {
  for (const char* bandwidth : {"0", "1", "2", "3", "4", "5"}) {
    SoundRun run(vc::ConfigMode::Mono, bandwidth);
    SetNoiseReducer(run);
    const std::size_t size = Samples(run, 20);
    const Sound speech = SceneSound(run.Rate(), size, SpeechAlone())[0];
    const Sound before = SceneSound(run.Rate(), size, {})[0], after = run.Left(before);
    const double lift = SegmentalRatio(speech, after, unit::sound::Broadband::LatencySamples, run.Rate()) -
                        SegmentalRatio(speech, before, 0, run.Rate());
    EXPECT_GT(lift, 6) << run.Rate();
  }
}

// From as much noise as speech on, and at any attenuation.
TEST(Cleaning, KeepsSpeechInNoiseAsWellUnderstoodAsItWas) {
  constexpr std::size_t late = unit::sound::Broadband::LatencySamples;
  for (const char* bandwidth : {"1", "5"}) {
    SoundRun run(vc::ConfigMode::Mono, bandwidth);
    SetNoiseReducer(run);
    const std::size_t size = Samples(run, 20);
    const Sound speech = SceneSound(run.Rate(), size, SpeechAlone())[0];
    for (const double ratio : {0.0, 5.0}) {
      const Sound before = Sum(speech, Noise(size, Rms(speech) * Linear(-ratio), 9));
      const double untreated = measure::Intelligibility(speech, before, run.Rate());
      for (const int attenuation : {22937, 28642, 32767}) {  // 10 dB, 18 dB and all
        run.Edit("filterAtten", std::to_string(attenuation), 7);
        run.Take();
        const Sound after = run.Left(before);
        const double treated = measure::Intelligibility(std::span(speech).first(size - late),
                                                        LastOf(after, size - late), run.Rate());
        EXPECT_GT(treated, untreated) << run.Rate() << " " << ratio << " " << attenuation;
      }
    }
  }
}

}  // namespace
}  // namespace sound_test::cleaning_recordings
