// An image button: a push button, or one that latches.
#pragma once

#include <functional>
#include <string>

#include "widgets/Form.h"

namespace vc {

struct GraphicButton {
  enum class Style { Push, Latching };
  GraphicButton(Place place, const std::string& name, const std::string& caption, Style buttonStyle,
                int index = NoIndex);
  ControlCore core;
  const Style style;
  std::function<void()> clicked;

  int Value() const { return value; }  // 0 up, 1 latched down
  void SetValue(int latched);
  // A press and release: a latching button toggles, a push button comes up again. Then the click is told.
  void Click();

 private:
  int value = 0;
};

}  // namespace vc
