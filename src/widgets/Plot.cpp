#include "widgets/Plot.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>
#include <utility>

#include "text/Convert.h"
#include "widgets/PlotHandle.h"
#include "widgets/PlotLayout.h"
#include "widgets/PlotPlaces.h"
#include "widgets/modGDI.h"

namespace vc {
namespace {

// One value alone stands all along.
void FillTrace(Surface& surface, const Plot& plot, const PlotTrace& trace, const PlotLayout& layout) {
  const Rectangle& frame = layout.frame;
  const int bottom = frame.Bottom() - 1;
  for (int column = frame.left + 1; column < frame.Right() - 1; ++column) {
    const auto level = plot.LevelAt(trace, layout.x.ValueAt(column + 0.5));
    const double row = level ? layout.ScaleFor(trace).PixelOf(*level) : bottom;
    const int top = static_cast<int>(std::clamp<double>(row, frame.top + 1, bottom));
    if (top < bottom) surface.FillRectangle({column, top, 1, bottom - top}, trace.colour);
  }
}

// The curve in runs: it is broken where there is no number. One value alone has a second point.
void DrawTrace(Surface& surface, const PlotTrace& trace, const PlotAxis& axis, const PlotLayout& layout) {
  const PlotScale x = layout.x, y = layout.ScaleFor(trace);
  const PlotPlaces places(trace, axis);
  const std::size_t points = std::max<std::size_t>(trace.values.size(), 2);
  std::vector<Point> all(points);
  std::size_t run = 0;  // so many of them are not drawn yet
  const auto draw = [&] {
    if (run > 1) surface.DrawPolyline(std::span(all).first(run), trace.colour, layout.frame);
    run = 0;
  };
  for (std::size_t i = 0; i < points; ++i) {
    const auto value = static_cast<double>(i < trace.values.size() ? trace.values[i] : trace.values.front());
    const Point at{x.PixelOf(places[i]), y.PixelOf(value)};
    if (std::isnan(at.x) || std::isnan(at.y)) {
      draw();
    } else {
      all[run++] = at;
    }
  }
  draw();
}

int ColumnWithin(const PlotLayout& layout, double place) {
  return std::clamp(static_cast<int>(layout.x.PixelOf(place)), layout.frame.left, layout.frame.Right());
}

void DrawBand(Surface& surface, const PlotBand& band, const PlotLayout& layout, const PlotInks& inks) {
  const Rectangle& frame = layout.frame;
  const int from = ColumnWithin(layout, band.from);
  const int to = band.to < band.from ? from : ColumnWithin(layout, band.to);
  const Colour back = band.meaning == BandMeaning::Pass ? inks.pass : inks.stop;
  if (to > from) surface.FillRectangle({from, frame.top, to - from, frame.height}, back);
}

// A column stays clear between two of them, and the border does.
void DrawBar(Surface& surface, const PlotBar& bar, const PlotLayout& layout, const PlotInks& inks) {
  const Rectangle& frame = layout.frame;
  const int from = ColumnWithin(layout, bar.from) + 1, to = ColumnWithin(layout, bar.to);
  const double row = layout.y.PixelOf(bar.level);
  if (std::isnan(row) || to <= from) return;
  const int bottom = frame.Bottom() - 1;
  const int top = static_cast<int>(std::clamp<double>(row, frame.top + 1, bottom));
  surface.FillRectangle({from, top, to - from, bottom - top}, inks.bar);
}

// On a logarithmic axis column by column, each as wide as it is there.
void DrawImage(Surface& surface, const PlotImage& image, const PlotAxis& axis, const PlotLayout& layout) {
  const auto row = [&](double level) { return static_cast<int>(std::lround(layout.y.PixelOf(level) - 0.5)); };
  const int top = row(image.top), height = std::max(row(image.bottom) - top, 1);
  const int parts = axis.law == AxisLaw::Linear ? 1 : image.width, wide = image.width / parts;
  std::vector<std::uint32_t> strip(static_cast<std::size_t>(parts > 1 ? image.height : 0));
  for (int part = 0; part < parts; ++part) {
    const auto column = [&](int at) {
      const double place = image.left + (image.right - image.left) * at / parts;
      return static_cast<int>(std::lround(layout.x.PixelOf(place) - 0.5));
    };
    const Rectangle area{column(part), top, std::max(column(part + 1) - column(part), 1), height};
    for (std::size_t i = 0; i < strip.size(); ++i) {
      strip[i] = image.pixels[i * static_cast<std::size_t>(image.width) + static_cast<std::size_t>(part)];
    }
    surface.DrawPixels(parts > 1 ? strip : image.pixels, {wide, image.height}, area, layout.frame);
  }
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

constexpr Colour RubberColour = TraceColours[3];
constexpr int KnobSize = 7, DotSize = 13;

Rectangle Around(int column, int row, int size) { return {column - size / 2, row - size / 2, size, size}; }

// Held at the border of the frame; what is not a number is nowhere.
void DrawSpot(Surface& surface, const PlotLayout& layout, const Point& at, Colour colour, int size) {
  const double column = layout.x.PixelOf(at.x), row = layout.y.PixelOf(at.y);
  const Rectangle& frame = layout.frame;
  if (std::isnan(column) || std::isnan(row) || frame.width <= 0 || frame.height <= 0) return;
  surface.FillEllipse(Around(std::clamp(static_cast<int>(column), frame.left, frame.Right() - 1),
                             std::clamp(static_cast<int>(row), frame.top, frame.Bottom() - 1), size),
                      colour);
}

// A place of the x axis; whole numbers without a point.
std::string PlaceText(double place) {
  constexpr double tenths = 10.0;
  return ShortestText(std::round(place * tenths) / tenths);
}

}  // namespace

bool PlotTrace::operator==(const PlotTrace& other) const {
  const auto bits = [](float value) { return std::bit_cast<std::uint32_t>(value); };
  return name == other.name && std::ranges::equal(values, other.values, {}, bits, bits) &&
         colour == other.colour && places == other.places && yAxis == other.yAxis && filled == other.filled;
}

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
    return a.name == b.name && a.colour == b.colour && a.yAxis == b.yAxis;
  });
  if (!named) ++revision;
  if (traces != curves) ++curveRevision;
  if (core.Store(traces, curves, "Traces") && !named) core.Changed("Legend");
}

