#include "desktop/PlotView.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

#include "desktop/PainterSurface.h"
#include "desktop/QtText.h"

namespace desktop {

PlotView::PlotView(const vc::Plot& plot, QWidget* parent) : QWidget(parent), model(plot), small(plot.small) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize PlotView::SizeOf(int digits, int lines) const {
  return {DigitsWide(*this, digits), lines * LineHeight(*this)};
}
QSize PlotView::sizeHint() const { return small ? SizeOf(8, 5) : SizeOf(56, 18); }
QSize PlotView::minimumSizeHint() const { return small ? SizeOf(8, 2) : SizeOf(34, 12); }

void PlotView::Follow(std::string_view property) {
  if (property == "Caption" || property == "Enabled") grid = {};
  update();
}

void PlotView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  grid = {};
  if (event->type() == QEvent::FontChange) updateGeometry();
  update();
}

void PlotView::KeepUp() {
  const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
  if (grid.size() == wanted && revision == model.Revision()) return;
  revision = model.Revision();
  grid = QPixmap(wanted);
  grid.setDevicePixelRatio(devicePixelRatioF());
  DrawGrid();
}

void PlotView::DrawGrid() {
  QPainter painter(&grid);
  painter.setFont(font());
  PainterSurface surface(painter, palette(), rect());
  layout = vc::LayOut(model, surface, {0, 0, width(), height()});
  model.DrawGrid(surface, layout);
  ++gridsDrawn;
}

void PlotView::paintEvent(QPaintEvent* /*event*/) {
  KeepUp();
  QPainter painter(this);
  painter.drawPixmap(0, 0, grid);
  PainterSurface surface(painter, palette(), rect());
  model.DrawTraces(surface, layout);
}

}  // namespace desktop
