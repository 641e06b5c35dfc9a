// A parametric equalizer in its real window: its sections by the mouse.
#include <QTest>

#include "MasterWindow.h"
#include "PanelOpening.h"
#include "desktop/HandleView.h"

namespace desktop {
namespace {

TEST(ParametricWindow, ASectionIsTakenByTheMouse) {
  MasterWindow run;
  support::OpenPanel(run, "CtPar2Eq");
  run.Ready();
  run.Window().resize(1280, 720);
  QCoreApplication::processEvents();
  const auto section = [&run] {
    return run.Get("CenterText(0)") + " " + run.Get("RatioText(0)") + " " + run.Get("BoostText(0)");
  };
  auto& knob = run.At<HandleView>("pltResponse.Substage 1 (Wide)");  // all lie on each other
  const auto middle = [&] { return knob.mapTo(&run.Window(), knob.rect().center()); };
  QWindow* window = run.Window().windowHandle();
  const QPoint from = middle();
  QTest::mousePress(window, Qt::LeftButton, {}, from);
  for (int i = 1; i <= 20; ++i) QTest::mouseMove(window, from + QPoint(-10 * i, -4 * i));
  QTest::mouseRelease(window, Qt::LeftButton, {}, from + QPoint(-200, -80));
  EXPECT_LT(run.record.eqParCenter[9][0], 0.2F);
  EXPECT_GT(run.record.eqParBoost[9][0], 4);
  EXPECT_LE((middle() - from - QPoint(-200, -80)).manhattanLength(), 10);  // half a decibel
  const std::string dragged = section();
  TurnWheel(knob, 240);
  EXPECT_FLOAT_EQ(run.record.eqParRatio[9][0], 1.38F);  // wider by two hundredths of the range
  run.Press("Ctrl+Z");
  EXPECT_EQ(section(), dragged);
  QTest::mouseDClick(window, Qt::LeftButton, {}, middle());
  EXPECT_EQ(section(), "1800 1200.00 0.0");
  run.Press("Ctrl+Z");
  EXPECT_EQ(section(), dragged);
  const QImage in = knob.grab().toImage();
  run.Hit("btnActive(0)");
  QCoreApplication::processEvents();
  EXPECT_TRUE(knob.isVisible());
  EXPECT_NE(knob.grab().toImage(), in);
  for (int step = 0; step < 2; ++step) run.Press("Ctrl+Z");
  EXPECT_EQ(section(), "1800 1200.00 0.0");
}

}  // namespace
}  // namespace desktop