void Plot::SetBars(const std::vector<PlotBar>& filled) {
  if (bars != filled) ++curveRevision;
  core.Store(bars, filled, "Bars");
}

void Plot::SetImage(PlotImage picture) {
  const bool whole = picture.width > 0 && picture.height > 0 &&
                     picture.pixels.size() ==
                         static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
  Lay(image, whole ? std::move(picture) : PlotImage{}, "Image");
}

void Plot::SetCursor(std::optional<double> x) {
  if (x) x = std::clamp(*x, xAxis.from, xAxis.to);
  core.Store(cursor, x, "Cursor");
}

std::optional<double> Plot::LevelAt(const PlotTrace& trace, double x) const {
  if (trace.values.size() == 1) return static_cast<double>(trace.values.front());
  const PlotPlaces places(trace, xAxis);
  for (std::size_t i = 1; i < trace.values.size(); ++i) {
    const double from = places[i - 1], to = places[i];
    if (!(x >= std::min(from, to) && x <= std::max(from, to))) continue;
    const auto before = static_cast<double>(trace.values[i - 1]),
               after = static_cast<double>(trace.values[i]);
    const double level = from == to ? after : before + (after - before) * (x - from) / (to - from);
    if (!std::isnan(level)) return level;
  }
  return std::nullopt;
}

std::string Plot::CursorText() const {
  if (!cursor) return {};
  if (saidAt) return saidAt(*cursor);
  constexpr double fine = 500.0;
  const int decimals = static_cast<int>(-std::floor(std::log10((xAxis.to - xAxis.from) / fine)));
  std::string text = WithUnit(FixedText(*cursor, std::clamp(decimals, 0, 6)), xAxis.unit);
  const char* between = ": ";
  const bool several = std::ranges::count_if(traces, &IsTold) > 1;
  for (const PlotTrace& trace : traces) {
    const auto level = IsTold(trace) ? LevelAt(trace, *cursor) : std::nullopt;
    if (!level) continue;
    const std::string& unit = trace.yAxis ? trace.yAxis->unit : yAxis.unit;
    text += between + (several ? trace.name + " " : "") + WithUnit(FixedText(*level, 1), unit);
    between = ", ";
  }
  return text;
}

std::string Plot::Reading() const {
  if (told) return told();
  std::string text = cursor ? CursorText() : Summary();
  if (dot && !dot->reading.empty()) text += (text.empty() ? "" : "; ") + dot->reading;
  return text;
}

bool Plot::HandleHeld() const { return std::ranges::any_of(handles, &PlotHandle::Held); }

void Plot::SetMarkers(const std::vector<PlotMarker>& vertical, const std::vector<PlotMarker>& horizontal) {
  Lay(verticalMarkers, vertical, "Markers");
  Lay(horizontalMarkers, horizontal, "Markers");
}

std::string Plot::Summary() const {
  if (traces.empty() || traces.front().values.empty()) return {};
  const std::vector<float>& values = traces.front().values;
  constexpr std::size_t mostTold = 5;
  const std::size_t last = values.size() - 1;
  const std::size_t points = std::min(values.size(), mostTold);
  const PlotPlaces places(traces.front(), xAxis);
  std::string text = std::to_string(values.size()) + (last == 0 ? " point:" : " points:");
  for (std::size_t i = 0; i < points; ++i) {
    const std::size_t point = points == 1 ? 0 : i * last / (points - 1);
    const std::string& unit = traces.front().yAxis ? traces.front().yAxis->unit : yAxis.unit;
    text += (i == 0 ? " " : " | ") + WithUnit(PlaceText(places[point]), xAxis.unit) + " " +
            WithUnit(FixedText(static_cast<double>(values[point]), 1), unit);
  }
  return text;
}

