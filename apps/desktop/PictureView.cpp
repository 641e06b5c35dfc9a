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
  constexpr int lines = 2;
  const int height = lines * LineHeight(*this);
  return {2 * height, height};
}

void PictureView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  PainterSurface surface(painter, palette(), event->rect());
  if (model.draw) model.draw(surface, {0, 0, width(), height()}, model.Image());
}

}  // namespace desktop
