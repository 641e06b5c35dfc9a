// The level bar on the screen: its colours, its marker, and how little it repaints.
#include <gtest/gtest.h>

#include <QImage>
#include <QTest>

#include "Shown.h"
#include "desktop/FormWindow.h"
#include "desktop/LevelBarView.h"
#include "desktop/PainterSurface.h"

namespace desktop {
namespace {

struct Bar {
  vc::Form form{"Levels", "Levels"};
  vc::LevelBar bar{form, "lbInput", "Input"};
  std::unique_ptr<FormWindow> window;
  PaintWatch watch;

  explicit Bar(int orientation) {
    bar.SetOrientation(orientation);
    bar.SetBorderStyle(0);
    bar.SetMarkerStyle(vc::HiddenMarker);
    bar.SetValue(50);
    window = std::make_unique<FormWindow>(
        form, [] {}, [](const auto& /*paths*/) {});
    window->Present(Qt::NonModal, {0, 0, 800, 600});
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    QTest::qWait(1);
    View().installEventFilter(&watch);
  }
  LevelBarView& View() const { return dynamic_cast<LevelBarView&>(*window->findChild<QWidget*>("lbInput")); }
  // The colour in the middle of the bar, so far along it (0..1).
  QColor At(double along) const {
    const QRect area = View().BarArea();
    const bool backwards = bar.Orientation() == 1 || bar.Orientation() == 3;
    const double part = backwards ? 1.0 - along : along;
    const QPoint place = bar.Horizontal()
                             ? QPoint(area.left() + static_cast<int>(part * area.width()), area.center().y())
                             : QPoint(area.center().x(), area.top() + static_cast<int>(part * area.height()));
    return View().grab().toImage().pixelColor(place);
  }
  QRect PaintedAfter(const std::function<void()>& change) {
    QTest::qWait(1);
    watch.painted = {};
    change();
    QTest::qWait(1);
    return watch.painted.boundingRect();
  }
};

class LevelBarViewTest : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Orientations, LevelBarViewTest, testing::Values(0, 1, 2, 3));

TEST_P(LevelBarViewTest, AHalfLevelIsGreenAtItsBeginningEmptyBehindAndMarkedWhereItIsAskedFor) {
  Bar half(GetParam());
  const QColor begin = half.At(0.03);
  EXPECT_GT(begin.green() - begin.red(), 200);
  EXPECT_EQ(half.At(0.9), half.View().palette().color(QPalette::Window));
  half.bar.SetMarkerValue(1, 80);
  half.bar.SetMarkerColor(0xFF0000);
  EXPECT_NE(half.At(0.8), QColor(0, 0, 255));
  half.bar.SetMarkerStyle(0);
  EXPECT_EQ(half.At(0.8), QColor(0, 0, 255));
}

TEST_P(LevelBarViewTest, OnlyWhatMovedIsPainted) {
  Bar moving(GetParam());
  const QRect area = moving.View().BarArea();
  const QRect step = moving.PaintedAfter([&moving] { moving.bar.SetValue(55); });
  EXPECT_FALSE(step.isEmpty());
  EXPECT_TRUE(area.contains(step));
  EXPECT_LT(step.width() * step.height(), area.width() * area.height() / 4);
  EXPECT_TRUE(moving.PaintedAfter([&moving] { moving.bar.SetValue(55); }).isEmpty());
  const QRect reading = moving.PaintedAfter([&moving] { moving.bar.SetReading("-12.3 dB"); });
  EXPECT_FALSE(reading.isEmpty());
  EXPECT_FALSE(reading.intersects(area));
  EXPECT_EQ(HeardOf(moving.View()), "-12.3 dB");
}

TEST_P(LevelBarViewTest, WhatIsPaintedInPartsEqualsTheWhole) {
  Bar moving(GetParam());
  for (const int value : {51, 100, 3, 77, 76, 0, 40, 41, 95, 2, 60, 61}) {
    if (value == 41) moving.bar.SetOrigin(60);  // from here on a column
    moving.bar.SetValue(value);
    QTest::qWait(1);
    const QImage onScreen = moving.window->screen()->grabWindow(moving.window->winId()).toImage();
    if (onScreen.isNull()) GTEST_SKIP() << "the platform keeps no picture of its windows";
    EXPECT_EQ(onScreen, moving.window->grab().toImage()) << value;
  }
}

TEST_P(LevelBarViewTest, WhereNumbersAreTooCloseTheFirstIsShown) {
  Bar level(GetParam());
  const auto shown = [&level](const std::vector<vc::ScaleTick>& ticks) {
    level.bar.SetScale(ticks);
    return level.View().grab().toImage();
  };
  EXPECT_EQ(shown({{50, "0"}, {53, "3"}, {20, "-9"}}), shown({{53, ""}, {20, "-9"}, {50, "0"}}));
}

TEST(LevelBarView, WithoutItsCaptionTheBarIsLongerAndStillHasItsName) {
  Bar captioned(1);
  const int before = captioned.View().BarArea().height();
  captioned.bar.captioned = false;
  captioned.View().Follow("Caption");
  EXPECT_GT(captioned.View().BarArea().height(), before);
  EXPECT_EQ(captioned.View().accessibleName(), "Input");
}

TEST(PainterSurface, EdgesAreLitByTheirStyleAndSystemColoursComeFromThePalette) {
  QPalette palette;
  palette.setColor(QPalette::Light, Qt::white);
  palette.setColor(QPalette::Midlight, Qt::yellow);
  palette.setColor(QPalette::Mid, Qt::gray);
  palette.setColor(QPalette::Dark, Qt::black);
  palette.setColor(QPalette::Window, Qt::cyan);
  QImage image(20, 20, QImage::Format_RGB32);
  image.fill(Qt::magenta);
  QPainter painter(&image);
  PainterSurface surface(painter, palette, image.rect());
  surface.FillRectangle({8, 8, 2, 2}, vc::ButtonFace);
  surface.DrawEdge({0, 0, 20, 20}, 9);
  painter.end();
  EXPECT_EQ(image.pixelColor(10, 0), QColor(Qt::yellow));  // raised outside
  EXPECT_EQ(image.pixelColor(10, 19), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(1, 10), QColor(Qt::black));  // sunken inside
  EXPECT_EQ(image.pixelColor(18, 10), QColor(Qt::yellow));
  EXPECT_EQ(image.pixelColor(10, 2), QColor(Qt::magenta));
  EXPECT_EQ(image.pixelColor(9, 9), QColor(Qt::cyan));
  EXPECT_EQ(ColourOf(0x0000FF, palette), QColor(255, 0, 0));
}

}  // namespace
}  // namespace desktop
