#include "widgets/Mark.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace vc {
namespace {

constexpr Colour Stopped = MakeColour(0x17, 0x3A, 0x63);  // above the response
constexpr Colour Passed = MakeColour(0x3A, 0x8D, 0xDB);   // below it
constexpr Colour Speech = MakeColour(0xA3, 0xD2, 0xFA);
constexpr Colour Response = MakeColour(0xFF, 0xFF, 0xFF);
constexpr Colour Tone = MakeColour(0xF7, 0xB5, 0x3B);

// Whole pixels in an icon of 16: the response and the bars are two of them thick.
constexpr double Thick = 4.0, Corner = 6.0;
constexpr double Shoulder = 12.0, Tip = 24.0, HalfNotch = 7.0, Foot = 28.0;
constexpr double Middle = MarkGrid / 2.0;

std::vector<Point> ResponseLine() {
  return {{0.0, Shoulder},
          {Middle - HalfNotch, Shoulder},
          {Middle, Tip},
          {Middle + HalfNotch, Shoulder},
          {MarkGrid, Shoulder}};
}

// A quarter of a circle, clockwise; the angle is that of its begin, in quarters from the right.
void AddCorner(std::vector<Point>& outline, const Point& centre, double radius, int quarter) {
  constexpr int steps = 16;
  for (int step = 0; step <= steps; ++step) {
    const double angle = (quarter + static_cast<double>(step) / steps) * std::numbers::pi / 2.0;
    outline.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
  }
}

// The tile above the middle of the response, and below it: each has only its own rounded corners, so that no
// colour shines through at the edge of the other.
std::vector<Point> Above() {
  std::vector<Point> outline;
  AddCorner(outline, {Corner, Corner}, Corner, 2);
  AddCorner(outline, {MarkGrid - Corner, Corner}, Corner, 3);
  const std::vector<Point> line = ResponseLine();
  outline.insert(outline.end(), line.rbegin(), line.rend());
  return outline;
}

std::vector<Point> Below() {
  std::vector<Point> outline = ResponseLine();
  AddCorner(outline, {MarkGrid - Corner, MarkGrid - Corner}, Corner, 0);
  AddCorner(outline, {Corner, MarkGrid - Corner}, Corner, 1);
  return outline;
}

Point Normal(const Point& from, const Point& to) {
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  return {-(to.y - from.y) / length, (to.x - from.x) / length};
}

// One edge of a stroke along the line, so far to its right, with pointed joints.
std::vector<Point> Edge(const std::vector<Point>& line, double distance) {
  std::vector<Point> edge;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const Point before = Normal(line[i == 0 ? 0 : i - 1], line[i == 0 ? 1 : i]);
    const Point behind = i + 1 == line.size() ? before : Normal(line[i], line[i + 1]);
    const double reach = distance / (1.0 + before.x * behind.x + before.y * behind.y);
    edge.push_back({line[i].x + (before.x + behind.x) * reach, line[i].y + (before.y + behind.y) * reach});
  }
  return edge;
}

std::vector<Point> Stroke(const std::vector<Point>& line) {
  std::vector<Point> outline = Edge(line, -Thick / 2.0);
  const std::vector<Point> other = Edge(line, Thick / 2.0);
  outline.insert(outline.end(), other.rbegin(), other.rend());
  return outline;
}

// Upright, with round ends.
std::vector<Point> Bar(double middle, double top, double foot) {
  constexpr double radius = Thick / 2.0;
  std::vector<Point> outline;
  AddCorner(outline, {middle, top + radius}, radius, 2);
  AddCorner(outline, {middle, top + radius}, radius, 3);
  AddCorner(outline, {middle, foot - radius}, radius, 0);
  AddCorner(outline, {middle, foot - radius}, radius, 1);
  return outline;
}

}  // namespace

const std::vector<MarkPart>& MarkParts() {
  static const std::vector<MarkPart> parts{{Above(), Stopped},
                                           {Below(), Passed},
                                           {Bar(4.0, 18.0, Foot), Speech},
                                           {Bar(10.0, 23.0, Foot), Speech},
                                           {Bar(22.0, 22.0, Foot), Speech},
                                           {Bar(28.0, 16.0, Foot), Speech},
                                           {Stroke(ResponseLine()), Response},
                                           {Bar(Middle, 2.0, 14.0), Tone}};
  return parts;
}

void DrawMark(Surface& surface, const Rectangle& area) {
  const int side = std::min(area.width, area.height);
  const double unit = side / MarkGrid;
  const int left = area.left + (area.width - side) / 2, top = area.top + (area.height - side) / 2;
  std::vector<Point> corners;
  for (const MarkPart& part : MarkParts()) {
    corners.clear();
    for (const Point& point : part.outline) corners.push_back({left + point.x * unit, top + point.y * unit});
    surface.FillPolygon(corners, part.colour);
  }
}

void DrawMarkAndName(Surface& surface, const Rectangle& area, const std::string& name) {
  DrawMark(surface, {area.left, area.top, area.height, area.height});
  const int gap = area.height / 3, left = area.left + area.height + gap;
  const int letters = surface.TextSize(name).height;
  surface.foreColour = ButtonText;
  surface.DrawText({left, area.top + (area.height - letters) / 2, area.Right() - left, letters}, name);
}

}  // namespace vc