void Plot::Draw(Surface& surface, const Rectangle& area) const {
  const PlotLayout layout = LayOut(*this, surface, area);
  DrawGrid(surface, layout);
  DrawBars(surface, layout);
  DrawTraces(surface, layout);
}

void Plot::DrawGrid(Surface& surface, const PlotLayout& layout) const {
  const PlotInks& inks = InksOf(*this);
  surface.FillRectangle(layout.area, ButtonFace);
  surface.FillRectangle(layout.frame, inks.ground);
  for (const PlotBand& band : bands) DrawBand(surface, band, layout, inks);
  if (image.width > 0) DrawImage(surface, image, xAxis, layout);
  for (const PlotLine& line : layout.lines) DrawLine(surface, line);
  surface.FrameRectangle(layout.frame, inks.border);
  for (const PlotSwatch& swatch : layout.swatches) surface.FillRectangle(swatch.area, swatch.colour);
  for (const PlotLabel& label : layout.labels) DrawLabel(surface, label);
}

void Plot::DrawBars(Surface& surface, const PlotLayout& layout) const {
  if (bars.empty() && std::ranges::none_of(traces, &PlotTrace::filled)) return;
  for (const PlotBar& bar : bars) DrawBar(surface, bar, layout, InksOf(*this));
  for (const PlotTrace& trace : traces) {
    if (trace.filled) FillTrace(surface, *this, trace, layout);
  }
  for (const PlotLine& line : layout.lines) DrawLine(surface, line);
}

void Plot::DrawTraces(Surface& surface, const PlotLayout& layout) const {
  std::for_each(traces.rbegin(), traces.rend(), [&](const PlotTrace& trace) {
    if (!trace.values.empty() && !trace.filled) DrawTrace(surface, trace, xAxis, layout);
  });
}

void Plot::DrawRubber(Surface& surface, const PlotLayout& layout) const {
  if (!rubber) return;
  const std::array<Point, 2> ends{{{layout.x.PixelOf(rubber->fromX), layout.y.PixelOf(rubber->fromY)},
                                   {layout.x.PixelOf(rubber->toX), layout.y.PixelOf(rubber->toY)}}};
  surface.DrawPolyline(ends, RubberColour, layout.frame);
}

void Plot::DrawMarks(Surface& surface, const PlotLayout& layout) const {
  if (rubber) {
    DrawSpot(surface, layout, {rubber->fromX, rubber->fromY}, RubberColour, KnobSize);
    DrawSpot(surface, layout, {rubber->toX, rubber->toY}, RubberColour, KnobSize);
  }
  if (cursor) DrawCursor(surface, layout);
  if (!dot) return;
  constexpr int rim = 2;
  DrawSpot(surface, layout, {dot->x, dot->y}, InksOf(*this).ground, DotSize + 2 * rim);
  DrawSpot(surface, layout, {dot->x, dot->y}, dot->colour, DotSize);
}

void Plot::DrawCursor(Surface& surface, const PlotLayout& layout) const {
  const Rectangle& frame = layout.frame;
  const int column = static_cast<int>(layout.x.PixelOf(*cursor));
  surface.DrawDown(column, frame.top, frame.height, LineStyle::Solid,
                   cursorColour.value_or(InksOf(*this).cursor));
  for (const PlotTrace& trace : traces) {
    const auto level = IsTold(trace) ? LevelAt(trace, *cursor) : std::nullopt;
    const int row = level ? static_cast<int>(layout.ScaleFor(trace).PixelOf(*level)) : -1;
    if (row < frame.top || row >= frame.Bottom()) continue;
    surface.FillEllipse(Around(column, row, KnobSize), trace.colour);
  }
  if (!cursorPlaced) DrawCursorText(surface, layout, column);
}

void Plot::DrawCursorText(Surface& surface, const PlotLayout& layout, int column) const {
  const Rectangle& frame = layout.frame;
  const std::string text = CursorText();
  const PlotInks& inks = InksOf(*this);
  surface.textScale = layout.letters;
  const Size size = surface.TextSize(text);
  const int gap = std::max(size.height / 3, 1), wide = size.width + 2 * gap;
  const bool atLeft = column + gap + wide > frame.Right();
  const int left = std::max(atLeft ? column - gap - wide : column + gap, frame.left);
  const Rectangle box{left, frame.top + gap, wide, size.height + gap};
  surface.FillRectangle(box, screen ? inks.ground : ButtonFace);
  surface.FrameRectangle(box, inks.border);
  modGDI::DrawPictureText(surface, text, box.left + gap, box.top + gap * 0.5, inks.letters);
  surface.textScale = 1.0;
}

}  // namespace vc
