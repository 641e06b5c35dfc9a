// A curve that is drawn on a panel by hand, sent over the line and measured in the unit's sound: it is the
// drawn one that is heard, wherever the filter has the lines to follow it.
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "model/Kinds.h"
#include "text/Convert.h"

namespace sound_test::drawn_curve {
namespace {

using namespace measure;
using vc::ConfigMode;

// Line i lies at i * sampleRate / ratePerLine.
struct Graph {
  const char* blockSwitch;
  void (*open)(support::SoundRun& run);
  int lines;
  double ratePerLine;
  double tolerance;  // dB
};
const Graph Graphs[] = {
    {"btnFilterActive", [](support::SoundRun& run) { run.OpenFilter(1, vc::FilterKind::HiResGraphic); }, 460,
     1024, 0.4},
    {"btnEqActive",
     [](support::SoundRun& run) {
       run.Edit("eqType", std::to_string(vc::EqKind::SpectralGraphic), 1);
       run.session.panels.OpenEqualizer(1);
     },
     115, 256, 0.1}};

// Where the hand clicks: so many lines from one click to the next, and at which level in dB, by the line and
// the part of the width.
struct Hand {
  const char* name;
  int step;
  double (*level)(int line, double part);
};
const Hand Hands[] = {
    // As steep as 5.5 dB in 5 lines.
    {"waves", 4, [](int line, double /*part*/) { return -25 + 20 * std::sin(line * 0.055); }},
    {"ramp to the floor", 7, [](int /*line*/, double part) { return -60 * part; }},
    {"ramp from the floor", 7, [](int /*line*/, double part) { return -60 + 60 * part; }},
    {"plateaus", 1, [](int line, double /*part*/) { return -10 - 15.0 * (line / 23 * 2 % 3); }},
    {"deep plateaus", 1, [](int line, double /*part*/) { return line / 20 % 2 == 0 ? -3.0 : -45.0; }}};

// In the middle of the line's place.
void ClickAt(support::SoundRun& run, const Graph& graph, int line, double level) {
  const double last = graph.lines - 1, hertz = run.record.sampleRate / graph.ratePerLine * last;
  const double place = std::min((line + 0.5) / last, 1.0) * hertz;
  EXPECT_EQ(PointAt(run.Find("FilterDisplay"), vc::ShortestText(place) + " " + vc::ShortestText(level)), "");
}

// The levels by line, from the clicks and the straight lines between them.
std::vector<double> DrawBy(support::SoundRun& run, const Graph& graph, const Hand& hand) {
  EXPECT_EQ(run.Click("btnNew"), "");
  const int last = graph.lines - 1;
  std::vector<double> levels{hand.level(0, 0)};
  ClickAt(run, graph, 0, levels[0]);
  for (int line = 0; line < last;) {
    const int next = std::min(line + hand.step, last);
    const double from = levels.back(), to = hand.level(next, static_cast<double>(next) / last);
    ClickAt(run, graph, next, to);
    for (int between = line + 1; between <= next; ++between) {
      levels.push_back(from + (to - from) * (between - line) / (next - line));
    }
    line = next;
  }
  return levels;
}

// Whether it changes by less than 6 dB in any 5 lines with this one.
bool IsGentle(const std::vector<double>& levels, std::size_t line) {
  constexpr std::size_t window = 5;
  constexpr double most = 6;
  for (std::size_t from = line - std::min(line, window); from <= line && from + window < levels.size();
       ++from) {
    const auto [least, greatest] = std::ranges::minmax(std::span(levels).subspan(from, window + 1));
    if (greatest - least >= most) return false;
  }
  return true;
}

void ExpectHeardAsDrawn(support::SoundRun& run, const Graph& graph, const std::vector<double>& levels) {
  constexpr float height = 0.125F;
  Signal impulse(8192);
  impulse[0] = height;
  const support::SoundRun::Stereo heard = run.Through({impulse, impulse});
  const std::size_t outputs = run.record.configMode == ConfigMode::Mono ? 1 : 2;
  for (std::size_t output = 0; output < outputs; ++output) {
    std::size_t compared = 0;
    for (std::size_t line = 0; line < levels.size(); ++line) {
      if (!IsGentle(levels, line)) continue;
      ++compared;
      const double hertz = static_cast<double>(line) * run.Rate() / graph.ratePerLine;
      const double gain = GainAt(heard[output], hertz, run.Rate()) - Decibels(static_cast<double>(height));
      ASSERT_NEAR(gain, levels[line], graph.tolerance) << "output " << output << ", line " << line;
    }
    EXPECT_GT(compared, levels.size() / 3);
  }
}

TEST(DrawnCurves, AreHeardAsTheyWereDrawn) {
  for (const std::int16_t mode : {ConfigMode::Mono, ConfigMode::StereoLinked}) {
    for (const char* bandwidth : {"1", "5"}) {
      for (const Graph& graph : Graphs) {
        support::SoundRun run(mode, bandwidth);
        run.Edit("numFilters", "1");
        graph.open(run);
        run.Click(graph.blockSwitch);
        for (const Hand& hand : Hands) {
          SCOPED_TRACE(run.Top().name + ", " + hand.name + ", bandwidth " + bandwidth + ", mode " +
                       std::to_string(mode));
          const std::vector<double> levels = DrawBy(run, graph, hand);
          EXPECT_EQ(run.Click("btnAbort"), "it is disabled");
          run.Take();
          ExpectHeardAsDrawn(run, graph, levels);
        }
      }
    }
  }
}

}  // namespace
}  // namespace sound_test::drawn_curve
