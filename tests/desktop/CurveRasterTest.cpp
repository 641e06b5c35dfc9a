// Strokes against the area that they cover, worked out by brute force.
#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "desktop/CurveRaster.h"

namespace desktop {
namespace {

struct Sheet {
  static constexpr int Side = 64;
  double ratio;
  CurveRaster raster{ratio};
  std::vector<std::uint32_t> pixels = std::vector<std::uint32_t>(Side * Side, 0xFFFFFFFF);

  explicit Sheet(double pixelRatio = 1.0) : ratio(pixelRatio) {}
  void Draw(const std::vector<vc::Point>& points, const vc::Rectangle& clip = {0, 0, Side, Side}) {
    raster.Stroke({pixels.data(), Side, Side, Side}, points, clip, 0);
  }
  double Covered(int x, int y) const {
    return (255 - static_cast<int>(pixels[static_cast<std::size_t>(y * Side + x)] & 0xFFU)) / 255.0;
  }
  double ColumnSum(int x) const {
    double sum = 0.0;
    for (int y = 0; y < Side; ++y) sum += Covered(x, y);
    return sum;
  }
};

// The part of a pixel in the band round a line, cut off across its steeper direction at its ends.
double Exact(int x, int y, const vc::Point& a, const vc::Point& b, double width) {
  constexpr int fine = 32;
  const bool steep = std::abs(b.y - a.y) > std::abs(b.x - a.x);
  const auto along = [&](const vc::Point& p) { return steep ? p.y : p.x; };
  const auto across = [&](const vc::Point& p) { return steep ? p.x : p.y; };
  const double slope = (across(b) - across(a)) / (along(b) - along(a));
  int inside = 0;
  for (int i = 0; i < fine * fine; ++i) {
    const vc::Point p{x + (i % fine + 0.5) / fine, y + (i / fine + 0.5) / fine};
    const double off = across(p) - across(a) - slope * (along(p) - along(a));
    const double from = std::min(along(a), along(b)), to = std::max(along(a), along(b));
    if (along(p) >= from && along(p) <= to && std::abs(off) <= width / 2 * std::hypot(1.0, slope)) ++inside;
  }
  return inside / static_cast<double>(fine * fine);
}

TEST(CurveRaster, ALineCoversWhatItsAreaIs) {
  std::mt19937 source(7);
  std::uniform_real_distribution<double> place(4.0, 28.0);
  for (int round = 0; round < 60; ++round) {
    const double ratio = round % 3 == 0 ? 1.0 : round % 3 == 1 ? 1.25 : 2.0;
    Sheet sheet(ratio);
    const vc::Point a{place(source), place(source)}, b{place(source), place(source)};
    if (std::abs(b.x - a.x) < 2) continue;
    sheet.Draw({a, b});
    const vc::Point from{a.x * ratio, a.y * ratio}, to{b.x * ratio, b.y * ratio};
    for (int y = 0; y < Sheet::Side; ++y) {
      for (int x = 0; x < Sheet::Side; ++x) {
        const double exact = Exact(x, y, from, to, sheet.raster.Width());
        EXPECT_NEAR(sheet.Covered(x, y), exact, 0.05) << round << ": " << x << ", " << y;
      }
    }
  }
}

TEST(CurveRaster, ACurveIsEquallyThickAcrossItsPoints) {
  for (const double ratio : {1.0, 1.25, 2.0}) {
    Sheet sheet(ratio);
    std::vector<vc::Point> points;
    for (double x = 0.3; x < 64; x += 1.37)
      points.push_back({x / ratio, (32 + 9 * std::sin(x / 12)) / ratio});
    sheet.Draw(points);
    for (int x = 2; x < 60; ++x) {
      const double slope = 9.0 / 12 * std::cos((x + 0.5) / 12);
      const double thickness = sheet.raster.Width() * std::hypot(1.0, slope);
      EXPECT_NEAR(sheet.ColumnSum(x), thickness, 0.12 * thickness) << x << " at " << ratio;
    }
  }
}

TEST(CurveRaster, OfManyPointsEachColumnIsFilledFromTheLowestToTheHighest) {
  Sheet sheet;
  std::mt19937 source(3);
  std::uniform_real_distribution<double> level(10.0, 50.0);
  std::vector<vc::Point> points;
  std::array<double, Sheet::Side> lowest{}, highest{};
  lowest.fill(1e9);
  for (int i = 0; i < Sheet::Side * 20; ++i) {
    const vc::Point point{(i + 0.5) / 20, level(source)};
    const auto column = static_cast<std::size_t>(point.x);
    lowest.at(column) = std::min(lowest.at(column), point.y);
    highest.at(column) = std::max(highest.at(column), point.y);
    points.push_back(point);
  }
  sheet.Draw(points);
  for (std::size_t x = 0; x < Sheet::Side; ++x) {
    const double span = highest.at(x) - lowest.at(x) + sheet.raster.Width();
    EXPECT_GE(sheet.ColumnSum(static_cast<int>(x)), span - 0.1);
    EXPECT_LE(sheet.ColumnSum(static_cast<int>(x)), 42);
  }
}

TEST(CurveRaster, StaysWithinItsClipWhateverThePoints) {
  Sheet sheet;
  const vc::Rectangle clip{10, 12, 20, 15};
  std::mt19937 source(5);
  for (const double far : {40.0, 200.0, 1e6}) {
    std::uniform_real_distribution<double> place(-far, far);
    std::vector<vc::Point> points;
    for (int i = 0; i < 3000; ++i) points.push_back({place(source), place(source)});
    for (int i = 0; i < 300; ++i) points.push_back({20 + 0.001 * i, place(source)});
    sheet.Draw(points, clip);
  }
  double inside = 0.0, outside = 0.0;
  for (int i = 0; i < Sheet::Side * Sheet::Side; ++i) {
    const int x = i % Sheet::Side, y = i / Sheet::Side;
    const bool within = x >= clip.left && x < clip.Right() && y >= clip.top && y < clip.Bottom();
    (within ? inside : outside) += sheet.Covered(x, y);
  }
  EXPECT_EQ(outside, 0.0);
  EXPECT_GT(inside, 200.0);
}

}  // namespace
}  // namespace desktop
