#include "report/GraphLines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "analysis/SpectrumTrace.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int FrameLeft = 499, FrameTop = 90;
constexpr int FirstFrequencyLeft = 480, LastFrequencyLeft = 6500;

void DrawGrid(PrintDocument& document, const LevelFrame& frame, int x, int y) {
  for (int row = GraphTop + TenDecibels; row < frame.bottom; row += TenDecibels) {
    const double height = y + row;
    DrawLine(document, {static_cast<double>(x + GraphLeft), height},
             {static_cast<double>(x + frame.right - 1), height}, LineStyle::Dotted);
  }
  constexpr int columns = 7;
  for (int column = 1; column <= columns; ++column) {
    const double place = x + GraphLeft + column * frame.columnStep;
    DrawLine(document, {place, static_cast<double>(y + GraphTop)},
             {place, static_cast<double>(y + frame.bottom)}, LineStyle::Dotted);
  }
}

// The part of a line that lies between two heights.
std::optional<std::pair<Point, Point>> PartBetween(const Point& from, const Point& to, double top,
                                                   double bottom) {
  if (std::isnan(from.y) || std::isnan(to.y)) return {};
  const auto outside = [&](double y) { return y < top || y > bottom; };
  const auto cut = [&](const Point& point) {
    if (!outside(point.y)) return point;
    const double edge = point.y < top ? top : bottom;
    return Point{from.x + (to.x - from.x) * (edge - from.y) / (to.y - from.y), edge};
  };
  if (std::max(from.y, to.y) < top || std::min(from.y, to.y) > bottom) return {};
  return std::pair{cut(from), cut(to)};
}

}  // namespace

void DrawRectangle(PrintDocument& document, double left, double top, double right, double bottom) {
  const std::array<Point, 5> corners{
      {{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}}};
  document.DrawPolyline(corners, LineStyle::Solid);
}

void DrawLine(PrintDocument& document, const Point& from, const Point& to, LineStyle style) {
  document.DrawPolyline(std::array<Point, 2>{from, to}, style);
}

void DrawLevelFrame(PrintDocument& document, const LevelFrame& frame, int x, int y,
                    const std::string& lastFrequency) {
  DrawRectangle(document, x + FrameLeft, y + FrameTop, x + frame.right, y + frame.bottom);
  DrawGrid(document, frame, x, y);
  document.DrawText(x, y, "0dB");
  for (int i = 1; i <= frame.levels; ++i) {
    document.DrawText(x, y + i * TenDecibels, std::to_string(-10 * i));
  }
  document.DrawText(x + FirstFrequencyLeft, y + frame.frequencies, "0");
  document.DrawText(x + LastFrequencyLeft, y + frame.frequencies, lastFrequency);
}

int RawLevel(std::uint8_t raw) {
  constexpr int highest = 186, seventyDecibels = 2765, steps = 185;
  const int below = RawTop - std::min<int>(raw, highest);
  return std::clamp<int>(Nearest(static_cast<double>(below * seventyDecibels) / steps), GraphTop,
                         SpectrumFrame.bottom);
}

double CurveLevel(double decibels) {
  constexpr double tens = 10;
  const double below = GraphTop - decibels * TenDecibels / tens;
  return std::fmax(std::fmin(below, CurveFrame.bottom), GraphTop);
}

std::vector<std::vector<Point>> Clipped(std::span<const Point> points, double top, double bottom) {
  std::vector<std::vector<Point>> stretches;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const auto part = PartBetween(points[i - 1], points[i], top, bottom);
    if (!part || part->first == part->second) continue;
    if (stretches.empty() || stretches.back().back() != part->first) stretches.push_back({part->first});
    stretches.back().push_back(part->second);
  }
  return stretches;
}

}  // namespace vc
