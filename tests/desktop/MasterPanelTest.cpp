// The master control panel and the panels of its blocks under the operator's hands.
#include <fstream>

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QSlider>
#include <QStyleOptionSlider>

#include "MasterWindow.h"
#include "desktop/PlotView.h"

namespace desktop {
namespace {

QPoint HandleOf(const QSlider& slider) {
  QStyleOptionSlider option;
  option.initFrom(&slider);
  option.orientation = slider.orientation();
  option.maximum = slider.maximum();
  option.sliderPosition = slider.sliderPosition();
  return slider.style()
      ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider)
      .center();
}

void Drag(QSlider& slider, const QPoint& by) {
  const QPoint start = HandleOf(slider);
  constexpr int parts = 8;
  QTest::mousePress(&slider, Qt::LeftButton, {}, start);
  for (int part = 1; part <= parts; ++part) QTest::mouseMove(&slider, start + by * part / parts);
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, start + by);
}

long ResidentKilobytes() {
  std::ifstream status("/proc/self/statm");
  long pages = 0;
  status >> pages >> pages;
  constexpr long kilobytesPerPage = 4;
  return pages * kilobytesPerPage;
}

TEST(MasterPanelWindow, ADragIsOneStepThatCtrlZTakesBack) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  const std::int16_t before = run.record.lpfCutoff[1];
  Drag(run.At<QSlider>("sldrCutoff"), {40, 0});
  const std::int16_t dragged = run.record.lpfCutoff[1];
  EXPECT_GT(dragged, before);
  EXPECT_EQ(run.Says("sldrCutoff"), std::to_string(dragged) + " Hz");
  QTest::keyClick(&run.At("sldrCutoff"), Qt::Key_Right);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], dragged);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], before);
  run.Press("Ctrl+Shift+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], dragged);
  run.Press("Escape");
  EXPECT_EQ(&run.Top(), &run.session.master.form);
  run.Ready();
  run.Press("Ctrl+Z");  // here it is the menu's
  EXPECT_EQ(run.record.lpfCutoff[1], before);
}

TEST(MasterPanelWindow, WhatIsTypedIsTakenPutBackAndUndone) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  auto& box = run.At<QLineEdit>("txtCutoff");
  const QString first = box.text();
  run.Write("txtCutoff", "1234", Qt::Key_Return);
  EXPECT_EQ(run.record.lpfCutoff[1], 1234);
  run.Write("txtCutoff", "abc", Qt::Key_Return);
  EXPECT_EQ(box.text(), "1234");
  QTest::keyClicks(&box, "77");
  run.Press("Escape");
  EXPECT_EQ(box.text(), "1234");
  QTest::keyClicks(&box, "5");
  run.Press("Ctrl+Z");  // the typing first
  EXPECT_EQ(box.text(), "1234");
  EXPECT_EQ(run.record.lpfCutoff[1], 1234);
  run.Press("Ctrl+Z");
  EXPECT_EQ(box.text(), first);
  run.Write("txtCutoff", "9999", Qt::Key_Tab);
  EXPECT_EQ(run.record.lpfCutoff[1], run.record.bandwidthHz);
  EXPECT_TRUE(run.At("sldrTransSlope").hasFocus());
  box.setFocus();
  QCoreApplication::processEvents();
  QTest::keyClicks(&box, "15,6");
  run.Window().close();  // the frame takes it
  EXPECT_EQ(&run.Top(), &run.session.master.form);
  EXPECT_EQ(run.record.lpfCutoff[1], 16);
  EXPECT_TRUE(run.test.desk.boxes.empty());
}

// Its blocks are wider than what the mouse moves it by.
TEST(MasterPanelWindow, ASliderThatSnapsNeverGoesAgainstTheHand) {
  MasterWindow run;
  run.record.ch1Taps[1] = 256;
  run.OpenFilter(1, vc::FilterKind::OneChAdaptive);
  run.Ready();
  auto& slider = run.At<QSlider>("sldrTaps");
  QPoint hand = HandleOf(slider);
  QTest::mousePress(&slider, Qt::LeftButton, {}, hand);
  for (const auto& [way, times] : {std::pair{1, 60}, {-1, 30}}) {
    for (int moves = 0; moves < times; ++moves) {
      const int before = run.record.ch1Taps[1];
      hand += QPoint(way * (moves % 2), moves % 3 - 1);
      QTest::mouseMove(&slider, hand);
      ASSERT_GE(way * (run.record.ch1Taps[1] - before), 0) << moves;
      ASSERT_EQ(slider.value() + 4, run.record.ch1Taps[1]);
    }
    EXPECT_GT(run.record.ch1Taps[1], 256);
  }
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, hand);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.ch1Taps[1], 256);
}

