// The models' drawing surface on a painter of the toolkit, with the palette's colours for the system's.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QRect>

#include "platform/Surface.h"

namespace desktop {

// A colour of the models; a system colour that is not known is the window's.
QColor ColourOf(vc::Colour colour, const QPalette& palette);

class PainterSurface : public vc::Surface {
 public:
  // What lies outside the visible part is left out.
  PainterSurface(QPainter& target, const QPalette& colours, const QRect& visiblePart)
      : painter(target), palette(colours), visible(visiblePart) {}

  void FillRectangle(const vc::Rectangle& area, vc::Colour colour) override;
  void FillEllipse(const vc::Rectangle& area, vc::Colour colour) override;
  void FrameRectangle(const vc::Rectangle& area, vc::Colour colour) override;
  void DrawEdge(const vc::Rectangle& area, vc::EdgeStyle style) override;

 private:
  void DrawRing(const QRect& area, QPalette::ColorRole upperLeft, QPalette::ColorRole lowerRight);

  QPainter& painter;
  const QPalette& palette;
  QRect visible;
};

}  // namespace desktop
