#include "desktop/Style.h"

#include <QPainter>
#include <QPolygonF>
#include <QStyleOption>

namespace desktop {
namespace {

void DrawFocus(QPainter& painter, const QRect& area, const QPalette& palette) {
  const double corner = 2.5, half = 0.5;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette.color(QPalette::Highlight), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(area).adjusted(half, half, -half, -half), corner, corner);
  painter.restore();
}

// A ring or a box in the colour of a text, so that it is seen on any ground, filled where it is chosen.
void DrawMark(QPainter& painter, const QStyleOption& option, bool round) {
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool on = option.state.testFlag(QStyle::State_On);
  const QColor line = option.palette.color(QPalette::Active, QPalette::PlaceholderText);
  const QColor full = enabled ? option.palette.color(QPalette::Link) : line;
  const QColor ground = option.palette.color(QPalette::Active, QPalette::Base);
  if (option.rect.width() < 2) return;  // a style sheet has taken it away
  const double half = 0.5;
  const QRectF area = QRectF(option.rect).adjusted(half, half, -half, -half);
  const double corner = round ? area.height() / 2 : 2.5, inset = area.height() * 0.3;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(on ? full : line, 1));
  painter.setBrush(on ? full : ground);
  painter.drawRoundedRect(area, corner, corner);
  if (on && round) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawEllipse(area.adjusted(inset, inset, -inset, -inset));
  } else if (on) {
    painter.setPen(QPen(ground, 2));
    painter.drawPolyline(QPolygonF{QPointF(area.left() + inset * 0.7, area.center().y()),
                                   QPointF(area.left() + area.width() * 0.42, area.bottom() - inset * 0.9),
                                   QPointF(area.right() - inset * 0.6, area.top() + inset)});
  }
  painter.restore();
}

}  // namespace

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  if (element == PE_FrameFocusRect) return DrawFocus(*painter, option->rect, option->palette);
  if (element == PE_IndicatorRadioButton) return DrawMark(*painter, *option, true);
  if (element == PE_IndicatorCheckBox) return DrawMark(*painter, *option, false);
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  const bool rings = control == CC_Slider || control == CC_ComboBox;
  if (rings && option->state.testFlag(State_HasFocus)) DrawFocus(*painter, option->rect, option->palette);
}

}  // namespace desktop
