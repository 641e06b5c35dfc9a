#include "widgets/Plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "text/Convert.h"
#include "widgets/PlotLayout.h"
#include "widgets/modGDI.h"

namespace vc {
namespace {

// The curve in runs: it is broken where there is no number.
void DrawTrace(Surface& surface, const PlotTrace& trace, const PlotAxis& axis, const PlotLayout& layout) {
  const std::size_t last = std::max<std::size_t>(trace.values.size() - 1, 1);
  const double step = (axis.to - axis.from) / static_cast<double>(last);
  std::vector<Point> run;
  run.reserve(last + 1);
  const auto draw = [&] {
    if (run.size() > 1) surface.DrawPolyline(run, trace.colour, layout.frame);
    run.clear();
  };
  for (std::size_t i = 0; i <= last; ++i) {
    const auto y = static_cast<double>(trace.values[std::min(i, trace.values.size() - 1)]);
    if (std::isnan(y)) {
      draw();
    } else {
      run.push_back({layout.x.PixelOf(axis.from + static_cast<double>(i) * step), layout.y.PixelOf(y)});
    }
  }
  draw();
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
  Lay(xAxis, Corrected(std::move(x)), "Axes");
  Lay(yAxis, Corrected(std::move(y)), "Axes");
}

void Plot::SetTraces(const std::vector<PlotTrace>& curves) {
  const bool named = std::ranges::equal(curves, traces, [](const PlotTrace& a, const PlotTrace& b) {
    return a.name == b.name && a.colour == b.colour;
  });
  if (!named) ++revision;
  if (core.Store(traces, curves, "Traces") && !named) core.Changed("Legend");
}

void Plot::SetMarkers(const std::vector<PlotMarker>& vertical, const std::vector<PlotMarker>& horizontal) {
  Lay(verticalMarkers, vertical, "Markers");
  Lay(horizontalMarkers, horizontal, "Markers");
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
  const PlotLayout layout = LayOut(*this, surface, area);
  DrawGrid(surface, layout);
  DrawTraces(surface, layout);
}

void Plot::DrawGrid(Surface& surface, const PlotLayout& layout) const {
  surface.FillRectangle(layout.area, ButtonFace);
  surface.FillRectangle(layout.frame, WindowBack);
  for (const PlotLine& line : layout.lines) DrawLine(surface, line);
  surface.FrameRectangle(layout.frame, FrameLine);
  for (const PlotSwatch& swatch : layout.swatches) surface.FillRectangle(swatch.area, swatch.colour);
  for (const PlotLabel& label : layout.labels) DrawLabel(surface, label);
}

void Plot::DrawTraces(Surface& surface, const PlotLayout& layout) const {
  for (const PlotTrace& trace : traces) {
    if (!trace.values.empty()) DrawTrace(surface, trace, xAxis, layout);
  }
}

}  // namespace vc
