// Plots as models and as drawings, and the drawing of texts by logical coordinates.
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "RecordingSurface.h"
#include "text/Convert.h"
#include "widgets/ControlText.h"
#include "widgets/PlotHandle.h"
#include "widgets/PlotLayout.h"
#include "widgets/modGDI.h"

namespace vc {
namespace {

constexpr float Infinite = std::numeric_limits<float>::infinity();
constexpr float NoNumber = std::numeric_limits<float>::quiet_NaN();

std::string Texts(const std::vector<PlotTick>& ticks) {
  std::string all;
  for (const PlotTick& tick : ticks) all += tick.text + " ";
  return all;
}

bool Inside(const Rectangle& outer, const Rectangle& inner) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.Right() <= outer.Right() &&
         inner.Bottom() <= outer.Bottom();
}

bool Overlap(const Rectangle& a, const Rectangle& b) {
  return a.left < b.Right() && b.left < a.Right() && a.top < b.Bottom() && b.top < a.Bottom();
}

TEST(Ticks, AreRoundNumbersFromWithinTheAxis) {
  EXPECT_EQ(Texts(TicksOf({0, 8000, "Hz"}, 10)), "0 1000 2000 3000 4000 5000 6000 7000 8000 ");
  EXPECT_EQ(Texts(TicksOf({0, 5512.5, "Hz"}, 4)), "0 2000 4000 ");
  EXPECT_EQ(Texts(TicksOf({-87.5, 6.1, "dB"}, 4)), "-50 0 ");
  EXPECT_EQ(Texts(TicksOf({-0.3, 0.3, ""}, 6)), "-0.3 -0.2 -0.1 0.0 0.1 0.2 0.3 ");
  EXPECT_EQ(Texts(TicksOf({0.02, 0.07, ""}, 3)), "0.02 0.04 0.06 ");
}

TEST(Ticks, OfALogarithmicAxisAreOneTwoFive) {
  const auto axis = [](double from, double to) { return PlotAxis{from, to, "Hz", AxisLaw::Logarithmic}; };
  EXPECT_EQ(Texts(TicksOf(axis(20, 11025), 10)), "20 50 100 200 500 1000 2000 5000 10000 ");
  EXPECT_EQ(Texts(TicksOf(axis(20, 11025), 8)), "100 1000 10000 ");
  EXPECT_EQ(Texts(TicksOf(axis(1, 1e6), 4)), "1 100 10000 1000000 ");
  EXPECT_EQ(Texts(TicksOf(axis(0.05, 0.5), 10)), "0.05 0.1 0.2 0.5 ");
  EXPECT_EQ(Texts(TicksOf(axis(3000, 4000), 4)), "3000 3500 4000 ");  // within one step of 1, 2, 5
}

TEST(PlotScale, LeadsToThePixelAndBack) {
  const PlotScale even({-20, 0, "dB"}, 100, 0), ratio({20, 20000, "Hz", AxisLaw::Logarithmic}, 10, 310);
  EXPECT_NEAR(even.PixelOf(-5), 25, 1e-9);
  EXPECT_NEAR(ratio.PixelOf(200), 110, 1e-9);
  for (const double pixel : {-40.0, 10.0, 77.7, 310.0}) {
    EXPECT_NEAR(even.PixelOf(even.ValueAt(pixel)), pixel, 1e-9);
    EXPECT_NEAR(ratio.PixelOf(ratio.ValueAt(pixel)), pixel, 1e-9);
  }
  EXPECT_EQ(ratio.PixelOf(0), -1e6);
  EXPECT_EQ(ratio.PixelOf(-3), -1e6);
  EXPECT_TRUE(std::isnan(ratio.PixelOf(std::nan(""))));
  EXPECT_EQ(Corrected({0, 8000, "Hz", AxisLaw::Logarithmic}).from, 8);
}

struct Plots : testing::Test {
  Form form{"F", "Form"};
  Plot plot{form, "plt", "&Response"};
  support::RecordingSurface surface;
  static constexpr Rectangle Area{10, 20, 400, 250};

