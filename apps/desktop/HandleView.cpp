#include "desktop/HandleView.h"

#include <algorithm>

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include "desktop/Binder.h"
#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr double KnobInLines = 0.46, HoveredKnobInLines = 0.54;  // its radius
constexpr int LeastSize = 26;

Qt::CursorShape ShapeOf(const vc::PlotHandle& handle) {
  if (!handle.MovesAlong()) return Qt::SizeVerCursor;
  return handle.MovesUpright() ? Qt::SizeAllCursor : Qt::SizeHorCursor;
}

}  // namespace

HandleView::HandleView(vc::PlotHandle& handle, PlotView& plot) : QWidget(&plot), model(handle), view(plot) {
  setObjectName(ToQt(plot.Model().core.FullName() + "." + model.name));
  setAccessibleName(ToQt(model.name));
  setFocusPolicy(Qt::StrongFocus);
  setCursor(ShapeOf(model));
  lower();  // of those that lie on each other the first is taken
  hide();   // until it has a place
}

void HandleView::Place() {
  const int wide = std::max(LeastSize, LineHeight(*this) * 2);
  const vc::Point at = model.Place(view.Layout());
  const bool faint = model.faint && model.faint();
  if (QPointF(at.x, at.y) != place || faint != shownFaint) update();
  place = {at.x, at.y};
  shownFaint = faint;
  setGeometry(static_cast<int>(at.x) - wide / 2, static_cast<int>(at.y) - wide / 2, wide, wide);
  setVisible(model.Usable());
  Binder::Speak(this, model.Reading(), {});
}

void HandleView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool lit = hovered || hasFocus() || model.Held();
  const double radius = LineHeight(*this) * (lit ? HoveredKnobInLines : KnobInLines);
  painter.translate(place - QPointF(pos()));
  const QColor ink = palette().color(shownFaint ? QPalette::PlaceholderText : QPalette::Link);
  const QColor back = palette().color(QPalette::Base);
  if (hasFocus()) {
    constexpr double ring = 3.0;
    painter.setPen(QPen(palette().color(QPalette::Text), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(), radius + ring, radius + ring);
  }
  painter.setPen(QPen(lit ? back : ink, 2));
  painter.setBrush(lit ? ink : back);
  painter.drawEllipse(QPointF(), radius, radius);
  painter.setPen(Qt::NoPen);
  painter.setBrush(lit ? back : ink);
  DrawArrows(painter, radius);
}

// Which ways it goes.
void HandleView::DrawArrows(QPainter& painter, double radius) const {
  const double tip = radius * 0.68, base = radius * 0.22, half = radius * 0.36;
  const auto draw = [&](double x, double y) {
    painter.drawPolygon(
        QPolygonF({QPointF(x * tip, y * tip), QPointF(x * base - y * half, y * base + x * half),
                   QPointF(x * base + y * half, y * base - x * half)}));
  };
  for (const double way : {-1.0, 1.0}) {
    if (model.MovesAlong()) draw(way, 0);
    if (model.MovesUpright()) draw(0, way);
  }
}

void HandleView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  grip = place - mapToParent(event->position());
  Carry([this] { model.Hold(); });
  update();
}

void HandleView::mouseMoveEvent(QMouseEvent* event) {
  if (!model.Held()) return;
  const QPointF at = mapToParent(event->position()) + grip;
  const vc::PlotLayout& layout = view.Layout();
  Carry([&] { model.MoveTo(layout.x.ValueAt(at.x()), layout.y.ValueAt(at.y())); });
}

void HandleView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) LetGo();
}

void HandleView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Carry([this] { model.SetDefault(); });
}

void HandleView::wheelEvent(QWheelEvent* event) {
  constexpr int notch = 120;
  wheelRest += event->angleDelta().y();
  const int notches = wheelRest / notch;
  wheelRest -= notches * notch;
  bool turned = false;
  const bool fine = event->modifiers().testFlag(Qt::ShiftModifier);
  Carry([&] { turned = model.Turn(notches, fine); });
  event->setAccepted(turned);
}

void HandleView::LetGo() {
  if (model.Held()) Carry([this] { model.Release(); });
  update();
}

void HandleView::keyPressEvent(QKeyEvent* event) {
  bool known = false;
  Carry([&] { known = model.Press(CombinationOf(*event)); });
  if (!known) QWidget::keyPressEvent(event);
}

void HandleView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  raise();
  update();
}

// As leaving a slider does, this ends a run of single steps.
void HandleView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  Carry([this] {
    model.Hold();
    model.Release();
  });
  update();
}

void HandleView::enterEvent(QEnterEvent* /*event*/) {
  hovered = true;
  view.PointAt(std::nullopt);
  update();
}

void HandleView::leaveEvent(QEvent* /*event*/) {
  hovered = false;
  update();
}

void HandleView::hideEvent(QHideEvent* /*event*/) { LetGo(); }

}  // namespace desktop
