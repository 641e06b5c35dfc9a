// Every control in words: what kind it is, what it shows, and the operator's actions on it by text. One rule
// per kind of control; which control it is never matters.
#pragma once

#include <string>

#include "widgets/Form.h"

namespace vc {

// "slider", "list", ...
std::string KindOf(const AnyControl& control);
// What the control shows; empty where there is nothing to show.
std::string ValueOf(const AnyControl& control);
// All that an instrument's screen shows, as PlotNumbers has it, and all rows of a listing; empty of any other
// control.
std::string NumbersOf(const AnyControl& control);
// "96..255", the rows of a list with " | " between; empty where any value goes.
std::string RangeOf(const AnyControl& control);

// The operator's actions. Each returns what is wrong, or the empty text when it was done.
// Position of a slider or an up-down control, list row (0-based number or its text), option, check or latch
// (0 or 1).
std::string SetControl(const AnyControl& control, const std::string& value);
// Focus, type over the whole text, then Enter if asked, then leave.
std::string TypeInto(const AnyControl& control, const std::string& text, bool enter);
// Press and release.
std::string ClickControl(const AnyControl& control);
// "Left", "Shift+Left", "PgUp", "Home", on a slider, an up-down control, or a plot that knows keys.
std::string PressKey(const AnyControl& control, const std::string& combination);
// The left button at a place of a plot's axes, "1000 -6.5": the pointer comes, presses and releases.
std::string PointAt(const AnyControl& control, const std::string& place);
// As a double click on a slider does; also of an up-down control.
std::string SetToDefault(const AnyControl& control);

}  // namespace vc
