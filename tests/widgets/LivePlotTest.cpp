// What live displays ask of their plots: lines at even parts, letters that grow, and the waterfall's lines.
#include <limits>

#include <gtest/gtest.h>

#include "RecordingSurface.h"
#include "widgets/ControlText.h"
#include "widgets/PlotLayout.h"
#include "widgets/Waterfall.h"

namespace vc {
namespace {

constexpr float Unmeasured = std::numeric_limits<float>::quiet_NaN();
constexpr Rectangle Area{0, 0, 640, 400};

struct LivePlots : testing::Test {
  Form form{"F", "Form"};
  Plot plot{form, "plt", ""};
  support::RecordingSurface surface;

  LivePlots() { plot.SetAxes({10, 4600, "Hz"}, {-70, 0, "dB"}); }
  std::vector<support::Drawn> Drawn(const std::string& what) {
    surface.drawn.clear();
    plot.Draw(surface, Area);
    return surface.Of(what);
  }
};

TEST_F(LivePlots, LinesStandAtEvenPartsOrNowhere) {
  plot.screen = true;
  plot.SetGrid(PlotGrid{8, 7});
  const Rectangle frame = LayOut(plot, surface, Area).frame;
  std::vector<int> columns, rows;
  for (const support::Drawn& line : Drawn("dotted")) {
    EXPECT_EQ(line.colour, 0x808080U);
    if (line.area.width == 1) columns.push_back(line.area.left - frame.left);
    if (line.area.height == 1) rows.push_back(line.area.top - frame.top);
  }
  ASSERT_EQ(columns.size(), 7U);
  ASSERT_EQ(rows.size(), 6U);
  for (int k = 1; k < 8; ++k) EXPECT_EQ(columns[static_cast<std::size_t>(k - 1)], k * frame.width / 8);
  EXPECT_EQ(rows[2], 3 * frame.height / 7);
  const auto numbers = Drawn("text");
  plot.SetGrid(NoGrid);
  EXPECT_TRUE(Drawn("dotted").empty());
  EXPECT_EQ(Drawn("text"), numbers);
  for (const support::Drawn& tick : Drawn("line"))
    EXPECT_FALSE(frame.left < tick.area.Right() && frame.Bottom() > tick.area.top);
}

TEST_F(LivePlots, TheNamesOfTheCurvesStandInTheScreenInTheirColours) {
  plot.screen = true;
  plot.SetTraces({{"Trace 1", {-20}, ScreenYellow}, {"", {-30}}, {"Trace 2", {-50}, ScreenBlue}});
  for (int kept = 0; kept < 8; ++kept) {
    const Rectangle frame = LayOut(plot, surface, Area).frame;
    std::vector<Rectangle> names;
    for (const support::Drawn& text : Drawn("text")) {
      if (text.text.starts_with("Trace")) names.push_back(text.area);
    }
    ASSERT_EQ(names.size(), plot.Traces().size() - 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
      EXPECT_GT(names[i].left, frame.left + support::RecordingSurface::LetterHeight);
      EXPECT_LT(names[i].Right(), frame.Right());
      EXPECT_TRUE(i == 0 || names[i].left > names[i - 1].Right() || names[i].top >= names[i - 1].Bottom());
    }
    EXPECT_EQ(surface.Of("fill").back().colour, plot.Traces().back().colour);
    std::vector<PlotTrace> more = plot.Traces();
    more.push_back({"Trace 1, kept before the filter was set", {-40}, TraceColours[1]});
    plot.SetTraces(more);
  }
}

TEST_F(LivePlots, LettersGrowInSteps) {
  plot.lettersGrow = true;
  const PlotRoom room = DesignRoom(plot);
  const Size design{room.digits * support::RecordingSurface::LetterWidth,
                    room.lines * support::RecordingSurface::LetterHeight};
  for (const auto& [grown, letters] :
       {std::pair{1.25, 1.0}, {1.3, 1.25}, {2.0, 1.75}, {2.1, 2.25}, {3.1, 3.0}}) {
    const auto times = [&, by = grown](int length) { return static_cast<int>(length * by); };
    EXPECT_EQ(LayOut(plot, surface, {0, 0, times(design.width), times(design.height)}).letters, letters);
    EXPECT_EQ(LayOut(plot, surface, {0, 0, times(design.width), design.height}).letters, 1.0);
  }
  EXPECT_EQ(surface.textScale, 1.0);
}

TEST_F(LivePlots, AWaterfallKeepsTheHighestOfWhatComesWithinItsPace) {
  Waterfall waterfall{form, "wtr", "Lately", plot};
  waterfall.SetPace(1);
  EXPECT_TRUE(AgeLabels(waterfall, 100, 5).empty());
  for (int second = 0, tenth = 0; tenth < 12000; second = ++tenth / 10) {
    const float level = tenth % 10 == 3 ? -10.0F : -60.0F;
    waterfall.Add(std::vector<float>{level, Unmeasured, static_cast<float>(second)}, tenth * 0.1 + 0.01);
  }
  EXPECT_EQ(waterfall.Lines(), Waterfall::MostLines);
  EXPECT_EQ(waterfall.Line(0)[0], -10.0F);
  EXPECT_EQ(waterfall.Line(7)[2], 1192.0F);
  EXPECT_NEAR(waterfall.Age(1199), 1199, 1e-6);
  std::string ages;
  for (const AgeLabel& age : AgeLabels(waterfall, 151, 20)) {
    ages += age.text + "@" + std::to_string(age.line) + " ";
  }
  EXPECT_EQ(ages, "0:00@0 0:30@30 1:00@60 1:30@90 2:00@120 2:30@150 ");
  EXPECT_EQ(waterfall.PixelOf(Unmeasured), waterfall.PixelOf(-99.0F));
  EXPECT_EQ(waterfall.PixelOf(3.0F), waterfall.Ramp().back());
  waterfall.Add(std::vector<float>{1.0F}, 2000);  // of another size
  EXPECT_EQ(waterfall.Lines(), 1);
  waterfall.Clear();
  EXPECT_EQ(ValueOf(&waterfall), "");
}

}  // namespace
}  // namespace vc
