// Level bars as models and as drawings.
#include <gtest/gtest.h>

#include "RecordingSurface.h"
#include "text/Convert.h"
#include "widgets/LevelBar.h"

namespace vc {
namespace {

struct LevelBars : testing::Test {
  Form form{"F", "Form"};
  LevelBar bar{form, "lb", "Level"};
  support::RecordingSurface surface;
  static constexpr Rectangle Area{10, 20, 255, 8};
  static constexpr Colour Green = 0x00FF00, Yellow = 0x00FFFF, Back = 0x123456;

  const support::RecordingSurface& Draw(const Rectangle& area = Area) {
    surface.drawn.clear();
    bar.Draw(surface, area);
    return surface;
  }
};

TEST_F(LevelBars, ValuesStayWithinTheScale) {
  bar.SetValue(250);
  EXPECT_EQ(bar.Value(), 100);
  int told = 0;
  form.controlChanged = [&told](const ControlCore&, std::string_view) { ++told; };
  for (const int below : {-2, -3}) bar.SetValue(below);
  EXPECT_EQ(bar.Value(), 0);
  EXPECT_EQ(told, 1);  // the view hears of what differs alone
  EXPECT_EQ(bar.Step(30), 30);
  EXPECT_EQ(bar.Step(2147483647), 100);
  bar.SetMidPoint(0);
  EXPECT_EQ(bar.MidPoint(), 1);
  bar.SetMidPoint(900);
  EXPECT_EQ(bar.MidPoint(), 100);
}

TEST_F(LevelBars, NewScaleKeepsTheLengthOfTheBar) {
  bar.SetValue(60);
  bar.SetMarkerValue(1, 90);
  bar.SetSteps(50);
  EXPECT_EQ(bar.Value(), 30);
  EXPECT_EQ(bar.MidPoint(), 50);
  EXPECT_EQ(bar.MarkerValue(1), 50);
  bar.SetSteps(-5);
  EXPECT_EQ(bar.Steps(), 0);
  EXPECT_EQ(bar.Value(), 0);
  bar.SetSteps(100);
  EXPECT_EQ(bar.Value(), 0);
  Draw();  // and none of it divides by zero
}

TEST_F(LevelBars, MarkersOutsideTheirCountAreErrors) {
  bar.SetNumMarkers(2);
  bar.SetMarkerValue(2, 40);
  EXPECT_EQ(bar.MarkerValue(1), 100);
  EXPECT_EQ(bar.MarkerValue(2), 40);
  const auto number = [](auto access) {
    try {
      access();
    } catch (const Fault& fault) {
      return std::to_string(fault.number) + " " + fault.source;
    }
    return std::string("no fault");
  };
  EXPECT_EQ(number([&] { (void)bar.MarkerValue(0); }), "1020 LevelBar.MarkerValue (Get)");
  EXPECT_EQ(number([&] { bar.SetMarkerValue(3, 1); }), "1021 LevelBar.MarkerValue (Let)");
}

TEST_F(LevelBars, AColumnStandsOnItsOriginEitherWay) {
  bar.SetBackColor(Back);
  bar.SetMarkerStyle(HiddenMarker);
  bar.SetSteps(180);
  bar.SetOrigin(90);
  const Rectangle area{0, 0, 8, 180};
  for (const auto& [orientation, way] : {std::pair{1, 1}, {2, -1}}) {
    bar.SetOrientation(orientation);
    for (const int value : {90, 45, 46, 0, 135, 180}) {
      bar.SetValue(value);
      Draw(area);
      const auto at = [&, up = way](int step) { return surface.At(4, up > 0 ? 179 - step : step); };
      for (const int step : {1, 45, 89, 92, 134, 178}) {
        const bool within = step < 90 ? step >= value : step < value;
        EXPECT_EQ(at(step), within ? Highlight : Back) << orientation << ' ' << value << ' ' << step;
      }
      EXPECT_EQ(at(90), GrayText);  // seen at any value
    }
  }
  bar.SetSteps(60);
  EXPECT_EQ(bar.Origin(), 60);
}

TEST_F(LevelBars, GradientRunsFromGreenOverYellowToRed) {
  bar.SetBackColor(Back);
  bar.SetMarkerStyle(HiddenMarker);
  EXPECT_EQ(Draw().At(10, 22), Green);
  EXPECT_EQ(surface.At(10 + 127, 22), Yellow);
  EXPECT_GT(RedOf(surface.At(10 + 254, 22)), 250);
  EXPECT_LT(GreenOf(surface.At(10 + 254, 22)), 4);
  bar.SetValue(40);
  EXPECT_EQ(GreenOf(Draw().At(10 + 101, 22)), 255);
  EXPECT_EQ(surface.At(10 + 102, 22), Back);
  bar.SetValue(0);
  EXPECT_EQ(Draw().At(10, 22), Back);
  // Every pixel of the bar is drawn, and none outside it.
  for (const auto& one : surface.drawn) EXPECT_GE(one.area.left, 10);
  EXPECT_EQ(surface.At(9, 22), 0xFFFFFFFFU);
  EXPECT_EQ(surface.At(10 + 255, 22), 0xFFFFFFFFU);
}

TEST_F(LevelBars, ADisabledBarIsItsFrameAlone) {
  bar.core.SetEnabled(false);
  EXPECT_EQ(Draw().drawn, (std::vector<support::Drawn>{{"edge", Area, 0, 10}}));
}

TEST_F(LevelBars, ARedrawWithinADrawingDoesNothing) {
  surface.filled = [this] { bar.Draw(surface, Area); };
  EXPECT_EQ(Draw().Of("edge").size(), 1U);
  EXPECT_EQ(Draw().Of("edge").size(), 1U);  // and the next one is drawn again
}

TEST_F(LevelBars, BordersLieOnTheBarsEdge) {
  struct Case {
    int style;
    support::Drawn last;
  };
  for (const Case& c :
       {Case{1, {"edge", Area, 0, 9}}, Case{2, {"edge", Area, 0, 6}}, Case{3, {"edge", Area, 0, 5}},
        Case{4, {"frame", Area, 0xFF00FF}}, Case{5, {"edge", Area, 0, 10}}}) {
    bar.SetBorderStyle(c.style);
    bar.SetBorderColor(0xFF00FF);
    EXPECT_EQ(Draw().drawn.back(), c.last) << c.style;
  }
}

}  // namespace
}  // namespace vc
