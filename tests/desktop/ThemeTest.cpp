// That what is to be read and found can be, in both themes.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>

#include "Contrast.h"
#include "Shown.h"
#include "desktop/ButtonLook.h"
#include "desktop/QtDesk.h"
#include "desktop/Theme.h"
#include "host/SystemClock.h"

namespace desktop {
namespace {

TEST(Theme, EveryTextCanBeReadOnItsGround) {
  using Role = QPalette::ColorRole;
  const std::vector<std::pair<Role, Role>> texts{{Role::WindowText, Role::Window},
                                                 {Role::Text, Role::Base},
                                                 {Role::Text, Role::AlternateBase},
                                                 {Role::ButtonText, Role::Button},
                                                 {Role::ButtonText, Role::Midlight},
                                                 {Role::HighlightedText, Role::Highlight},
                                                 {Role::ToolTipText, Role::ToolTipBase},
                                                 {Role::PlaceholderText, Role::Window},
                                                 {Role::PlaceholderText, Role::Base},
                                                 {Role::PlaceholderText, Role::Button},
                                                 {Role::Link, Role::Window}};
  for (const Theme theme : {Theme::Dark, Theme::Light}) {
    ApplyTheme(theme);
    const QPalette palette = QApplication::palette();
    for (const auto& [text, ground] : texts) {
      EXPECT_GE(Contrast(palette.color(text), palette.color(ground)), 4.5) << text << " on " << ground;
    }
    const QColor faded = palette.color(QPalette::Disabled, QPalette::WindowText);
    for (const Role ground : {Role::Window, Role::Button, Role::Base}) {
      EXPECT_GE(Contrast(faded, palette.color(ground)), 4.5) << ground;
    }
    EXPECT_GE(Contrast(palette.color(QPalette::Highlight), palette.color(QPalette::Window)),
              2.5);  // the focus
  }
}

// The best contrast of any pixel of a picture with the ground at its corner.
double MostContrast(const QImage& picture) {
  const QColor ground = picture.pixelColor(0, 0);
  double most = 1;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x)
      most = std::max(most, Contrast(picture.pixelColor(x, y), ground));
  }
  return most;
}

QImage SwitchOn(const QColor& ground, const ButtonState& state) {
  QImage picture(40, 24, QImage::Format_RGB32);
  picture.fill(ground);
  QPainter painter(&picture);
  DrawSwitch(painter, {5, 5, 26, 14}, state, QApplication::palette());
  return picture;
}

TEST(Theme, EveryStateStandsOutFromItsGround) {
  using Tint = vc::GraphicButton::Tint;
  for (const Theme theme : {Theme::Dark, Theme::Light}) {
    ApplyTheme(theme);
    const QPalette palette = QApplication::palette();
    for (const Tint tint : {Tint::Accent, Tint::Green, Tint::Red}) {
      const QColor on = StateColour(tint, palette);
      EXPECT_GE(Contrast(on, palette.color(QPalette::Base)), 4.5);  // a lamp's text, a switch's knob
      for (const auto ground : {QPalette::Window, QPalette::Button}) {
        EXPECT_GE(Contrast(on, palette.color(ground)), 3.0);
        for (const bool quiet : {false, true}) {
          const QImage lit = SwitchOn(palette.color(ground), {.lit = true, .quiet = quiet, .tint = tint});
          const QImage off = SwitchOn(palette.color(ground), {.quiet = quiet, .tint = tint});
          EXPECT_GE(MostContrast(lit), 3.0);
          EXPECT_GE(MostContrast(off), 3.0);
          EXPECT_NE(lit, off);
        }
      }
    }
  }
}

TEST(Theme, ChoicesAndTicksStandOut) {
  for (const Theme theme : {Theme::Dark, Theme::Light}) {
    ApplyTheme(theme);
    Shown shown;
    for (const char* name : {"optMode(0)", "chkPart(1)"}) {
      QWidget& view = shown.At(name);
      const QRect mark(0, 0, LineHeight(view), view.height());
      EXPECT_GE(MostContrast(view.grab(mark).toImage()), 3.0) << name;
      const QImage without = view.grab(mark).toImage();
      shown.Click(name);
      EXPECT_GE(MostContrast(view.grab(mark).toImage()), 3.0) << name;
      EXPECT_NE(view.grab(mark).toImage(), without);
    }
  }
}

TEST(Theme, ASwitchLooksLikeNoPushButton) {
  Shown shown;
  shown.sample.btnClear.core.SetEnabled(true);
  // A push button has its line all around; a switch has a pill, and the ground behind its words.
  const auto edge = [&shown](const char* name) {
    QWidget& view = shown.At(name);
    const QRect top(view.geometry().right() - LineHeight(view), view.geometry().top(), 1, 1);
    return view.parentWidget()->grab(top).toImage().pixelColor(0, 0);
  };
  const QColor ground = QApplication::palette().color(QPalette::Window);
  EXPECT_NE(edge("btnClear"), ground);
  EXPECT_EQ(edge("btnActive"), ground);
}

TEST(Theme, TheFocusIsSeenOnEveryKindOfControl) {
  for (const Theme theme : {Theme::Dark, Theme::Light}) {
    ApplyTheme(theme);
    Shown shown;
    shown.sample.btnClear.core.SetEnabled(true);
    for (const char* name : {"sldrCutoff", "txtCutoff", "cmbKind", "chkPart(1)", "optMode(0)", "sldrBand(3)",
                             "lstFiles", "txtNotes", "btnActive", "btnClear", "btnOK"}) {
      shown.At("sldrBalance").setFocus(Qt::OtherFocusReason);
      const QImage without = shown.At(name).grab().toImage();
      shown.At(name).setFocus(Qt::OtherFocusReason);
      EXPECT_NE(shown.At(name).grab().toImage(), without) << name;
    }
  }
}

TEST(Theme, AChoiceActsAtOnceOnOpenWindowsAndTheSystemIsFollowed) {
  Shown shown;
  host::SystemClock clock;
  QtDesk desk(clock, {});
  const auto ground = [&shown] {
    QCoreApplication::processEvents();  // by which the toolkit tells the windows
    return shown.Window().grab().toImage().pixelColor(2, 200).lightness();
  };
  desk.SetTheme(Theme::Dark);
  EXPECT_LT(ground(), 80);
  QEvent changed(QEvent::ThemeChange);
  QCoreApplication::sendEvent(&shown.Window(), &changed);
  QTest::qWait(1);
  EXPECT_LT(ground(), 80);  // chosen is chosen
  desk.SetTheme(Theme::System);
  EXPECT_GT(ground(), 200);  // the platform without a screen is light
  ApplyTheme(Theme::Dark);
  QCoreApplication::sendEvent(&shown.Window(), &changed);
  EXPECT_TRUE(QTest::qWaitFor([&ground] { return ground() > 200; }));
}

}  // namespace
}  // namespace desktop
