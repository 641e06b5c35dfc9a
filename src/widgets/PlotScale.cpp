#include "widgets/PlotScale.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr double Farthest = 1e9, LeastExtent = 1e-6, LeastStart = 1e-3;
constexpr double RoundOff = 1e-9;

double TickStep(double extent, int most) {
  const double least = extent / std::max(most, 1);
  const double decade = std::pow(10.0, std::floor(std::log10(least)));
  for (const double multiple : {1.0, 2.0, 5.0}) {
    if (multiple * decade >= least * (1.0 - RoundOff)) return multiple * decade;
  }
  return 10.0 * decade;
}

int DecimalsOf(double step) {
  return std::max(0, static_cast<int>(-std::floor(std::log10(step) + RoundOff)));
}

std::vector<PlotTick> EvenTicks(const PlotAxis& axis, int most) {
  const double step = TickStep(axis.to - axis.from, most);
  const int decimals = DecimalsOf(step);
  std::vector<PlotTick> ticks;
  const auto first = static_cast<std::int64_t>(std::ceil(axis.from / step - RoundOff));
  const auto last = static_cast<std::int64_t>(std::floor(axis.to / step + RoundOff));
  for (std::int64_t i = first; i <= last; ++i) {
    const double at = static_cast<double>(i) * step;
    ticks.push_back({at, FixedText(at, decimals)});
  }
  return ticks;
}

std::vector<PlotTick> DecadeTicks(const PlotAxis& axis, std::span<const double> multiples, int everyDecade) {
  std::vector<PlotTick> ticks;
  const int first = static_cast<int>(std::floor(std::log10(axis.from)));
  const int last = static_cast<int>(std::ceil(std::log10(axis.to)));
  for (int decade = first; decade <= last; ++decade) {
    if (decade % everyDecade != 0) continue;
    for (const double multiple : multiples) {
      const double at = multiple * std::pow(10.0, decade);
      const bool within = at >= axis.from * (1.0 - RoundOff) && at <= axis.to * (1.0 + RoundOff);
      if (within) ticks.push_back({at, FixedText(at, DecimalsOf(at))});
    }
  }
  return ticks;
}

std::vector<PlotTick> RatioTicks(const PlotAxis& axis, int most) {
  constexpr double multiples[] = {1.0, 2.0, 5.0};
  constexpr std::size_t fewest = 3;  // below that its numbers would not tell that it is logarithmic
  const auto limit = static_cast<std::size_t>(std::max(most, 1));
  auto ticks = DecadeTicks(axis, multiples, 1);
  if (ticks.size() < fewest && limit >= fewest) return EvenTicks(axis, most);
  for (int every = 1; ticks.size() > limit && every < 10; ++every) {
    ticks = DecadeTicks(axis, std::span(multiples).first(1), every);
  }
  return ticks;
}

}  // namespace

PlotAxis Corrected(PlotAxis axis) {
  axis.from = std::isfinite(axis.from) ? std::clamp(axis.from, -Farthest, Farthest) : 0.0;
  axis.to = std::isfinite(axis.to) ? std::clamp(axis.to, -Farthest, Farthest) : axis.from;
  if (axis.to < axis.from) std::swap(axis.from, axis.to);
  if (axis.to - axis.from < LeastExtent) axis.to = axis.from + 1.0;
  if (axis.law == AxisLaw::Linear) return axis;
  axis.to = std::max(axis.to, LeastExtent);
  if (axis.from <= 0.0) axis.from = axis.to * LeastStart;
  return axis;
}

PlotScale::PlotScale(const PlotAxis& axis, double first, double last) : law(axis.law) {
  const bool even = law == AxisLaw::Linear;
  const double from = even ? axis.from : std::log(axis.from), to = even ? axis.to : std::log(axis.to);
  factor = (last - first) / (to - from);
  start = first - factor * from;
}

double PlotScale::Logarithm(double value) { return std::log(value < 0.0 ? 0.0 : value); }

double PlotScale::ValueAt(double pixel) const {
  if (factor == 0.0) return 0.0;  // laid over a single pixel
  const double along = (pixel - start) / factor;
  return law == AxisLaw::Linear ? along : std::exp(along);
}

std::vector<PlotTick> TicksOf(const PlotAxis& axis, int most) {
  return axis.law == AxisLaw::Linear ? EvenTicks(axis, most) : RatioTicks(axis, most);
}

}  // namespace vc
