// Designed coefficients where a download cannot show it: every bin of a list, and records that nobody bounds.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/Fresh.h"
#include "model/HostDesign.h"
#include "model/Kinds.h"

namespace vc {
namespace {

constexpr std::int16_t AllTaps = 1024;

// What a filter stage passes at a bin of 1024: it subtracts what its coefficients pass, which is real about
// the centre of a linear-phase design.
double Passed(const std::vector<float>& taps, double bin) {
  const std::size_t middle = taps.size() / 2;
  const auto centre = static_cast<double>(middle);
  std::complex<double> sum;
  for (std::size_t n = 0; n < taps.size(); n++) {
    const double turn = 2.0 * std::numbers::pi * bin * (static_cast<double>(n) - centre) / 1024.0;
    sum += static_cast<double>(taps[n]) * std::polar(1.0, -turn);
  }
  return 1.0 - sum.real();
}

std::vector<int> RemovedBins(const std::vector<float>& taps) {
  std::vector<int> bins;
  for (int bin = 0; bin <= 512; bin++) {
    const double passed = Passed(taps, bin);
    if (passed < 0.001) bins.push_back(bin);
    EXPECT_TRUE(passed < 0.001 || passed > 0.999) << bin;
  }
  return bins;
}

std::vector<int> BinsFrom(int first, int last) {
  std::vector<int> bins;
  for (int bin = first; bin <= last; bin++) bins.push_back(bin);
  return bins;
}

TEST(BuildCoefficients, NotchesTheBinsOfTheList) {
  FilterTransform transform;
  SystemSettings settings = Fresh();  // 7200 Hz, 7.03 Hz a bin
  const auto removed = [&](std::int16_t frequency, std::int16_t width) {
    settings.builtFreq[1][16] = frequency;
    settings.builtWidth[1][16] = width;
    return RemovedBins(BuildCoefficients(transform, settings, 1, FilterKind::MultipleNotch, AllTaps));
  };
  EXPECT_EQ(removed(0, 5), BinsFrom(0, -1));
  EXPECT_EQ(removed(704, 1), BinsFrom(101, 101));     // 100.12 and a half
  EXPECT_EQ(removed(704, 2), BinsFrom(100, 102));     // 100.5 and 101.5 to the even neighbours
  EXPECT_EQ(removed(700, 2), BinsFrom(100, 100));     // 99.5 and 100.5
  EXPECT_EQ(removed(225, 1), BinsFrom(32, 32));       // 32.5
  EXPECT_EQ(removed(18, 9), BinsFrom(0, 7));          // bin 3
  EXPECT_EQ(removed(3200, 200), BinsFrom(356, 512));  // nothing stops at the highest bin of the transform
  settings.builtFreq[1][1] = 704;
  settings.builtWidth[1][1] = 3;
  EXPECT_THAT(removed(750, 1), testing::ElementsAre(100, 101, 102, 107));
}

TEST(BuildCoefficients, HasASpectralInverseOneBinUp) {
  FilterTransform transform;
  SystemSettings settings = Fresh();
  settings.sifCurve[1][100] = -80;
  std::vector<int> removed = BinsFrom(461, 512);
  removed.insert(removed.begin(), 101);
  EXPECT_EQ(RemovedBins(BuildCoefficients(transform, settings, 1, FilterKind::SpectralInverse, AllTaps)),
            removed);
}

TEST(BuildCoefficients, StaysFiniteAtAnyGain) {
  FilterTransform transform;
  SystemSettings settings = Fresh();
  settings.sifCurve[1].Fill(std::numeric_limits<float>::max());
  settings.sifCurve[1][100] = std::numeric_limits<float>::quiet_NaN();
  const auto taps = BuildCoefficients(transform, settings, 1, FilterKind::SpectralInverse, AllTaps);
  for (const float tap : taps) ASSERT_TRUE(std::isfinite(tap));
  EXPECT_LT(taps[512], -1.0F);  // so much gain takes away a negative part
}

struct Plateaus {
  std::vector<float> levels;
  std::vector<bool> gentle;  // none of the 5 lines on either side is on another plateau
};
Plateaus RandomPlateaus(std::mt19937& random) {
  Plateaus drawn;
  while (drawn.levels.size() < CurveLines) {
    const std::size_t wide = 11 + random() % 30, from = drawn.levels.size();
    const std::size_t end = std::min(from + wide, CurveLines);
    drawn.levels.resize(end, -static_cast<float>(random() % 61));
    for (std::size_t i = from; i < end; ++i) {
      drawn.gentle.push_back((from == 0 || i >= from + 5) && (end == CurveLines || i + 5 < end));
    }
  }
  return drawn;
}

TEST(CurveDesign, IsRightOnQuietLinesWithFewerTaps) {
  FilterTransform transform;
  std::mt19937 random(7);
  for (const int number : {976, 976, 976, 975, 1022}) {
    const Plateaus drawn = RandomPlateaus(random);
    const auto taps =
        CoefficientsOf(transform, CurveDesign(DrawnCurve(drawn.levels), static_cast<std::int16_t>(number)));
    ASSERT_EQ(taps.size(), static_cast<std::size_t>(number));
    ASSERT_TRUE(number % 2 != 0 || std::abs(taps[0]) < 1e-7F) << "it has no partner, but " << taps[0];
    EXPECT_LT(std::abs(Passed(taps, 490)), 0.03) << "above the curve nothing passes";
    for (std::size_t line = 0; line < CurveLines; ++line) {
      if (!drawn.gentle[line]) continue;
      const double heard = 20 * std::log10(std::abs(Passed(taps, static_cast<double>(line))));
      ASSERT_NEAR(heard, static_cast<double>(drawn.levels[line]), 1.0) << number << " taps, line " << line;
    }
  }
}

// A curve of 0 dB with a notch of a few lines, or of -60 dB with a peak of as many.
TEST(CurveDesign, KeepsNarrowNotchesAndPeaksWithFewerTaps) {
  constexpr std::int16_t fewer = 976;
  FilterTransform transform;
  for (std::size_t width = 1; width <= 3; ++width) {
    std::vector<float> levels(CurveLines, 0.0F);
    const auto first = levels.begin() + 200;
    std::fill_n(first, width, -60.0F);
    const auto notched = CoefficientsOf(transform, CurveDesign(DrawnCurve(levels), fewer));
    std::ranges::transform(levels, levels.begin(), [](float level) { return -60 - level; });
    const auto peaked = CoefficientsOf(transform, CurveDesign(DrawnCurve(levels), fewer));
    for (double bin = 200; bin < 200.0 + static_cast<double>(width); ++bin) {
      EXPECT_LT(std::abs(Passed(notched, bin)), 0.002) << width << " wide";
      EXPECT_GT(Passed(peaked, bin), 0.78) << width << " wide";
    }
  }
}

}  // namespace
}  // namespace vc
