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

// The colours of what lies in a plot's frame.
struct PlotInks {
  Colour ground, border, line, letters, cursor, pass, stop, bar;
  LineStyle grid;
};
const PlotInks& InksOf(const Plot& plot);

// The room for which a plot is designed, in digits and in lines of text.
struct PlotRoom {
  int digits, lines;
};
PlotRoom DesignRoom(const Plot& plot);

struct PlotLayout {
  Rectangle area, frame;
  PlotScale x, y;  // between the middles of the frame's outermost pixels
  // Of the curves that have a range of their own, in their order.
  std::vector<std::pair<PlotAxis, PlotScale>> own;
  const PlotScale& ScaleFor(const PlotTrace& trace) const;
  std::vector<PlotSwatch> swatches;
  std::vector<PlotLine> lines;
  std::vector<PlotLabel> labels;
  double letters = 1.0;  // how large, against the surface's font
};

// The surface measures the texts.
PlotLayout LayOut(const Plot& plot, Surface& surface, const Rectangle& area);

}  // namespace vc
