#include "desktop/QtDesk.h"

#include <utility>

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

#include "desktop/MessageBox.h"
#include "desktop/Theme.h"

namespace desktop {

vc::Answer QtDesk::Box(int code, const std::string& title, const std::string& text) {
  const bool waiting = hourglass;  // the operator must be able to point at the answer
  SetHourglass(false);
  const bool refused = refuseHeld();
  if (refused) Beep();
  const vc::Answer answer =
      ShowBox(code, title, text,
              refused ? "What you typed or clicked while the program waited has not been taken." : "");
  SetHourglass(waiting);
  return answer;
}

void QtDesk::Beep() { QApplication::beep(); }

bool QtDesk::Open(const std::string& target) {
  const QUrl url = QUrl::fromUserInput(QString::fromStdString(target));
  return url.isValid() && QDesktopServices::openUrl(url);
}

void QtDesk::SetTheme(vc::Theme theme) {
  watch.SetOn(theme == vc::Theme::System);
  ApplyTheme(theme == vc::Theme::System ? SystemTheme() : theme);
}

void QtDesk::SetHourglass(bool shown) {
  if (!shown) note.Remove();  // a work that broke off says nothing more
  if (std::exchange(hourglass, shown) == shown) return;
  if (shown) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

}  // namespace desktop
