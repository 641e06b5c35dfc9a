#include "desktop/tour/Hand.h"

#include <QMenuBar>
#include <QTest>

namespace tour {
namespace {

constexpr int MenuMilliseconds = 1000;

Qt::Key AccessKeyOf(const QMenu& menu) {
  const QKeySequence keys = QKeySequence::mnemonic(menu.menuAction()->text());
  return keys.isEmpty() ? Qt::Key_unknown : keys[0].key();
}

bool ComesUp(const QMenu& menu) {
  return QTest::qWaitFor([&menu] { return menu.isVisible(); }, MenuMilliseconds);
}

}  // namespace

void Press(desktop::FormWindow& window, const char* control) {
  QTest::mouseClick(window.findChild<QWidget*>(control), Qt::LeftButton);
}

QMenu* OpenMenu(desktop::FormWindow& window, const std::vector<std::string>& names) {
  QMenu* open = nullptr;
  for (const std::string& name : names) {
    auto* next = window.menuBar()->findChild<QMenu*>(QString::fromStdString(name));
    if (next == nullptr) return nullptr;
    if (open == nullptr) {
      QTest::mouseClick(window.menuBar(), Qt::LeftButton, {},
                        window.menuBar()->actionGeometry(next->menuAction()).center());
    } else {
      QTest::keyClick(open, AccessKeyOf(*next));
    }
    if (!ComesUp(*next)) return nullptr;
    open = next;
  }
  return open;
}

bool ClickEntry(QMenu* menu, const std::string& name) {
  if (menu == nullptr) return false;
  for (QAction* action : menu->actions()) {
    if (action->objectName().toStdString() != name) continue;
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    return true;
  }
  return false;
}

void CloseMenus(desktop::FormWindow& window) {
  for (int depth = 0; depth < 4; ++depth) {
    if (QWidget* popup = QApplication::activePopupWidget()) QTest::keyClick(popup, Qt::Key_Escape);
  }
  window.activateWindow();
}

}  // namespace tour
