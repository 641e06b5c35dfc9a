// Every kind of control in its widget, both ways: the operator's events reach the model, the model's changes
// reach the widget.
#include <stdexcept>

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "Shown.h"
#include "desktop/UpDownView.h"

namespace desktop {
namespace {

TEST(Controls, AClickReachesTheModelOfEveryButton) {
  Shown shown;
  shown.Click("btnOK");
  shown.Click("btnActive");
  EXPECT_EQ(shown.sample.btnActive.Value(), 1);
  EXPECT_TRUE(shown.At<QPushButton>("btnActive").isChecked());
  shown.Click("btnClear");  // disabled
  shown.Click("chkPart(2)");
  EXPECT_TRUE(shown.sample.chkPart(2).Value());
  shown.Click("optMode(1)");
  EXPECT_EQ(shown.sample.optMode.Selected(), 1);
  EXPECT_EQ(shown.sample.events, "ok active part mode ");
}

TEST(Controls, AChangeOfTheModelReachesTheWidgetAndRaisesNothingTwice) {
  Shown shown;
  auto& sample = shown.sample;
  sample.btnActive.SetValue(1);
  sample.chkPart(1).SetValue(true);
  sample.optMode.Select(2);
  sample.cmbKind.SetListIndex(1);
  sample.txtState.SetText("Connected");
  sample.txtNotes.SetText("one\r\ntwo");
  sample.lblStatus.core.SetCaption("R&&D");
  sample.pbxLamp.SetImage(2);
  EXPECT_TRUE(shown.At<QPushButton>("btnActive").isChecked());
  EXPECT_TRUE(shown.At<QCheckBox>("chkPart(1)").isChecked());
  EXPECT_TRUE(shown.At<QRadioButton>("optMode(2)").isChecked());
  EXPECT_EQ(shown.At<QComboBox>("cmbKind").currentText(), "Highpass");
  EXPECT_EQ(shown.At<QLabel>("txtState").text(), "Connected");
  EXPECT_EQ(shown.At<QPlainTextEdit>("txtNotes").toPlainText(), "one\ntwo");
  EXPECT_EQ(sample.txtNotes.Text(), "one\r\ntwo");  // showing a text does not rewrite it
  EXPECT_EQ(shown.At<QLabel>("lblStatus").text(), "R&D");
  EXPECT_EQ(shown.At("pbxLamp").grab().toImage().pixelColor(4, 4), QColor(0, 255, 0));
  EXPECT_EQ(sample.events, "mode kind ");
}

TEST(Controls, AnOptionGroupMayHaveNoneChosen) {
  Shown shown;
  shown.sample.optMode.Select(0);
  shown.sample.optMode.Select(vc::NoIndex);
  EXPECT_FALSE(shown.At<QRadioButton>("optMode(0)").isChecked());
  EXPECT_EQ(shown.At("optMode(0)").y(), shown.At("optMode(1)").y());  // a row, as its frame has columns
}

TEST(Controls, AListTakesRowsAndTheOperatorsChoice) {
  Shown shown;
  auto& list = shown.At<QComboBox>("cmbKind");
  EXPECT_EQ(list.findChild<QAbstractItemView*>(), nullptr);  // nothing to pop up before anyone wants it
  EXPECT_EQ(list.currentIndex(), -1);
  shown.Focus("cmbKind");
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(shown.sample.cmbKind.ListIndex(), 0);
  shown.sample.cmbKind.SetItems({"Notch"});
  EXPECT_EQ(list.count(), 1);
  EXPECT_EQ(list.currentText(), "Notch");
  EXPECT_EQ(shown.Says("cmbKind"), "Notch");
}

TEST(Controls, ATallListChoosesByRowAndActivatesByKeyAndDoubleClick) {
  Shown shown;
  auto& list = shown.At<QListWidget>("lstFiles");
  shown.Focus("lstFiles");  // which chooses nothing yet
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(shown.sample.events, "");
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_G);
  QTest::keyClick(&list, Qt::Key_Return);
  ClickRow(list, 2);
  ClickRow(list, 1, true);
  EXPECT_EQ(shown.sample.events, "row0 row3 activate row2 row1 activate ");
  EXPECT_EQ(shown.Says("lstFiles"), "beta");
  shown.sample.lstFiles.SetListIndex(2);
  EXPECT_EQ(list.currentRow(), 2);
  EXPECT_EQ(shown.sample.lstFiles.Text(), "bet\xFF");
  shown.sample.lstFiles.SetItems({"one", "two\nlines", "three"});
  EXPECT_EQ(list.count(), 3);
  EXPECT_EQ(list.item(1)->text(), QStringLiteral("two\uFFFDlines"));
  shown.sample.lstFiles.SetListIndex(-1);
  EXPECT_TRUE(list.selectedItems().isEmpty());
}

TEST(Controls, ATextThatIsLeftAsItWasKeepsItsBytes) {
  Shown shown;
  const std::string odd = "a\r\nb\xFF";
  shown.sample.txtNotes.SetText(odd);
  auto& memo = shown.At<QPlainTextEdit>("txtNotes");
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("a\nb\uFFFD"));
  QTest::keyClick(&memo, Qt::Key_X);
  EXPECT_EQ(shown.sample.txtNotes.Text(), "xa\nb\xEF\xBF\xBD");
  QTest::keyClick(&memo, Qt::Key_Backspace);
  EXPECT_EQ(shown.sample.txtNotes.Text(), odd);
  shown.sample.txtCutoff.SetText("\xFE");
  auto& line = shown.At<QLineEdit>("txtCutoff");
  QTest::keyClick(&line, Qt::Key_Y);
  QTest::keyClick(&line, Qt::Key_Backspace);
  EXPECT_EQ(shown.sample.txtCutoff.Text(), "\xFE");
}

