// The widgets' drawing: the toolkit's own plain style with flat buttons, quiet lines around groups, and the
// focus shown on every kind of control however it has come there. Lengths are in lines of the font.
#pragma once

#include <QProxyStyle>

namespace desktop {

// Of a push button that shares its row with many others; its room is small. Set before it is shown.
void MakeCompact(QWidget& button);

class Style : public QProxyStyle {
 public:
  Style();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
};

}  // namespace desktop
