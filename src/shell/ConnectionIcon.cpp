#include "shell/ConnectionIcon.h"

#include <algorithm>

namespace vc {
namespace {

constexpr Colour Device = MakeColour(90, 105, 125);
constexpr Colour Screen = MakeColour(205, 220, 235);
constexpr Colour Cable = MakeColour(150, 160, 172);
constexpr Colour Pulse = MakeColour(20, 150, 70);

// The picture is designed on a grid of 48 by 24 and scaled to what it is given.
constexpr int GridWidth = 48, GridHeight = 24;

struct IconGrid {
  Rectangle area;
  Rectangle At(int left, int top, int width, int height) const {
    const int scale = std::max(1, std::min(area.width / GridWidth, area.height / GridHeight));
    const int originX = area.left + (area.width - GridWidth * scale) / 2;
    const int originY = area.top + (area.height - GridHeight * scale) / 2;
    return {originX + left * scale, originY + top * scale, width * scale, height * scale};
  }
};

}  // namespace

void DrawConnectionIcon(Surface& surface, const Rectangle& area, int image) {
  const IconGrid grid{area};
  surface.FillRectangle(grid.At(1, 4, 13, 10), Device);  // the desktop's screen and its foot
  surface.FillRectangle(grid.At(2, 5, 11, 8), Screen);
  surface.FillRectangle(grid.At(6, 14, 3, 3), Device);
  surface.FillRectangle(grid.At(3, 17, 9, 2), Device);
  surface.FillRectangle(grid.At(35, 8, 12, 11), Device);  // the unit with its two level lights
  surface.FillRectangle(grid.At(37, 10, 8, 3), Screen);
  surface.FillRectangle(grid.At(15, 12, 19, 1), Cable);
  constexpr int firstStop = 15, stopDistance = 2;
  surface.FillEllipse(grid.At(firstStop + stopDistance * (image - 1), 10, 5, 5), Pulse);
}

}  // namespace vc
