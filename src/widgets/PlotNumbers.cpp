// The curves of a plot as numbers in lines of text.
#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "text/Convert.h"
#include "widgets/Plot.h"
#include "widgets/PlotPlaces.h"

namespace vc {
namespace {

std::string Heading(const Plot& plot, const std::vector<const PlotTrace*>& told) {
  std::string line = plot.XAxis().unit;
  for (const PlotTrace* trace : told) {
    const std::string& unit = trace->yAxis ? trace->yAxis->unit : plot.YAxis().unit;
    line += '\t' + trace->name + (unit.empty() ? "" : " " + unit);
  }
  return line + '\n';
}

// A place that follows from others has more digits than it means.
std::string PlaceText(double place) {
  constexpr double fine = 1e6;
  return ShortestText(std::round(place * fine) / fine);
}

// What each curve has at each place where one of them has a point; a curve's own points as they are.
using Row = std::vector<std::string>;
std::map<double, Row> Rows(const Plot& plot, const std::vector<const PlotTrace*>& told) {
  std::map<double, Row> rows;
  for (std::size_t column = 0; column < told.size(); ++column) {
    const PlotPlaces places(*told[column], plot.XAxis());
    for (std::size_t i = 0; i < told[column]->values.size(); ++i) {
      const float value = told[column]->values[i];
      Row& row = rows.try_emplace(places[i], told.size()).first->second;
      if (!std::isnan(value)) row[column] = ShortestText(value);
    }
  }
  return rows;
}

// Between its points a curve is the line that joins them.
void Join(const Plot& plot, const std::vector<const PlotTrace*>& told, double place, Row& row) {
  for (std::size_t column = 0; column < told.size(); ++column) {
    if (!row[column].empty()) continue;
    const auto level = plot.LevelAt(*told[column], place);
    if (level) row[column] = ShortestText(static_cast<float>(*level));
  }
}

}  // namespace

std::string PlotNumbers(const Plot& plot) {
  std::vector<const PlotTrace*> told;
  for (const PlotTrace& trace : plot.Traces()) {
    if (IsTold(trace) && !trace.values.empty()) told.push_back(&trace);
  }
  if (told.empty()) return {};
  std::string text = Heading(plot, told);
  for (auto& [place, row] : Rows(plot, told)) {
    Join(plot, told, place, row);
    text += PlaceText(place);
    for (const std::string& value : row) text += '\t' + value;
    text += '\n';
  }
  return text;
}

}  // namespace vc