TEST(MasterPanelWindow, KeysAndADoubleClickMoveASlider) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  run.Write("txtCutoff", "1000", Qt::Key_Return);
  auto& slider = run.At<QSlider>("sldrCutoff");
  slider.setFocus();
  for (const char* keys : {"Shift+Right", "Ctrl+Right", "Left"}) run.Press(keys);
  EXPECT_EQ(run.record.lpfCutoff[1], 1109);
  QTest::mouseDClick(&slider, Qt::LeftButton, {}, HandleOf(slider));
  EXPECT_EQ(run.record.lpfCutoff[1], 100);
  EXPECT_EQ(run.At<QLineEdit>("txtCutoff").text(), "100");
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], 1109);
  run.Press("Escape");
  run.Ready();
  run.Press("Alt+D");
  run.Ready();
  EXPECT_EQ(run.Top().name, "FrmDebug");
  run.Press("Escape");
  EXPECT_EQ(run.Top().name, "MasterControl");
}

// Far right of the handle, in the groove.
QPoint GrooveOf(const QSlider& slider) { return {slider.width() * 3 / 4, slider.height() / 2}; }

TEST(MasterPanelWindow, AClickInTheGrooveActsAtOnceAndADoubleClickIsTheDefaultAlone) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  run.Write("txtCutoff", "1000", Qt::Key_Return);
  auto& view = run.At<QSlider>("sldrCutoff");
  auto& slider = *std::get<vc::Slider*>(run.Find("sldrCutoff"));
  view.setFocus();
  QTest::mousePress(&view, Qt::LeftButton, {}, GrooveOf(view));
  EXPECT_EQ(run.record.lpfCutoff[1], 1001);
  QTest::mouseRelease(&view, Qt::LeftButton, {}, GrooveOf(view));
  EXPECT_TRUE(slider.Held());
  QTest::mouseDClick(&view, Qt::LeftButton, {}, GrooveOf(view));  // the second press
  EXPECT_EQ(run.record.lpfCutoff[1], 100);
  EXPECT_FALSE(slider.Held());
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], 1000);
  QTest::mouseClick(&view, Qt::LeftButton, {}, GrooveOf(view));
  EXPECT_TRUE(QTest::qWaitFor([&slider] { return !slider.Held(); }));  // no second one has followed
  slider.defaultPosition = nullptr;
  QTest::mouseDClick(&view, Qt::LeftButton, {}, GrooveOf(view));
  EXPECT_EQ(run.record.lpfCutoff[1], 1002);
}

TEST(MasterPanelWindow, APressBeginsAStepOfItsOwnAndAKeyDoesNot) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Lowpass);
  run.Ready();
  auto& view = run.At<QSlider>("sldrCutoff");
  auto& slider = *std::get<vc::Slider*>(run.Find("sldrCutoff"));
  view.setFocus();
  run.Press("Right");
  const double first = slider.Position();
  QTest::mouseClick(&view, Qt::LeftButton, {}, GrooveOf(view));
  QTest::mouseClick(&view, Qt::RightButton, {}, GrooveOf(view));
  run.Press("Left");  // which ends the wait for a second click
  EXPECT_FALSE(slider.Held());
  QTest::mousePress(&view, Qt::LeftButton, {}, HandleOf(view));
  QTest::mouseMove(&view, GrooveOf(view));
  QTest::mouseRelease(&view, Qt::LeftButton, {}, GrooveOf(view));
  EXPECT_FALSE(slider.Held());
  EXPECT_GT(slider.Position(), first + 100);
  run.Press("Ctrl+Z");
  EXPECT_EQ(slider.Position(), first);
}

TEST(MasterPanelWindow, ASliderHasItsTwoNumbersBesideItAndTellsBoth) {
  MasterWindow run;
  run.OpenFilter(1, vc::FilterKind::Bandpass);
  run.Ready();
  run.Write("txtHiCutoff", "2000", Qt::Key_Return);
  run.Write("txtHiTransSlope", "90", Qt::Key_Return);
  EXPECT_EQ(run.Says("sldrTransSlope"),
            "Lower: " + run.Says("txtLoTransSlope") + ", Upper: " + run.Says("txtHiTransSlope"));
  EXPECT_NE(run.Says("txtHiTransSlope"), "0.5 dB/Octave");
  const QRect slider = run.At("sldrTransSlope").geometry(), lower = run.At("txtLoTransSlope").geometry();
  const QRect upper = run.At("txtHiTransSlope").geometry(), atten = run.At("txtAtten").geometry();
  EXPECT_TRUE(slider.right() < lower.left() && lower.bottom() < upper.top());
  EXPECT_NEAR(slider.center().y(), (lower.center().y() + upper.center().y()) / 2, 2);
  EXPECT_TRUE(lower.left() == atten.left() && upper.left() == atten.left());
}

