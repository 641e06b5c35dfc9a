#include "desktop/MarkIcon.h"

#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include "desktop/PainterSurface.h"
#include "widgets/Mark.h"

namespace desktop {

QIcon MarkIcon() {
  QIcon icon;
  const QPalette palette;
  for (const int side : {16, 24, 32, 48, 64, 128}) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    PainterSurface surface(painter, palette, picture.rect());
    vc::DrawMark(surface, {0, 0, side, side});
    painter.end();
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace desktop
