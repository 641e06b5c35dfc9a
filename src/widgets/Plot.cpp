#include "widgets/Plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "text/Convert.h"
#include "widgets/PlotLayout.h"
#include "widgets/modGDI.h"

namespace vc {
namespace {

constexpr double Farthest = 1e9, LeastExtent = 1e-6;

PlotAxis Corrected(PlotAxis axis) {
  axis.from = std::isfinite(axis.from) ? std::clamp(axis.from, -Farthest, Farthest) : 0.0;
  axis.to = std::isfinite(axis.to) ? std::clamp(axis.to, -Farthest, Farthest) : axis.from;
  if (axis.to < axis.from) std::swap(axis.from, axis.to);
  if (axis.to - axis.from < LeastExtent) axis.to = axis.from + 1.0;
  return axis;
}

// The curve's points on the scale that is set, in runs: it is broken where there is no number.
std::vector<std::vector<Point>> RunsOf(const Surface& surface, const PlotTrace& trace, const PlotAxis& x) {
  std::vector<std::vector<Point>> runs(1);
  const std::size_t last = std::max<std::size_t>(trace.values.size() - 1, 1);
  for (std::size_t i = 0; i <= last; ++i) {
    const float y = trace.values[std::min(i, trace.values.size() - 1)];
    if (std::isnan(y)) {
      runs.emplace_back();
      continue;
    }
    const double part = static_cast<double>(i) / static_cast<double>(last);
    const Point at =
        modGDI::LogicalToDevice(surface, x.from + part * (x.to - x.from), static_cast<double>(y));
    constexpr double middle = 0.5;  // of the pixel
    runs.back().push_back({at.x + middle, at.y + middle});
  }
  return runs;
}

Point Between(const Point& a, const Point& b, double part) {
  return {a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
}

// What of the line from a to b lies between two heights is added to the pieces, to the last of them where it
// goes on from there.
void AddWithin(std::vector<std::vector<Point>>& pieces, const Point& a, const Point& b, double top,
               double bottom) {
  const double rise = b.y - a.y;
  double from = 0.0, to = 1.0;
  if (rise != 0.0) {
    const auto [enters, leaves] = std::minmax({(top - a.y) / rise, (bottom - a.y) / rise});
    from = std::max(from, enters);
    to = std::min(to, leaves);
  } else if (a.y < top || a.y > bottom) {
    return;
  }
  if (from >= to) return;
  const Point start = Between(a, b, from);
  if (pieces.empty() || pieces.back().back() != start) pieces.push_back({start});
  pieces.back().push_back(Between(a, b, to));
}

void DrawTrace(Surface& surface, const PlotTrace& trace, const PlotAxis& x, const Rectangle& frame) {
  std::vector<std::vector<Point>> pieces;
  for (const auto& run : RunsOf(surface, trace, x)) {
    for (std::size_t i = 1; i < run.size(); ++i) {
      AddWithin(pieces, run[i - 1], run[i], frame.top, frame.Bottom());
    }
  }
  for (const auto& piece : pieces) surface.DrawPolyline(piece, trace.colour);
}

void DrawLine(Surface& surface, const PlotLine& line) {
  if (line.upright) {
    surface.DrawDown(line.left, line.top, line.length, line.style, line.colour);
  } else {
    surface.DrawAcross(line.left, line.top, line.length, line.style, line.colour);
  }
}

void DrawLabel(Surface& surface, const PlotLabel& label) {
  surface.textScale = label.textScale;
  modGDI::DrawPictureText(surface, label.text, label.area.left, label.area.top, label.colour);
  surface.textScale = 1.0;
}

std::string WithUnit(const std::string& number, const std::string& unit) {
  return unit.empty() ? number : number + " " + unit;
}

// A place of the x axis; whole numbers without a point.
std::string PlaceText(double place) {
  constexpr double tenths = 10.0;
  return ShortestText(std::round(place * tenths) / tenths);
}

}  // namespace

Plot::Plot(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  place.form->controls.emplace_back(this);
}

void Plot::SetAxes(PlotAxis x, PlotAxis y) {
  core.Store(xAxis, Corrected(std::move(x)), "Axes");
  core.Store(yAxis, Corrected(std::move(y)), "Axes");
}

void Plot::SetTraces(const std::vector<PlotTrace>& curves) {
  const bool named = std::ranges::equal(curves, traces, [](const PlotTrace& a, const PlotTrace& b) {
    return a.name == b.name && a.colour == b.colour;
  });
  if (core.Store(traces, curves, "Traces") && !named) core.Changed("Legend");
}

void Plot::SetMarkers(const std::vector<PlotMarker>& vertical, const std::vector<PlotMarker>& horizontal) {
  core.Store(verticalMarkers, vertical, "Markers");
  core.Store(horizontalMarkers, horizontal, "Markers");
}

std::string Plot::Summary() const {
  if (traces.empty() || traces.front().values.empty()) return {};
  const std::vector<float>& values = traces.front().values;
  constexpr std::size_t mostTold = 5;
  const std::size_t last = values.size() - 1;
  const std::size_t told = std::min(values.size(), mostTold);
  std::string text = std::to_string(values.size()) + (last == 0 ? " point:" : " points:");
  for (std::size_t i = 0; i < told; ++i) {
    const std::size_t point = told == 1 ? 0 : i * last / (told - 1);
    const double part = last == 0 ? 0.0 : static_cast<double>(point) / static_cast<double>(last);
    const double x = xAxis.from + part * (xAxis.to - xAxis.from);
    text += (i == 0 ? " " : " | ") + WithUnit(PlaceText(x), xAxis.unit) + " " +
            WithUnit(FixedText(static_cast<double>(values[point]), 1), yAxis.unit);
  }
  return text;
}

void Plot::Draw(Surface& surface, const Rectangle& area) const {
  DrawGrid(surface, area);
  DrawTraces(surface, area);
}

void Plot::DrawGrid(Surface& surface, const Rectangle& area) const {
  const PlotLayout layout = LayOut(*this, surface, area);
  surface.FillRectangle(area, ButtonFace);
  surface.FillRectangle(layout.frame, WindowBack);
  for (const PlotLine& line : layout.lines) DrawLine(surface, line);
  surface.FrameRectangle(layout.frame, FrameLine);
  for (const PlotSwatch& swatch : layout.swatches) surface.FillRectangle(swatch.area, swatch.colour);
  for (const PlotLabel& label : layout.labels) DrawLabel(surface, label);
}

void Plot::DrawTraces(Surface& surface, const Rectangle& area) const {
  const PlotLayout layout = LayOut(*this, surface, area);
  const Scale saved = std::exchange(surface.scale, ScaleOf(*this, layout.frame));
  for (const PlotTrace& trace : traces) {
    if (!trace.values.empty()) DrawTrace(surface, trace, xAxis, layout.frame);
  }
  surface.scale = saved;
}

}  // namespace vc
