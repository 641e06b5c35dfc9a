// The curve of the dynamics processor, the laws of its handles, and the reading that goes with it.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "Fresh.h"
#include "model/StageReadings.h"
#include "model/TransferCurve.h"

namespace vc {
namespace {

// Every 9 dB of both thresholds, and ratios from end to end.
std::vector<TransferCurve> Curves() {
  std::vector<TransferCurve> curves;
  for (int limit = -90; limit <= 0; limit += 9) {
    for (int compression = -90; compression <= limit; compression += 9) {
      for (const double ratio : {1.0, 1.1, 2.0, 7.3, 100.0}) {
        for (const double expansion : {1.0, 1.4, 3.0, 100.0}) {
          curves.push_back({static_cast<double>(limit), static_cast<double>(compression), ratio, expansion});
        }
      }
    }
  }
  return curves;
}

// The slope of a line that goes through two points, as the ratio of its dB in to its dB out.
double Through(const CurvePoint& fixed, const CurvePoint& point) {
  return (fixed.input - point.input) / (fixed.output - point.output);
}

TEST(TransferCurve, RunsThroughItsPoints) {
  EXPECT_NEAR((TransferCurve{-10, -40, 100, 2}.OutputAt(-40)), -10.3, 1e-12);
  EXPECT_NEAR((TransferCurve{-10, -40, 3, 2}.OutputAt(-25)), -15, 1e-12);
  const TransferCurve expanding{0, 0, 1, 2};
  EXPECT_EQ(expanding.OutputAt(-30), -60);
  EXPECT_EQ(expanding.GainAt(-30), -30);
  for (const TransferCurve& curve : Curves()) {
    const auto points = curve.Points();
    for (const CurvePoint& point : points) EXPECT_NEAR(curve.OutputAt(point.input), point.output, 1e-9);
    EXPECT_NEAR(points[2].output - points[1].output,
                (curve.limit - curve.compression) / curve.compressionRatio, 1e-9);
    EXPECT_NEAR(points[1].output - points[0].output, (curve.compression + 100) * curve.expansionRatio, 1e-9);
  }
}

TEST(TransferCurve, ThresholdsNeverCross) {
  for (const TransferCurve& curve : Curves()) {
    for (double input = -90; input <= 0; input += 0.25) {
      EXPECT_EQ(curve.LimitAt(input), std::max(curve.compression, static_cast<double>(std::trunc(input))));
      EXPECT_EQ(curve.CompressionAt(input), std::min(curve.limit, std::nearbyint(input)));
    }
  }
  EXPECT_EQ(TransferCurve{}.LimitAt(-90.1), std::nullopt);
  EXPECT_EQ(TransferCurve{}.CompressionAt(-90.1), std::nullopt);
  EXPECT_EQ((TransferCurve{.compression = -90}.LimitAt(-19.99999999)), -20);  // by way of a pixel
}

TEST(TransferCurve, LinesTurnAboutTheirKnees) {
  for (const TransferCurve& curve : Curves()) {
    const CurvePoint knee = curve.CompressionKnee();
    for (const CurvePoint point :
         {CurvePoint{-89.5, -95}, {-60.25, -33}, {-12, -14.5}, {-3, -70}, {-1, -2}}) {
      const double compression = std::clamp(Through(curve.LimitKnee(), point), 1.0, 100.0);
      if (point.output != curve.limit) {
        EXPECT_NEAR(*curve.CompressionRatioAt(point), compression, 0.0501);
      }
      const double expansion = std::clamp(1 / Through(knee, point), 1.0, 100.0);
      if (point.input != knee.input) {
        EXPECT_NEAR(*curve.ExpansionRatioAt(point), expansion, 0.0501);
      }
    }
    EXPECT_EQ(curve.CompressionRatioAt({-50.5, curve.limit}), std::nullopt);
    EXPECT_EQ(curve.ExpansionRatioAt({curve.compression, -50.5}), std::nullopt);
  }
  EXPECT_EQ(TransferCurve{}.CompressionRatioAt({-90.1, -95}), std::nullopt);
  EXPECT_EQ(TransferCurve{}.ExpansionRatioAt({-95, -97}), 1.0);
}

TEST(TransferCurve, IsTakenBackFromWhereItsHandlesLie) {
  for (const TransferCurve& curve : Curves()) {
    EXPECT_EQ(curve.LimitAt(curve.limit), curve.limit);
    EXPECT_EQ(curve.CompressionAt(curve.compression), curve.compression);
    const double amid = (std::max(curve.compression, -90.0) + curve.limit) / 2;
    if (amid < curve.limit && curve.compressionRatio < 100) {
      EXPECT_NEAR(*curve.CompressionRatioAt({amid, curve.OutputAt(amid)}), curve.compressionRatio, 1e-9);
    }
    const double below = curve.compression - 1;
    EXPECT_NEAR(*curve.ExpansionRatioAt({below, curve.OutputAt(below)}), curve.expansionRatio, 1e-9);
  }
}

TEST(TransferCurve, IsReadFromTheRecordWithinItsRanges) {
  SystemSettings settings = Fresh();
  settings.lceLimitThresh[2] = -20;
  settings.lceCompThresh[2] = -10;
  settings.lceCompRatio[2] = 0.5F;
  settings.eqLceExpRatio[10] = 4;
  EXPECT_EQ(CurveOfFilter(settings, 2).compression, -20);
  EXPECT_EQ(CurveOfFilter(settings, 2).compressionRatio, 1);
  EXPECT_EQ(CurveOfEqualizer(settings, 2).expansionRatio, 4);
}

TEST(DynamicsReading, IsToldInEighthsOfAnOctave) {
  UnitStatus status;
  const auto read = [&](int word) {
    status.stageStatus[3] = word;
    return ReadDynamics(status, 3);
  };
  EXPECT_NEAR(read(120).input, 0, 1e-9);
  EXPECT_NEAR(read(120).output, 0, 1e-9);
  EXPECT_NEAR(read(0xF8 << 8 | 112).gain, -6.0206, 1e-4);
  EXPECT_NEAR(read(0xF8 << 8 | 112).output, -12.0412, 1e-4);
  EXPECT_NEAR(read(0x7F << 8 | 255).input, 101.5977, 1e-4);
  EXPECT_NEAR(read(0x80 << 8).gain, -96.3296, 1e-4);
  EXPECT_NEAR(read(0x80 << 8).input, -90.3090, 1e-4);
}

}  // namespace
}  // namespace vc
