#include "desktop/PainterSurface.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QFontMetrics>
#include <QPaintEngine>
#include <QPolygonF>

#include "desktop/LineParts.h"
#include "desktop/QtText.h"

namespace desktop {
namespace {

constexpr vc::Colour SystemBit = 0x80000000U;
constexpr int DotDistance = 3;
constexpr double CurveWidth = 1.5;

struct SystemColour {
  vc::Colour number;
  QPalette::ColorRole role;
};
constexpr std::array<SystemColour, 16> SystemColours{{{0, QPalette::Mid},
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
                                                      {22, QPalette::Midlight},
                                                      {26, QPalette::Link}}};

// The ground with so much of another colour in it.
struct MixedColour {
  vc::Colour number;
  QPalette::ColorRole role;
  double part;
};
constexpr std::array<MixedColour, 4> MixedColours{{{0x40, QPalette::Link, 0.10},
                                                   {0x41, QPalette::PlaceholderText, 0.10},
                                                   {0x42, QPalette::Link, 0.45},
                                                   {0x43, QPalette::Link, 0.16}}};

QColor Mixed(const MixedColour& mixed, const QPalette& palette) {
  const QColor ground = palette.color(QPalette::Base), more = palette.color(mixed.role);
  const auto mix = [&](int from, int to) {
    return static_cast<int>(std::lround(from + (to - from) * mixed.part));
  };
  return {mix(ground.red(), more.red()), mix(ground.green(), more.green()), mix(ground.blue(), more.blue())};
}

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

QPolygonF ToQt(std::span<const vc::Point> points) {
  QPolygonF polygon;
  polygon.reserve(static_cast<qsizetype>(points.size()));
  for (const vc::Point& point : points) polygon.append({point.x, point.y});
  return polygon;
}

// What a part shows of an image that is stretched over an area, so large that whoever smooths it leaves its
// pixels to be seen.
QImage Magnified(const QImage& image, const QRect& area, const QRect& part) {
  constexpr int times = 2;
  QImage magnified(part.size() * times, QImage::Format_RGB32);
  QPainter painter(&magnified);
  painter.scale(times, times);
  painter.translate(-part.topLeft());
  painter.drawImage(area, image);
  painter.end();
  return magnified;
}

}  // namespace

QColor ColourOf(vc::Colour colour, const QPalette& palette) {
  if ((colour & SystemBit) == 0) return {vc::RedOf(colour), vc::GreenOf(colour), vc::BlueOf(colour)};
  const auto* mixed = std::ranges::find(MixedColours, colour & ~SystemBit, &MixedColour::number);
  if (mixed != MixedColours.end()) return Mixed(*mixed, palette);
  const auto* row = std::ranges::find(SystemColours, colour & ~SystemBit, &SystemColour::number);
  return palette.color(row == SystemColours.end() ? QPalette::Window : row->role);
}

Pixels PixelsOf(QImage& image) {
  return {reinterpret_cast<std::uint32_t*>(image.bits()), image.bytesPerLine() / 4, image.width(),
          image.height()};
}

void PainterSurface::FillRectangle(const vc::Rectangle& area, vc::Colour colour) {
  const QRect part = ToQt(area) & visible;
  if (!part.isEmpty()) painter.fillRect(part, ColourOf(colour, palette));
}

void PainterSurface::FillEllipse(const vc::Rectangle& area, vc::Colour colour) {
  if (!visible.intersects(ToQt(area))) return;
  FillSmoothly(colour, [&] { painter.drawEllipse(ToQt(area)); });
}

void PainterSurface::FillPolygon(std::span<const vc::Point> corners, vc::Colour colour) {
  FillSmoothly(colour, [&] { painter.drawPolygon(ToQt(corners), Qt::WindingFill); });
}

void PainterSurface::FillSmoothly(vc::Colour colour, const auto& draw) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ColourOf(colour, palette));
  draw();
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

bool PainterSurface::IsSvg() const { return painter.paintEngine()->type() == QPaintEngine::SVG; }

void PainterSurface::DrawLine(const QLineF& line, vc::LineStyle style, vc::Colour colour) {
  QPen pen(ColourOf(colour, palette), 1.0, Qt::SolidLine, Qt::FlatCap);
  if (style == vc::LineStyle::Dotted) pen.setDashPattern({1.0, DotDistance - 1.0});
  painter.setPen(pen);
  painter.drawLine(line);
}

void PainterSurface::DrawAcross(int left, int top, int length, vc::LineStyle style, vc::Colour colour) {
  if (IsSvg()) return DrawLine({left + 0.0, top + 0.5, left + length + 0.0, top + 0.5}, style, colour);
  const Fine fine(painter);
  ForEachDash(fine, left, length, style, [&](int at, int dash) {
    painter.fillRect(fine.Area(at, fine.Of(top), dash, fine.thickness), ColourOf(colour, palette));
  });
}

void PainterSurface::DrawDown(int left, int top, int length, vc::LineStyle style, vc::Colour colour) {
  if (IsSvg()) return DrawLine({left + 0.5, top + 0.0, left + 0.5, top + length + 0.0}, style, colour);
  const Fine fine(painter);
  ForEachDash(fine, top, length, style, [&](int at, int dash) {
    painter.fillRect(fine.Area(fine.Of(left), at, fine.thickness, dash), ColourOf(colour, palette));
  });
}

// A smooth pen wider than one pixel is fifty times as dear as the raster, which a page of lines has no use
// for.
void PainterSurface::DrawPolyline(std::span<const vc::Point> points, vc::Colour colour,
                                  const vc::Rectangle& clip) {
  if (raster != nullptr) {
    return raster->Stroke(strokeTarget, points, clip, ColourOf(colour, palette).rgb());
  }
  painter.save();
  painter.setClipRect(ToQt(clip), Qt::IntersectClip);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ColourOf(colour, palette), CurveWidth));
  for (const QPolygonF& part : PartsWithin(points, ToQt(clip))) painter.drawPolyline(part);
  painter.restore();
}

void PainterSurface::DrawPixels(std::span<const std::uint32_t> pixels, const vc::Size& size,
                                const vc::Rectangle& area, const vc::Rectangle& clip) {
  const QImage image(reinterpret_cast<const uchar*>(pixels.data()), size.width, size.height,
                     QImage::Format_RGB32);
  if (IsSvg()) {
    const QRect part = ToQt(area) & ToQt(clip);
    if (!part.isEmpty()) painter.drawImage(part, Magnified(image, ToQt(area), part));
    return;
  }
  painter.save();
  painter.setClipRect(ToQt(clip), Qt::IntersectClip);
  painter.drawImage(ToQt(area), image);
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
