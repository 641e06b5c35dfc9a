// The gradient that bars are made of, for any colours; and the progress bar that is drawn with it.
#include <gtest/gtest.h>

#include "RecordingSurface.h"
#include "widgets/ControlText.h"
#include "widgets/GradientBar.h"
#include "widgets/ProgressBar.h"

namespace vc {
namespace {

TEST(Gradient, IsBuiltAnewForOtherColoursAlone) {
  Gradient gradient;
  const std::vector<ColourStop> red{{0, 0}, {BarUnits, 0x0000FF}}, blue{{0, 0}, {BarUnits, 0xFF0000}};
  gradient.Bands(red);
  EXPECT_EQ(RedOf(gradient.Bands(red)[254]), 254);
  EXPECT_EQ(gradient.Builds(), 1);
  EXPECT_EQ(BlueOf(gradient.Bands(blue)[254]), 254);
  EXPECT_EQ(gradient.Builds(), 2);
}

struct ProgressBars : testing::Test {
  Form form{"F", "Form"};
  ProgressBar bar{form, "prg", "Progress"};
  support::RecordingSurface surface;
  static constexpr Colour White = 0xFFFFFF, Back = 0x123456;
};

TEST_F(ProgressBars, RunsUpwardsFromWhiteToBlue) {
  bar.SetBackColor(Back);
  bar.SetValue(100);
  bar.Draw(surface, {0, 0, 8, 255});
  EXPECT_EQ(surface.At(4, 254), White);
  EXPECT_EQ(surface.At(4, 0), MakeColour(1, 1, 255));
  bar.SetSteps(50);
  bar.SetValue(20);
  bar.Draw(surface, {0, 0, 8, 255});
  EXPECT_EQ(surface.At(4, 254 - 101), MakeColour(154, 154, 255));
  EXPECT_EQ(surface.At(4, 254 - 102), Back);
  EXPECT_EQ(surface.drawn.back(), (support::Drawn{"edge", {0, 0, 8, 255}, 0, 10}));
}

TEST_F(ProgressBars, KeepsItsLengthAndIsToldInWords) {
  bar.SetValue(40);
  EXPECT_EQ(ValueOf(&bar), "40 of 100");
  bar.SetSteps(10);
  EXPECT_EQ(ValueOf(&bar), "4 of 10");
  EXPECT_EQ(bar.Step(-7), 0);
  EXPECT_EQ(bar.Step(70), 10);
  bar.SetSteps(0);
  EXPECT_EQ(ValueOf(&bar), "0 of 0");
  EXPECT_EQ(KindOf(&bar) + " " + RangeOf(&bar), "progress 0..0");
  EXPECT_EQ(SetControl(&bar, "3"), "a progress cannot be set");
}

}  // namespace
}  // namespace vc
