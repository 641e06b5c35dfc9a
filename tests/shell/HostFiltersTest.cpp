// The filters that the host designs, heard at the far end: the response of the coefficients that have arrived
// in the unit, by a direct sum.
#include <cmath>
#include <complex>
#include <numbers>

#include "DownloadFixture.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int CurveLines = 460, EdgeLines = 115;

// Response at a bin of a transform of so many bins; a filter of 24 bits, with the time zero at `centre`.
double Response(const std::vector<std::int32_t>& coefficients, double centre, double bin, double bins) {
  constexpr double fullScale = 8388607.0;
  std::complex<double> sum = 0;
  for (std::size_t n = 0; n < coefficients.size(); ++n) {
    const double turns = bin * (static_cast<double>(n) - centre) / bins;
    sum += coefficients[n] / fullScale * std::polar(1.0, -2.0 * std::numbers::pi * turns);
  }
  return sum.real();  // symmetric about its centre, the sum is real
}

double Decibels(double ratio) { return 20.0 * std::log10(std::abs(ratio)); }

float Drawn(int line, int lines) {
  return static_cast<float>(-15.0 + 12.0 * std::cos(5.0 * std::numbers::pi * line / lines));
}

struct HostFilters : support::DownloadFixture, testing::WithParamInterface<int> {
  HostFilters() { Edit("bandwidthIndex", std::to_string(GetParam())); }

  // What is left of a signal at a bin of 1024 behind stage 1, which subtracts what its coefficients pass.
  double Left(double bin) const {
    const auto& coefficients = Stage(1).coefficients;
    return 1.0 - Response(coefficients, static_cast<double>(coefficients.size()) / 2, bin, 1024.0);
  }
  int BinOf(double hertz) const { return Nearest(hertz * 1024.0 / record.sampleRate + 0.5); }
};

TEST_P(HostFilters, HiResGraphicFollowsItsCurve) {
  Edit("filterType", "12", 1);
  for (int line = 0; line < CurveLines; ++line) {
    Edit("hiResCurve", std::to_string(Drawn(line, CurveLines)), 1, line);
  }
  Settle();
  ASSERT_EQ(Stage(1).coefficients.size(), GetParam() == 5 ? 976U : 1024U);
  const double tolerance = GetParam() == 5 ? 0.05 : 0.02;  // what the shortening costs
  for (int line = 4; line < CurveLines - 20; line += 3) {
    ASSERT_NEAR(Decibels(Left(line)), static_cast<double>(Drawn(line, CurveLines)), tolerance) << line;
    ASSERT_NEAR(Decibels(Left(line + 0.5)), static_cast<double>(Drawn(line, CurveLines)), 1.0) << line;
  }
  EXPECT_LT(Decibels(Left(490)), -30.0);  // above the curve nothing passes
}

TEST_P(HostFilters, SpectralInverseFollowsItsCurveOneBinUp) {
  Edit("filterType", "11", 1);
  for (int line = 0; line < CurveLines; ++line) {
    Edit("sifCurve", std::to_string(Drawn(line, CurveLines)), 1, line);
  }
  Settle();
  for (int line = 4; line < CurveLines - 20; line += 3) {
    ASSERT_NEAR(Decibels(Left(line + 1)), static_cast<double>(Drawn(line, CurveLines)), 0.5) << line;
  }
  if (GetParam() == 5) return;  // shortened to 976 taps the ends smear
  EXPECT_NEAR(Left(0), Left(1), 0.001);
  EXPECT_NEAR(Decibels(Left(CurveLines)), static_cast<double>(Drawn(CurveLines - 1, CurveLines)), 0.1);
  EXPECT_NEAR(Left(CurveLines + 1), 0.0, 0.001);
}

TEST_P(HostFilters, MultipleSlotActsAtItsBins) {
  const int low = BinOf(1000), high = BinOf(2500);
  Edit("filterType", "10", 1);
  Edit("mslotFreq", "1000", 1, 1);
  Edit("mslotWidth", "5", 1, 1);
  Settle();
  for (int away = 0; away < 20; away += GetParam() == 5 ? 10 : 1) {
    for (const int bin : {low - away, low + away}) ASSERT_NEAR(Left(bin), away <= 2 ? 1.0 : 0.0, 0.06) << bin;
  }
  EXPECT_NEAR(Left(high), 0.0, 0.06);
  Edit("mslotFreq", "0", 1, 1);  // an empty list is transparent
  Settle();
  for (const int bin : {1, low, high, 400}) EXPECT_NEAR(Left(bin), 1.0, 0.001) << bin;
}

TEST_P(HostFilters, SpectralGraphicIsItsCurveItself) {
  Edit("eqType", "1", 1);
  for (int line = 0; line < EdgeLines; ++line) {
    Edit("edgeCurve", std::to_string(Drawn(line, EdgeLines)), 1, line);
  }
  Settle();
  const auto& coefficients = Stage(9).coefficients;
  ASSERT_EQ(coefficients.size(), 256U);
  for (int line = 0; line < EdgeLines; ++line) {
    const double heard = Response(coefficients, 128, line, 256.0);
    ASSERT_NEAR(Decibels(heard), static_cast<double>(Drawn(line, EdgeLines)), 0.02) << line;
  }
  EXPECT_LT(Decibels(Response(coefficients, 128, 121, 256.0)), -40.0);
}

INSTANTIATE_TEST_SUITE_P(Bandwidths, HostFilters, testing::Values(0, 4, 5));

}  // namespace
}  // namespace vc