  Plots() {
    plot.SetAxes({0, 1600, "Hz"}, {-20, 0, "dB"});
    plot.SetTraces({{"Filter", {0.0F, -6.0F, -12.0F}}});
  }
  std::vector<support::Drawn> Drawn(const std::string& what, const Rectangle& area = Area) {
    surface.drawn.clear();
    plot.Draw(surface, area);
    return surface.Of(what);
  }
  // Every text of the plot lies in its area and clear of all others.
  void CheckTexts(const Rectangle& area) {
    const auto texts = Drawn("text", area);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      EXPECT_TRUE(Inside(area, texts[i].area)) << texts[i].text;
      for (std::size_t j = 0; j < i; ++j) {
        EXPECT_FALSE(Overlap(texts[i].area, texts[j].area)) << texts[i].text << " over " << texts[j].text;
      }
    }
  }
  void FillUp() {
    plot.SetAxes({0, 11025, "Hz"}, {-120, 20, "dB"});
    plot.SetMarkers(
        {{0, "lower edge"}, {100, "100 Hz"}, {5000, "5000 Hz"}, {5100, "5100 Hz"}, {11025, "upper"}},
        {{-119, "floor"}, {-120, "least"}, {19.5, "ceiling"}, {-30, "-30 dB"}, {-31, "-31 dB"}});
    plot.SetTraces({{"Input", {1.0F}}, {"Output", {2.0F}, TraceColours[1]}});
    plot.SetNote("computed from the coefficients that are in use now");
  }
};

TEST_F(Plots, NoLabelIsCutOffOrLiesOverAnother) {
  CheckTexts(Area);
  FillUp();
  // From 34 letters by 12 lines upwards.
  for (int width = 34 * 7; width < 900; width += 31) {
    for (int height = 12 * 14; height < 500; height += 67) {
      SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
      CheckTexts({3, 4, width, height});
      const Rectangle frame = LayOut(plot, surface, {3, 4, width, height}).frame;
      EXPECT_GE(frame.width, width / 3);
      EXPECT_GE(frame.height, height / 4);
    }
  }
  for (const Rectangle& tiny : {Rectangle{0, 0, 0, 0}, {5, 5, 1, 1}, {0, 0, 40, 1000}, {0, 0, 1000, 9}}) {
    plot.Draw(surface, tiny);  // there is no room, and it does no harm
  }
}

TEST_F(Plots, EveryLabelThatWasAskedForIsThere) {
  FillUp();
  std::string all;
  for (const auto& text : Drawn("text", {0, 0, 600, 400})) all += text.text + "|";
  for (const char* expected :
       {"Response|", "Input|", "Output|", "computed from the coefficients that are in use now|",
        "lower edge|", "100 Hz|", "5000 Hz|", "5100 Hz|", "upper|", "floor|", "least|", "ceiling|", "-30 dB|",
        "-31 dB|", "20 dB|", "|10000 Hz|"}) {
    EXPECT_NE(all.find(expected), std::string::npos) << expected << " in " << all;
  }
}

TEST_F(Plots, TheCurveLiesOnItsAxes) {
  const Rectangle frame = LayOut(plot, surface, Area).frame;
  const auto curves = Drawn("curve");
  ASSERT_EQ(curves.size(), 1U);
  const std::vector<Point>& points = curves[0].points;
  ASSERT_EQ(points.size(), 3U);
  EXPECT_EQ(points[0], (Point{frame.left + 0.5, frame.top + 0.5}));
  EXPECT_NEAR(points[1].x, frame.left + (frame.width - 1) / 2.0 + 0.5, 1e-9);
  EXPECT_NEAR(points[2].y, frame.top + 0.6 * (frame.height - 1) + 0.5, 1e-9);
  EXPECT_EQ(curves[0].colour, HotLight);
  // Markers stand where the curve has their value.
  plot.SetMarkers({{800, "m"}, {1601, "outside"}, {std::nan(""), "nowhere"}}, {{-12, "h"}});
  const auto dotted = Drawn("dotted");
  ASSERT_EQ(dotted.size(), 2U);
  EXPECT_EQ(dotted[0].area.left, static_cast<int>(points[1].x));
  EXPECT_EQ(dotted[0].area.Bottom(), LayOut(plot, surface, Area).frame.Bottom());
}