TEST(MasterPanelWindow, AStrayKeyOrWheelAtTheStartChangesNothing) {
  MasterWindow run;
  const vc::SystemSettings before = run.record;
  QWidget* focus = QApplication::focusWidget();
  ASSERT_NE(focus, nullptr);
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_6, Qt::Key_Space, Qt::Key_Return}) {
    QTest::keyClick(focus, key);
  }
  TurnWheel(*focus, -120);
  EXPECT_TRUE(run.record == before);
  run.Press("Tab");
  EXPECT_TRUE(run.At("cmbBandwidth").hasFocus());
}

TEST(MasterPanelWindow, KeysAndMenusReachTheRecord) {
  MasterWindow run;
  const std::int16_t processing = run.record.procEnabled, swap = run.record.channelSwap;
  run.Press("Alt+P");
  EXPECT_NE(run.record.procEnabled, processing);
  run.Hit("btnIhpf");
  run.At("optNumFilters(0)").setFocus();
  run.Press("Space");
  EXPECT_EQ(run.record.numFilters, 1);
  run.Press("Right");
  EXPECT_EQ(run.record.numFilters, 2);
  EXPECT_TRUE(run.At<QRadioButton>("optNumFilters(1)").isChecked());
  QWidget& segment = run.At("optNumFilters(2)");
  QTest::mouseClick(&segment, Qt::LeftButton, {}, segment.rect().bottomRight() - QPoint(1, 1));
  EXPECT_EQ(run.record.numFilters, 3);
  run.Press("F10");
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->objectName(), "mnuFile");
  menu->close();
  run.Press("Alt+N");
  menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  QTest::keyClick(menu, Qt::Key_W);
  EXPECT_NE(run.record.channelSwap, swap);
  EXPECT_EQ(run.At<QAction>("mnuUndo").shortcut(), QKeySequence(QStringLiteral("Ctrl+Z")));
}

TEST(MasterPanelWindow, WindowsThatComeAndGoLeaveNothingBehind) {
  MasterWindow run;
  const auto openAndClose = [&run](int times) {
    for (int i = 0; i < times; ++i) {
      run.session.panels.OpenFilter(1);
      run.CloseTop();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      QCoreApplication::processEvents();
    }
    return ResidentKilobytes();
  };
  run.record.filterType[1] = vc::FilterKind::Bandpass;
  run.record.filterType[2] = vc::FilterKind::Bandpass;
  const long before = openAndClose(100);
  constexpr long mostKilobytes = 2000L * MEMORY_ALLOWANCE;  // a window alone takes more than ten of them
  EXPECT_LT(openAndClose(200) - before, mostKilobytes);
  // What is only loaded has no window at all.
  const auto windows = QApplication::topLevelWidgets().size();
  run.session.panels.ConfigGeneralFilters([] {});
  EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
}

TEST(MasterPanelWindow, AClickOnThePictureOfTheChainOpensTheFilterThatMakesIt) {
  MasterWindow run;
  run.Edit("configMode", "0");
  run.Edit("numFilters", "3");
  run.Edit("filterType", std::to_string(vc::FilterKind::Notch), 2);
  run.Edit("notchFreq", "1000", 2);
  run.Edit("notchAtten", "40", 2);
  run.Edit("filterActive", "1", 2);
  run.Settle();
  QCoreApplication::processEvents();
  auto& view = static_cast<PlotView&>(run.At("pltWholeChain"));
  const auto& layout = view.LayoutNow();
  const QPoint at(static_cast<int>(layout.x.PixelOf(1000)), static_cast<int>(layout.y.PixelOf(-30)));
  QTest::mouseMove(&view, at);
  EXPECT_NE(HeardOf(view).find("Notch"), std::string::npos) << HeardOf(view);
  QTest::mouseClick(&view, Qt::LeftButton, {}, at);
  ASSERT_EQ(run.Top().name, "CtlNotch");
  run.CloseTop();
  // And by the keyboard.
  run.Ready();
  view.setFocus();
  QTest::keyClick(&view, Qt::Key_Home);
  for (int step = 0; step < 1000 && view.Model().Cursor().value_or(0) < 999; ++step) {
    QTest::keyClick(&view, Qt::Key_Right);
  }
  QTest::keyClick(&view, Qt::Key_Return);
  EXPECT_EQ(run.Top().name, "CtlNotch");
}

}  // namespace
}  // namespace desktop
