#include "desktop/PictureView.h"

#include <utility>

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"

namespace desktop {

PictureView::PictureView(const vc::Picture& picture, QWidget* parent, Operate operate)
    : QWidget(parent), model(picture), carry(std::move(operate)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  if (model.clicked) setCursor(Qt::PointingHandCursor);
}

QSize PictureView::sizeHint() const {
  return QSize(model.lines.width, model.lines.height) * LineHeight(*this);
}

void PictureView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  PainterSurface surface(painter, palette(), event->rect());
  if (model.draw) model.draw(surface, {0, 0, width(), height()}, model.Image());
}

// Taken, so that the release comes here.
void PictureView::mousePressEvent(QMouseEvent* event) {
  event->setAccepted(event->button() == Qt::LeftButton);
}

void PictureView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) return;
  carry([this] { model.Click(); });
}

}  // namespace desktop
