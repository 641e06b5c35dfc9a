#include "desktop/SystemThemeWatch.h"

#include <QApplication>
#include <QEvent>

#include "desktop/Theme.h"

namespace desktop {

SystemThemeWatch::SystemThemeWatch() {
  dress.setSingleShot(true);
  connect(&dress, &QTimer::timeout, this, [this] {
    if (on) ApplyTheme(SystemTheme());
  });
  QCoreApplication::instance()->installEventFilter(this);
}

bool SystemThemeWatch::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::ThemeChange && on) dress.start();
  return false;
}

}  // namespace desktop
