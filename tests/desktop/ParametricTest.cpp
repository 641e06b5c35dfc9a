// A parametric equalizer in its real window: its sections by the mouse.
#include <QTest>

#include "MasterWindow.h"
#include "desktop/HandleView.h"
#include "desktop/PlotView.h"

namespace desktop {
namespace {

struct Equalizer : MasterWindow {
  Equalizer() {
    record.eqType[1] = vc::EqKind::DualParametric;
    session.master.ConfigMasterControl();
    session.panels.OpenEqualizer(1);
    Ready();
    Window().resize(1280, 720);
    QCoreApplication::processEvents();
  }
  HandleView& Knob(const char* name) const { return At<HandleView>(std::string("pltResponse.") + name); }
  QPoint Middle(const char* name) const { return Knob(name).mapTo(&Window(), Knob(name).rect().center()); }
  std::string Section() const {
    return Get("CenterText(0)") + " " + Get("RatioText(0)") + " " + Get("BoostText(0)");
  }
};

TEST(ParametricWindow, ASectionIsTakenByTheMouse) {
  Equalizer run;
  QWindow* window = run.Window().windowHandle();
  const char* const first = "Substage 1 (Wide)";
  const std::string fresh = run.Section();
  const QPoint from = run.Middle(first);
  QTest::mousePress(window, Qt::LeftButton, {}, from);
  for (int i = 1; i <= 20; ++i) QTest::mouseMove(window, from + QPoint(-10 * i, -4 * i));
  QTest::mouseRelease(window, Qt::LeftButton, {}, from + QPoint(-200, -80));
  const vc::PlotLayout& layout = run.At<PlotView>("pltResponse").Layout();
  EXPECT_NEAR(run.record.eqParCenter[9][0] * 7200, 1800 - 200 * 3200 / layout.frame.width, 8);
  EXPECT_GT(run.record.eqParBoost[9][0], 4);
  EXPECT_NEAR(run.Middle(first).x(), from.x() - 200, 2);
  const std::string dragged = run.Section();
  const QPoint knob = run.Middle(first);
  TurnWheel(run.Knob(first), 240);
  EXPECT_FLOAT_EQ(run.record.eqParRatio[9][0], 1.38F);  // wider by two hundredths of the range
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.Section(), dragged);
  QTest::mouseDClick(window, Qt::LeftButton, {}, knob);
  EXPECT_EQ(run.Section(), fresh);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.Section(), dragged);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.Section(), fresh);
  EXPECT_FALSE(run.session.history.CanUndo());
}

TEST(ParametricWindow, AHandleOfASectionThatIsOutIsFaintAndStays) {
  Equalizer run;
  run.Write("BoostText(1)", "9", Qt::Key_Return);
  HandleView& knob = run.Knob("Substage 2 (Wide)");
  const QImage in = knob.grab().toImage();
  run.Hit("btnActive(1)");
  QCoreApplication::processEvents();
  EXPECT_TRUE(knob.isVisible());
  EXPECT_NE(knob.grab().toImage(), in);
  EXPECT_EQ(run.record.eqParActive[9][1], 0);
}

}  // namespace
}  // namespace desktop
