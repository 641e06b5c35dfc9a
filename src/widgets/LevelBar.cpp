#include "widgets/LevelBar.h"

#include <algorithm>
#include <utility>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr int PeakWidth = 2, OriginWidth = 1;

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
  const std::int32_t oldSteps = steps;
  core.Store(steps, std::max(fullScale, 0), "Steps");
  SetValue(Rescaled(value, oldSteps, steps));
  SetMidPoint(midPoint);
  SetOrigin(origin);
  if (!markers.empty()) SetMarkerValue(1, markers.front());
}

void LevelBar::SetMidPoint(std::int32_t point) {
  core.Store(midPoint, std::max(1, std::min(point, steps)), "MidPoint");
}

void LevelBar::SetValue(std::int32_t newValue) {
  core.Store(value, std::max(0, std::min(newValue, steps)), "Value");
}

void LevelBar::SetOrigin(std::int32_t beginning) {
  core.Store(origin, std::max(0, std::min(beginning, steps)), "Origin");
}

std::int32_t LevelBar::Step(std::int32_t count) {
  SetValue(Stepped(value, count, steps));
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
  auto kept = markers;
  kept.resize(static_cast<std::size_t>(std::clamp(count, 0, MostMarkers)));
  core.Store(markers, kept, "NumMarkers");
}

void LevelBar::SetMarkerText(const std::string& text) {
  if (core.Store(core.spokenBehind, text, "MarkerText")) core.Changed("Caption");  // it is spoken with it
}

void LevelBar::SetPeak(std::int32_t position) {
  core.Store(peak, std::max(0, std::min(position, steps)), "Peak");
}

int LevelBar::PixelsAlong(std::int32_t at, int length) const {
  if (steps == 0) return 0;
  return Nearest32(std::clamp(static_cast<double>(at) / steps, 0.0, 1.0) * length);
}

void LevelBar::DrawBar(Surface& surface, const Rectangle& area) const {
  const auto& bands = gradient.Bands({{0, surface.Translated(beginColor)},
                                      {UnitsOf(midPoint, steps, BarUnits), surface.Translated(midColor)},
                                      {BarUnits, surface.Translated(endColor)}});
  DrawFilling(surface, area, {orientation, UnitsOf(value, steps, BarUnits), backColor}, bands);
}

void LevelBar::DrawColumn(Surface& surface, const Rectangle& area) const {
  const int length = LengthOf(area, orientation);
  const auto [from, to] = std::minmax({PixelsAlong(origin, length), PixelsAlong(value, length)});
  if (from > 0) surface.FillRectangle(Slice(area, orientation, 0, from), backColor);
  if (to < length) surface.FillRectangle(Slice(area, orientation, to, length), backColor);
  if (to > from) surface.FillRectangle(Slice(area, orientation, from, to), Highlight);
  DrawLine(surface, area, origin, OriginWidth, GrayText);
}

void LevelBar::DrawLine(Surface& surface, const Rectangle& area, std::int32_t position, int width,
                        Colour colour) const {
  if (position > steps) return;  // the scale has shrunk since it was set
  const int length = LengthOf(area, orientation);
  const int from = std::max(0, PixelsAlong(position, length) - width / 2);
  const int to = std::min(length, from + width);
  if (to > from) surface.FillRectangle(Slice(area, orientation, from, to), colour);
}

void LevelBar::Draw(Surface& surface, const Rectangle& area) const {
  if (std::exchange(drawing, true)) return;
  if (core.Enabled()) {
    if (origin == 0) {
      DrawBar(surface, area);
    } else {
      DrawColumn(surface, area);
    }
    if (markerStyle != HiddenMarker) {
      for (const std::int32_t marker : markers) DrawLine(surface, area, marker, markerWidth, markerColor);
    }
    if (peak > 0) DrawLine(surface, area, peak, PeakWidth, WindowText);
  }
  DrawBorder(surface, area, borderStyle, borderColor);
  drawing = false;
}

}  // namespace vc