TEST_F(Plots, ACurveIsBrokenWhereThereIsNoNumberAndCutAtTheFrame) {
  plot.SetTraces(
      {{"Wild", {-40.0F, 40.0F, NoNumber, -Infinite, -10.0F, Infinite, -30.0F, NoNumber, -10.0F}}});
  const PlotLayout layout = LayOut(plot, surface, Area);
  const auto curves = Drawn("curve");
  ASSERT_EQ(curves.size(), 2U);
  EXPECT_EQ(curves[0].area, layout.frame);
  EXPECT_NEAR(curves[0].points[0].y, layout.frame.top + 0.5 + (layout.frame.height - 1) * 2.0, 1e-9);
  ASSERT_EQ(curves[1].points.size(), 4U);
  EXPECT_NEAR(curves[1].points[1].x, layout.frame.left + 0.5 + (layout.frame.width - 1) * 0.5, 1e-9);
  EXPECT_EQ(curves[1].points[2].y, -1e6);
  plot.SetTraces({{"Level", {-10.0F}}, {"None", {}}, {"Nothing", {NoNumber}}});
  const auto level = Drawn("curve");
  ASSERT_EQ(level.size(), 1U);
  EXPECT_EQ(level[0].points.back().x - level[0].points.front().x, layout.frame.width - 1);
}

TEST_F(Plots, CurvesMayHavePlacesAndARangeOfTheirOwn) {
  plot.SetTraces(
      {{"Level", {0.0F, -20.0F}},
       {"Phase", {-90.0F, 90.0F, 0.0F}, TraceColours[1], {400, 800, 800}, PlotAxis{-180, 180, "deg"}}});
  const PlotLayout layout = LayOut(plot, surface, Area);
  const auto curves = Drawn("curve");
  ASSERT_EQ(curves.size(), 2U);
  const std::vector<Point>& phase = curves[0].points;  // the first trace is drawn last, on top
  EXPECT_NEAR(phase[0].x, layout.frame.left + 0.5 + (layout.frame.width - 1) * 0.25, 1e-9);
  EXPECT_NEAR(phase[0].y, layout.frame.top + 0.5 + (layout.frame.height - 1) * 0.75, 1e-9);
  EXPECT_EQ(phase[1].x, phase[2].x);
  CheckTexts(Area);
  const auto texts = Drawn("text");
  EXPECT_TRUE(std::ranges::any_of(texts, [&](const support::Drawn& text) {
    return text.text == "150 deg" && text.area.left >= layout.frame.Right();
  }));
  plot.SetCursor(600);
  EXPECT_EQ(plot.CursorText(), "600 Hz: Level -7.5 dB, Phase 0.0 deg");
  plot.SetCursor(9999);
  EXPECT_EQ(plot.CursorText(), "1600 Hz: Level -20.0 dB");
}

TEST_F(Plots, ATraceWithoutANameIsDrawnAndToldNowhere) {
  plot.SetTraces({{"Whole", {0.0F, -20.0F}}, {"", {-5.0F, -5.0F}, FaintCurve}});
  EXPECT_EQ(Drawn("curve").size(), 2U);
  EXPECT_TRUE(LayOut(plot, surface, Area).swatches.empty());
  plot.SetCursor(800);
  EXPECT_EQ(plot.CursorText(), "800 Hz: -10.0 dB");
}

