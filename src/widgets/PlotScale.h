// An axis of a plot: what it shows, how values lie on pixels, and where its round numbers stand.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace vc {

// Even steps, or even ratios.
enum class AxisLaw { Linear, Logarithmic };

// What an axis shows, and in what unit ("Hz", "dB").
struct PlotAxis {
  double from = 0.0, to = 1.0;
  std::string unit{};
  AxisLaw law = AxisLaw::Linear;
  bool operator==(const PlotAxis&) const = default;
};

// An axis that runs backwards is turned round; one without an extent, or one that is not finite, becomes 1
// long. A logarithmic one begins above 0, a thousandth of its end where it would not.
PlotAxis Corrected(PlotAxis axis);

// The axis laid over pixels: its beginning over one, its end over the other, in either direction.
class PlotScale {
 public:
  PlotScale() = default;
  PlotScale(const PlotAxis& axis, double first, double last);

  // No further away than a million; what is not a number stays none.
  double PixelOf(double value) const {
    const double along = law == AxisLaw::Linear ? value : Logarithm(value);
    return std::clamp(start + factor * along, -FarthestPixel, FarthestPixel);
  }
  double ValueAt(double pixel) const;
  bool operator==(const PlotScale&) const = default;

 private:
  static constexpr double FarthestPixel =
      1e6;  // far outside any surface, and far from where whole numbers end
  static double Logarithm(double value);
  AxisLaw law = AxisLaw::Linear;
  double start = 0.0, factor = 1.0;  // pixel = start + factor * value, or its logarithm
};

// Round numbers within the axis, not more than about so many, with the decimals that tell them apart: 1, 2 or
// 5 times a power of ten apart; on a logarithmic axis 1, 2 and 5 times each power of ten, or only the powers
// where that is too many.
struct PlotTick {
  double at;
  std::string text;
};
std::vector<PlotTick> TicksOf(const PlotAxis& axis, int most);

}  // namespace vc
