// The compressor's static curve and its two time constants, on sines.
#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/Compressor.h"

namespace sound_test::compressor {
namespace {

using namespace measure;
using namespace unit::sound;

constexpr double Rate = 18000.0, Bandwidth = 8000.0;

struct Curve {
  double limit, compression, compressionRatio, expansionRatio;
};

std::int16_t Threshold(double decibels) {
  return static_cast<std::int16_t>(std::lround(256.0 * std::log2(32768.0 * Linear(decibels)) + 0.5));
}

std::uint32_t TimeWord(double milliseconds) {
  return static_cast<std::uint32_t>(std::lround(2147483647.0 / (Bandwidth / 1000.0 * milliseconds)));
}

CompressorWords Words(const Curve& curve, double attack, double release) {
  return {.attack = TimeWord(attack),
          .release = TimeWord(release),
          .limitThreshold = Threshold(curve.limit),
          .compressionRatio = static_cast<std::uint16_t>(std::lround(32768.0 / curve.compressionRatio)),
          .compressionThreshold = Threshold(curve.compression),
          .expansionRatio = static_cast<std::uint16_t>(std::lround(16.0 * curve.expansionRatio))};
}

double Wanted(const Curve& c, double input) {
  if (input > c.limit) return c.limit;
  const double line = c.limit + (std::max(input, c.compression) - c.limit) / c.compressionRatio;
  return input < c.compression ? line + (input - c.compression) * c.expansionRatio : line;
}

TEST(Compressor, StaticCurveHolds) {
  const Curve curves[] = {
      {-10, -40, 100, 2}, {0, 0, 1, 2}, {-20, -50, 3, 1}, {-5, -5, 1, 1}, {-6, -30, 2, 4}};
  for (const Curve& curve : curves) {
    for (double input = -60.0; input <= 0.0; input += 7.5) {
      for (const double hertz : {120.0, 1000.0, 4500.0, 6000.0}) {
        if (Wanted(curve, input) - input < -90.0) continue;
        Compressor compressor(Rate);
        compressor.Configure(Words(curve, 5, 100), Bandwidth);
        // 4500 Hz at 45 degrees: no sample ever stands on a top.
        Signal signal = Sine(hertz, Rate, 36000, Linear(input));
        if (hertz == 4500.0) {
          for (std::size_t i = 0; i < signal.size(); ++i) {
            signal[i] = static_cast<float>(Linear(input) * std::numbers::sqrt2 / 2 * (i % 4 < 2 ? 1 : -1));
          }
        }
        const Signal output = Processed(compressor, signal);
        const double level = Decibels(AmplitudeAt(std::span(output).last(18000), hertz, Rate));
        EXPECT_NEAR(level, Wanted(curve, input), 0.5) << input << " dB, " << hertz << " Hz";
      }
    }
  }
}

// Milliseconds until 63 % of the change of the gain in dB after a step of the level, told in sines.
double MeasuredTime(double attack, double release, double before, double after) {
  Compressor compressor(Rate);
  compressor.Configure(Words({0, -60, 3, 1}, attack, release), Bandwidth);
  Processed(compressor, Sine(1000, Rate, 180000, Linear(before)));
  const double from = compressor.gain();
  Compressor settled = compressor;
  Processed(settled, Sine(1000, Rate, 180000, Linear(after)));
  const double mark = from + (1.0 - std::exp(-1.0)) * (settled.gain() - from);
  const Signal signal = Sine(1000, Rate, 180000, Linear(after));
  std::size_t at = 0;
  while (at < signal.size() && (compressor.gain() < mark) == (from < mark)) {
    float out = 0.0F;
    compressor.Process(std::span(signal).subspan(at++, 1), {&out, 1});
  }
  return 1000.0 * static_cast<double>(at) / Rate;
}

TEST(Compressor, TimeConstantsHold) {
  for (const double attack : {10.0, 50.0, 250.0})
    EXPECT_NEAR(MeasuredTime(attack, 500, -40, -10), attack, 0.1 * attack);
  for (const double release : {50.0, 100.0, 2000.0}) {
    EXPECT_NEAR(MeasuredTime(10, release, -10, -40), release, 0.1 * release);
  }
}

TEST(Compressor, CuttingIntoBlocksChangesNothing) {
  Compressor whole(Rate), pieces(Rate);
  whole.Configure(Words({-10, -40, 4, 2}, 2, 60), Bandwidth);
  pieces.Configure(Words({-10, -40, 4, 2}, 2, 60), Bandwidth);
  EXPECT_EQ(Processed(whole, Noise(5000)), ProcessedInPieces(pieces, Noise(5000)));
}

}  // namespace
}  // namespace sound_test::compressor
