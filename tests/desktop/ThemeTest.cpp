// That what is to be read and found can be, in both themes.
#include <gtest/gtest.h>

#include <QApplication>

#include "Contrast.h"
#include "Shown.h"
#include "desktop/QtDesk.h"
#include "desktop/Theme.h"
#include "host/SystemClock.h"

namespace desktop {
namespace {

TEST(Theme, EveryTextCanBeReadOnItsGround) {
  using Role = QPalette::ColorRole;
  const std::vector<std::pair<Role, Role>> texts{
      {Role::WindowText, Role::Window},       {Role::Text, Role::Base},
      {Role::Text, Role::AlternateBase},      {Role::ButtonText, Role::Button},
      {Role::ButtonText, Role::Midlight},     {Role::HighlightedText, Role::Highlight},
      {Role::ToolTipText, Role::ToolTipBase}, {Role::PlaceholderText, Role::Window},
      {Role::PlaceholderText, Role::Base},    {Role::Link, Role::Window}};
  for (const Theme theme : {Theme::Dark, Theme::Light}) {
    ApplyTheme(theme);
    const QPalette palette = QApplication::palette();
    for (const auto& [text, ground] : texts) {
      EXPECT_GE(Contrast(palette.color(text), palette.color(ground)), 4.5) << text << " on " << ground;
    }
    const QColor faded = palette.color(QPalette::Disabled, QPalette::WindowText);
    EXPECT_GE(Contrast(faded, palette.color(QPalette::Window)), 3.0);
    EXPECT_GE(Contrast(palette.color(QPalette::Highlight), palette.color(QPalette::Window)),
              2.5);  // the focus
  }
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
  const auto ground = [&shown] { return shown.Window().grab().toImage().pixelColor(2, 200).lightness(); };
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
