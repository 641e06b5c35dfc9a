// Plots and progress bars on the screen: what is drawn anew, how fine the lines are, what is spoken.
#include <array>

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>

#include "Contrast.h"
#include "Shown.h"
#include "desktop/PainterSurface.h"
#include "desktop/PlotView.h"
#include "desktop/Theme.h"
#include "widgets/PlotLayout.h"

namespace desktop {
namespace {

TEST(PlotColours, StandOutInLightAndInDark) {
  for (const Theme theme : {Theme::Dark, Theme::Light}) {
    ApplyTheme(theme);
    const QPalette palette = QApplication::palette();
    const QColor back = ColourOf(vc::WindowBack, palette);
    for (const vc::Colour trace : vc::TraceColours) EXPECT_GE(Contrast(ColourOf(trace, palette), back), 3.0);
    EXPECT_GE(Contrast(ColourOf(vc::WindowText, palette), ColourOf(vc::ButtonFace, palette)), 4.5);
    EXPECT_LT(Contrast(ColourOf(vc::GridLine, palette), back), 2.5);  // the grid stays behind
  }
}

TEST(PlotView, DrawsItsGridForOtherAxesAndNotForOtherCurves) {
  Shown shown;
  auto& view = dynamic_cast<PlotView&>(shown.At("pltCurve"));
  vc::Plot& plot = shown.sample.pltCurve;
  view.grab();
  const int before = view.GridsDrawn();
  const QImage old = view.grab().toImage();
  plot.SetTraces({{"Curve", {-10.0F, -3.0F, -12.0F}}});
  EXPECT_NE(view.grab().toImage(), old);
  EXPECT_EQ(view.GridsDrawn(), before);
  EXPECT_EQ(view.accessibleName(), "Curve");
  EXPECT_EQ(shown.Says("pltCurve"), "3 points: 0 Hz -10.0 dB | 800 Hz -3.0 dB | 1600 Hz -12.0 dB");
  int grids = before;
  for (const auto& change : std::initializer_list<std::function<void()>>{
           [&] {
             plot.SetAxes({0, 800, "Hz"}, {-20, 0, "dB"});
           },
           [&] { plot.SetNote("computed"); },
           [&] {
             plot.SetMarkers({{400, "edge"}}, {});
           },
           [&] { plot.core.SetCaption("Other"); }, [&] { view.resize(view.width() + 40, view.height()); },
           [&] { plot.core.SetEnabled(false); }}) {
    change();
    view.grab();
    EXPECT_GT(view.GridsDrawn(), grids);
    grids = view.GridsDrawn();
  }
}

// How thick the lines of one colour are that a row of pixels crosses.
std::vector<int> Thicknesses(const QImage& image, int row, const QColor& colour) {
  std::vector<int> found;
  for (int x = 0; x < image.width(); ++x) {
    if (image.pixelColor(x, row) != colour) continue;
    if (x == 0 || image.pixelColor(x - 1, row) != colour) found.push_back(0);
    ++found.back();
  }
  return found;
}

TEST(PainterSurface, LinesAreEquallyThickAtEveryScale) {
  const QPalette palette = QApplication::palette();
  for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
    QImage image((QSizeF(100, 20) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    PainterSurface surface(painter, palette, {0, 0, 100, 20});
    for (int left = 1; left < 100; left += 7) surface.DrawDown(left, 0, 20, vc::LineStyle::Solid, 0);
    painter.end();
    const auto lines = Thicknesses(image, 5, Qt::black);
    EXPECT_EQ(lines, std::vector<int>(15, static_cast<int>(ratio))) << ratio;
  }
}

TEST(PainterSurface, TextsTakeWhatWasMeasured) {
  QImage image(300, 60, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  PainterSurface surface(painter, QApplication::palette(), image.rect());
  surface.foreColour = 0;
  const vc::Size size = surface.TextSize("-20 dB");
  surface.DrawText({10, 20, 1, 1}, "-20 dB");  // not clipped to the area
  surface.textScale = 0.5;
  EXPECT_LT(surface.TextSize("-20 dB").width, size.width * 2 / 3);
  painter.end();
  QRect inked;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y) != QColor(Qt::white)) inked |= QRect(x, y, 1, 1);
    }
  }
  EXPECT_TRUE(QRect(10, 20, size.width, size.height).contains(inked));
  EXPECT_GT(inked.width(), size.width * 3 / 4);
}

TEST(ProgressBarView, IsDrawnAndSpoken) {
  Shown shown;
  vc::ProgressBar& bar = shown.sample.prgWork;
  QWidget& view = shown.At("prgWork");
  bar.SetBorderStyle(0);
  bar.SetToColor(0x00FF00);
  bar.SetFromColor(0x00FF00);
  bar.SetValue(40);
  const QImage image = view.grab().toImage();
  const int middle = image.height() / 2;
  EXPECT_EQ(image.pixelColor(image.width() * 38 / 100, middle), QColor(0, 255, 0));
  EXPECT_EQ(image.pixelColor(image.width() * 42 / 100, middle), view.palette().color(QPalette::Window));
  EXPECT_EQ(shown.Says("prgWork"), "40 of 100");
  EXPECT_EQ(view.accessibleName(), "Work");
}

}  // namespace
}  // namespace desktop
