#include "desktop/PainterSurface.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QFontMetrics>
#include <QPolygonF>

#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr vc::Colour SystemBit = 0x80000000U;
constexpr int DotDistance = 3;
constexpr double LeastCurveWidth = 1.5;  // pixels of the device

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

// Between the surface's pixels and those of the device.
struct Fine {
  explicit Fine(const QPainter& painter)
      : ratio(painter.device()->devicePixelRatioF()), thickness(std::max(1, static_cast<int>(ratio))) {}
  int Of(int pixel) const { return static_cast<int>(std::lround(pixel * ratio)); }
  QRectF Area(int left, int top, int width, int height) const {
    return {left / ratio, top / ratio, width / ratio, height / ratio};
  }
  double ratio;
  int thickness;
};

// In whole pixels of the device, so that no line is blurred or thicker than the next. Dots are as long as the
// line is thick, with two such lengths between them.
void ForEachDash(const Fine& fine, int begin, int length, vc::LineStyle style, const auto& draw) {
  const int from = fine.Of(begin), to = fine.Of(begin + length);
  const int dash = style == vc::LineStyle::Solid ? to - from : fine.thickness;
  for (int at = from; at < to && dash > 0; at += DotDistance * dash) draw(at, dash);
}

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
  const auto solid = vc::LineStyle::Solid;
  DrawAcross(area.left, area.top, area.width, solid, colour);
  DrawAcross(area.left, area.Bottom() - 1, area.width, solid, colour);
  DrawDown(area.left, area.top, area.height, solid, colour);
  DrawDown(area.Right() - 1, area.top, area.height, solid, colour);
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

void PainterSurface::DrawAcross(int left, int top, int length, vc::LineStyle style, vc::Colour colour) {
  const Fine fine(painter);
  ForEachDash(fine, left, length, style, [&](int at, int dash) {
    painter.fillRect(fine.Area(at, fine.Of(top), dash, fine.thickness), ColourOf(colour, palette));
  });
}

void PainterSurface::DrawDown(int left, int top, int length, vc::LineStyle style, vc::Colour colour) {
  const Fine fine(painter);
  ForEachDash(fine, top, length, style, [&](int at, int dash) {
    painter.fillRect(fine.Area(fine.Of(left), at, fine.thickness, dash), ColourOf(colour, palette));
  });
}

// A smooth pen wider than one pixel of the device is fifty times as dear, so the line is drawn side by side
// until it is wide enough to stand out.
void PainterSurface::DrawPolyline(std::span<const vc::Point> points, vc::Colour colour,
                                  const vc::Rectangle& clip) {
  QPolygonF line;
  line.reserve(static_cast<qsizetype>(points.size()));
  for (const vc::Point& point : points) line.append({point.x, point.y});
  QPen pen(ColourOf(colour, palette), 1);
  pen.setCosmetic(true);
  painter.save();
  painter.setClipRect(ToQt(clip), Qt::IntersectClip);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(pen);
  const double ratio = painter.device()->devicePixelRatioF();
  const double width = std::max(LeastCurveWidth, ratio);
  const int strokes = static_cast<int>(std::ceil(width));
  const auto place = [&](int stroke) { return (stroke / (strokes - 1.0) - 0.5) * (width - 1.0) / ratio; };
  for (int across = 0; across < strokes; ++across) {
    for (int down = 0; down < strokes; ++down) {
      painter.drawPolyline(line.translated(place(across), place(down)));
    }
  }
  painter.restore();
}

QFont PainterSurface::TextFont() const {
  QFont scaled = font;
  if (textScale != 1.0) scaled.setPointSizeF(textScale * PointSize(font));
  return scaled;
}

void PainterSurface::DrawText(const vc::Rectangle& area, const std::string& text) {
  painter.setFont(TextFont());
  painter.setPen(ColourOf(foreColour, palette));
  painter.drawText(ToQt(area), Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip | Qt::TextSingleLine,
                   desktop::ToQt(text));
}

vc::Size PainterSurface::TextSize(const std::string& text) const {
  const QFontMetrics metrics(TextFont(), painter.device());
  return {metrics.horizontalAdvance(desktop::ToQt(text)), metrics.height()};
}

vc::Colour PainterSurface::Translated(vc::Colour colour) const {
  const QColor known = ColourOf(colour, palette);
  return vc::MakeColour(known.red(), known.green(), known.blue());
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
