#include "desktop/PainterSurface.h"

#include <algorithm>
#include <array>

namespace desktop {
namespace {

constexpr vc::Colour SystemBit = 0x80000000U;

struct SystemColour {
  vc::Colour number;
  QPalette::ColorRole role;
};
constexpr std::array<SystemColour, 15> SystemColours{{{0, QPalette::Mid},
                                                      {4, QPalette::Window},
                                                      {5, QPalette::Base},
                                                      {6, QPalette::Dark},
                                                      {7, QPalette::WindowText},
                                                      {8, QPalette::Text},
                                                      {13, QPalette::Highlight},
                                                      {14, QPalette::HighlightedText},
                                                      {15, QPalette::Window},
                                                      {16, QPalette::Dark},
                                                      {17, QPalette::PlaceholderText},
                                                      {18, QPalette::ButtonText},
                                                      {20, QPalette::Light},
                                                      {21, QPalette::Shadow},
                                                      {22, QPalette::Midlight}}};

QRect ToQt(const vc::Rectangle& area) { return {area.left, area.top, area.width, area.height}; }

}  // namespace

QColor ColourOf(vc::Colour colour, const QPalette& palette) {
  if ((colour & SystemBit) == 0) return {vc::RedOf(colour), vc::GreenOf(colour), vc::BlueOf(colour)};
  const auto* row = std::ranges::find(SystemColours, colour & ~SystemBit, &SystemColour::number);
  return palette.color(row == SystemColours.end() ? QPalette::Window : row->role);
}

void PainterSurface::FillRectangle(const vc::Rectangle& area, vc::Colour colour) {
  const QRect part = ToQt(area) & visible;
  if (!part.isEmpty()) painter.fillRect(part, ColourOf(colour, palette));
}

void PainterSurface::FillEllipse(const vc::Rectangle& area, vc::Colour colour) {
  if (!visible.intersects(ToQt(area))) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ColourOf(colour, palette));
  painter.drawEllipse(ToQt(area));
  painter.restore();
}

void PainterSurface::FrameRectangle(const vc::Rectangle& area, vc::Colour colour) {
  const QRect frame = ToQt(area);
  const QColor ink = ColourOf(colour, palette);
  painter.fillRect(frame.left(), frame.top(), frame.width(), 1, ink);
  painter.fillRect(frame.left(), frame.bottom(), frame.width(), 1, ink);
  painter.fillRect(frame.left(), frame.top(), 1, frame.height(), ink);
  painter.fillRect(frame.right(), frame.top(), 1, frame.height(), ink);
}

void PainterSurface::DrawEdge(const vc::Rectangle& area, vc::EdgeStyle style) {
  constexpr vc::EdgeStyle raisedOuter = 1, sunkenOuter = 2, raisedInner = 4, sunkenInner = 8;
  QRect ring = ToQt(area);
  if ((style & (raisedOuter | sunkenOuter)) != 0) {
    const bool raised = (style & raisedOuter) != 0;
    DrawRing(ring, raised ? QPalette::Midlight : QPalette::Mid, raised ? QPalette::Dark : QPalette::Light);
    ring.adjust(1, 1, -1, -1);
  }
  if ((style & (raisedInner | sunkenInner)) != 0) {
    const bool raised = (style & raisedInner) != 0;
    DrawRing(ring, raised ? QPalette::Light : QPalette::Dark, raised ? QPalette::Mid : QPalette::Midlight);
  }
}

void PainterSurface::DrawRing(const QRect& area, QPalette::ColorRole upperLeft,
                              QPalette::ColorRole lowerRight) {
  if (area.width() < 1 || area.height() < 1) return;
  const QColor lit = palette.color(upperLeft);
  const QColor shaded = palette.color(lowerRight);
  painter.fillRect(area.left(), area.bottom(), area.width(), 1, shaded);
  painter.fillRect(area.right(), area.top(), 1, area.height(), shaded);
  painter.fillRect(area.left(), area.top(), area.width(), 1, lit);
  painter.fillRect(area.left(), area.top(), 1, area.height(), lit);
}

}  // namespace desktop
