#include "widgets/LevelBar.h"

#include <algorithm>
#include <array>

#include "text/Convert.h"

namespace vc {
namespace {

// A bar is drawn in so many bands over its full length.
constexpr int Units = 255;

constexpr int FrameStyle = 4;
// Edge styles of the border styles 0 to 5; 0 draws no edge.
constexpr std::array<EdgeStyle, 6> EdgeOfBorder{0, 9, 6, 5, 0, 10};

int Blend(int from, int to, int part, int whole) {
  return whole <= 0 ? to : from + (to - from) * part / whole;
}

Colour Blend(Colour from, Colour to, int part, int whole) {
  return MakeColour(Blend(RedOf(from), RedOf(to), part, whole),
                    Blend(GreenOf(from), GreenOf(to), part, whole),
                    Blend(BlueOf(from), BlueOf(to), part, whole));
}

// The slice of an area between two distances from where the bar begins.
Rectangle Slice(const Rectangle& area, int orientation, int from, int to) {
  switch (orientation) {
    case 1:
      return {area.left, area.top + area.height - to, area.width, to - from};
    case 2:
      return {area.left, area.top + from, area.width, to - from};
    case 3:
      return {area.left + area.width - to, area.top, to - from, area.height};
    default:
      return {area.left + from, area.top, to - from, area.height};
  }
}

[[noreturn]] void RaiseMarkerIndex(int number, const std::string& access) {
  throw Fault{
      "Invalid MarkerValue index.  Attempted to set a value to an index greater than the number of "
      "NumMarkers",
      number, "LevelBar.MarkerValue (" + access + ")"};
}

}  // namespace

LevelBar::LevelBar(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  place.form->controls.emplace_back(this);
}

void LevelBar::SetSteps(std::int32_t fullScale) {
  const double ratio = steps == 0 ? 0.0 : static_cast<double>(value) / static_cast<double>(steps);
  core.Store(steps, std::max(fullScale, 0), "Steps");
  SetValue(Nearest32(steps * ratio));
  SetMidPoint(midPoint);
  if (!markers.empty()) SetMarkerValue(1, markers.front());
}

void LevelBar::SetMidPoint(std::int32_t point) {
  core.Store(midPoint, std::max(1, std::min(point, steps)), "MidPoint");
}

void LevelBar::SetValue(std::int32_t newValue) {
  core.Store(value, std::max(0, std::min(newValue, steps)), "Value");
}

std::int32_t LevelBar::Step(std::int32_t count) {
  const std::int64_t moved = static_cast<std::int64_t>(value) + count;
  SetValue(static_cast<std::int32_t>(std::clamp<std::int64_t>(moved, 0, steps)));
  return value;
}

std::int32_t LevelBar::MarkerValue(std::int32_t marker) const {
  if (marker < 1 || marker > NumMarkers()) RaiseMarkerIndex(1020, "Get");
  return markers[static_cast<std::size_t>(marker - 1)];
}

void LevelBar::SetMarkerValue(std::int32_t marker, std::int32_t position) {
  if (marker < 1 || marker > NumMarkers()) RaiseMarkerIndex(1021, "Let");
  core.Store(markers[static_cast<std::size_t>(marker - 1)], std::max(0, std::min(position, steps)),
             "MarkerValue");
}

void LevelBar::SetNumMarkers(int count) {
  markers.resize(static_cast<std::size_t>(std::max(count, 0)));
  core.Changed("NumMarkers");
}

int LevelBar::PixelsAlong(std::int32_t at, int length) const {
  return steps == 0 ? 0 : Nearest32(static_cast<double>(at) * length / steps);
}

Colour LevelBar::ColourAt(int unit) const {
  const int midUnit = steps == 0 ? Units : midPoint * Units / steps;
  return unit < midUnit ? Blend(beginColor, midColor, unit, midUnit)
                        : Blend(midColor, endColor, unit - midUnit, Units - midUnit);
}

void LevelBar::DrawGradient(Surface& surface, const Rectangle& area) const {
  const int length = Horizontal() ? area.width : area.height;
  const int filled = steps == 0 ? 0 : static_cast<int>(static_cast<std::int64_t>(value) * Units / steps);
  int from = 0;
  for (int unit = 0; unit < filled; ++unit) {
    const int to = (unit + 1) * length / Units;
    if (to > from) surface.FillRectangle(Slice(area, orientation, from, to), ColourAt(unit));
    from = to;
  }
  if (from < length) surface.FillRectangle(Slice(area, orientation, from, length), backColor);
}

void LevelBar::DrawMarker(Surface& surface, const Rectangle& area, std::int32_t position) const {
  const int length = Horizontal() ? area.width : area.height;
  const int from = std::max(0, PixelsAlong(position, length) - markerWidth / 2);
  const int to = std::min(length, from + markerWidth);
  if (to > from) surface.FillRectangle(Slice(area, orientation, from, to), markerColor);
}

void LevelBar::Draw(Surface& surface, const Rectangle& area) const {
  if (core.Enabled()) {
    DrawGradient(surface, area);
    if (markerStyle != HiddenMarker) {
      for (const std::int32_t marker : markers) DrawMarker(surface, area, marker);
    }
  } else {
    surface.FillRectangle(area, backColor);
  }
  DrawBorder(surface, area, borderStyle, borderColor);
}

void DrawBorder(Surface& surface, const Rectangle& area, int borderStyle, Colour borderColor) {
  if (borderStyle == FrameStyle) {
    surface.FrameRectangle(area, borderColor);
  } else if (borderStyle > 0 && borderStyle < static_cast<int>(EdgeOfBorder.size())) {
    surface.DrawEdge(area, EdgeOfBorder[static_cast<std::size_t>(borderStyle)]);
  }
}

}  // namespace vc
