// Plots and progress bars on the screen: what is drawn anew, how fine the lines are, what is spoken.
#include <array>

#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QImage>
#include <QMenu>
#include <QWindow>

#include "Contrast.h"
#include "MasterWindow.h"
#include "Shown.h"
#include "desktop/HandleView.h"
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
    for (const vc::Colour ground : {vc::PassBack, vc::StopBack, vc::BarBack}) {
      EXPECT_GE(Contrast(ColourOf(vc::TraceColours[0], palette), ColourOf(ground, palette)), 3.0);
      EXPECT_NE(ColourOf(ground, palette), back);
    }
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
    view.grab();
    const QImage was = view.grab().toImage();  // of curves that stand
    change();
    EXPECT_NE(view.grab().toImage(), was);
    EXPECT_GT(view.GridsDrawn(), grids);
    grids = view.GridsDrawn();
  }
}

TEST(PlotView, GivesUpItsPictureOnceNobodyPaintsItAndLooksTheSameAfterwards) {
  Shown shown;
  auto& view = dynamic_cast<PlotView&>(shown.At("pltCurve"));
  const QImage before = view.grab().toImage();
  const int grids = view.GridsDrawn();
  view.Rest();
  EXPECT_EQ(view.grab().toImage(), before);
  EXPECT_EQ(view.GridsDrawn(), grids);
  view.Rest();
  view.Rest();
  EXPECT_EQ(view.grab().toImage(), before);
  EXPECT_EQ(view.GridsDrawn(), grids + 1);
  shown.Focus("pltCurve");
  view.grab();
  view.Rest();
  view.Rest();
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_EQ(shown.Says("pltCurve"), "1600 Hz: -12.0 dB");
}

