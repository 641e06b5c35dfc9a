// The models' drawing surface on the graphics library cairo, in the colours of paper.
#pragma once

#include <cairo/cairo.h>

#include "platform/Surface.h"

namespace host {

class CairoSurface : public vc::Surface {
 public:
  // The context must outlive it.
  explicit CairoSurface(cairo_t* target);

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
  // Bytes that are no UTF-8 are shown as question marks.
  void DrawText(const vc::Rectangle& area, const std::string& text) override;
  vc::Size TextSize(const std::string& text) const override;
  vc::Colour Translated(vc::Colour colour) const override;

 private:
  void SetColour(vc::Colour colour);
  void SetTextHeight() const;
  void Stroke(double fromX, double fromY, double toX, double toY, vc::LineStyle style, vc::Colour colour);

  cairo_t* context;
};

}  // namespace host