TEST_F(Plots, BandsAndAnImageLieBehindTheGrid) {
  plot.SetAxes({20, 2000, "Hz", AxisLaw::Logarithmic}, {-20, 0, "dB"});
  plot.SetBands({{0, 200, BandMeaning::Pass}, {200, 5000, BandMeaning::Stop}});
  plot.SetImage({2, 1, {0xFF102030, 0xFF405060}, 20, 380, 0, -20});
  const Rectangle frame = LayOut(plot, surface, Area).frame;
  const auto pixels = Drawn("pixels");
  ASSERT_EQ(pixels.size(), 2U);  // a column each, the second one narrower
  EXPECT_NEAR(pixels[0].area.Right(), frame.left + frame.width / 2, 2);
  EXPECT_EQ(pixels[1].area.left, pixels[0].area.Right());
  EXPECT_LT(pixels[1].area.width, pixels[0].area.width / 2);
  const auto fills = surface.Of("fill");
  const auto pass = std::ranges::find(fills, PassBack, &support::Drawn::colour);
  const auto stop = std::ranges::find(fills, StopBack, &support::Drawn::colour);
  ASSERT_TRUE(pass != fills.end() && stop != fills.end());
  EXPECT_EQ(pass->area.left, frame.left);
  EXPECT_EQ(stop->area.Right(), frame.Right());
  EXPECT_NEAR(stop->area.left, frame.left + frame.width / 2, 1);
  plot.SetImage({2, 2, {1, 2, 3}, 0, 1, 0, 1});
  EXPECT_EQ(plot.Image().width, 0);
}

TEST_F(Plots, WhatLiesOverTheCurvesIsHeldWithinTheFrame) {
  const PlotLayout layout = LayOut(plot, surface, Area);
  plot.SetRubber(PlotRubber{400, -5, 5000, -20});
  plot.SetDot(PlotDot{-200, -70, "Level: -70.0 dB"});
  plot.SetCursor(800);
  plot.cursorPlaced = true;
  EXPECT_EQ(plot.Reading(), "800 Hz: -6.0 dB; Level: -70.0 dB");
  surface.drawn.clear();
  plot.DrawRubber(surface, layout);
  plot.DrawMarks(surface, layout);
  EXPECT_EQ(surface.Of("curve")[0].area, layout.frame);
  EXPECT_TRUE(surface.Of("text").empty());
  const auto spots = surface.Of("ellipse");
  ASSERT_EQ(spots.size(), 5U);
  const auto middle = [](const support::Drawn& spot) {
    return Point{spot.area.left + spot.area.width / 2.0, spot.area.top + spot.area.height / 2.0};
  };
  EXPECT_NEAR(middle(spots[0]).x, layout.x.PixelOf(400), 1);
  EXPECT_NEAR(middle(spots[1]).x, layout.frame.Right(), 1);
  EXPECT_NEAR(middle(spots[4]).x, layout.frame.left, 1);
  EXPECT_NEAR(middle(spots[4]).y, layout.frame.Bottom(), 1);
  plot.SetDot(PlotDot{std::nan(""), 0});
  plot.SetRubber(std::nullopt);
  surface.drawn.clear();
  plot.DrawMarks(surface, layout);
  EXPECT_EQ(surface.Of("ellipse").size(), 1U);
}

TEST_F(Plots, AreDrawnOnByText) {
  std::string told;
  EXPECT_EQ(PointAt(&plot, "1 2"), "there is nothing to point at");
  EXPECT_EQ(PressKey(&plot, "Left"), "it takes no keys");
  plot.pointer = [&told](const PlotPointer& event) {
    told += std::to_string(static_cast<int>(event.action)) + "@" + FixedText(event.x, 1) + "," +
            FixedText(event.y, 1) + " ";
  };
  plot.keyPressed = [](std::string_view combination) { return combination == "Enter"; };
  EXPECT_EQ(PointAt(&plot, "400.5 -6"), "");
  EXPECT_EQ(told, "1@400.5,-6.0 0@400.5,-6.0 2@400.5,-6.0 ");
  for (const char* bad : {"", "400", "400 x", "x 3", "1 2 3"}) EXPECT_NE(PointAt(&plot, bad), "") << bad;
  EXPECT_EQ(PressKey(&plot, "Enter"), "");
  EXPECT_NE(PressKey(&plot, "F7"), "");
  plot.core.SetEnabled(false);
  EXPECT_NE(PointAt(&plot, "1 2"), "");
}

