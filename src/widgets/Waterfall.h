// The last lines of a spectrum under each other, the newest on top and each level a colour, in line with the
// plot above.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/Surface.h"
#include "widgets/Form.h"
#include "widgets/PlotScale.h"

namespace vc {

struct Waterfall {
  static constexpr int MostLines = 1200;
  static constexpr int Colours = 256;

  // The plot is declared before it in the same form; where it lies above, the columns of both are the same.
  Waterfall(Place place, const std::string& name, const std::string& caption, const Plot& above);
  ControlCore core;
  const Plot& plot;

  // The levels of the brightest and of the darkest colour, on the plot's y axis. 0 and -70 at first.
  void SetRange(double top, double bottom);
  double Top() const { return highest; }
  double Bottom() const { return lowest; }
  // Where the first and the last level lie on the plot's x axis; at its ends where it is not set.
  void SetPlaces(double first, double last);
  std::pair<double, double> Places() const;
  // A line stands for so many seconds; of all that is added within them each place keeps its highest level,
  // so that nothing short is missed. At 0 all that is added is a line of its own.
  void SetPace(double seconds) { core.Store(pace, seconds, "Pace"); }
  double Pace() const { return pace; }

  // Levels evenly spaced along the x axis, and when they were measured, in seconds by a clock that never
  // falls. No more than MostLines are kept; another number of levels begins anew.
  void Add(std::span<const float> levels, double seconds);
  // Keeps no room for lines either.
  void Clear();
  int Lines() const { return lines; }
  // 0 is the newest line. Where it begins, in seconds before the newest one.
  std::span<const float> Line(int line) const;
  double Age(int line) const;
  // How many lines have begun, how often something was added, and how often all of them became others.
  std::uint64_t Begun() const { return begun; }
  std::uint64_t Added() const { return added; }
  unsigned Revision() const { return revision; }

  // 0xFFRRGGBB; the darkest one for what is no number.
  std::uint32_t PixelOf(float level) const { return ramp[ShadeOf(level)]; }
  // The ramp from dark to bright.
  std::span<const std::uint32_t, Colours> Ramp() const { return ramp; }

  // "90 s, newest line: highest -12.3 dB at 1000 Hz"; empty where there is no line.
  std::string Reading() const;

 private:
  double BeginOfLine(double seconds) const;
  std::size_t ShadeOf(float level) const;
  std::size_t SlotOf(int line) const;

  double highest = 0.0, lowest = -70.0, pace = 0.5;
  std::pair<double, double> ends{};
  bool endsSet = false;
  std::array<std::uint32_t, Colours> ramp;
  // A ring of lines, each with the moment at which it begins.
  std::vector<float> kept;
  std::vector<double> moments;
  std::size_t breadth = 0, newest = 0;
  int lines = 0;
  std::uint64_t begun = 0, added = 0;
  unsigned revision = 0;
};

// Which levels of a line lie in a column of pixels: from the first to the last of them, or the nearest one
// where they lie further apart; none beyond the ends of the line.
struct LevelReach {
  static constexpr int None = -1;
  int first = None, last = None;
  bool operator==(const LevelReach&) const = default;
};
// Of the columns between two places of the surface that the scale is for, so many to each of its pixels.
std::vector<LevelReach> ReachOfColumns(const Waterfall& waterfall, const PlotScale& x, const Rectangle& frame,
                                       double ratio);

// Ages that are told beside the lines, in minutes and seconds, not closer than so many lines; each at the
// line that has it.
struct AgeLabel {
  int line = 0;
  std::string text;  // "1:30"
  bool operator==(const AgeLabel&) const = default;
};
std::vector<AgeLabel> AgeLabels(const Waterfall& waterfall, int linesShown, int linesApart);

}  // namespace vc
