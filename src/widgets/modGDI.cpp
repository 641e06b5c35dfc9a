#include "widgets/modGDI.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vc::modGDI {
namespace {

// Far outside any surface, and far from where whole numbers end.
constexpr double Farthest = 1e6;

double Along(double from, double extent, double at, int start, int pixels) {
  const double place = extent == 0.0 ? start : start + (at - from) / extent * pixels;
  return std::isnan(place) ? start : std::clamp(place, -Farthest, Farthest);
}

int NearestPixel(double place) { return static_cast<int>(std::lround(place)); }

}  // namespace

Point LogicalToDevice(const Surface& surface, double x, double y) {
  const Scale& scale = surface.scale;
  if (scale.mode == ScaleMode::Pixels) return {Along(0.0, 1.0, x, 0, 1), Along(0.0, 1.0, y, 0, 1)};
  return {Along(scale.left, scale.width, x, scale.device.left, scale.device.width),
          Along(scale.top, scale.height, y, scale.device.top, scale.device.height)};
}

Rectangle DrawPictureText(Surface& surface, const std::string& text, double x, double y, Colour colour) {
  const Colour saved = std::exchange(surface.foreColour, colour);
  const Point corner = LogicalToDevice(surface, x, y);
  const Size size = surface.TextSize(text);
  const Rectangle area{NearestPixel(corner.x), NearestPixel(corner.y), size.width, size.height};
  surface.DrawText(area, text);
  surface.foreColour = saved;
  return area;
}

}  // namespace vc::modGDI
