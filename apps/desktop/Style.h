// The widgets' drawing: the toolkit's own plain style, with the focus shown on every kind of control however
// it has come there.
#pragma once

#include <QProxyStyle>

namespace desktop {

class Style : public QProxyStyle {
 public:
  Style();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
};

}  // namespace desktop
