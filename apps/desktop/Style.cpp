#include "desktop/Style.h"

#include <QPainter>
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

}  // namespace

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  if (element == PE_FrameFocusRect) return DrawFocus(*painter, option->rect, option->palette);
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  const bool rings = control == CC_Slider || control == CC_ComboBox;
  if (rings && option->state.testFlag(State_HasFocus)) DrawFocus(*painter, option->rect, option->palette);
}

}  // namespace desktop
