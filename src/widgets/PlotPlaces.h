// Where the points of a curve lie along a plot's x axis.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "widgets/Plot.h"

namespace vc {

struct PlotPlaces {
  PlotPlaces(const PlotTrace& shown, const PlotAxis& axis)
      : own(shown.places),
        from(axis.from),
        step((axis.to - axis.from) / static_cast<double>(std::max<std::size_t>(shown.values.size() - 1, 1))) {
  }
  double operator[](std::size_t point) const {
    return point < own.size() ? own[point] : from + step * static_cast<double>(point);
  }
  const std::vector<double>& own;
  const double from, step;
};

}  // namespace vc
