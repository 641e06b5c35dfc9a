// The adaptive filters, measured from outside.
#include <array>
#include <limits>

#include <gtest/gtest.h>

#include "Signals.h"
#include "unit/sound/AdaptiveFilter.h"
#include "unit/sound/Convolver.h"

namespace sound_test::adaptive {
namespace {

using namespace unit::sound;
using namespace test::signals;

constexpr double Rate = 12000;

struct Outputs {
  Sound normal, rejected;
};

Outputs Through(AdaptiveFilter& filter, std::span<const float> input, std::span<const float> reference) {
  Outputs out{Sound(input.size()), Sound(input.size())};
  filter.Process(input, reference, out.normal, out.rejected);
  return out;
}

AdaptiveFilter Made(const AdaptiveSettings& settings) {
  AdaptiveFilter filter;
  filter.Configure(settings);
  return filter;
}

// What the way from the reference to the input does to a sound: decaying taps from a delay on.
Sound OverTheWay(std::span<const float> sound, std::size_t delay) {
  Sound taps = Noise(60, 0.25, 7);
  for (std::size_t k = 0; k < taps.size(); ++k)
    taps[k] *= static_cast<float>(std::exp(-0.06 * static_cast<double>(k)));
  Sound out(sound.size());
  for (std::size_t i = delay; i < out.size(); ++i) {
    for (std::size_t k = 0; k < std::min(taps.size(), i - delay + 1); ++k)
      out[i] += taps[k] * sound[i - delay - k];
  }
  return out;
}

// How far the disturbance falls in the input while there is speech in it as well, 10 dB below.
double Cancelled(const AdaptiveSettings& settings, std::span<const float> disturbance,
                 const Sound& reference) {
  const std::size_t size = reference.size(), measured = size / 4;
  const std::size_t late = settings.delayed == DelayedChannel::Input ? settings.span + 1U : 0;
  const Sound speech = Speech(size, Rate, 0.03);
  AdaptiveFilter filter = Made(settings);
  Sound left = Through(filter, Sum(speech, disturbance), reference).normal;
  for (std::size_t i = late; i < size; ++i) left[i] -= speech[i - late];
  return Decibels(Rms(LastOf(left, measured)) / Rms(disturbance.last(measured)));
}

TEST(ReferenceCanceller, TakesOutAFilteredCopyOfTheReference) {
  const Sound noise = Noise(12 * 12000, 0.1, 1);
  const Sound copy = OverTheWay(noise, 6);
  AdaptiveSettings settings{.taps = 256, .span = 4, .sampleRate = Rate};
  for (const auto& [rate, normalize] : {std::pair{16, true}, {64, true}, {16, false}}) {
    settings.rate = static_cast<std::uint16_t>(rate);
    settings.normalize = normalize;
    EXPECT_LT(Cancelled(settings, copy, noise), -20) << rate << " " << normalize;
  }
}

TEST(ReferenceCanceller, WaitsWithTheInputForAReferenceThatIsLate) {
  constexpr std::uint16_t lag = 30;
  const Sound noise = Noise(12 * 12000, 0.1, 1);
  Sound reference(noise.size());
  for (std::size_t i = lag + 1; i < noise.size(); ++i)
    reference[i] = 1.4F * noise[i - lag] + 0.4F * noise[i - lag - 1];
  AdaptiveSettings settings{.taps = 64, .span = lag + 2, .rate = 16, .normalize = true, .sampleRate = Rate};
  EXPECT_GT(Cancelled(settings, noise, reference), -3) << "a delayed reference is later still";
  settings.delayed = DelayedChannel::Input;
  EXPECT_LT(Cancelled(settings, noise, reference), -20);
}

// A radio that pauses, through a room of 1000 taps, beside a voice. In the pauses the reference has nothing
// but noise at -80 dB: were that brought to full strength, the voice would drive the taps.
TEST(ReferenceCanceller, IsNotDrivenByTheVoiceWhileTheReferencePauses) {
  constexpr std::size_t size = 30 * 12000, room = 1000;
  const Sound voice = Speech(size, Rate, 0.1);
  Sound radio = Noise(size, 0.1, 5), reference = Noise(size, Linear(-80), 6);
  for (std::size_t i = 0; i < size; ++i) {
    if (i / 12000 % 4 >= 2) radio[i] = 0;
    reference[i] += radio[i];
  }
  Sound taps = Noise(room, 0.12, 7);
  for (std::size_t k = 0; k < room; ++k)
    taps[k] *= static_cast<float>(std::exp(-0.005 * static_cast<double>(k)));
  taps[0] = 0;  // the filter begins a sample later
  Convolver convolver(room);
  convolver.SetTaps(taps);
  const Sound disturbed = Sum(voice, measure::Processed(convolver, radio));
  for (const std::uint16_t rate : std::initializer_list<std::uint16_t>{16, 64}) {
    AdaptiveFilter filter = Made({.taps = 1024, .rate = rate, .normalize = true, .sampleRate = Rate});
    const Sound out = Through(filter, disturbed, reference).normal;
    const auto ratio = [&](const Sound& sound) {
      return measure::ScaleInvariantRatio(LastOf(voice, size / 2), LastOf(sound, size / 2));
    };
    EXPECT_GT(ratio(out) - ratio(disturbed), 15) << rate;
  }
}

// While there is no way the taps are sure of it, and must be found out.
TEST(ReferenceCanceller, FindsAWayThatAppearsUnderTheVoice) {
  constexpr std::size_t size = 30 * 12000, appears = 15 * 12000;
  const Sound noise = Noise(size, 0.1, 5), copy = OverTheWay(noise, 6), voice = Speech(size, Rate, 0.1);
  Sound input = voice;
  for (std::size_t i = appears; i < size; ++i) input[i] += copy[i];
  AdaptiveFilter filter = Made({.taps = 512, .rate = 16, .normalize = true, .sampleRate = Rate});
  const Sound out = Through(filter, input, noise).normal;
  const auto before = [](const Sound& sound) {
    return std::span(sound).subspan(appears / 3, 2 * appears / 3);
  };
  EXPECT_GT(measure::ScaleInvariantRatio(before(voice), before(out)), 25);
  EXPECT_GT(measure::ScaleInvariantRatio(LastOf(voice, size / 4), LastOf(out, size / 4)), 15);
}

// A hum that stops must not stay in the line, and where there is none speech must pass.
TEST(OneChannelFilter, TakesAHumAndLeavesTheVoice) {
  constexpr std::size_t size = 60 * 12000, stops = 40 * 12000, measured = 20 * 12000;
  const Sound voice = Speech(size, Rate, 0.1);
  Sound hum(size);
  for (int k = 1; k <= 20; ++k) hum = Sum(hum, Tone(size, 50.0 * k, Rate, 0.05 / std::sqrt(k)));
  std::fill(hum.begin() + stops, hum.end(), 0.0F);
  const AdaptiveSettings settings{
      .predictor = true, .taps = 1024, .span = 1200, .rate = 16, .normalize = true, .sampleRate = Rate};
  const auto cleaned = [&](const Sound& sound) {
    AdaptiveFilter filter = Made(settings);
    return Through(filter, sound, sound).normal;
  };
  const Sound disturbed = Sum(voice, hum), out = cleaned(disturbed), untouched = cleaned(voice);
  const auto ratio = [&](const Sound& sound, std::size_t at) {
    return measure::ScaleInvariantRatio(std::span(voice).subspan(at, measured),
                                        std::span(sound).subspan(at, measured));
  };
  EXPECT_GT(ratio(out, stops - measured) - ratio(disturbed, stops - measured), 15);
  EXPECT_GT(ratio(out, size - measured), 12) << "it lets go";
  EXPECT_GT(ratio(untouched, size - measured), 25);
}

TEST(AdaptiveFilter, PredictsFromTheSampleOneMoreThanTheSpanAgo) {
  const std::array<std::int32_t, 3> coefficients = {0, 4194304, -8388608};
  Sound impulse(300);
  impulse[10] = 0.5F;
  for (const std::uint16_t span : std::initializer_list<std::uint16_t>{0, 1, 255}) {
    AdaptiveFilter filter = Made({.taps = 3, .span = span});
    filter.SetCoefficients(coefficients);
    const Outputs out = Through(filter, impulse, impulse);
    EXPECT_EQ(out.rejected[10 + 1 + span], 0.0F);
    EXPECT_EQ(out.rejected[10 + 2 + span], 0.25F);
    EXPECT_EQ(out.rejected[10 + 3 + span], -0.5F);
    EXPECT_EQ(out.normal[10 + 2 + span], -0.25F);
    EXPECT_EQ(out.normal[10], 0.5F);
  }
}

TEST(AdaptiveFilter, TellsWhatItHasLearned) {
  constexpr std::size_t size = 60000;
  const Sound noise = Noise(size, 0.1, 1);
  Sound input(size);
  for (std::size_t i = 4; i < size; ++i) input[i] = 0.75F * noise[i - 1] - 0.5F * noise[i - 4];
  AdaptiveFilter filter = Made({.taps = 8, .rate = 64, .normalize = true, .sampleRate = Rate});
  Through(filter, input, noise);

  std::array<std::int32_t, 16> learned{};
  filter.Coefficients(learned);
  for (std::size_t k = 0; k < learned.size(); ++k) {
    EXPECT_NEAR(learned[k] / 8388608.0, k == 0 ? 0.75 : k == 3 ? -0.5 : 0, 0.001) << k;
  }
  AdaptiveFilter frozen = Made({.taps = 8, .rate = 0, .sampleRate = Rate});
  frozen.SetCoefficients(learned);
  EXPECT_LT(Decibels(Rms(LastOf(Through(frozen, input, noise).normal, 1000)) / Rms(input)), -50);
  std::array<std::int32_t, 16> same{};
  frozen.Coefficients(same);
  EXPECT_EQ(same, learned) << "a frozen filter does not learn";
  frozen.Clear();
  EXPECT_EQ(Through(frozen, input, noise).normal, input);
}

TEST(AdaptiveFilter, LearnsOnlyWhenItsConditionHolds) {
  struct Case {
    AdaptCondition condition;
    double input, reference;  // dB
    bool adapts;
  };
  using enum AdaptCondition;
  const Case cases[] = {
      {Always, -80, -80, true},        {InputAbove, -28, -90, true},   {InputAbove, -32, 0, false},
      {InputBelow, -32, 0, true},      {InputBelow, -28, -90, false},  {ReferenceAbove, -90, -28, true},
      {ReferenceAbove, 0, -32, false}, {ReferenceBelow, 0, -32, true}, {ReferenceBelow, -90, -28, false},
      {OutputAbove, -28, -90, true},   {OutputAbove, -32, -90, false}, {OutputBelow, -32, -90, true},
      {OutputBelow, -28, -90, false}};
  constexpr std::uint16_t threshold = 1036;  // -30 dB
  for (const Case& one : cases) {
    AdaptiveFilter filter =
        Made({.taps = 32, .rate = 1, .condition = one.condition, .threshold = threshold, .sampleRate = Rate});
    Through(filter, Tone(6000, 1000, Rate, Linear(one.input)), Tone(6000, 1300, Rate, Linear(one.reference)));
    EXPECT_EQ(filter.Adapting(), one.adapts) << static_cast<int>(one.condition) << " " << one.input;
  }
}

TEST(AdaptiveFilter, SpreadsItsRatesAsTheOperatorSeesThem) {
  EXPECT_EQ(RateOfWord(256), 256U);
  EXPECT_EQ(RateOfWord(257), 258U);
  EXPECT_EQ(RateOfWord(1024), 1792U);
  EXPECT_EQ(RateOfWord(1025), 1796U);
  EXPECT_EQ(RateOfWord(2047), 5884U);
}

// Any settings, one after the other on one filter, with sounds of any level that change at random.
TEST(AdaptiveFilter, IsNeverUnstable) {
  std::mt19937 random(5);
  const auto below = [&random](unsigned end) { return static_cast<unsigned>(random()) % end; };
  AdaptiveFilter filter;
  std::vector<std::int32_t> coefficients(AdaptiveTaps);
  for (int round = 0; round < 60; ++round) {
    AdaptiveSettings settings{.taps = 4U + below(600),
                              .span = static_cast<std::uint16_t>(below(4) == 0 ? below(65536) : below(50)),
                              .delayed = below(2) != 0U ? DelayedChannel::Input : DelayedChannel::Reference,
                              .rate = static_cast<std::uint16_t>(below(3) == 0 ? 2047 : below(65536)),
                              .normalize = below(2) != 0U};
    filter.Configure(settings);
    for (int part = 0; part < 4; ++part) {
      Sound input = Sum(Noise(3000, Linear(below(120) - 100.0), below(1000)),
                        Tone(3000, below(6000), Rate, Linear(below(120) - 100.0)));
      Sound reference = below(2) != 0U ? input : Tone(3000, below(6000), Rate, Linear(below(120) - 100.0));
      constexpr float unusual[] = {std::numeric_limits<float>::quiet_NaN(),
                                   std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::max(),
                                   1e-44F};
      for (const float sample : unusual) input[below(3000)] = reference[below(3000)] = sample;
      const Outputs out = Through(filter, input, reference);
      for (const float sample : out.normal) ASSERT_LE(std::abs(sample), 4.0F);
      for (const float sample : out.rejected) ASSERT_LE(std::abs(sample), 4.0F);
    }
  }
  // After all that it works as ever.
  filter.Reset();
  filter.Configure({.taps = 64, .rate = 64, .normalize = true, .sampleRate = Rate});
  const Sound tone = Tone(36000, 440, Rate, 0.1);
  EXPECT_LT(Decibels(Rms(LastOf(Through(filter, tone, tone).normal, 2000)) / Rms(tone)), -40);
}

}  // namespace
}  // namespace sound_test::adaptive
