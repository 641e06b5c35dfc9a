// A gradient bar for work in progress.
#pragma once

#include <cstdint>
#include <string>

#include "widgets/Form.h"
#include "widgets/GradientBar.h"

namespace vc {

struct ProgressBar {
  ProgressBar(Place place, const std::string& name, const std::string& caption, int index = NoIndex);
  ControlCore core;

  // Full scale of Value, bounded below at 0. A new scale keeps the bar's length.
  std::int32_t Steps() const { return steps; }
  void SetSteps(std::int32_t fullScale);
  // The colours at 0 and at Steps.
  Colour FromColor() const { return fromColor; }
  void SetFromColor(Colour colour) { core.Store(fromColor, colour, "FromColor"); }
  Colour ToColor() const { return toColor; }
  void SetToColor(Colour colour) { core.Store(toColor, colour, "ToColor"); }
  // Bounded to 0..Steps.
  std::int32_t Value() const { return value; }
  void SetValue(std::int32_t newValue);
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

  // "40 of 100"
  std::string Reading() const;

  // Draws bar and border into an area of the surface; of a disabled bar the border alone.
  void Draw(Surface& surface, const Rectangle& area) const;

 private:
  std::int32_t steps = 100, value = 0;
  Colour fromColor = 0xFFFFFF, toColor = 0xFF0000;
  int borderStyle = 5;
  Colour borderColor = 0;
  int orientation = 1;
  Colour backColor = ButtonFace;
  mutable Gradient gradient;
};

}  // namespace vc