TEST_F(Plots, BarsStandUnderTheGridAndTheCurves) {
  plot.SetAxes({0, 100, "Hz"}, {-50, 0, "dB"});
  const unsigned before = plot.Revision();
  plot.SetBars({{-10, 30, -10}, {30, 60, -90}, {60, 200, 20}});
  EXPECT_EQ(plot.Revision(), before);  // a drag of a bar draws no grid
  plot.Draw(surface, Area);
  const Rectangle frame = LayOut(plot, surface, Area).frame;
  std::vector<support::Drawn> bars = surface.Of("fill");
  std::erase_if(bars, [](const auto& drawn) { return drawn.colour != BarBack; });
  ASSERT_EQ(bars.size(), 3U);
  EXPECT_EQ(bars[0].area.left, frame.left + 1);
  EXPECT_NEAR(bars[0].area.top, frame.top + frame.height / 5, 1);
  EXPECT_EQ(bars[1].area.height, 0);  // below the axis
  EXPECT_EQ(bars[2].area.top, frame.top + 1);
  EXPECT_NEAR(bars[2].area.left, frame.left + frame.width * 3 / 5, 2);
  for (const auto& bar : bars) EXPECT_EQ(bar.area.Bottom(), frame.Bottom() - 1);
  const auto last = [this](const auto& matches) {
    return surface.drawn.rend() - std::find_if(surface.drawn.rbegin(), surface.drawn.rend(), matches);
  };
  EXPECT_GT(last([](const auto& drawn) { return drawn.colour == GridLine; }),
            last([](const auto& drawn) { return drawn.colour == BarBack; }));
}

struct Handles : Plots {
  Slider along{form, "sldrAlong", "Along"}, down{form, "sldrDown", "Down"};
  PlotHandle edge{plot, "Edge", &along, HandleRest::OnCurve};
  PlotHandle both{plot, "Both", &along, HandleAxis{&down, std::negate<>{}, std::negate<>{}}};
  PlotHandle floor{plot, "Floor", HandleRest::AmidStopband,
                   HandleAxis{&down, std::negate<>{}, std::negate<>{}}};
  int releases = 0;

  Handles() {
    along.SetRange(0, 3000);
    down.SetRange(2, 60);
    down.KeyArrowStepSize = 2;
    along.released = [this] { ++releases; };
  }
  Point At(const PlotHandle& handle) {
    const PlotLayout layout = LayOut(plot, surface, Area);
    const Point place = handle.Place(layout);
    return {layout.x.ValueAt(place.x), layout.y.ValueAt(place.y)};
  }
};

TEST_F(Handles, LieWhereTheirSlidersSayAndAreHeldAtTheBorder) {
  along.SetPosition(800);
  down.SetPosition(15);
  plot.SetBands({{0, 400, BandMeaning::Stop}, {1000, 1600, BandMeaning::Stop}});
  EXPECT_NEAR(At(edge).x, 800, 1e-6);
  EXPECT_NEAR(At(edge).y, -6, 1e-6);
  EXPECT_NEAR(At(both).y, -15, 1e-6);
  EXPECT_NEAR(At(floor).x, 1300, 1e-6);
  along.SetPosition(3000);
  down.SetPosition(60);
  EXPECT_NEAR(At(both).x, 1600, 1e-6);
  EXPECT_NEAR(At(both).y, -20, 1e-6);
  along.core.SetEnabled(false);
  EXPECT_FALSE(edge.Usable());
  EXPECT_TRUE(floor.Usable());
}

