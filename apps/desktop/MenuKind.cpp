// The menus: entries of the menu bar, submenus, check marks.
#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "desktop/Kinds.h"
#include "desktop/QtText.h"
#include "widgets/Controls.h"

namespace desktop {
namespace {

// The menu in which an entry lies was made before it and bears its name.
QWidget* MenuAround(const Binder& binder, const vc::MenuEntry& entry) {
  QMenuBar* bar = binder.MenuBar();
  if (entry.parent == nullptr) return bar;
  return bar->findChild<QMenu*>(ToQt(entry.parent->core.FullName()));
}

void Follow(Binder& binder, vc::MenuEntry& entry, QAction* action) {
  Bound bound;
  bound.showCaption = [action, &entry] { action->setText(ToQt(entry.core.Caption())); };
  const auto showTip = [action, &entry] { action->setToolTip(ToQt(entry.core.tip).toHtmlEscaped()); };
  bound.showValue = [action, &entry, showTip](std::string_view) {
    showTip();
    action->setCheckable(entry.checkable);
    action->setChecked(entry.Checked());
  };
  bound.showUse = [action](bool enabled, bool visible) {
    action->setEnabled(enabled);
    action->setVisible(visible);
  };
  binder.Bind(entry.core, std::move(bound));
}

}  // namespace

void BindKind(Binder& binder, vc::MenuEntry& entry) {
  QWidget* around = MenuAround(binder, entry);
  const QString name = ToQt(entry.core.FullName());
  if (!entry.children.empty()) {
    auto* menu = new QMenu(around);
    menu->setObjectName(name);
    menu->setToolTipsVisible(true);
    around->addAction(menu->menuAction());
    menu->menuAction()->setObjectName(name);
    return Follow(binder, entry, menu->menuAction());
  }
  auto* action = new QAction(around);
  action->setObjectName(name);
  around->addAction(action);
  action->setShortcut(QKeySequence(ToQt(entry.shortcut)));
  action->setAutoRepeat(!entry.core.form.unrepeated.contains(entry.shortcut));
  QObject::connect(action, &QAction::triggered, around,
                   [&binder, &entry] { binder.Operate(entry.core, [&entry] { entry.Click(); }); });
  Follow(binder, entry, action);
}

}  // namespace desktop
