// Windows that come, block each other, close and go.
#include <stdexcept>
#include <tuple>

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPointer>
#include <QScreen>

#include "Shown.h"
#include "desktop/Application.h"
#include "desktop/Theme.h"
#include "text/Convert.h"

namespace desktop {
namespace {

struct SmallForm {
  vc::Form form{"SmallForm", "Small"};
  vc::Button btnOK{form, "btnOK", "OK"};
};

TEST(Windows, TheFirstIsCentredOnTheScreenAndTheNextOnIt) {
  Shown shown;
  SmallForm small;
  shown.forms.Show(small.form);
  const QPoint screen = QGuiApplication::primaryScreen()->availableGeometry().center();
  const QPoint first = shown.Window().geometry().center();
  const QPoint next = shown.windows.WindowOf(small.form)->geometry().center();
  EXPECT_LT((first - screen).manhattanLength(), 4);
  EXPECT_LT((next - first).manhattanLength(), 4);
}

TEST(Windows, NoneGrowsAgainstTheSizeThatTheOperatorGaveIt) {
  Shown shown;
  const QSize own = shown.Window().size();
  shown.sample.optMode.buttons[0]->core.SetCaption(std::string(200, 'm'));
  for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
  EXPECT_GT(shown.Window().width(), own.width());
  const QSize given(500, 400);
  shown.Window().resize(given);
  shown.sample.optMode.buttons[1]->core.SetCaption(std::string(300, 'm'));
  for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
  EXPECT_EQ(shown.Window().size(), given);
}

TEST(Windows, TheOperatorsCloseAsksTheFormAndDestroysNothingBeforeItsTime) {
  Shown shown;
  int asked = 0;
  shown.sample.form.closeRequested = [&asked] { ++asked; };
  EXPECT_FALSE(shown.Window().close());
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(shown.Window().isVisible());

  shown.sample.form.closeRequested = nullptr;
  const QPointer<FormWindow> window = &shown.Window();
  window->close();
  EXPECT_TRUE(shown.forms.open.empty());
  ASSERT_FALSE(window.isNull());
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(shown.sample.form.controlChanged);  // another view may show the form now
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(window.isNull());
  shown.sample.sldrCutoff.SetPosition(7);
}

TEST(Windows, AButtonMayTakeItsOwnFormAway) {
  Shown shown;
  auto small = std::make_unique<SmallForm>();
  small->btnOK.clicked = [&] { shown.forms.Unload(small->form); };
  shown.forms.Show(small->form, vc::Modality::Modal);
  QTest::mouseClick(shown.windows.WindowOf(small->form)->findChild<QWidget*>("btnOK"), Qt::LeftButton);
  EXPECT_EQ(shown.windows.WindowOf(small->form), nullptr);
  small.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Under the address sanitizer it fails where anything does.
TEST(Windows, WhatIsLeftOfOneAsksNothingOfAFormThatIsGone) {
  const Shown below;
  for (const char* focus : {"txtCutoff", "txtNotes", "sldrCutoff", "lstFiles", "chkPart(1)", "btnOK"}) {
    auto shown = std::make_unique<Shown>();
    const QPointer<FormWindow> window = &shown->Window();
    shown->Focus(focus);
    shown->forms.Unload(shown->sample.form);
    shown.reset();
    ASSERT_FALSE(window.isNull());
    for (const Theme theme : {Theme::Dark, Theme::Light}) ApplyTheme(theme);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window.isNull());
  }
}

TEST(Windows, AModalFormBlocksTheOneBelow) {
  Shown shown;
  SmallForm small;
  shown.forms.Show(small.form, vc::Modality::Modal);
  ASSERT_TRUE(QTest::qWaitForWindowActive(shown.windows.WindowOf(small.form)));
  // Through the window system, as a hand would: a blocked window's widgets get nothing.
  const QPoint place = shown.At("chkPart(2)").mapTo(&shown.Window(), QPoint(5, 5));
  QTest::mouseClick(shown.Window().windowHandle(), Qt::LeftButton, {}, place);
  QTest::keyClick(shown.Window().windowHandle(), Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(shown.sample.events, "");
  shown.forms.Unload(small.form);
  QTest::mouseClick(shown.Window().windowHandle(), Qt::LeftButton, {}, place);
  EXPECT_NE(shown.sample.events.find("part "), std::string::npos);
}

TEST(Windows, AFormsKeyWorksWhereverTheFocusIs) {
  Shown shown;
  shown.Focus("txtCutoff");
  shown.sample.events.clear();
  QTest::keyClick(&shown.At("txtCutoff"), Qt::Key_A, Qt::AltModifier);
  EXPECT_NE(shown.sample.events.find("alt-a "), std::string::npos);
}

TEST(Windows, CaptionHidingAndComingForwardFollowTheForm) {
  Shown shown;
  shown.sample.form.SetCaption("Other");
  EXPECT_EQ(shown.Window().windowTitle(), "Other");
  shown.forms.Hide(shown.sample.form);
  EXPECT_FALSE(shown.Window().isVisible());
  shown.sample.events.clear();
  shown.forms.Show(shown.sample.form);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&shown.Window()));
  QCoreApplication::processEvents();
  EXPECT_TRUE(shown.sample.events.starts_with("activated "));
}

TEST(Windows, ASplashHasNoFrame) {
  vc::Form form{"Greeting", "Greeting", vc::FormLook::Splash};
  const vc::Label words{form, "lblWords", "Welcome"};
  vc::Forms forms{support::DeadEnd{}};
  const FormWindows windows(forms);
  forms.Show(form);
  EXPECT_TRUE(windows.WindowOf(form)->windowFlags().testFlag(Qt::FramelessWindowHint));
  EXPECT_TRUE(windows.WindowOf(form)->isVisible());
}

// A window with nothing but a button, which is pressed through the window system as the mouse does.
struct Asking {
  explicit Asking(const std::string& name) : form(name, name) {
    btnOK.clicked = [this] { ++pressed; };
  }
  void Press(const FormWindows& windows) {
    FormWindow& window = *windows.WindowOf(form);
    auto* button = window.findChild<QWidget*>("btnOK");
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                      button->mapTo(&window, button->rect().center()));
  }
  vc::Form form;
  vc::Button btnOK{form, "btnOK", "OK"};
  int pressed = 0;
};

