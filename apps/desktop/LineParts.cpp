#include "desktop/LineParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace desktop {
namespace {

constexpr double Farthest = 1e6;  // pixels; what is so far away is cut off anyway

QPointF Near(const vc::Point& point) {
  return {std::clamp(point.x, -Farthest, Farthest), std::clamp(point.y, -Farthest, Farthest)};
}

// Where on the way from a to b, 0 to 1, the clip is entered and left; nothing where it is missed.
struct Stay {
  double from = 0.0, to = 1.0;
};
std::optional<Stay> StayWithin(const QPointF& a, const QPointF& b, const QRectF& clip) {
  const QPointF way = b - a;
  struct Edge {
    double outwards, room;  // of the way, and from its beginning to the edge
  };
  const std::array<Edge, 4> edges{{{-way.x(), a.x() - clip.left()},
                                   {way.x(), clip.right() - a.x()},
                                   {-way.y(), a.y() - clip.top()},
                                   {way.y(), clip.bottom() - a.y()}}};
  Stay stay;
  for (const Edge& edge : edges) {
    if (edge.outwards == 0.0 && edge.room < 0.0) return std::nullopt;
    if (edge.outwards < 0.0) stay.from = std::max(stay.from, edge.room / edge.outwards);
    if (edge.outwards > 0.0) stay.to = std::min(stay.to, edge.room / edge.outwards);
  }
  if (stay.from > stay.to) return std::nullopt;
  return stay;
}

}  // namespace

std::vector<QPolygonF> PartsWithin(std::span<const vc::Point> points, const QRectF& clip) {
  std::vector<QPolygonF> parts;
  bool goesOn = false;  // the last part ends where the next piece begins
  for (std::size_t i = 1; i < points.size(); ++i) {
    const QPointF a = Near(points[i - 1]), b = Near(points[i]);
    const bool numbers = std::isfinite(a.x() + a.y() + b.x() + b.y());
    const auto stay = numbers ? StayWithin(a, b, clip) : std::nullopt;
    if (!stay) {
      goesOn = false;
      continue;
    }
    if (!goesOn || stay->from > 0.0) parts.push_back({a + stay->from * (b - a)});
    parts.back().append(a + stay->to * (b - a));
    goesOn = stay->to == 1.0;
  }
  return parts;
}

}  // namespace desktop
