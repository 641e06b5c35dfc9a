#include "widgets/GradientBar.h"

#include <algorithm>
#include <cstddef>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr int FrameStyle = 4;
// Edge styles of the border styles 0 to 5; 0 draws no edge.
constexpr std::array<EdgeStyle, 6> EdgeOfBorder{0, 9, 6, 5, 0, 10};

int Blend(int from, int to, int part, int whole) { return from + (to - from) * part / whole; }

Colour Blend(Colour from, Colour to, int part, int whole) {
  return MakeColour(Blend(RedOf(from), RedOf(to), part, whole),
                    Blend(GreenOf(from), GreenOf(to), part, whole),
                    Blend(BlueOf(from), BlueOf(to), part, whole));
}

}  // namespace

Colour ColourAt(const std::vector<ColourStop>& stops, int unit) {
  const auto behind = std::ranges::upper_bound(stops, unit, {}, &ColourStop::unit);
  if (behind == stops.begin()) return stops.empty() ? 0 : stops.front().colour;
  const auto before = behind - 1;
  if (behind == stops.end()) return before->colour;
  return Blend(before->colour, behind->colour, unit - before->unit, behind->unit - before->unit);
}

const std::array<Colour, BarUnits>& Gradient::Bands(const std::vector<ColourStop>& stops) {
  if (builds > 0 && stops == builtFor) return bands;
  builtFor = stops;
  ++builds;
  for (int unit = 0; unit < BarUnits; ++unit) bands[static_cast<std::size_t>(unit)] = ColourAt(stops, unit);
  return bands;
}

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

int UnitsOf(std::int32_t part, std::int32_t whole, int units) {
  if (whole <= 0) return 0;
  return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{part} * units / whole, 0, units));
}

std::int32_t Rescaled(std::int32_t value, std::int32_t steps, std::int32_t newSteps) {
  return steps == 0 ? 0 : Nearest32(newSteps * (static_cast<double>(value) / steps));
}

std::int32_t Stepped(std::int32_t value, std::int32_t count, std::int32_t steps) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(std::int64_t{value} + count, 0, steps));
}

void DrawFilling(Surface& surface, const Rectangle& area, const BarFilling& filling,
                 const std::array<Colour, BarUnits>& bands) {
  const int length = LengthOf(area, filling.orientation);
  int from = 0;
  for (int unit = 0; unit < filling.filledUnits; ++unit) {
    const int to = (unit + 1) * length / BarUnits;
    if (to > from) {
      surface.FillRectangle(Slice(area, filling.orientation, from, to),
                            bands[static_cast<std::size_t>(unit)]);
    }
    from = to;
  }
  if (from < length) surface.FillRectangle(Slice(area, filling.orientation, from, length), filling.behind);
}

void DrawBorder(Surface& surface, const Rectangle& area, int borderStyle, Colour borderColor) {
  if (borderStyle == FrameStyle) {
    surface.FrameRectangle(area, borderColor);
  } else if (borderStyle > 0 && borderStyle < static_cast<int>(EdgeOfBorder.size())) {
    surface.DrawEdge(area, EdgeOfBorder[static_cast<std::size_t>(borderStyle)]);
  }
}

}  // namespace vc