TEST(Windows, AnOwnedWindowBlocksItsOwnerAlone) {
  vc::Forms forms{support::DeadEnd{}};
  const FormWindows windows(forms);
  Asking display("Display"), panel("Panel"), question("Question");
  forms.Show(display.form);
  forms.Show(panel.form);
  forms.Show(question.form, vc::Modality::OverOwner, &panel.form);
  const FormWindow& below = *windows.WindowOf(panel.form);
  FormWindow& above = *windows.WindowOf(question.form);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&above));
  EXPECT_EQ(above.windowHandle()->transientParent(), below.windowHandle());
  EXPECT_LT((above.geometry().center() - below.geometry().center()).manhattanLength(), 3);
  for (Asking* asking : {&display, &panel, &question}) asking->Press(windows);
  EXPECT_EQ(std::make_tuple(display.pressed, panel.pressed, question.pressed), std::make_tuple(1, 0, 1));
  forms.Hide(panel.form);
  EXPECT_FALSE(above.isVisible());
  forms.Show(panel.form);
  EXPECT_TRUE(above.isVisible());
  forms.Unload(panel.form);
  EXPECT_EQ(windows.WindowOf(question.form), nullptr);
  display.Press(windows);
  EXPECT_EQ(display.pressed, 2);
}

TEST(Windows, AFaultInAHandlerIsShownAndTheProgramGoesOn) {
  Shown shown;
  shown.sample.btnOK.clicked = [] { throw vc::Fault{"value out of range"}; };
  QString text;
  QTimer::singleShot(0, qApp, [&text] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    text = box->text();
    box->close();
  });
  shown.Click("btnOK");
  EXPECT_TRUE(text.contains("value out of range"));
  shown.Click("chkPart(2)");
  EXPECT_EQ(shown.sample.events, "part ");
}

}  // namespace
}  // namespace desktop