TEST_F(Handles, MoveTheirSlidersInStepsAndInOneEdit) {
  std::string edits;
  plot.together = [&](const std::string& handle, const std::function<void()>& action) {
    edits += handle;
    action();
  };
  std::string told;
  form.controlChanged = [&](const ControlCore& core, std::string_view property) {
    if (property == "Handles") told += core.name;
  };
  both.Hold();
  EXPECT_TRUE(along.Held() && down.Held() && plot.HandleHeld());
  both.MoveTo(612.6, -16.8);
  EXPECT_EQ(along.Position(), 613);
  EXPECT_EQ(down.Position(), 16);
  EXPECT_EQ(edits, "Both");
  EXPECT_EQ(told, "pltplt");
  both.MoveTo(-50, 30);
  EXPECT_EQ(along.Position(), 0);
  EXPECT_EQ(down.Position(), 2);
  both.Release();
  EXPECT_FALSE(along.Held() || down.Held());
  EXPECT_EQ(releases, 1);
  both.Release();
  EXPECT_EQ(releases, 1);
}

TEST_F(Handles, FollowTheArrowsOfTheScreen) {
  along.SetPosition(100);
  down.SetPosition(10);
  EXPECT_TRUE(both.Press("Shift+Right"));
  EXPECT_EQ(along.Position(), 110);
  EXPECT_TRUE(both.Press("Down"));  // on the axis: a greater attenuation
  EXPECT_EQ(down.Position(), 12);
  EXPECT_TRUE(floor.Press("Up"));
  EXPECT_EQ(down.Position(), 10);
  EXPECT_FALSE(floor.Press("Left"));
  EXPECT_FALSE(edge.Press("Up"));
  EXPECT_FALSE(edge.Press("F7"));
  EXPECT_EQ(both.Reading(), "110 Hz, 10 dB");
}

TEST_F(Handles, ALawMakesOnePositionOfBothCoordinates) {
  UpDown ratio{form, "udRatio", "&Ratio"};
  TextBox text{form, "txtRatio", "Ratio"};
  text.unit = ": 1";
  text.shows = &ratio.slider;
  ratio.slider.show = [](double position) { return FixedText(position / 10, 1); };
  ratio.SetRange(10, 1000);
  // The line through 800 Hz and -10 dB, by Hz per tenth of a decibel.
  PlotHandle line{plot,
                  "Line",
                  {&ratio.slider,
                   [&] {
                     return PlotSpot{1000.0, -10 + 200.0 / ratio.Value()};
                   },
                   [](double x, double y) -> std::optional<double> {
                     if (x > 1500 || y == -10) return std::nullopt;
                     return (x - 800) / (y + 10);
                   }}};
  line.Hold();
  EXPECT_TRUE(ratio.slider.Held());
  for (const auto& [x, y, value] : {std::tuple{1000, -6.0, 50},
                                    {1200, -6.0, 100},
                                    {1200, -2.0, 50},
                                    {1200, -10.0, 50},
                                    {800, -10.0, 50},
                                    {1501, -6.0, 50},
                                    {801, -2.0, 10}}) {
    line.MoveTo(x, y);
    EXPECT_EQ(ratio.Value(), value) << x << ' ' << y;
  }
  line.Release();
  EXPECT_FALSE(ratio.slider.Held() || along.Held());
  for (const char* key : {"Right", "Up", "PgUp", "Left"}) EXPECT_TRUE(line.Press(key));
  EXPECT_EQ(ratio.Value(), 21);
  EXPECT_EQ(line.Reading(), "Ratio 2.1 : 1");
  EXPECT_NEAR(At(line).y, -10 + 200.0 / 21, 1e-6);
  EXPECT_EQ(&line.Main(), &ratio.slider);
  ratio.core.SetEnabled(false);
  EXPECT_FALSE(line.Usable());
}

