#include "widgets/Waterfall.h"

#include <algorithm>
#include <cmath>

#include "text/Convert.h"
#include "widgets/GradientBar.h"
#include "widgets/Plot.h"

namespace vc {
namespace {

// Ever brighter, so that it is read without its hues, too.
const std::vector<ColourStop>& RampStops() {
  static const std::vector<ColourStop> stops{{0, MakeColour(14, 16, 22)},     {50, MakeColour(46, 20, 104)},
                                             {100, MakeColour(130, 30, 120)}, {150, MakeColour(208, 62, 70)},
                                             {200, MakeColour(248, 140, 32)}, {232, MakeColour(252, 214, 80)},
                                             {255, MakeColour(255, 255, 232)}};
  return stops;
}

std::array<std::uint32_t, Waterfall::Colours> MadeRamp() {
  std::array<std::uint32_t, Waterfall::Colours> ramp{};
  for (std::size_t i = 0; i < ramp.size(); ++i) {
    const Colour colour = ColourAt(RampStops(), static_cast<int>(i));
    ramp[i] = 0xFF000000U | static_cast<std::uint32_t>(RedOf(colour)) << 16U |
              static_cast<std::uint32_t>(GreenOf(colour)) << 8U | static_cast<std::uint32_t>(BlueOf(colour));
  }
  return ramp;
}

std::string AgeText(int seconds) {
  constexpr int minute = 60, ten = 10;
  const int rest = seconds % minute;
  return std::to_string(seconds / minute) + (rest < ten ? ":0" : ":") + std::to_string(rest);
}

}  // namespace

Waterfall::Waterfall(Place place, const std::string& name, const std::string& caption, const Plot& above)
    : core(place, name, NoIndex, caption), plot(above), ramp(MadeRamp()) {
  place.form->controls.emplace_back(this);
}

void Waterfall::SetRange(double top, double bottom) {
  if (top == highest && bottom == lowest) return;
  highest = top;
  lowest = bottom;
  ++revision;
  core.Changed("Range");
}

void Waterfall::SetPlaces(double first, double last) {
  if (endsSet && ends == std::pair(first, last)) return;
  ends = {first, last};
  endsSet = true;
  ++revision;
  core.Changed("Places");
}

std::pair<double, double> Waterfall::Places() const {
  return endsSet ? ends : std::pair(plot.XAxis().from, plot.XAxis().to);
}

// Lines follow each other by whole paces, so that equal distances on the picture are equal times.
double Waterfall::BeginOfLine(double seconds) const {
  if (lines == 0 || pace <= 0.0) return seconds;
  constexpr double roundOff = 1e-9;
  const double paces = std::floor((seconds - moments[newest]) / pace + roundOff);
  return paces > 0.0 ? moments[newest] + paces * pace : moments[newest];
}

void Waterfall::Add(std::span<const float> levels, double seconds) {
  if (levels.empty()) return;
  if (levels.size() != breadth) {
    Clear();
    breadth = levels.size();
    kept.resize(breadth * MostLines);
    moments.resize(MostLines);
  }
  if (lines == 0) ++revision;
  float* line = kept.data() + newest * breadth;
  const double begin = BeginOfLine(seconds);
  if (lines > 0 && pace > 0.0 && begin == moments[newest]) {
    for (std::size_t i = 0; i < breadth; ++i) {
      if (std::isnan(line[i]) || levels[i] > line[i]) line[i] = levels[i];
    }
  } else {
    newest = (newest + 1) % MostLines;
    std::ranges::copy(levels, kept.data() + newest * breadth);
    moments[newest] = begin;
    lines = std::min(lines + 1, MostLines);
    ++begun;
  }
  ++added;
  core.Changed("Line");
}

void Waterfall::Clear() {
  if (lines == 0) return;
  lines = 0;
  kept.clear();
  kept.shrink_to_fit();
  breadth = 0;
  ++revision;
  core.Changed("Lines");
}

std::size_t Waterfall::SlotOf(int line) const {
  return (newest + MostLines - static_cast<std::size_t>(line)) % MostLines;
}

std::span<const float> Waterfall::Line(int line) const {
  return {kept.data() + SlotOf(line) * breadth, breadth};
}

double Waterfall::Age(int line) const { return moments[newest] - moments[SlotOf(line)]; }

std::size_t Waterfall::ShadeOf(float level) const {
  const double part = (static_cast<double>(level) - lowest) / (highest - lowest);
  return part > 0.0 ? static_cast<std::size_t>(std::lround(std::min(part, 1.0) * (Colours - 1))) : 0;
}

std::string Waterfall::Reading() const {
  if (lines == 0) return {};
  const std::span<const float> line = Line(0);
  std::size_t peak = 0;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] > line[peak] || std::isnan(line[peak])) peak = i;
  }
  const auto [first, last] = Places();
  const double steps = std::max(static_cast<double>(line.size()) - 1.0, 1.0);
  const double place = first + (last - first) * static_cast<double>(peak) / steps;
  return FixedText(Age(lines - 1), 0) + " s, newest line: highest " +
         FixedText(static_cast<double>(line[peak]), 1) + " " + plot.YAxis().unit + " at " +
         FixedText(place, 0) + " " + plot.XAxis().unit;
}

std::vector<LevelReach> ReachOfColumns(const Waterfall& waterfall, const PlotScale& x, const Rectangle& frame,
                                       double ratio) {
  const auto columns = static_cast<int>(std::lround(frame.width * ratio));
  std::vector<LevelReach> reaches(static_cast<std::size_t>(std::max(columns, 0)));
  if (waterfall.Lines() == 0) return reaches;
  const auto count = static_cast<double>(waterfall.Line(0).size());
  const auto [first, last] = waterfall.Places();
  const auto levelAt = [&, begin = first, extent = last - first](double column) {
    return (x.ValueAt(frame.left + column / ratio) - begin) / extent * std::max(count - 1.0, 1.0);
  };
  constexpr double half = 0.5;
  for (int column = 0; column < columns; ++column) {
    const double middle = levelAt(column + half);
    if (!(middle > -half - 1e-9 && middle < count - half + 1e-9)) continue;
    double from = std::ceil(levelAt(column)), to = std::ceil(levelAt(column + 1)) - 1.0;
    if (from > to) from = to = std::round(middle);
    reaches[static_cast<std::size_t>(column)] = {static_cast<int>(std::clamp(from, 0.0, count - 1.0)),
                                                 static_cast<int>(std::clamp(to, 0.0, count - 1.0))};
  }
  return reaches;
}

std::vector<AgeLabel> AgeLabels(const Waterfall& waterfall, int linesShown, int linesApart) {
  const int oldest = std::min(linesShown, waterfall.Lines()) - 1;
  if (oldest < 0) return {};
  std::vector<AgeLabel> labels{{0, AgeText(0)}};
  const double span = waterfall.Age(oldest);
  if (span <= 0.0) return labels;
  constexpr std::array<int, 12> steps{1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 1800, 3600};
  const auto* step = std::ranges::find_if(steps, [&](int one) { return one * oldest / span >= linesApart; });
  if (step == steps.end()) return labels;
  for (int age = *step, line = 0; age <= span; age += *step) {
    while (line < oldest && waterfall.Age(line) < age) ++line;
    if (line - labels.back().line >= linesApart / 2) labels.push_back({line, AgeText(age)});
  }
  return labels;
}

}  // namespace vc
