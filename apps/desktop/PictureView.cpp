#include "desktop/PictureView.h"

#include <QPaintEvent>
#include <QPainter>

#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"

namespace desktop {

PictureView::PictureView(const vc::Picture& picture, QWidget* parent) : QWidget(parent), model(picture) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PictureView::sizeHint() const {
  return QSize(model.lines.width, model.lines.height) * LineHeight(*this);
}

void PictureView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  PainterSurface surface(painter, palette(), event->rect());
  if (model.draw) model.draw(surface, {0, 0, width(), height()}, model.Image());
}

}  // namespace desktop