TEST(Controls, ASliderMovesByItsStepsInTheDirectionOfTheScreen) {
  Shown shown;
  auto& slider = shown.sample.sldrBalance;
  auto& view = shown.At<QSlider>("sldrBalance");
  struct Case {
    Qt::Key key;
    double position;
  };
  for (const auto [key, position] :
       {Case{Qt::Key_Right, -0.25}, Case{Qt::Key_Down, 0.0}, Case{Qt::Key_PageUp, -0.5},
        Case{Qt::Key_PageUp, -1.0}, Case{Qt::Key_PageUp, -1.0}, Case{Qt::Key_End, 1.0}}) {
    QTest::keyClick(&shown.At("sldrBalance"), key);
    EXPECT_DOUBLE_EQ(slider.Position(), position);
  }
  EXPECT_EQ(view.value(), 0);  // at the left, with nothing of its groove filled
  view.setValue(view.maximum());
  EXPECT_DOUBLE_EQ(slider.Position(), -1.0);
  slider.SetPosition(0.1);  // between two steps
  EXPECT_DOUBLE_EQ(slider.Position(), 0.1);
  EXPECT_EQ(shown.Says("sldrBalance"), "0.1");
}

TEST(Controls, ASliderFollowsItsRangeAndIsDraggedToItsEnds) {
  Shown shown;
  shown.sample.sldrCutoff.SetRange(100, 8000.5);
  EXPECT_DOUBLE_EQ(shown.sample.sldrCutoff.Position(), 100);
  auto& view = shown.At<QSlider>("sldrCutoff");
  view.setSliderDown(true);
  view.setSliderPosition(view.maximum());
  EXPECT_DOUBLE_EQ(shown.sample.sldrCutoff.Position(), 8000.5);
  view.setSliderPosition(50);
  EXPECT_DOUBLE_EQ(shown.sample.sldrCutoff.Position(), 150);
  shown.sample.sldrCutoff.SetPosition(200);
  EXPECT_EQ(view.value(), 100);
}

TEST(Controls, TheWheelMovesASliderOnlyWhileItHasTheFocus) {
  Shown shown;
  auto& slider = shown.sample.sldrBalance;
  shown.Focus("btnOK");
  TurnWheel(shown.At("sldrBalance"), 120);
  EXPECT_DOUBLE_EQ(slider.Position(), 0.0);
  shown.Focus("sldrBalance");
  TurnWheel(shown.At("sldrBalance"), 60);  // half a notch, twice
  EXPECT_DOUBLE_EQ(slider.Position(), 0.0);
  TurnWheel(shown.At("sldrBalance"), 60);
  EXPECT_DOUBLE_EQ(slider.Position(), -0.125);
  TurnWheel(shown.At("cmbKind"), -120);
  EXPECT_EQ(shown.sample.cmbKind.ListIndex(), -1);
}

