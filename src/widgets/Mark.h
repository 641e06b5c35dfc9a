// The program's own mark: a response that lets a spectrum through but for the tone in its notch. Icon,
// picture files, splash and master panel all draw it from here.
#pragma once

#include <string>
#include <vector>

#include "platform/Surface.h"

namespace vc {

// One coloured part of the mark, in units of a grid that is MarkGrid wide and high, origin at the upper left.
struct MarkPart {
  std::vector<Point> outline;
  Colour colour = 0;
};
inline constexpr double MarkGrid = 32.0;

// What lies behind comes first. Together they are a tile with rounded corners that fills the grid.
const std::vector<MarkPart>& MarkParts();

// As large as fits, in the middle of the area. What is around the tile stays as it is.
void DrawMark(Surface& surface, const Rectangle& area);
// At the left, with a name in the surface's own letters behind it.
void DrawMarkAndName(Surface& surface, const Rectangle& area, const std::string& name);

}  // namespace vc