TEST(PlotView, ReadsTheCurveUnderPointerAndKeys) {
  Shown shown;
  auto& view = dynamic_cast<PlotView&>(shown.At("pltCurve"));
  vc::Plot& plot = shown.sample.pltCurve;
  view.grab();
  const vc::PlotLayout& layout = view.Layout();
  std::string told;
  plot.pointer = [&](const vc::PlotPointer& event) {
    told += std::to_string(static_cast<int>(event.action)) + "@" + std::to_string(std::lround(event.x)) + " ";
  };
  const QPoint at(static_cast<int>(layout.x.PixelOf(400)), layout.frame.top + 20);
  QTest::mouseMove(&view, at);
  EXPECT_NEAR(plot.Cursor().value_or(0), 400, 5);
  QTest::mouseMove(&view, {layout.frame.left - 5, layout.frame.top + 20});
  EXPECT_FALSE(plot.Cursor());
  QTest::mousePress(&view, Qt::LeftButton, {}, at);
  QTest::mouseRelease(&view, Qt::LeftButton, {}, at);
  EXPECT_NE(told.find("0@"), std::string::npos);
  EXPECT_NE(told.find("2@"), std::string::npos);
  shown.Focus("pltCurve");
  QTest::keyClick(&view, Qt::Key_Home);
  EXPECT_EQ(shown.Says("pltCurve"), "0 Hz: 0.0 dB");
  const QImage before = view.grab().toImage();
  const int grids = view.GridsDrawn();
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_EQ(shown.Says("pltCurve"), "1600 Hz: -12.0 dB");
  QTest::keyClick(&view, Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_NEAR(plot.Cursor().value_or(0), layout.x.ValueAt(layout.x.PixelOf(1600) - 10), 1e-6);
  EXPECT_NE(view.grab().toImage(), before);
  EXPECT_EQ(view.GridsDrawn(), grids);
  shown.Focus("btnOK");
  EXPECT_FALSE(plot.Cursor());
}

TEST(PlotView, DrawsTheSameWhateverItDrawsOn) {
  Shown shown;
  QWidget& view = shown.At("pltCurve");
  QImage straight(view.size(), QImage::Format_RGB32), copied(view.size(), QImage::Format_ARGB32);
  view.render(&straight);
  view.render(&copied);
  EXPECT_EQ(copied.convertToFormat(QImage::Format_RGB32), straight);
  const QRect part(view.width() / 4, view.height() / 4, view.width() / 3, view.height() / 3);
  QImage window(part.size(), QImage::Format_RGB32);
  window.fill(Qt::red);
  view.render(&window, {}, part);
  EXPECT_EQ(window, straight.copy(part));
}

TEST(PlotView, BarsStayUnderTheCurvesHoweverOftenTheyArePainted) {
  Shown shown;
  QWidget& view = shown.At("pltCurve");
  vc::Plot& plot = shown.sample.pltCurve;
  PaintWatch watch;
  view.installEventFilter(&watch);
  const QImage without = view.grab().toImage();
  watch.painted = {};
  plot.SetBars({{0, 800, -2}, {800, 1600, -8}});
  QCoreApplication::processEvents();
  EXPECT_FALSE(watch.painted.isEmpty());
  const vc::PlotLayout& layout = dynamic_cast<PlotView&>(view).Layout();
  const QPoint onCurve(static_cast<int>(layout.x.PixelOf(1200)), static_cast<int>(layout.y.PixelOf(-9)));
  for (int painting = 0; painting < 3; ++painting) {
    const QImage shownNow = view.grab().toImage();
    EXPECT_NE(shownNow, without) << painting;
    EXPECT_EQ(shownNow.pixel(onCurve), without.pixel(onCurve)) << painting;
  }
}

TEST(PlotView, WhatMovesOverTheCurvesIsPaintedInPartsThatEqualTheWhole) {
  Shown shown;
  QWidget& view = shown.At("pltCurve");
  vc::Plot& plot = shown.sample.pltCurve;
  std::vector<float> noise(300);
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<float>(i * 7919 % 200) * -0.1F;
  plot.SetTraces({{"Curve", {0.0F, -6.0F, -12.0F}}, {"Noise", noise, vc::TraceColours[1]}});
  PaintWatch watch;
  view.installEventFilter(&watch);
  const auto change = [&](int step, bool placed) {
    const double x = step * 389 % 1700, y = -(step * 7 % 23);
    plot.cursorPlaced = placed;
    if (step % 2 == 0) plot.SetCursor(step % 10 == 0 ? std::nullopt : std::optional(x));
    if (step % 3 == 0) plot.SetDot(step % 15 == 0 ? std::nullopt : std::optional(vc::PlotDot{x - 50, y}));
    if (step % 3 == 1) plot.SetRubber(vc::PlotRubber{x / 2, y, 1600 - x, -10});
    if (step % 17 == 0) plot.SetTraces({{"Curve", {0.0F, -6.0F, -3.0F}}, {"Noise", noise}});
  };
  for (int step = 1; step < 60; ++step) {
    QCoreApplication::processEvents();
    watch.painted = {};
    change(step, step > 30);
    QCoreApplication::processEvents();
    const QRect painted = watch.painted.boundingRect();
    const bool dotAlone = step % 6 == 3 && step % 17 != 0;
    EXPECT_TRUE(!dotAlone || painted.width() < view.width()) << step;
    const QImage onScreen = shown.Window().screen()->grabWindow(shown.Window().winId()).toImage();
    if (onScreen.isNull()) GTEST_SKIP() << "the platform keeps no picture of its windows";
    EXPECT_EQ(onScreen, shown.Window().grab().toImage()) << step;
  }
  plot.SetDot(vc::PlotDot{800, -10, "Level: -10.0 dB"});
  QCoreApplication::processEvents();
  watch.painted = {};
  plot.SetDot(vc::PlotDot{810, -10, "Level: -10.0 dB"});
  QCoreApplication::processEvents();
  EXPECT_LT(watch.painted.boundingRect().width(), 40);
  EXPECT_LT(watch.painted.boundingRect().height(), 40);
  EXPECT_TRUE(shown.Says("pltCurve").ends_with("; Level: -10.0 dB"));
}

TEST(PlotView, LeavesCursorAndKeysToWhoeverHearsThem) {
  Shown shown;
  auto& view = dynamic_cast<PlotView&>(shown.At("pltCurve"));
  vc::Plot& plot = shown.sample.pltCurve;
  std::string keys;
  plot.keyPressed = [&keys](std::string_view combination) {
    keys += std::string(combination) + " ";
    return combination == "Enter";
  };
  plot.cursorPlaced = true;
  plot.SetCursor(800);
  view.grab();
  QTest::mouseMove(&view, {view.Layout().frame.left + 9, view.Layout().frame.top + 20});
  shown.sample.form.Focus(plot.core);
  EXPECT_EQ(QApplication::focusWidget(), &view);
  for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Return, Qt::Key_Enter}) QTest::keyClick(&view, key);
  shown.Focus("btnOK");
  EXPECT_EQ(keys, "Home Enter Enter ");
  EXPECT_EQ(plot.Cursor(), 800.0);
  EXPECT_EQ(shown.Says("pltCurve"), "800 Hz: -6.0 dB");
}

