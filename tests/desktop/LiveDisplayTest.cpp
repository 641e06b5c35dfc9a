// Plots that live: an instrument's screen, and the waterfall in line with it.
#include <cmath>

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>

#include "Contrast.h"
#include "Shown.h"
#include "desktop/PainterSurface.h"
#include "desktop/Theme.h"
#include "desktop/WaterfallView.h"

namespace desktop {
namespace {

constexpr int Levels = 460;

struct LiveDisplays : testing::Test {
  Shown shown;
  vc::Plot& plot = shown.sample.pltCurve;
  vc::Waterfall& waterfall = shown.sample.wtrCurve;
  PlotView& view = dynamic_cast<PlotView&>(shown.At("pltCurve"));
  WaterfallView& lines = dynamic_cast<WaterfallView&>(shown.At("wtrCurve"));
  double seconds = 0;

  LiveDisplays() {
    plot.screen = plot.lettersGrow = plot.cursorPlaced = true;
    plot.cursorColour = vc::ScreenRed;
    plot.SetAxes({10, 4600, "Hz"}, {-70, 0, "dB"});
    plot.SetGrid(vc::PlotGrid{8, 7});
    plot.SetTraces({{"Trace 1", {-20, NAN, -30}, vc::ScreenYellow}, {"Trace 2", {-50}, vc::ScreenBlue}});
    waterfall.SetPace(0);
    shown.Window().resize(700, 1600);  // nothing is scrolled away
    Settle();
  }
  static void Settle() { QCoreApplication::processEvents(); }
  void AddPeakAt(int level) {
    std::vector<float> line(Levels, -60.0F);
    line[static_cast<std::size_t>(level)] = -5.0F;
    waterfall.Add(line, seconds += 0.1);
  }
  // The middle of the brightest columns of the newest line.
  double BrightestColumn() {
    const QImage picture = lines.grab().toImage();
    const auto shade = [&](int x) { return qGray(picture.pixel(x, lines.Frame().top())); };
    int first = lines.Frame().left(), last = first;
    for (int x = first; x <= lines.Frame().right(); ++x) {
      if (shade(x) > shade(first)) first = x;
      if (shade(x) == shade(first)) last = x;
    }
    return (first + last) / 2.0;
  }
};

TEST_F(LiveDisplays, TheWaterfallHasTheColumnsOfThePlotWhateverItsSizeAndLetters) {
  QFont large = shown.Window().font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  for (const auto& change : std::initializer_list<std::function<void()>>{
           [] {}, [&] { shown.Window().resize(1900, 1300); }, [&] { shown.Window().setFont(large); },
           [&] {
             plot.SetAxes({500, 4600, "Hz"}, {-70.25, 0, "decibels"});
           },
           [&] { view.setFixedWidth(330); }}) {
    change();
    Settle();
    const vc::Rectangle& frame = view.Layout().frame;
    EXPECT_EQ(lines.mapToGlobal(lines.Frame().topLeft()).x(), view.mapToGlobal(QPoint(frame.left, 0)).x());
    EXPECT_EQ(lines.Frame().width(), frame.width);
    for (const int level : {130, 263, 459}) {
      AddPeakAt(level);
      Settle();
      const vc::PlotAxis& axis = plot.XAxis();
      const double place = axis.from + (axis.to - axis.from) * level / (Levels - 1);
      EXPECT_NEAR(BrightestColumn(), view.Layout().x.PixelOf(place) - 0.5, 1.0) << level;
    }
  }
}

TEST_F(LiveDisplays, LinesThatComeSinglyMakeTheSamePictureAsAllAtOnce) {
  lines.setFixedHeight(120);  // of which not all have room
  for (int i = 0; i < 400; ++i) {
    AddPeakAt(i * 37 % Levels);
    if (i % 3 != 0) Settle();
    if (i == 290) waterfall.SetPace(0.35);  // several of them are one
    if (i == 50) waterfall.Clear();
    if (i == 301 || i == 310) waterfall.core.SetVisible(i == 310);
  }
  Settle();
  const QImage singly = shown.Window().grab().toImage();
  QEvent anew(QEvent::StyleChange);
  QCoreApplication::sendEvent(&lines, &anew);
  EXPECT_EQ(shown.Window().grab().toImage(), singly);
  const QImage onScreen = shown.Window().screen()->grabWindow(shown.Window().winId()).toImage();
  EXPECT_TRUE(onScreen.isNull() || onScreen == singly);
  const QPoint below(lines.Frame().center().x(), lines.Frame().bottom() + 2);
  EXPECT_EQ(lines.grab().toImage().pixelColor(below), lines.palette().color(QPalette::Window));
  EXPECT_EQ(shown.Says("wtrCurve"), waterfall.Reading());
}

TEST_F(LiveDisplays, NothingIsPaintedWithoutAChangeAndOneLineInPlaceAlone) {
  AddPeakAt(1);
  plot.SetCursor(400);
  Settle();
  PaintWatch onPlot, onLines;
  view.installEventFilter(&onPlot);
  lines.installEventFilter(&onLines);
  plot.SetTraces(std::vector<vc::PlotTrace>(plot.Traces()));
  plot.SetCursor(400);
  plot.SetGrid(plot.Grid());
  plot.SetAxes(plot.XAxis(), plot.YAxis());
  waterfall.SetRange(0, -70);
  Settle();
  EXPECT_EQ(onPlot.paints + onLines.paints, 0);
  waterfall.SetPace(9);
  AddPeakAt(200);
  plot.SetCursor(800);
  Settle();
  EXPECT_EQ(onLines.painted.boundingRect().height(), 1);
  EXPECT_LT(onPlot.painted.boundingRect().width(), view.Layout().frame.width / 3);
  QRegion marker(onPlot.painted);
  EXPECT_FALSE(marker.contains(QPoint(view.Layout().frame.Right() - 3, view.Layout().frame.top + 3)));
}

TEST_F(LiveDisplays, TheScreenIsDarkAndItsCurvesAreReadInBothThemes) {
  QImage inFrame[2];
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    ApplyTheme(theme);
    Settle();
    const vc::Rectangle& frame = view.Layout().frame;
    const QImage picture = view.grab().toImage();
    inFrame[theme == Theme::Dark ? 1 : 0] = picture.copy(frame.left, frame.top, frame.width, frame.height);
    const QColor ground = picture.pixelColor(frame.left + 3, frame.Bottom() - 4);
    for (const vc::Colour curve : {vc::ScreenYellow, vc::ScreenBlue}) {
      EXPECT_GE(Contrast(ColourOf(curve, view.palette()), ground), 4.5);
    }
    EXPECT_GE(Contrast(ColourOf(vc::ScreenRed, view.palette()), ground), 3.0);
  }
  EXPECT_EQ(inFrame[0], inFrame[1]);
}

TEST_F(LiveDisplays, ADragIsToldBeyondTheEdgesAsLongAsItIsHeld) {
  std::vector<double> places;
  plot.pointer = [&](const vc::PlotPointer& event) {
    if (event.action != vc::PointerAction::Leave) places.push_back(event.x);
  };
  QWindow* window = shown.Window().windowHandle();
  const vc::Rectangle& frame = view.Layout().frame;
  const QPoint in = view.mapTo(&shown.Window(), QPoint(frame.left + 20, frame.top + 20));
  QTest::mousePress(window, Qt::LeftButton, {}, in);
  QTest::mouseMove(window, {-40, in.y() - 400});
  EXPECT_LT(places.back(), plot.XAxis().from);
  QTest::mouseMove(window, {shown.Window().width() + 60, in.y()});
  EXPECT_GT(places.back(), plot.XAxis().to);
  QTest::mouseRelease(window, Qt::LeftButton, {}, {shown.Window().width() + 90, in.y()});
  EXPECT_GT(places.back(), plot.XAxis().to);
}

TEST_F(LiveDisplays, SayWhatTheyKnowWhenTheyAreAskedAndWhenTheMarkerMoves) {
  int asked = 0;
  plot.told = [&] { return "marker " + std::to_string(++asked); };
  for (const float level : {-10.0F, -20.0F}) plot.SetTraces({{"Trace 1", {level}, vc::ScreenYellow}});
  EXPECT_EQ(asked, 0);
  plot.SetCursor(700);
  EXPECT_EQ(view.accessibleDescription(), "marker 1");
  EXPECT_EQ(shown.Says("pltCurve"), "marker 2");
}

}  // namespace
}  // namespace desktop
