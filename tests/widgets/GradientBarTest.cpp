// The gradient that bars are made of, for any colours; and the progress bar that is drawn with it.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "RecordingSurface.h"
#include "widgets/ControlText.h"
#include "widgets/GradientBar.h"
#include "widgets/ProgressBar.h"

namespace vc {
namespace {

std::vector<ColourStop> RandomStops(std::mt19937& random) {
  const auto colour = [&random] { return static_cast<Colour>(random() & 0xFFFFFFU); };
  const int middle = std::uniform_int_distribution<int>(0, BarUnits)(random);
  return {{0, colour()}, {middle, colour()}, {BarUnits, colour()}};
}

// Between two stops every channel goes one way, never outside of what it is at them.
void CheckChannel(const std::vector<ColourStop>& stops, int (*channel)(Colour)) {
  for (std::size_t i = 1; i < stops.size(); ++i) {
    const int from = channel(stops[i - 1].colour), to = channel(stops[i].colour);
    int before = from;
    for (int unit = stops[i - 1].unit; unit < stops[i].unit; ++unit) {
      const int now = channel(ColourAt(stops, unit));
      ASSERT_GE(now, std::min(from, to));
      ASSERT_LE(now, std::max(from, to));
      ASSERT_TRUE(to >= from ? now >= before : now <= before) << unit;
      before = now;
    }
  }
}

TEST(Gradient, RunsFromStopToStopInEveryChannel) {
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    const auto stops = RandomStops(random);
    for (int (*channel)(Colour) : {RedOf, GreenOf, BlueOf}) CheckChannel(stops, channel);
    if (stops[1].unit > 0) {
      EXPECT_EQ(ColourAt(stops, 0), stops[0].colour);
    }
    if (stops[1].unit < BarUnits) {
      EXPECT_EQ(ColourAt(stops, stops[1].unit), stops[1].colour);
    }
    EXPECT_EQ(ColourAt(stops, BarUnits), stops[2].colour);
  }
}

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

TEST_F(ProgressBars, MixesTheSystemsColoursAsTheyAreSeen) {
  bar.SetOrientation(0);
  bar.SetFromColor(ButtonFace);
  bar.SetToColor(ButtonFace);
  bar.SetValue(100);
  bar.Draw(surface, {0, 0, 255, 8});
  EXPECT_EQ(surface.At(100, 4), support::RecordingSurface::AnySystemColour);
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
