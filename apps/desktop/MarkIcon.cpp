#include "desktop/MarkIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include "desktop/PainterSurface.h"
#include "widgets/Mark.h"

namespace desktop {
namespace {

// Draws it in the size that is asked for.
class MarkEngine : public QIconEngine {
 public:
  void paint(QPainter* painter, const QRect& area, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
    const QPalette palette;
    PainterSurface surface(*painter, palette, area);
    vc::DrawMark(surface, {area.left(), area.top(), area.width(), area.height()});
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, picture.rect(), mode, state);
    return picture;
  }

  // Of which a desktop takes those that it has a use for.
  QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
    return {{16, 16}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {128, 128}};
  }

  QIconEngine* clone() const override { return new MarkEngine; }
};

}  // namespace

QIcon MarkIcon() { return QIcon(new MarkEngine); }

}  // namespace desktop