TEST(PlotView, OffersItsChoicesInAMenu) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  QWidget& view = run.At("pltResponse");
  const auto choose = [&view] {
    QContextMenuEvent event(QContextMenuEvent::Mouse, {50, 50}, view.mapToGlobal(QPoint(50, 50)));
    QCoreApplication::sendEvent(&view, &event);
    QAction* entry = qobject_cast<QMenu*>(QApplication::activePopupWidget())->actions().at(0);
    const bool was = entry->isChecked();
    entry->trigger();
    QApplication::activePopupWidget()->close();
    return was;
  };
  const vc::Plot& plot = *std::get<vc::Plot*>(run.Find("pltResponse"));
  EXPECT_FALSE(choose());
  EXPECT_EQ(plot.XAxis().law, vc::AxisLaw::Logarithmic);
  EXPECT_TRUE(choose());
  EXPECT_EQ(plot.XAxis().law, vc::AxisLaw::Linear);
}

TEST(PlotHandles, ADragIsDrawnAtEveryEventAndIsOneStep) {
  MasterWindow run;
  run.record.lpfCutoff[1] = 1000;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  auto& view = run.At<PlotView>("pltResponse");
  auto& knob = run.At<HandleView>("pltResponse.Cutoff");
  PaintWatch count;
  view.installEventFilter(&count);
  QWindow* window = run.Window().windowHandle();
  const QPoint from = knob.mapTo(&run.Window(), knob.rect().center());
  QTest::mousePress(window, Qt::LeftButton, {}, from);
  constexpr int events = 50;
  int before = count.paints;
  for (int i = 1; i <= events; ++i) {
    const std::int16_t stood = run.record.lpfCutoff[1];
    QTest::mouseMove(window, from + QPoint(i, i % 3));
    QCoreApplication::processEvents();
    EXPECT_GT(run.record.lpfCutoff[1], stood);
    EXPECT_GT(count.paints, before) << i;
    before = count.paints;
    EXPECT_EQ(run.Get("txtCutoff"), std::to_string(run.record.lpfCutoff[1]));
    const QPoint there = knob.mapTo(&run.Window(), knob.rect().center());
    EXPECT_NEAR(there.x(), from.x() + i, 2);
  }
  QTest::mouseRelease(window, Qt::LeftButton, {}, from + QPoint(events, 0));
  EXPECT_NEAR(run.record.lpfCutoff[1], 1000 + events * 1600 / view.Layout().frame.width * 2, 250);
  EXPECT_FALSE(std::get<vc::Slider*>(run.Find("sldrCutoff"))->Held());
  run.Settle();
  const auto& block = *run.Stage(1).block;
  EXPECT_EQ(block[0] + 256 * block[1], run.record.lpfCutoff[1]);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], 1000);
  QTest::mouseDClick(window, Qt::LeftButton, {}, knob.mapTo(&run.Window(), knob.rect().center()));
  EXPECT_EQ(run.record.lpfCutoff[1], 100);  // as a new setup has it
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], 1000);
}

