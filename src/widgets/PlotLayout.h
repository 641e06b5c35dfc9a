// Where everything of a plot lies in its area: the frame, the lines of its grid, and labels that keep clear
// of each other.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "widgets/Plot.h"

namespace vc {

struct PlotLabel {
  std::string text;
  Rectangle area;
  Colour colour;
  double textScale = 1.0;
};

struct PlotLine {
  int left, top, length;
  bool upright;
  LineStyle style;
  Colour colour;
};

// A sample of a curve's colour beside its name.
struct PlotSwatch {
  Rectangle area;
  Colour colour;
};

struct PlotLayout {
  Rectangle area, frame;
  PlotScale x, y;  // between the middles of the frame's outermost pixels
  // Of the curves that have a range of their own, in their order.
  std::vector<std::pair<PlotAxis, PlotScale>> own;
  const PlotScale& ScaleFor(const PlotTrace& trace) const;
  std::vector<PlotSwatch> swatches;
  std::vector<PlotLine> lines;
  std::vector<PlotLabel> labels;
};

// The surface measures the texts.
PlotLayout LayOut(const Plot& plot, Surface& surface, const Rectangle& area);

}  // namespace vc
