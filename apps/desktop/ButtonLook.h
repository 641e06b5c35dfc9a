// The looks of the image buttons that are no push buttons: a switch that slides, and a lamp.
#pragma once

#include <QPainter>
#include <QPalette>

#include "widgets/GraphicButton.h"

namespace desktop {

// In which colour something stands out as being on.
QColor StateColour(vc::GraphicButton::Tint tint, const QPalette& palette);
// Of the line around what is off.
QColor OffColour(const QPalette& palette);

struct ButtonState {
  bool lit = false, held = false;
  bool quiet = false;  // it cannot be used, or what it belongs to is out
  vc::GraphicButton::Tint tint = vc::GraphicButton::Tint::Accent;
};

// A switch is so wide for its height.
int SwitchWidth(int height);
// Which way the knob lies tells the state as well as the colour does.
void DrawSwitch(QPainter& painter, const QRect& area, const ButtonState& state, const QPalette& palette);
void DrawLamp(QPainter& painter, const QRect& area, const ButtonState& state, const QPalette& palette,
              const QString& text);

}  // namespace desktop