TEST(PlotHandles, OfEveryFamilyAreDrawnAtEachOfFiftyEventsASecond) {
  MasterWindow run;
  run.record.combFreq[1] = 300;
  run.record.combLimit[1] = 3000;
  struct Family {
    std::int16_t kind;
    const char* handle;
    QPoint step{1, 0};  // pixels an event
    const char* plot = "pltResponse";
  };
  for (const auto& [kind, handle, step, plot] :
       {Family{vc::FilterKind::Comb, "Fundamental"}, Family{vc::FilterKind::Notch, "Notch"},
        Family{vc::FilterKind::MultipleNotch, "Notch 1"},
        Family{vc::FilterKind::TriParametric, "Substage 1 (Wide)"},
        Family{vc::FilterKind::BandGraphic, "Band 10", QPoint(0, 4)},
        Family{vc::FilterKind::Compressor, "Compression Knee", QPoint(-8, 0), "pbGraph"}}) {
    SCOPED_TRACE(handle);
    run.OpenFilter(1, kind);
    run.Ready();
    PaintWatch count;
    auto& view = run.At<PlotView>(plot);
    view.installEventFilter(&count);
    auto& knob = run.At(std::string(plot) + "." + handle);
    int moved = 0;
    QWindow* window = run.Window().windowHandle();
    const QPoint from = knob.mapTo(&run.Window(), knob.rect().center());
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    for (int i = 1; i <= 25; ++i) {
      const int before = count.paints;
      const auto shown = view.Model().Traces();
      QTest::mouseMove(window, from + i * step);
      QTest::qWait(20);
      if (view.Model().Traces() == shown) continue;  // its steps may be wider than a pixel
      ++moved;
      EXPECT_GT(count.paints, before) << i;
    }
    EXPECT_GE(moved, 20);
    QTest::mouseRelease(window, Qt::LeftButton, {}, from + 25 * step);
    run.CloseTop();
  }
}

TEST(PlotHandles, AreReachedByTabAndMovedByArrows) {
  MasterWindow run;
  run.record.lpfAtten[1] = 30;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  EXPECT_EQ(QApplication::focusWidget(), &run.At("sldrCutoff"));
  run.At("pltResponse").setFocus(Qt::TabFocusReason);
  run.Press("Tab");
  EXPECT_EQ(QApplication::focusWidget(), &run.At("pltResponse.Cutoff"));
  run.Press("Tab");
  QWidget& knob = run.At("pltResponse.Stopband");
  EXPECT_EQ(QApplication::focusWidget(), &knob);
  run.Press("Down");
  EXPECT_EQ(run.record.lpfAtten[1], 31);
  run.Press("Shift+Up");
  EXPECT_EQ(run.record.lpfAtten[1], 21);
  QCoreApplication::processEvents();
  QAccessibleInterface& heard = *QAccessible::queryAccessibleInterface(&knob);
  EXPECT_EQ(heard.role(), QAccessible::Slider);
  EXPECT_EQ(heard.text(QAccessible::Name), "Stopband");
  EXPECT_EQ(heard.text(QAccessible::Value), "21 dB");
  EXPECT_EQ(heard.valueInterface()->maximumValue().toDouble(), 60);
  EXPECT_EQ(knob.cursor().shape(), Qt::SizeVerCursor);
  run.Press("Tab");
  EXPECT_EQ(QApplication::focusWidget(), &run.At("sldrCutoff"));
}

TEST(PlotHandles, ANotchIsDraggedInAndWidenedByTheMouse) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::MultipleNotch);
  run.Ready();
  auto& view = run.At<PlotView>("pltResponse");
  QWidget &first = run.At("pltResponse.Notch 1"), &second = run.At("pltResponse.Notch 2");
  EXPECT_TRUE(first.isVisible());
  EXPECT_FALSE(second.isVisible());
  QWindow* window = run.Window().windowHandle();
  const QPoint from = first.mapTo(&run.Window(), first.rect().center());
  QTest::mousePress(window, Qt::LeftButton, {}, from);
  for (int i = 1; i <= 60; ++i) QTest::mouseMove(window, from + QPoint(i, 0));
  QTest::mouseRelease(window, Qt::LeftButton, {}, from + QPoint(60, 0));
  QCoreApplication::processEvents();
  const std::int16_t hertz = run.record.mnotchFreq[1][1];
  EXPECT_NEAR(hertz, 60.0 * 3200 / view.Layout().frame.width, 15);
  EXPECT_NEAR(first.mapTo(&run.Window(), first.rect().center()).x(), from.x() + 60, 2);
  EXPECT_TRUE(second.isVisible());
  TurnWheel(first, 120);
  EXPECT_EQ(run.record.mnotchWidth[1][1], 3);
  EXPECT_EQ(run.At<QLabel>("lblBuilt").text(), "Not built yet: the filter stays as it is.");
  run.Hit("btnBuild");
  EXPECT_EQ(run.At<QLabel>("lblBuilt").text(), "Built as set.");
  EXPECT_EQ(run.record.builtFreq[1][1], hertz);
  for (int steps = 0; steps < 3; ++steps) run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.mnotchFreq[1][1], 0);
  QCoreApplication::processEvents();
  EXPECT_FALSE(second.isVisible());
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
