// A gradient bar for levels, or a plain column from a middle, with value markers and, beside it, the ticks of
// a scale.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Surface.h"
#include "widgets/Form.h"
#include "widgets/GradientBar.h"

namespace vc {

// A number beside the bar: at which value it stands and what it says.
struct ScaleTick {
  std::int32_t value;
  std::string text;
  bool operator==(const ScaleTick&) const = default;
};

struct LevelBar {
  LevelBar(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;
  bool captioned = true;  // the view shows the caption; it is spoken in any case
  bool reads = true;      // the view has room for the reading

  // Full scale of Value and of the markers, bounded below at 0. A new scale keeps the bar's length.
  std::int32_t Steps() const { return steps; }
  void SetSteps(std::int32_t fullScale);
  Colour BeginColor() const { return beginColor; }
  void SetBeginColor(Colour colour) { core.Store(beginColor, colour, "BeginColor"); }
  Colour MidColor() const { return midColor; }
  void SetMidColor(Colour colour) { core.Store(midColor, colour, "MidColor"); }
  Colour EndColor() const { return endColor; }
  void SetEndColor(Colour colour) { core.Store(endColor, colour, "EndColor"); }
  // Where MidColor stands, bounded to 1..Steps.
  std::int32_t MidPoint() const { return midPoint; }
  void SetMidPoint(std::int32_t point);
  // Bounded to 0..Steps.
  std::int32_t Value() const { return value; }
  void SetValue(std::int32_t newValue);
  // Where the bar begins, bounded to 0..Steps. At 0, as it is at first, it is the gradient from the lower end
  // up to Value; elsewhere a plain column from there to Value, either way.
  std::int32_t Origin() const { return origin; }
  void SetOrigin(std::int32_t beginning);
  // Adds to Value and returns the result.
  std::int32_t Step(std::int32_t count);
  int BorderStyle() const { return borderStyle; }
  void SetBorderStyle(int style) { core.Store(borderStyle, style, "BorderStyle"); }
  Colour BorderColor() const { return borderColor; }
  void SetBorderColor(Colour colour) { core.Store(borderColor, colour, "BorderColor"); }
  // 0 from the left, 1 from below, 2 from above, 3 from the right.
  int Orientation() const { return orientation; }
  void SetOrientation(int direction) { core.Store(orientation, direction, "Orientation"); }
  bool Horizontal() const { return LiesDown(orientation); }
  Colour BackColor() const { return backColor; }
  void SetBackColor(Colour colour) { core.Store(backColor, colour, "BackColor"); }
  // HiddenMarker draws none, any other style a line across the bar.
  int MarkerStyle() const { return markerStyle; }
  void SetMarkerStyle(int style) { core.Store(markerStyle, style, "MarkerStyle"); }
  Colour MarkerColor() const { return markerColor; }
  void SetMarkerColor(Colour colour) { core.Store(markerColor, colour, "MarkerColor"); }
  int MarkerWidth() const { return markerWidth; }
  void SetMarkerWidth(int width) { core.Store(markerWidth, width, "MarkerWidth"); }
  // Positions of the markers 1..NumMarkers, bounded to 0..Steps. Another index raises a Fault, number 1020
  // for a read and 1021 for a write.
  std::int32_t MarkerValue(std::int32_t marker) const;
  void SetMarkerValue(std::int32_t marker, std::int32_t position);
  // The markers that stay keep their places, new ones stand at 0. Bounded to 0..MostMarkers.
  int NumMarkers() const { return static_cast<int>(markers.size()); }
  void SetNumMarkers(int count);

  // What the markers mean, in words; empty where they mean nothing or are hidden.
  const std::string& MarkerText() const { return core.spokenBehind; }
  void SetMarkerText(const std::string& text);
  // A thin line where the highest level of late stood, bounded to 0..Steps; none at 0.
  std::int32_t Peak() const { return peak; }
  void SetPeak(std::int32_t position);

  // What the bar says in words and numbers ("-12.3 dB"), for the read-out and for the screen reader.
  const std::string& Reading() const { return reading; }
  void SetReading(const std::string& text) { core.Store(reading, text, "Reading"); }
  const std::vector<ScaleTick>& Scale() const { return scale; }
  // The number that matters most comes first: where they are too close, a later one is left out.
  void SetScale(const std::vector<ScaleTick>& ticks) { core.Store(scale, ticks, "Scale"); }

  // Draws bar, markers and border into an area of the surface; of a disabled bar the border alone. While it
  // draws, another call does nothing.
  void Draw(Surface& surface, const Rectangle& area) const;
  // How far along a bar of so many pixels a value stands, in pixels from its beginning.
  int PixelsAlong(std::int32_t at, int length) const;

 private:
  void DrawBar(Surface& surface, const Rectangle& area) const;
  void DrawColumn(Surface& surface, const Rectangle& area) const;
  void DrawLine(Surface& surface, const Rectangle& area, std::int32_t position, int width,
                Colour colour) const;

  std::int32_t steps = 100, midPoint = 50, value = 100, origin = 0;
  Colour beginColor = 0x00FF00, midColor = 0x00FFFF, endColor = 0x0000FF;
  int borderStyle = 5;
  Colour borderColor = 0;
  int orientation = 0;
  Colour backColor = ButtonFace;
  int markerStyle = 0;
  Colour markerColor = 0x0000FF;
  int markerWidth = 3;
  std::vector<std::int32_t> markers{100};
  std::int32_t peak = 0;
  std::string reading;
  std::vector<ScaleTick> scale;
  mutable Gradient gradient;
  mutable bool drawing = false;
};

inline constexpr int HiddenMarker = 5;
inline constexpr int MostMarkers = 1000;

}  // namespace vc
