// Where everything of a plot lies in its area: the frame, the lines of its grid, and labels that keep clear
// of each other.
#pragma once

#include <string>
#include <vector>

#include "widgets/Plot.h"

namespace vc {

// Places 1, 2 or 5 times a power of ten apart, not more than about so many, from within the axis. Their text
// has the decimals that tell them apart.
struct PlotTick {
  double at;
  std::string text;
};
std::vector<PlotTick> TicksOf(const PlotAxis& axis, int most);

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
  Rectangle frame;
  std::vector<PlotSwatch> swatches;
  std::vector<PlotLine> lines;
  std::vector<PlotLabel> labels;
};

// The axes laid over the pixels of the frame.
Scale ScaleOf(const Plot& plot, const Rectangle& frame);

// The surface measures the texts.
PlotLayout LayOut(const Plot& plot, Surface& surface, const Rectangle& area);

}  // namespace vc