// A click on an arrow of an up-down control, 1 for up and -1 for down.
void ClickArrow(UpDownView& view, int way) {
  QTest::mouseClick(&view, Qt::LeftButton, {}, view.ArrowArea(way).center());
}

TEST(Controls, AnUpDownStepsInOneBoxWithItsNumber) {
  Shown shown;
  auto& upDown = shown.sample.udThresh;
  auto& view = shown.At<UpDownView>("udThresh");
  auto& edit = shown.At<QLineEdit>("txtThresh");
  upDown.SetValue(-20);
  TurnWheel(view, 120);  // without the focus
  EXPECT_EQ(edit.text(), "-20");
  shown.Focus("udThresh");
  EXPECT_TRUE(edit.hasFocus());
  for (const auto& [key, value] : {std::pair{Qt::Key_Up, -19},
                                   {Qt::Key_PageDown, -29},
                                   {Qt::Key_Home, -29},
                                   {Qt::Key_Left, -29},
                                   {Qt::Key_Down, -30}}) {
    QTest::keyClick(&edit, key);
    EXPECT_EQ(upDown.Value(), value) << key;
  }
  TurnWheel(view, 120);
  EXPECT_EQ(upDown.Value(), -29);
  shown.sample.events.clear();
  edit.selectAll();
  QTest::keyClicks(&edit, "-50");
  QTest::keyClick(&edit, Qt::Key_Up);  // what was typed counts first
  EXPECT_EQ(std::exchange(shown.sample.events, {}), "took thresh-50 rest thresh-49 ");
  edit.selectAll();
  QTest::keyClicks(&edit, "-60");
  ClickArrow(view, -1);
  EXPECT_TRUE(upDown.slider.Held());
  EXPECT_EQ(shown.Says("udThresh") + " " + shown.Says("txtThresh"), "-61 dB -61 dB");
  EXPECT_EQ(edit.selectedText(), "-61");
  shown.sample.events.clear();
  shown.Focus("btnOK");
  EXPECT_EQ(shown.sample.events, "took rest rest ");
  EXPECT_GE(view.ArrowArea(1).left(), edit.geometry().right());
  EXPECT_GE(view.ArrowArea(1).height(), LineHeight(view));
  upDown.core.SetEnabled(false);
  ClickArrow(view, 1);
  EXPECT_EQ(upDown.Value(), -61);
}

TEST(Controls, PressesOfAnArrowThatFollowEachOtherAreOneHold) {
  Shown shown;
  auto& upDown = shown.sample.udThresh;
  auto& view = shown.At<UpDownView>("udThresh");
  upDown.SetValue(-20);
  shown.sample.events.clear();
  ClickArrow(view, 1);
  QTest::mouseDClick(&view, Qt::LeftButton, {}, view.ArrowArea(1).center());
  QTest::mouseRelease(&view, Qt::LeftButton, {}, view.ArrowArea(1).center());
  EXPECT_EQ(shown.sample.events, "thresh-19 thresh-18 ");
  QTest::mousePress(&view, Qt::LeftButton, {}, view.ArrowArea(-1).center());
  EXPECT_TRUE(QTest::qWaitFor([&] { return upDown.Value() < -32; }));
  QTest::mouseRelease(&view, Qt::LeftButton, {}, view.ArrowArea(-1).center());
  const int rested = upDown.Value();
  EXPECT_TRUE(upDown.slider.Held());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !upDown.slider.Held(); }));
  EXPECT_EQ(upDown.Value(), rested);
  EXPECT_EQ(shown.sample.events.find("rest "), shown.sample.events.size() - 5);
  ClickArrow(view, 1);
  QTest::keyClick(&shown.At("txtThresh"), Qt::Key_5);  // what is typed is a step of its own
  EXPECT_FALSE(upDown.slider.Held());
  upDown.slider.defaultPosition = [] { return -3.0; };
  for (auto* label : view.parentWidget()->findChildren<QLabel*>()) {
    if (label->buddy() == &view) QTest::mouseDClick(label, Qt::LeftButton);
  }
  EXPECT_EQ(upDown.Value(), -3);
}

