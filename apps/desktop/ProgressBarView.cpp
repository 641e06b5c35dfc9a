#include "desktop/ProgressBarView.h"

#include <QPaintEvent>
#include <QPainter>

#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"

namespace desktop {

ProgressBarView::ProgressBarView(const vc::ProgressBar& bar, QWidget* parent) : QWidget(parent), model(bar) {
  setAutoFillBackground(true);
  Arrange();
}

void ProgressBarView::Arrange() {
  setSizePolicy(model.Horizontal() ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                model.Horizontal() ? QSizePolicy::Fixed : QSizePolicy::Expanding);
  updateGeometry();
}

QSize ProgressBarView::SizeOf(int lines) const {
  const int line = LineHeight(*this);
  const QSize lying(lines * line, line * 5 / 4);
  return model.Horizontal() ? lying : lying.transposed();
}

void ProgressBarView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  PainterSurface surface(painter, palette(), event->rect());
  model.Draw(surface, {0, 0, width(), height()});
}

}  // namespace desktop
