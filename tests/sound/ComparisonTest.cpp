// What the operator hears while he switches between before and after.
#include <algorithm>
#include <cmath>
#include <iterator>

#include <gtest/gtest.h>

#include "sound/Signals.h"
#include "unit/sound/Blocks.h"
#include "unit/sound/Comparison.h"

namespace sound_test::comparison {
namespace {

using test::signals::Sound;
using unit::sound::BlockFrames;
using unit::sound::Comparison;
using unit::sound::ShortTermLoudness;

// A chain that has a gain and a delay, and what is heard of it.
struct Ears {
  Ears(int sampleRate, float chainGain, std::size_t chainDelay)
      : gain(chainGain), delay(chainDelay), comparison(sampleRate) {}

  float gain;
  std::size_t delay;
  Comparison comparison;
  Sound heard, past;  // of the input

  void Hear(std::span<const float> in, const Sound& out) {
    for (std::size_t at = 0; at + BlockFrames <= in.size(); at += BlockFrames) {
      Sound left(out.begin() + static_cast<std::ptrdiff_t>(at),
                 out.begin() + static_cast<std::ptrdiff_t>(at + BlockFrames));
      Sound right = left;
      const std::span<const float> input = in.subspan(at, BlockFrames);
      comparison.Process({input, input}, {left, right}, {delay, delay});
      std::ranges::copy(left, std::back_inserter(heard));
    }
  }
  // As many whole blocks as there are.
  void Hear(std::span<const float> in) {
    in = in.first(in.size() / BlockFrames * BlockFrames);
    const std::size_t first = past.size();
    std::ranges::copy(in, std::back_inserter(past));
    Sound out(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) {
      if (first + i >= delay) out[i] = gain * past[first + i - delay];
    }
    Hear(in, out);
  }
  double HighestJump(std::size_t from) const {
    float jump = 0;
    for (std::size_t i = from + 1; i < heard.size(); ++i)
      jump = std::max(jump, std::fabs(heard[i] - heard[i - 1]));
    return jump;
  }
};

double Loudness(std::span<const float> sound, int rate) {
  ShortTermLoudness meter(rate);
  meter.Add(sound, sound);
  return meter.Value().value_or(-99);
}

TEST(Comparison, PassesTheProcessedSoundUntouched) {
  Ears ears{18000, 0.5F, 300};
  const Sound in = test::signals::Noise(36096, 0.1, 1), out = test::signals::Noise(36096, 0.05, 2);
  ears.Hear(in, out);
  EXPECT_EQ(ears.heard, out);
  ears.comparison.SetBypass(true);
  ears.Hear(in, out);
  EXPECT_NE(std::vector(ears.heard.end() - 100, ears.heard.end()), std::vector(out.end() - 100, out.end()));
  ears.comparison.SetBypass(false);
  ears.Hear(in, out);
  ears.heard.clear();
  ears.Hear(in, out);
  EXPECT_EQ(ears.heard, out);
}

TEST(Comparison, SwitchesWithoutAClickToTheSameLoudness) {
  for (const int rate : {7200, 12000, 36000}) {
    const auto second = static_cast<std::size_t>(rate);
    for (const float gain : {0.3F, 1.0F, 2.5F}) {
      Ears ears{rate, gain, 700};
      const std::size_t piece = 5 * second / BlockFrames * BlockFrames;
      const Sound in = test::signals::Tone(3 * piece, 220, rate, 0.2);
      ears.Hear(std::span(in).first(piece));
      const std::size_t switched = ears.heard.size();
      EXPECT_NEAR(ears.comparison.GainDecibels(), test::signals::Decibels(gain), 0.1);
      ears.comparison.SetBypass(true);
      ears.Hear(std::span(in).subspan(piece, piece));
      ears.comparison.SetBypass(false);
      ears.Hear(std::span(in).subspan(2 * piece));
      const double slope = 0.2 * gain * 2 * M_PI * 220 / rate;
      EXPECT_LT(ears.HighestJump(second), 1.05 * slope) << rate << ' ' << gain;
      const std::span all(ears.heard);
      const double before = Loudness(all.subspan(switched - 3 * second, 3 * second), rate),
                   after = Loudness(all.subspan(switched + 2 * second, 3 * second), rate);
      EXPECT_NEAR(after, before, 0.5) << rate << ' ' << gain;
    }
  }
}

// What the chain delays, the input is delayed too: taken off each other nothing is left.
TEST(Comparison, LiesUponTheProcessedSound) {
  Ears ears{12000, 1.0F, 1234};
  const Sound in = test::signals::Noise(60160, 0.1, 3);
  Sound out(in.size());
  for (std::size_t i = 1234; i < in.size(); ++i) out[i] = in[i - 1234];
  ears.comparison.SetBypass(true);
  ears.Hear(in);
  for (std::size_t i = 30000; i < ears.heard.size(); ++i) ASSERT_NEAR(ears.heard[i], out[i], 0.002) << i;
}

TEST(Comparison, IsNeverLoudBeyondReason) {
  constexpr int rate = 12000;
  const Sound soft = test::signals::Noise(5 * rate, 0.001, 4), loud = test::signals::Noise(5 * rate, 0.25, 5);
  Ears louder{rate, 100.0F, 0};
  louder.comparison.SetBypass(true);
  louder.Hear(soft);
  EXPECT_EQ(louder.comparison.GainDecibels(), 20.0);
  // A peak that comes suddenly, and then stays within full scale.
  louder.heard.clear();
  louder.gain = 1.0F;
  louder.Hear(loud);
  EXPECT_LE(*std::ranges::max_element(louder.heard), 1.0F);
  const Sound silence(5 * rate);
  Ears silent{rate, 0.0F, 0};
  silent.Hear(loud);
  silent.Hear(silence);
  EXPECT_EQ(silent.comparison.GainDecibels(), 0.0);
  Ears peaky{rate, 8.0F, 0};
  peaky.Hear(loud);
  EXPECT_LE(peaky.comparison.GainDecibels(),
            -test::signals::Decibels(*std::ranges::max_element(loud)) + 0.01);
}

}  // namespace
}  // namespace sound_test::comparison
