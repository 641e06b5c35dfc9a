#include "desktop/ButtonLook.h"

#include "desktop/Theme.h"

namespace desktop {
namespace {

using Tint = vc::GraphicButton::Tint;

// Readable on both grounds of their theme, and under the text of a lamp.
constexpr QRgb GreenLight = 0x2B7A4B, GreenDark = 0x5DBD82, RedLight = 0xB3362E, RedDark = 0xEE8478;

constexpr double HalfPixel = 0.5;  // of a pixel: lines lie on pixels

}  // namespace

QColor StateColour(Tint tint, const QPalette& palette) {
  if (tint == Tint::Accent) return palette.color(QPalette::Link);
  const bool dark = IsDark(palette);
  if (tint == Tint::Green) return {dark ? GreenDark : GreenLight};
  return {dark ? RedDark : RedLight};
}

QColor OffColour(const QPalette& palette) {
  return palette.color(QPalette::Active, QPalette::PlaceholderText);
}

int SwitchWidth(int height) { return 2 * height - height / 4; }

void DrawSwitch(QPainter& painter, const QRect& area, const ButtonState& state, const QPalette& palette) {
  const QColor line = OffColour(palette);
  const QColor on = state.quiet ? line : StateColour(state.tint, palette);
  const QColor ground = palette.color(QPalette::Active, QPalette::Base);
  const QRectF pill = QRectF(area).adjusted(HalfPixel, HalfPixel, -HalfPixel, -HalfPixel);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(state.lit ? on : line, 1));
  painter.setBrush(state.lit ? on : state.held ? palette.color(QPalette::Midlight) : ground);
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  const double rim = pill.height() * 0.2, knob = pill.height() - 2 * rim;
  const double left = state.lit ? pill.right() - rim - knob : pill.left() + rim;
  painter.setPen(Qt::NoPen);
  painter.setBrush(state.lit ? ground : state.held ? palette.color(QPalette::WindowText) : line);
  painter.drawEllipse(QRectF(left, pill.top() + rim, knob, knob));
  painter.restore();
}

void DrawLamp(QPainter& painter, const QRect& area, const ButtonState& state, const QPalette& palette,
              const QString& text) {
  constexpr double corner = 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(state.lit ? StateColour(state.tint, palette) : palette.color(QPalette::Mid), 1));
  painter.setBrush(state.lit ? StateColour(state.tint, palette) : palette.color(QPalette::Window));
  painter.drawRoundedRect(QRectF(area).adjusted(HalfPixel, HalfPixel, -HalfPixel, -HalfPixel), corner,
                          corner);
  painter.setPen(state.lit ? palette.color(QPalette::Active, QPalette::Base) : OffColour(palette));
  painter.drawText(area, Qt::AlignCenter, text);
  painter.restore();
}

}  // namespace desktop