TEST(Controls, AnArrowThatIsHeldDoesNotRunAgainstALimit) {
  Shown shown;
  auto& upDown = shown.sample.udThresh;
  auto& view = shown.At<UpDownView>("udThresh");
  upDown.SetValue(-11);
  int refused = 0;
  upDown.slider.changed = [&] {
    if (upDown.Value() <= -10) return;
    ++refused;
    upDown.SetValue(-10);
  };
  QTest::mousePress(&view, Qt::LeftButton, {}, view.ArrowArea(1).center());
  EXPECT_TRUE(QTest::qWaitFor([&] { return refused > 0; }));
  EXPECT_FALSE(QTest::qWaitFor([&] { return refused > 1; }, 300));
  QTest::mouseRelease(&view, Qt::LeftButton, {}, view.ArrowArea(1).center());
}

TEST(Controls, ATextBoxTellsFocusKeysAndLeaving) {
  Shown shown;
  auto& edit = shown.At<QLineEdit>("txtCutoff");
  shown.sample.txtCutoff.SetText("1000");
  shown.Focus("txtCutoff");
  EXPECT_EQ(edit.selectedText(), "1000");
  QTest::keyClicks(&edit, "25");
  EXPECT_EQ(shown.sample.txtCutoff.Text(), "25");
  QTest::keyClick(&edit, Qt::Key_Return);
  EXPECT_TRUE(edit.hasFocus());
  shown.sample.txtCutoff.lostFocus = [&text = shown.sample.txtCutoff] { text.SetText("1000"); };
  shown.Focus("btnOK");
  EXPECT_EQ(edit.text(), "1000");  // what the handler makes of the entry
  EXPECT_EQ(shown.sample.events, "got key50 key53 key13 ");
  shown.Click("txtCutoff");  // selects the whole text, too
  EXPECT_TRUE(QTest::qWaitFor([&edit] { return edit.selectedText() == "1000"; }));
}

TEST(Controls, ASliderAndItsTextShareARowAndSpeakTheValueWithItsUnit) {
  Shown shown;
  shown.sample.txtCutoff.SetText("440");
  EXPECT_EQ(shown.Says("txtCutoff"), "440 Hz");
  EXPECT_EQ(shown.Says("sldrCutoff"), "440 Hz");
  const QRect slider = shown.At("sldrCutoff").geometry();
  const QRect text = shown.At("txtCutoff").geometry();
  EXPECT_GT(text.left(), slider.right());
  EXPECT_LT(std::abs(text.center().y() - slider.center().y()), 3);
  // In columns the pair stands upright.
  EXPECT_EQ(shown.At<QSlider>("sldrBand(3)").orientation(), Qt::Vertical);
  EXPECT_GT(shown.At("txtBand(3)").geometry().top(), shown.At("sldrBand(3)").geometry().bottom());
}

TEST(Controls, MenusAreATreeWithCheckMarks) {
  Shown shown;
  auto* menu = shown.Window().menuBar()->findChild<QMenu*>("mnuRate");
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->menuAction()->text(), "&Rate");
  ASSERT_EQ(menu->actions().size(), 2);
  QAction* fast = menu->actions().at(1);
  EXPECT_EQ(fast->objectName(), "mnuRateSelect(1)");
  for (int press = 0; press < 2; ++press) {
    fast->trigger();
    EXPECT_TRUE(fast->isChecked());  // the mark is the model's, not toggled by the press
  }
  shown.sample.mnuExit.core.SetEnabled(false);
  EXPECT_FALSE(shown.At<QAction>("mnuExit").isEnabled());
  shown.sample.mnuRate.core.SetVisible(false);
  EXPECT_FALSE(menu->menuAction()->isVisible());
}

TEST(Controls, AFramesCaptionIsSpokenWithWhatLiesInIt) {
  Shown shown;
  EXPECT_EQ(shown.At("sldrBalance").accessibleName(), "Filter, Balance");
  shown.sample.fraFilter.core.SetCaption("Not Available");
  EXPECT_EQ(shown.At<QGroupBox>("fraFilter").title(), "Not Available");
  EXPECT_EQ(shown.At("sldrBalance").accessibleName(), "Not Available, Balance");
}

}  // namespace
}  // namespace desktop
