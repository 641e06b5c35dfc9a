#include "desktop/tour/Album.h"

#include <utility>

#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPixmap>

#include "desktop/Theme.h"

namespace tour {
namespace {

// Menus are windows of their own: they are laid over the picture where they lie on the screen.
QPixmap Grab(QWidget& window) {
  QCoreApplication::sendPostedEvents();  // what goes to its place behind a change
  QRect whole(window.mapToGlobal(QPoint()), window.size());
  const QPoint corner = whole.topLeft();
  QList<QMenu*> menus;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* menu = qobject_cast<QMenu*>(widget);
    if (menu == nullptr || !menu->isVisible()) continue;
    menus.push_back(menu);
    whole |= QRect(menu->pos(), menu->size());
  }
  QPixmap own = window.grab();
  if (menus.isEmpty()) return own;
  QPixmap picture(whole.size() * own.devicePixelRatio());
  picture.setDevicePixelRatio(own.devicePixelRatio());
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.drawPixmap(corner - whole.topLeft(), own);
  for (QMenu* menu : std::as_const(menus)) painter.drawPixmap(menu->pos() - whole.topLeft(), menu->grab());
  return picture;
}

}  // namespace

Album::Album(std::filesystem::path place) : folder(std::move(place)) {
  std::error_code ignored;  // shows when the first picture is saved
  std::filesystem::create_directories(folder, ignored);
}

bool Album::Save(QWidget& window, const std::string& name) const {
  desktop::ApplyTheme(desktop::Theme::Dark);
  const bool dark = SaveOnce(window, name + "-dark.png");
  desktop::ApplyTheme(desktop::Theme::Light);
  return SaveOnce(window, name + ".png") && dark;
}

bool Album::SaveOnce(QWidget& window, const std::string& file) const {
  return Grab(window).save(QString::fromStdString((folder / file).string()));
}

}  // namespace tour