TEST_F(Handles, TheWheelTurnsOneMoreSliderAndADoubleClickPutsAllBack) {
  Slider width{form, "sldrWidth", "&Width"};
  width.SetRange(3, 463);
  width.ReverseScale = true;
  TextBox text{form, "txtWidth", ""};
  text.unit = "Hz";
  text.shows = &width;
  PlotHandle notch{plot, "Notch", &along, HandleAxis::Standing([] { return -12.0; }), &width};
  along.SetPosition(800);
  width.SetPosition(100);
  EXPECT_NEAR(At(notch).y, -12, 1e-6);
  EXPECT_TRUE(notch.Turn(2, false));
  EXPECT_EQ(width.Position(), 90);
  EXPECT_TRUE(notch.Turn(-1, true));
  EXPECT_EQ(width.Position(), 91);
  EXPECT_FALSE(edge.Turn(1, false));
  EXPECT_EQ(notch.Reading(), "800 Hz, Width 91 Hz");
  std::string edits;
  plot.together = [&](const std::string& handle, const std::function<void()>& action) {
    edits += handle;
    action();
  };
  along.defaultPosition = [] { return 100.0; };
  width.defaultPosition = [] { return 50.0; };
  notch.SetDefault();
  EXPECT_EQ(along.Position(), 100);
  EXPECT_EQ(width.Position(), 50);
  EXPECT_EQ(edits, "Notch");
  bool there = false;
  notch.offered = [&there] { return there; };
  EXPECT_FALSE(notch.Usable());
  there = true;
  EXPECT_TRUE(notch.Usable());
}

TEST_F(Plots, IsToldInWords) {
  EXPECT_EQ(ValueOf(&plot), "3 points: 0 Hz 0.0 dB | 800 Hz -6.0 dB | 1600 Hz -12.0 dB");
  plot.SetTraces({{"Long", std::vector<float>(460, -3.25F)}});
  EXPECT_TRUE(ValueOf(&plot).starts_with("460 points: 0 Hz -3.2 dB | ")) << ValueOf(&plot);
  EXPECT_TRUE(ValueOf(&plot).ends_with(" | 1600 Hz -3.2 dB")) << ValueOf(&plot);
  plot.SetTraces({});
  EXPECT_EQ(ValueOf(&plot), "");
}

TEST_F(Plots, AxesWithoutAnExtentAreCorrected) {
  plot.SetAxes({5, 5, ""}, {10, -10, ""});
  EXPECT_EQ(plot.XAxis().to, 6.0);
  EXPECT_EQ(plot.YAxis().from, -10.0);
  plot.SetAxes({std::nan(""), 1e300, ""}, {-1e300, std::numeric_limits<double>::infinity(), ""});
  EXPECT_FALSE(Drawn("line").empty());
}

TEST(ModGDI, LogicalPointsFollowTheScaleOfTheSurface) {
  support::RecordingSurface surface;
  EXPECT_EQ(modGDI::LogicalToDevice(surface, 3, 4), (Point{3, 4}));
  surface.scale = {ScaleMode::User, 0, 10, 8000, -80, {100, 50, 400, 160}};  // 10 above, -70 below
  EXPECT_EQ(modGDI::LogicalToDevice(surface, 2000, -30), (Point{200, 130}));
  surface.scale.width = 0;
  EXPECT_EQ(modGDI::LogicalToDevice(surface, 2000, 10), (Point{100, 50}));
  EXPECT_LT(modGDI::LogicalToDevice(surface, 0, 1e300).y, -1000.0);
}

TEST(ModGDI, ATextIsDrawnInItsColourWhichDoesNotStay) {
  support::RecordingSurface surface;
  surface.foreColour = 0x123456;
  surface.scale = {ScaleMode::User, 0, 0, 1, 1, {10, 20, 100, 100}};
  const Rectangle drawn = modGDI::DrawPictureText(surface, "-3 dB", 0.5, 0.25, 0x0000FF);
  EXPECT_EQ(drawn, (Rectangle{60, 45, 35, 14}));
  ASSERT_EQ(surface.drawn.size(), 1U);
  EXPECT_EQ(surface.drawn[0], (support::Drawn{"text", drawn, 0x0000FF, 0, "-3 dB"}));
  EXPECT_EQ(surface.foreColour, 0x123456U);
}

}  // namespace
}  // namespace vc
