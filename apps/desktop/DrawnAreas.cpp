#include "desktop/DrawnAreas.h"

#include <algorithm>
#include <cmath>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr int Reach = 2;  // of a smooth edge, and half a stroke

// A slanting line in several parts, since most of the rectangle around it is free of it.
QRegion Around(const vc::Point& from, const vc::Point& to) {
  constexpr double longPart = 24.0, mostParts = 8.0;
  const double across = to.x - from.x, down = to.y - from.y;
  const auto parts =
      static_cast<int>(std::clamp(std::min(std::abs(across), std::abs(down)) / longPart, 1.0, mostParts));
  QRegion region;
  for (int part = 0; part < parts; ++part) {
    const double begin = static_cast<double>(part) / parts, end = static_cast<double>(part + 1) / parts;
    const QRectF around = QRectF(QPointF(from.x + across * begin, from.y + down * begin),
                                 QPointF(from.x + across * end, from.y + down * end));
    region += around.normalized().adjusted(-Reach, -Reach, Reach, Reach).toAlignedRect();
  }
  return region;
}

}  // namespace

QRegion Differing(const std::vector<DrawnThing>& before, const std::vector<DrawnThing>& after) {
  QRegion region;
  const auto add = [&region](const std::vector<DrawnThing>& some, const std::vector<DrawnThing>& others) {
    for (const DrawnThing& thing : some) {
      if (std::ranges::find(others, thing) == others.end()) region += thing.region;
    }
  };
  add(before, after);
  add(after, before);
  return region;
}

void DrawnAreas::Add(const vc::Rectangle& area, vc::Colour colour, const std::string& text) {
  const QRect region(area.left, area.top, area.width, area.height);
  things.push_back({region.adjusted(-Reach, -Reach, Reach, Reach), colour, text});
}

void DrawnAreas::FillRectangle(const vc::Rectangle& area, vc::Colour colour) { Add(area, colour); }
void DrawnAreas::FillEllipse(const vc::Rectangle& area, vc::Colour colour) { Add(area, colour); }
void DrawnAreas::FillPolygon(std::span<const vc::Point> corners, vc::Colour colour) {
  QRectF around;
  for (const vc::Point& corner : corners) around |= QRectF(corner.x, corner.y, 1.0, 1.0);
  things.push_back({around.adjusted(-Reach, -Reach, Reach, Reach).toAlignedRect(),
                    colour,
                    {},
                    {corners.begin(), corners.end()}});
}

void DrawnAreas::FrameRectangle(const vc::Rectangle& area, vc::Colour colour) { Add(area, colour); }
void DrawnAreas::DrawEdge(const vc::Rectangle& area, vc::EdgeStyle style) {
  Add(area, static_cast<vc::Colour>(style));
}

void DrawnAreas::DrawAcross(int left, int top, int length, vc::LineStyle /*style*/, vc::Colour colour) {
  Add({left, top, length, 1}, colour);
}

void DrawnAreas::DrawDown(int left, int top, int length, vc::LineStyle /*style*/, vc::Colour colour) {
  Add({left, top, 1, length}, colour);
}

void DrawnAreas::DrawPolyline(std::span<const vc::Point> points, vc::Colour colour,
                              const vc::Rectangle& clip) {
  QRegion region;
  for (std::size_t i = 1; i < points.size(); ++i) region += Around(points[i - 1], points[i]);
  things.push_back({region & QRect(clip.left, clip.top, clip.width, clip.height),
                    colour,
                    {},
                    {points.begin(), points.end()}});
}

void DrawnAreas::DrawPixels(std::span<const std::uint32_t> /*pixels*/, const vc::Size& /*size*/,
                            const vc::Rectangle& area, const vc::Rectangle& /*clip*/) {
  Add(area, 0);
}

void DrawnAreas::DrawText(const vc::Rectangle& area, const std::string& text) {
  const vc::Size size = TextSize(text);
  Add({area.left, area.top, size.width, size.height}, foreColour, text);
}

vc::Size DrawnAreas::TextSize(const std::string& text) const {
  if (textScale == 1.0) return {metrics.horizontalAdvance(ToQt(text)), metrics.height()};
  QFont scaled = letters;
  scaled.setPointSizeF(textScale * PointSize(letters));
  const QFontMetrics larger(scaled);
  return {larger.horizontalAdvance(ToQt(text)), larger.height()};
}

}  // namespace desktop
