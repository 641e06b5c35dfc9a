// The models' drawing surface on a painter of the toolkit, with the palette's colours for the system's and
// the painter's font for texts.
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QRect>

#include "desktop/CurveRaster.h"
#include "platform/Surface.h"

namespace desktop {

// A colour of the models; a system colour that is not known is the window's.
QColor ColourOf(vc::Colour colour, const QPalette& palette);

// All of an image of 32-bit pixels.
Pixels PixelsOf(QImage& image);

class PainterSurface : public vc::Surface {
 public:
  // What lies outside the visible part is left out.
  PainterSurface(QPainter& target, const QPalette& colours, const QRect& visiblePart)
      : painter(target), palette(colours), visible(visiblePart), font(target.font()) {}

  // From now on curves are stroked by the raster into the pixels, which are those of the painter's picture.
  void StrokeBy(CurveRaster& stroker, const Pixels& target) {
    raster = &stroker;
    strokeTarget = target;
  }

  void FillRectangle(const vc::Rectangle& area, vc::Colour colour) override;
  void FillEllipse(const vc::Rectangle& area, vc::Colour colour) override;
  void FillPolygon(std::span<const vc::Point> corners, vc::Colour colour) override;
  void FrameRectangle(const vc::Rectangle& area, vc::Colour colour) override;
  void DrawEdge(const vc::Rectangle& area, vc::EdgeStyle style) override;
  void DrawAcross(int left, int top, int length, vc::LineStyle style, vc::Colour colour) override;
  void DrawDown(int left, int top, int length, vc::LineStyle style, vc::Colour colour) override;
  void DrawPolyline(std::span<const vc::Point> points, vc::Colour colour, const vc::Rectangle& clip) override;
  void DrawPixels(std::span<const std::uint32_t> pixels, const vc::Size& size, const vc::Rectangle& area,
                  const vc::Rectangle& clip) override;
  void DrawText(const vc::Rectangle& area, const std::string& text) override;
  vc::Size TextSize(const std::string& text) const override;
  vc::Colour Translated(vc::Colour colour) const override;

 private:
  // A file whose maker neither clips nor knows what a dash is to the pixel.
  bool IsSvg() const;
  void DrawLine(const QLineF& line, vc::LineStyle style, vc::Colour colour);
  void DrawRing(const QRect& area, QPalette::ColorRole upperLeft, QPalette::ColorRole lowerRight);
  void FillSmoothly(vc::Colour colour, const auto& draw);
  QFont TextFont() const;

  QPainter& painter;
  const QPalette& palette;
  QRect visible;
  QFont font;
  CurveRaster* raster = nullptr;
  Pixels strokeTarget;
};

}  // namespace desktop
