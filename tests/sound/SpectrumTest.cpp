// The analyzer and the level meter, measured with tones and noise.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/LevelMeter.h"
#include "unit/sound/SpectrumAnalyzer.h"

namespace unit::sound {
namespace sound_test::spectrum {
namespace {

constexpr double Rate = 18000.0;

double DbOf(std::uint8_t byte) { return (byte - 192.0) * 70.0 / 185.0; }

std::size_t Frames(double seconds) { return static_cast<std::size_t>(seconds * Rate); }

std::vector<float> Tone(double hertz, double db, double seconds) {
  return measure::Sine(hertz, Rate, Frames(seconds), measure::Linear(db));
}

std::vector<float> Silence(double seconds) { return std::vector<float>(Frames(seconds)); }

double LineHz(std::size_t line) { return Rate / 1024.0 * static_cast<double>(line + 1); }

// White noise, its RMS against that of a sine of peak 1.
std::vector<float> Noise(double db, double seconds) {
  return measure::Noise(Frames(seconds), static_cast<float>(measure::Linear(db) * std::sqrt(1.5)));
}

struct Spread {
  double mean, deviation;  // dB over lines 10..459
};

Spread SpreadOf(const SpectrumBody& body) {
  double sum = 0.0;
  double squares = 0.0;
  for (std::size_t line = 10; line < 460; ++line) {
    sum += DbOf(body[line]) / 450.0;
    squares += DbOf(body[line]) * DbOf(body[line]) / 450.0;
  }
  return {sum, std::sqrt(squares - sum * sum)};
}

TEST(Spectrum, TonesStandAtTheirLineAndLevel) {
  for (const std::size_t line : {4U, 57U, 300U, 459U}) {
    for (const double db : {0.0, -20.0, -60.0}) {
      for (const double gainDb : {0.0, 20.0}) {
        SpectrumAnalyzer analyzer(Rate);
        analyzer.SetGain(static_cast<std::uint16_t>(std::lround(128.0 * std::pow(10.0, gainDb / 20.0))));
        analyzer.Process(Tone(LineHz(line), db, 0.5));
        const SpectrumBody body = analyzer.Lines();
        EXPECT_NEAR(DbOf(body[line]), db + gainDb, 0.5) << line;
        EXPECT_EQ(std::ranges::max_element(body) - body.begin(), static_cast<std::ptrdiff_t>(line));
        EXPECT_LT(DbOf(body[line < 200 ? line + 6 : line - 6]), -69.0);
        // The peaks of a full-scale tone may be full-scale samples or not.
        EXPECT_TRUE(db + gainDb == 0.0 || analyzer.Overload() == (db + gainDb > 0.0));
      }
    }
  }
}

// Also between two lines: the peak stands within half a decibel in the line that is nearest, or level with it
// where the next one is hardly further off, and no side lobe is within the range.
TEST(Spectrum, TonesOfAnyFrequencyStandWithinHalfADecibel) {
  for (const double line : {30.0, 211.0, 411.0}) {
    for (int step = -50; step <= 50; ++step) {
      const double at = line + step / 100.0, db = step % 10 / 10.0 - 1.0;
      SpectrumAnalyzer analyzer(Rate);
      analyzer.Process(Tone(Rate / 1024.0 * (at + 1.0), db, 0.2));
      const SpectrumBody body = analyzer.Lines();
      const auto nearest = static_cast<std::size_t>(line);
      EXPECT_NEAR(DbOf(body[nearest]), db, 0.5) << at;
      EXPECT_EQ(std::ranges::max(body), body[nearest]) << at;
      const std::uint8_t neighbour = std::max(body[nearest - 1], body[nearest + 1]);
      EXPECT_TRUE(std::abs(step) > 30 || body[nearest] > neighbour) << at;
      EXPECT_LT(DbOf(std::max(body[nearest - 5], body[nearest + 5])), -70.0) << at;
    }
  }
}

// A line of white noise has the power of 2.838 bins, the noise bandwidth of the window. An average over n
// spectra of it spreads by 4.34 dB / sqrt(n), an exponential one with the weight 1 / m counts 2 m - 1; a
// single one has its mean 2.5 dB too low and spreads by 5.57 dB.
TEST(Spectrum, NoiseFloorAndAverages) {
  const double floorDb = -40.0 - 10.0 * std::log10(512.0 / 2.838);
  for (const unsigned n : {2U, 4U, 6U}) {
    SpectrumAnalyzer analyzer(Rate);
    analyzer.SetAveraging(static_cast<std::uint8_t>(0x10 + n));
    analyzer.Process(Noise(-40.0, 20.0));
    const Spread spread = SpreadOf(analyzer.Lines());
    EXPECT_NEAR(spread.mean, floorDb, n == 2 ? 1.0 : 0.4);
    const double expected = 4.34 / std::sqrt(2.0 * (1U << n) - 1.0);
    EXPECT_NEAR(spread.deviation, expected, 0.2 * expected) << n;
  }
  SpectrumAnalyzer single(Rate);
  single.Process(Noise(-20.0, 2.0));
  EXPECT_NEAR(SpreadOf(single.Lines()).mean, floorDb + 20.0 - 2.5, 1.0);
  EXPECT_NEAR(SpreadOf(single.Lines()).deviation, 5.57, 1.2);
}

TEST(Spectrum, HoldsPeaksClearsAndStops) {
  SpectrumAnalyzer analyzer(Rate);
  analyzer.SetAveraging(0x40);
  analyzer.Process(Tone(LineHz(50), -10.0, 0.5));
  analyzer.Process(Noise(-40.0, 5.0));
  EXPECT_NEAR(DbOf(analyzer.Lines()[50]), -10.0, 0.5);
  analyzer.SetRun(0x40);
  EXPECT_EQ(std::ranges::max(analyzer.Lines()), 0);
  analyzer.Process(Noise(-40.0, 1.0));
  EXPECT_LT(DbOf(analyzer.Lines()[50]), -45.0);
  analyzer.SetRun(0x80);
  const SpectrumBody held = analyzer.Lines();
  analyzer.Process(Tone(LineHz(50), -10.0, 1.0));
  EXPECT_EQ(analyzer.Lines(), held);
  analyzer.SetRun(0xC0);
  EXPECT_EQ(std::ranges::max(analyzer.Lines()), 0);
  analyzer.Process(Tone(LineHz(50), -10.0, 1.0));
  EXPECT_EQ(std::ranges::max(analyzer.Lines()), 0);  // held as it was cleared
  analyzer.SetRun(0);
  analyzer.SetAveraging(0);
  analyzer.Process(Tone(LineHz(90), -10.0, 0.5));
  EXPECT_NEAR(DbOf(analyzer.Lines()[90]), -10.0, 0.5);
  EXPECT_LT(DbOf(analyzer.Lines()[50]), -60.0);
}

TEST(Spectrum, SurvivesAnySamples) {
  SpectrumAnalyzer whole(Rate);
  whole.SetAveraging(0x14);
  constexpr float infinity = std::numeric_limits<float>::infinity();
  LevelMeter meter(Rate);
  for (const float wild : {std::nanf(""), infinity, -infinity, 3e38F}) {
    whole.Process(std::vector<float>(3000, wild));
    meter.Process(std::vector<float>(3000, wild));
  }
  EXPECT_EQ(meter.Word(), 32767);
  whole.Clear();
  meter.Reset();
  whole.Process(Tone(LineHz(50), 0.0, 0.5));
  meter.Process(Tone(LineHz(50), 0.0, 0.5));
  EXPECT_NEAR(DbOf(whole.Lines()[50]), 0.0, 0.5);
  EXPECT_NEAR(meter.Word(), 20675, 40);
}

TEST(LevelMeter, ShowsPeaksAndFallsByTwentyDbIn1700Milliseconds) {
  for (const double db : {0.0, -20.0, -40.0}) {
    LevelMeter meter(Rate);
    meter.Process(Tone(997.0, db, 0.2));
    EXPECT_NEAR(20.0 * std::log10(meter.Word() / 20675.0), db, 0.25);
    EXPECT_FALSE(meter.Overload());
    const double before = meter.Word();
    meter.Process(Silence(0.85));
    EXPECT_NEAR(20.0 * std::log10(meter.Word() / before), -10.0, 0.3);
    meter.Process(Silence(20.0));
    EXPECT_EQ(meter.Word(), 0);
  }
  LevelMeter meter(Rate);
  meter.Process(std::vector<float>{-1.0F});
  EXPECT_EQ(meter.Word(), 20675);
  meter.Process(Silence(0.49));
  EXPECT_TRUE(meter.Overload());
  meter.Process(Silence(0.02));
  EXPECT_FALSE(meter.Overload());
}

}  // namespace
}  // namespace sound_test::spectrum
}  // namespace unit::sound
