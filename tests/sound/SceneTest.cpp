// The built-in scene: its parts and their levels, and that it is the same for the same seed.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/Scene.h"

namespace unit::sound {
namespace sound_test::scene {
namespace {

struct Sound {
  std::vector<float> left, right;
  bool operator==(const Sound&) const = default;
};

constexpr SceneLevels nothing{SceneOff, SceneOff, SceneOff, SceneOff, SceneOff};

Sound Listen(double rate, double seconds, const SceneLevels& levels, std::size_t block = 256,
             std::uint64_t seed = 1) {
  Scene scene(rate, seed, levels);
  const auto frames = static_cast<std::size_t>(rate * seconds);
  Sound sound{std::vector<float>(frames), std::vector<float>(frames)};
  for (std::size_t at = 0; at < frames; at += block) {
    const std::size_t count = std::min(block, frames - at);
    scene.Process(std::span(sound.left).subspan(at, count), std::span(sound.right).subspan(at, count));
  }
  return sound;
}

// RMS against that of a sine of peak 1.
double Db(std::span<const float> samples) {
  double sum = 1e-30;
  for (const float sample : samples) sum += double{sample} * sample;
  return 10.0 * std::log10(2.0 * sum / static_cast<double>(samples.size()));
}

double DbAt(std::span<const float> samples, double hertz, double rate) {
  return measure::Decibels(measure::AmplitudeAt(samples, hertz, rate));
}

TEST(Scene, IsTheSameForTheSameSeedInAnyBlocks) {
  const Sound sound = Listen(12000, 5.0, {});
  EXPECT_EQ(Listen(12000, 5.0, {}, 1), sound);
  EXPECT_EQ(Listen(12000, 5.0, {}, 1009), sound);
  EXPECT_NE(Listen(12000, 5.0, {}, 256, 2).left, sound.left);
}

TEST(Scene, PartsHaveTheirLevelsAndAddUp) {
  for (const double rate : {7200.0, 18000.0, 36000.0}) {
    SceneLevels hum = nothing, tone = nothing, noise = nothing, reference = nothing, speech = nothing;
    hum.hum = tone.tone = noise.noise = reference.reference = speech.speech = -20.0;
    const Sound hums = Listen(rate, 4.0, hum), tones = Listen(rate, 4.0, tone),
                noises = Listen(rate, 4.0, noise);
    const Sound references = Listen(rate, 4.0, reference), speeches = Listen(rate, 4.0, speech);
    EXPECT_NEAR(Db(hums.left), -20.0, 0.02);
    EXPECT_NEAR(DbAt(tones.left, Scene::ToneHz, rate), -20.0, 0.01);
    EXPECT_NEAR(Db(noises.left), -20.0, 0.2);
    EXPECT_NEAR(Db(references.right), -20.0, 0.2);
    double harmonics = 0.0;
    for (int k = 1; k <= 10; ++k) harmonics += std::pow(10.0, DbAt(hums.left, 50.0 * k, rate) / 10.0);
    EXPECT_NEAR(10.0 * std::log10(harmonics), -20.0, 0.02);
    for (const Sound* sound : {&hums, &tones, &noises, &speeches}) EXPECT_LT(Db(sound->right), -200.0);

    const Sound all = Listen(rate, 4.0, {-20.0, -20.0, -20.0, -20.0, -20.0});
    float difference = 0.0F;
    for (std::size_t i = 0; i < all.left.size(); ++i) {
      const float sum = hums.left[i] + tones.left[i] + noises.left[i] + speeches.left[i];
      difference = std::max(difference, std::fabs(all.left[i] - sum));
    }
    EXPECT_LT(difference, 1e-6F);
    EXPECT_EQ(all.right, references.right);
  }
}

// Over 50 ms: what is spoken, and pauses with nothing at all.
TEST(Scene, SpeechHasItsLevelAndPauses) {
  SceneLevels levels = nothing;
  levels.speech = -20.0;
  const Sound sound = Listen(18000, 60.0, levels);
  constexpr std::size_t frame = 900;
  double power = 0.0;
  int spoken = 0, silent = 0;
  for (std::size_t at = 0; at + frame <= sound.left.size(); at += frame) {
    const double db = Db(std::span(sound.left).subspan(at, frame));
    silent += db < -100.0 ? 1 : 0;
    if (db < -30.0) continue;
    power += std::pow(10.0, db / 10.0);
    ++spoken;
  }
  EXPECT_NEAR(10.0 * std::log10(power / spoken), -20.0, 2.0);
  EXPECT_GT(spoken, 500);
  EXPECT_GT(silent, 200);
}

}  // namespace
}  // namespace sound_test::scene
}  // namespace unit::sound
