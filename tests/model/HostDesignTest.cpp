// Designed coefficients: their response, measured by a direct sum, against what was drawn or listed.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/Fresh.h"
#include "model/HostDesign.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using testing::Each;

constexpr std::int16_t AllTaps = 1024;

// bin counts parts of length, whole or not. The phase is taken about the centre, where a linear-phase design
// is real.
double Response(const std::vector<float>& taps, double bin, int length, int centre) {
  std::complex<double> sum;
  for (std::size_t n = 0; n < taps.size(); n++) {
    const double turn = 2.0 * std::numbers::pi * bin * (static_cast<double>(n) - centre) / length;
    sum += static_cast<double>(taps[n]) * std::polar(1.0, -turn);
  }
  return sum.real();
}

// What a filter stage passes: it subtracts what its coefficients pass.
double Passed(const std::vector<float>& taps, double bin) {
  return 1.0 - Response(taps, bin, 1024, static_cast<int>(taps.size() / 2));
}

double DecibelsOf(double response) { return 20.0 * std::log10(std::abs(response)); }

double SmoothCurve(double line, double lines) {
  return -12.0 + 8.0 * std::cos(2.0 * std::numbers::pi * line / lines) - 4.0 * line / lines;
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

TEST(BuildCoefficients, FollowsADrawnCurveBetweenTheBinsToo) {
  SystemSettings settings = Fresh();
  for (int i = 0; i < 460; i++) settings.hiResCurve[3][i] = static_cast<float>(SmoothCurve(i, 460));
  for (const std::int16_t taps : {std::int16_t{976}, AllTaps}) {
    const auto design = BuildCoefficients(settings, 3, FilterKind::HiResGraphic, taps);
    ASSERT_EQ(design.size(), static_cast<std::size_t>(taps));
    for (double bin = 1.0; bin < 455.0; bin += 3.7) {
      EXPECT_NEAR(DecibelsOf(Passed(design, bin)), SmoothCurve(bin, 460), 0.5) << taps << " " << bin;
    }
    EXPECT_LT(DecibelsOf(Passed(design, 500.0)), -40.0);  // nothing is heard above the drawn lines
  }
}

TEST(BuildCoefficients, CutsTheMiddleOutOfTheWholeDesign) {
  SystemSettings settings = Fresh();
  settings.hiResCurve[1][100] = -40.0F;
  const auto whole = BuildCoefficients(settings, 1, FilterKind::HiResGraphic, AllTaps);
  const auto cut = BuildCoefficients(settings, 1, FilterKind::HiResGraphic, 976);
  EXPECT_TRUE(std::equal(cut.begin(), cut.end(), whole.begin() + 24, whole.end() - 24));
  EXPECT_EQ(std::ranges::max_element(whole) - whole.begin(), 512);
  EXPECT_EQ(std::ranges::max_element(cut) - cut.begin(), 488);
}

TEST(BuildCoefficients, PutsLineZeroOfAMeasuredCurveAtBinOne) {
  SystemSettings settings = Fresh();
  for (int i = 0; i < 460; i++) settings.sifCurve[2][i] = static_cast<float>(SmoothCurve(i, 460));
  settings.sifCurve[2][200] = -60.0F;
  const auto design = BuildCoefficients(settings, 2, FilterKind::SpectralInverse, AllTaps);
  EXPECT_NEAR(DecibelsOf(Passed(design, 0)), SmoothCurve(0, 460), 0.01);
  EXPECT_NEAR(DecibelsOf(Passed(design, 1)), SmoothCurve(0, 460), 0.01);
  EXPECT_NEAR(DecibelsOf(Passed(design, 460)), SmoothCurve(459, 460), 0.01);
  EXPECT_NEAR(Passed(design, 201), 0.001, 0.0002);
  EXPECT_NEAR(Passed(design, 461), 0.0, 0.0002);
}

TEST(BuildCoefficients, NotchesTheBinsOfTheList) {
  SystemSettings settings = Fresh();  // 7200 Hz, 7.03 Hz a bin
  const auto removed = [&](std::int16_t frequency, std::int16_t width) {
    settings.mnotchFreq[1][16] = frequency;
    settings.mnotchWidth[1][16] = width;
    return RemovedBins(BuildCoefficients(settings, 1, FilterKind::MultipleNotch, AllTaps));
  };
  EXPECT_EQ(removed(0, 5), BinsFrom(0, -1));
  EXPECT_EQ(removed(704, 1), BinsFrom(101, 101));     // 100.12 and a half
  EXPECT_EQ(removed(704, 2), BinsFrom(100, 102));     // 100.5 and 101.5 to the even neighbours
  EXPECT_EQ(removed(700, 2), BinsFrom(100, 100));     // 99.5 and 100.5
  EXPECT_EQ(removed(225, 1), BinsFrom(32, 32));       // 32.5
  EXPECT_EQ(removed(18, 9), BinsFrom(0, 7));          // bin 3
  EXPECT_EQ(removed(3200, 200), BinsFrom(356, 512));  // nothing stops at the highest bin of the transform
  settings.mnotchFreq[1][1] = 704;
  settings.mnotchWidth[1][1] = 3;
  EXPECT_THAT(removed(750, 1), testing::ElementsAre(100, 101, 102, 107));
}

TEST(BuildCoefficients, SlotsPassTheBinsOfTheListAlone) {
  SystemSettings settings = Fresh();
  const auto empty = BuildCoefficients(settings, 4, FilterKind::MultipleSlot, AllTaps);
  EXPECT_THAT(empty, Each(0.0F));
  settings.mslotFreq[4][1] = 704;
  settings.mslotWidth[4][1] = 3;
  const auto removed = RemovedBins(BuildCoefficients(settings, 4, FilterKind::MultipleSlot, AllTaps));
  std::vector<int> expected = BinsFrom(0, 99);
  std::ranges::copy(BinsFrom(103, 512), std::back_inserter(expected));
  EXPECT_EQ(removed, expected);
}

bool AllFinite(const std::vector<float>& taps) {
  return std::ranges::all_of(taps, [](float tap) { return std::isfinite(tap); });
}

TEST(BuildCoefficients, StaysFiniteForAnyRecord) {
  SystemSettings settings = Fresh();
  settings.sifCurve[1].Fill(std::numeric_limits<float>::max());
  settings.sifCurve[1][100] = std::numeric_limits<float>::quiet_NaN();
  const auto endless = BuildCoefficients(settings, 1, FilterKind::SpectralInverse, AllTaps);
  EXPECT_TRUE(AllFinite(endless));
  EXPECT_LT(endless[512], -1.0F);  // so much gain takes away a negative part
  settings.mnotchFreq[1].Fill(32767);
  settings.mnotchWidth[1].Fill(32767);
  settings.mnotchFreq[1][2] = -32768;
  settings.mnotchWidth[1][2] = -32768;
  for (const float rate : {0.0F, std::numeric_limits<float>::quiet_NaN(), -7200.0F, 1e-30F}) {
    settings.sampleRate = rate;
    EXPECT_TRUE(AllFinite(BuildCoefficients(settings, 1, FilterKind::MultipleNotch, AllTaps))) << rate;
  }
}

TEST(DesignEdgeFilter, FollowsItsCurveWithoutSubtraction) {
  SystemSettings settings = Fresh();
  for (int i = 0; i < 129; i++) settings.edgeCurve[2][i] = static_cast<float>(SmoothCurve(i, 115));
  const auto design = DesignEdgeFilter(settings, 2);
  ASSERT_EQ(design.size(), 256U);
  EXPECT_EQ(std::ranges::max_element(design) - design.begin(), 123);
  EXPECT_THAT(std::vector(design.begin() + 246, design.end()), Each(0.0F));
  for (double bin = 0.0; bin < 110.0; bin += 0.9) {
    EXPECT_NEAR(DecibelsOf(Response(design, bin, 246, 123)), SmoothCurve(bin, 115), 0.5) << bin;
  }
  EXPECT_NEAR(Response(design, 115, 246, 123), 0.0, 1e-4);  // what is drawn above is not heard
}

}  // namespace
}  // namespace vc
