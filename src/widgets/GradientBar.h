// The drawing that level bars and progress bars share: a gradient along the bar, in bands, and the border.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/Surface.h"

namespace vc {

// A bar is drawn in so many bands over its full length.
inline constexpr int BarUnits = 255;

// At which unit 0..BarUnits of the bar a colour stands.
struct ColourStop {
  int unit = 0;
  Colour colour = 0;
  bool operator==(const ColourStop&) const = default;
};

// Interpolated channel by channel between the stops, which ascend; before the first and behind the last it is
// theirs.
Colour ColourAt(const std::vector<ColourStop>& stops, int unit);

// The bands of a gradient, built anew only where the stops are others than before.
class Gradient {
 public:
  const std::array<Colour, BarUnits>& Bands(const std::vector<ColourStop>& stops);
  int Builds() const { return builds; }  // how often so far

 private:
  std::vector<ColourStop> builtFor;
  std::array<Colour, BarUnits> bands{};
  int builds = 0;
};

// Where a bar runs: 0 from the left, 1 from below, 2 from above, 3 from the right.
constexpr bool LiesDown(int orientation) { return orientation == 0 || orientation == 3; }
constexpr int LengthOf(const Rectangle& area, int orientation) {
  return LiesDown(orientation) ? area.width : area.height;
}
// The slice of an area between two distances from where the bar begins.
Rectangle Slice(const Rectangle& area, int orientation, int from, int to);

// How many of the whole's units a part is, bounded to 0..units; 0 of an empty whole.
int UnitsOf(std::int32_t part, std::int32_t whole, int units);
// The value at another full scale that fills the same part of it; 0 where the scale is empty.
std::int32_t Rescaled(std::int32_t value, std::int32_t steps, std::int32_t newSteps);
// value + count, bounded to 0..steps.
std::int32_t Stepped(std::int32_t value, std::int32_t count, std::int32_t steps);

// The part of the bar that is filled, and what lies beyond it in the colour behind.
struct BarFilling {
  int orientation;
  int filledUnits;  // 0..BarUnits
  Colour behind;
};
void DrawFilling(Surface& surface, const Rectangle& area, const BarFilling& filling,
                 const std::array<Colour, BarUnits>& bands);

// The frame of a bar by its border style 0..5, on the whole control.
void DrawBorder(Surface& surface, const Rectangle& area, int borderStyle, Colour borderColor);

}  // namespace vc
