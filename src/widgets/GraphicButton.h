// An image button: a push button, one that latches, or a lamp that a click puts out.
#pragma once

#include <functional>
#include <string>

#include "platform/Surface.h"
#include "widgets/Form.h"

namespace vc {

inline constexpr int NoMouseButton = 0;
inline constexpr int LeftMouseButton = 1;
inline constexpr int RightMouseButton = 2;

// One event of the mouse on a button: which mouse button, and where, in pixels from the upper left.
struct MouseEvent {
  int button = LeftMouseButton;
  int x = 0, y = 0;
  bool operator==(const MouseEvent&) const = default;
};

struct GraphicButton {
  enum class Style { Push, Latching, Lamp };
  // What the button looks like; the numbers are those of Refresh.
  enum class PictureState { Up = 1, Down = 2, Disabled = 3 };
  // In which colour a latched button stands out.
  enum class Tint { Accent, Green, Red };
  enum class Pointer { Usual, Arrow, Cross, Hand, Wait, Forbidden };

  GraphicButton(Place place, const std::string& name, const std::string& caption, Style buttonStyle,
                int index = NoIndex);
  ControlCore core;
  const Style style;
  bool inTitle = false;  // stands beside the title of its frame
  std::function<void(const MouseEvent&)> mouseDown, mouseMove, mouseUp;
  std::function<void()> clicked;

  int Value() const { return value; }  // 0 up, 1 latched down, of a lamp lit
  void SetValue(int latched);
  // A press and release: a latching button toggles, any other comes up again. Then the click is told.
  void Click() { MouseUp({}); }

  // What the mouse does on the button. While it cannot be used, nothing.
  void MouseDown(const MouseEvent& event);
  void MouseMove(const MouseEvent& event);
  void MouseUp(const MouseEvent& event);

  // Disabled if it is, else down if latched, else up; or what Refresh asked for since the last change of
  // that.
  PictureState Picture() const;
  // 1 up, 2 down, 3 disabled, 0 the state that should stand. Any other number is complained of and changes
  // nothing.
  void Refresh(int state = 0);

  Pointer MousePointer() const { return mousePointer; }
  void SetMousePointer(Pointer shape) { core.Store(mousePointer, shape, "MousePointer"); }
  // The focus rectangle; the text's own colour where none is set.
  Colour FocusRectColor() const { return focusRectColor; }
  void SetFocusRectColor(Colour colour) { core.Store(focusRectColor, colour, "FocusRectColor"); }
  bool ShowFocusRect() const { return showFocusRect; }
  void SetShowFocusRect(bool shown) { core.Store(showFocusRect, shown, "ShowFocusRect"); }
  Tint LatchedTint() const { return tint; }
  void SetLatchedTint(Tint colour) { core.Store(tint, colour, "LatchedTint"); }

 private:
  PictureState PictureNow() const;
  void Raise(const std::function<void(const MouseEvent&)>& handler, const MouseEvent& event) const;

  int value = 0;
  // The picture that was asked for, and the standing one that it replaces.
  PictureState asked = PictureState::Up, replaced = PictureState::Up;
  Pointer mousePointer = Pointer::Usual;
  Colour focusRectColor = ButtonText;
  bool showFocusRect = true;
  Tint tint = Tint::Accent;
};

}  // namespace vc
