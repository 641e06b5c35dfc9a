// High-pass filters, gain control and limiter, measured from outside.
#include <limits>

#include <gtest/gtest.h>

#include "Signals.h"
#include "unit/sound/GainControl.h"
#include "unit/sound/Highpass.h"
#include "unit/sound/Limiter.h"

namespace sound_test::processors {
namespace {

using namespace unit::sound;
using namespace test::signals;

constexpr double Rate = 12000;

double HighpassGain(double cutoff, double rate, double frequency) {
  Highpass filter(cutoff, rate);
  const auto second = static_cast<std::size_t>(rate);
  Sound sound = Tone(2 * second, frequency, rate, 0.5);
  filter.Process(sound, sound);
  return Decibels(AmplitudeAt(LastOf(sound, second), frequency, rate) / 0.5);
}

TEST(Highpass, IsThreeDecibelsDownAtTheCutOffAndFallsByTwentyFourAnOctave) {
  for (const double rate : {7200.0, 12000.0, 36000.0}) {
    for (const double cutoff : {100.0, 150.0, 500.0}) {
      EXPECT_GT(HighpassGain(cutoff, rate, cutoff * 1.05), -3.01) << rate << " " << cutoff;
      EXPECT_LT(HighpassGain(cutoff, rate, cutoff * 0.95), -3.01) << rate << " " << cutoff;
      EXPECT_NEAR(HighpassGain(cutoff, rate, cutoff / 2), -24.1, 0.5) << rate << " " << cutoff;
      EXPECT_NEAR(HighpassGain(cutoff, rate, cutoff * 4), 0, 0.05) << rate << " " << cutoff;
    }
  }
  EXPECT_NEAR(HighpassGain(0, Rate, 100), -3.01, 0.05) << "a cut-off out of range is bounded";
}

// The gain that the last tenth of a second of a tone had.
double ControlledGain(double maximumDb, double peak) {
  GainControl control({true, false, 0.1, Linear(maximumDb)}, Rate);
  Sound sound = Tone(24000, 400, Rate, peak);
  control.Process(sound, {});
  return Decibels(AmplitudeAt(LastOf(sound, 1200), 400, Rate) / peak);
}

TEST(GainControl, BringsAFaintToneUpToHalfOfFullScaleOrByTheMaximumGain) {
  for (const double maximum : {5.0, 20.0, 35.0}) {
    EXPECT_NEAR(ControlledGain(maximum, 0.001), maximum, 0.2);
    EXPECT_NEAR(ControlledGain(maximum, 0.4), Decibels(0.5 / 0.4), 0.2);
    EXPECT_NEAR(ControlledGain(maximum, 0.9), 0, 0.2) << "no louder tone is turned down";
  }
}

// Loud, then faint: the time in which the gain of the faint part comes from one number of dB up to another.
template <typename Processor>
double RecoverySeconds(Processor& processor, double loud, double faint, double fromDb, double toDb) {
  Sound sound(48000, static_cast<float>(faint));
  std::fill_n(sound.begin(), 6000, static_cast<float>(loud));
  processor.Process(sound, {});
  const auto first = [&](double db) {
    const auto reached = [&](float sample) { return Decibels(sample / faint) >= db; };
    return std::find_if(sound.begin() + 6000, sound.end(), reached) - sound.begin();
  };
  return static_cast<double>(first(toDb) - first(fromDb)) / Rate;
}

TEST(Processors, RecoverInTheirReleaseTime) {
  for (int wire = 0; wire < 4; ++wire) {
    GainControl control(GainControlSettingsOf(static_cast<std::uint16_t>(32768 + wire * 4096), 73), Rate);
    const double controlTime = 0.4 / (1 << wire);
    EXPECT_NEAR(RecoverySeconds(control, 0.5, 0.005, 3, 20), 17 / 8.686 * controlTime, 0.1 * controlTime)
        << wire;

    Limiter limiter(LimiterSettingsOf(static_cast<std::uint16_t>(32768 + wire * 4096), 3677), Rate);
    const double limiterTime = 1.0 / (1 << wire);
    EXPECT_NEAR(RecoverySeconds(limiter, 1, 0.01, -12, -3), 9 / 8.686 * limiterTime, 0.1 * limiterTime)
        << wire;
  }
}

TEST(Limiter, LetsNothingAboveItsThreshold) {
  for (const auto& [word, db] : {std::pair{10362, -6}, {7336, -9}, {5193, -12}, {3677, -15}}) {
    Limiter limiter(LimiterSettingsOf(32768, static_cast<std::uint16_t>(word)), Rate);
    Sound sound = Sum(Noise(60000, 0.3, 1), Tone(60000, 30, Rate, 0.7));
    limiter.Process(sound, {});
    const float peak = std::abs(*std::max_element(
        sound.begin(), sound.end(), [](float a, float b) { return std::abs(a) < std::abs(b); }));
    EXPECT_NEAR(Decibels(peak), db, 0.1);

    Sound below = Tone(6000, 310, Rate, Linear(db - 0.1));
    const Sound before = below;
    limiter.Reset();
    limiter.Process(below, {});
    for (std::size_t i = 0; i < below.size(); ++i)
      ASSERT_NEAR(below[i], before[i], 1e-9) << "below the threshold";
  }
}

// How much louder than alone the right channel's faint tone comes out beside a loud left one.
template <typename Processor>
double PullOfTheOtherChannel(Processor processor, Processor alone) {
  Sound left = Tone(12000, 300, Rate, 0.9);
  Sound right = Tone(12000, 700, Rate, 0.01);
  Sound same = right;
  processor.Process(left, right);
  alone.Process(same, {});
  return Decibels(Rms(LastOf(right, 2000)) / Rms(LastOf(same, 2000)));
}

TEST(Processors, PullBothChannelsOnlyWhenLinked) {
  for (const bool linked : {false, true}) {
    const std::uint16_t word = linked ? 49152 : 32768;
    const GainControl control(GainControlSettingsOf(word + 2 * 4096, 410), Rate);  // 20 dB
    EXPECT_NEAR(PullOfTheOtherChannel(control, control), linked ? -20 : 0, 0.2);
    const Limiter limiter(LimiterSettingsOf(word + 2 * 4096, 5193), Rate);
    EXPECT_NEAR(PullOfTheOtherChannel(limiter, limiter), linked ? Decibels(Linear(-12) / 0.9) : 0, 0.2);
  }
}

TEST(Processors, SurviveAnyInput) {
  Sound sound = test::signals::Speech(24000, Rate, 0.2);
  for (std::size_t i = 0; i < sound.size(); i += 500) {
    constexpr float unusual[] = {std::numeric_limits<float>::quiet_NaN(),
                                 std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::max(),
                                 1e-44F};
    sound[i] = unusual[i / 500 % 4];
  }
  Highpass(200, Rate).Process(sound, sound);
  GainControl({true, true, 0.1, 10}, Rate).Process(sound, {});
  Limiter({true, true, 0.125, 0.3}, Rate).Process(sound, {});
  for (const float sample : sound) ASSERT_LE(std::abs(sample), 0.3001F);
}

}  // namespace
}  // namespace sound_test::processors
