#include "widgets/ControlText.h"

#include <algorithm>
#include <optional>

#include "text/Convert.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"
#include "widgets/LevelBar.h"
#include "widgets/Listing.h"
#include "widgets/Plot.h"
#include "widgets/ProgressBar.h"
#include "widgets/Waterfall.h"

namespace vc {
namespace {

const char* Kind(const Frame& control) {
  if (control.arrangement == Arrangement::Table) return "table";
  return control.arrangement == Arrangement::Bank ? "bank" : "frame";
}
const char* Kind(const Label& /*control*/) { return "label"; }
const char* Kind(const TextBox& /*control*/) { return "text"; }
const char* Kind(const Button& /*control*/) { return "button"; }
const char* Kind(const GraphicButton& control) {
  if (control.style == GraphicButton::Style::Lamp) return "lamp";
  return control.style == GraphicButton::Style::Latching ? "latch" : "button";
}
const char* Kind(const Slider& /*control*/) { return "slider"; }
const char* Kind(const UpDown& /*control*/) { return "updown"; }
const char* Kind(const ListBox& /*control*/) { return "list"; }
const char* Kind(const Listing& /*control*/) { return "listing"; }
const char* Kind(const OptionButton& /*control*/) { return "option"; }
const char* Kind(const CheckBox& /*control*/) { return "check"; }
const char* Kind(const LevelBar& /*control*/) { return "level"; }
const char* Kind(const ProgressBar& /*control*/) { return "progress"; }
const char* Kind(const Plot& /*control*/) { return "plot"; }
const char* Kind(const Waterfall& /*control*/) { return "waterfall"; }
const char* Kind(const Picture& /*control*/) { return "picture"; }
const char* Kind(const MenuEntry& control) { return control.children.empty() ? "entry" : "menu"; }

std::string OnOff(bool on) { return on ? "1" : "0"; }

std::string Value(const Frame& control) { return control.core.Caption(); }
std::string Value(const Label& control) { return control.core.Caption(); }
std::string Value(const TextBox& control) { return control.Text(); }
std::string Value(const Button& /*control*/) { return {}; }
std::string Value(const GraphicButton& control) {
  return control.style == GraphicButton::Style::Push ? std::string{} : std::to_string(control.Value());
}
std::string Value(const Slider& control) { return ShortestText(control.Position()); }
std::string Value(const UpDown& control) { return std::to_string(control.Value()); }
std::string Value(const ListBox& control) { return control.Text(); }
std::string Value(const Listing& control) { return std::to_string(control.Rows()) + " rows"; }
std::string Value(const OptionButton& control) { return OnOff(control.Value()); }
std::string Value(const CheckBox& control) { return OnOff(control.Value()); }
std::string Value(const LevelBar& control) {
  std::string text = std::to_string(control.Value());
  for (const std::string& more : {control.Reading(), control.MarkerText()}) {
    if (!more.empty()) text += " " + more;
  }
  return text;
}
std::string Value(const ProgressBar& control) { return control.Reading(); }
std::string Value(const Plot& control) { return control.Reading(); }
std::string Value(const Waterfall& control) { return control.Reading(); }
std::string Value(const Picture& control) { return std::to_string(control.Image()); }
std::string Value(const MenuEntry& control) {
  return control.checkable ? OnOff(control.Checked()) : std::string{};
}

template <typename Control>
std::string Range(const Control& /*control*/) {
  return {};
}
std::string Joined(const std::string& row, const std::string& more) {
  return row.empty() ? more : row + " | " + more;
}
std::string Range(const Frame& control) {
  std::string row;
  for (const std::string& heading : control.headings) row = Joined(row, heading);
  for (const BankTick& tick : control.scale) row = Joined(row, tick.text);
  return row;
}
std::string Range(const GraphicButton& control) {
  return control.style == GraphicButton::Style::Latching ? "0..1" : "";
}
std::string Range(const Slider& control) {
  return ShortestText(control.PositionMin()) + ".." + ShortestText(control.PositionMax());
}
std::string Range(const UpDown& control) { return Range(control.slider); }
std::string Range(const ListBox& control) {
  std::string rows;
  for (const std::string& item : control.Items()) rows = Joined(rows, item);
  return rows;
}
std::string Range(const Listing& control) {
  std::string row;
  for (const ListingColumn& column : control.columns) row = Joined(row, column.heading);
  return row;
}
std::string Range(const OptionButton& /*control*/) { return "0..1"; }
std::string Range(const CheckBox& /*control*/) { return "0..1"; }
std::string Range(const LevelBar& control) { return "0.." + std::to_string(control.Steps()); }
std::string Range(const ProgressBar& control) { return "0.." + std::to_string(control.Steps()); }
std::string Range(const Waterfall& control) {
  return ShortestText(control.Bottom()) + ".." + ShortestText(control.Top());
}
std::string Range(const Picture& control) { return "1.." + std::to_string(control.imageCount); }

std::string Outside(const std::string& value, const std::string& range) {
  return value + " is outside " + range;
}

std::optional<bool> ParseSwitch(const std::string& value) {
  if (value == "0" || value == "1") return value == "1";
  return std::nullopt;
}

template <typename Control>
std::string Set(Control& control, const std::string& /*value*/) {
  return std::string("a ") + Kind(control) + " cannot be set";
}
std::string Set(Slider& control, const std::string& value) {
  const auto number = ParseNumber(value);
  if (!number) return value + " is no number";
  if (*number < control.PositionMin() || *number > control.PositionMax())
    return Outside(value, Range(control));
  control.SetPosition(*number);
  control.Release();
  return {};
}
std::string Set(UpDown& control, const std::string& value) {
  return ParseInteger(value) ? Set(control.slider, value) : value + " is no whole number";
}
std::string Set(ListBox& control, const std::string& value) {
  const auto& items = control.Items();
  const auto row = std::ranges::find(items, value);
  if (row != items.end()) return control.SetListIndex(static_cast<int>(row - items.begin())), std::string{};
  const auto number = ParseInteger(value);
  if (!number || *number < 0 || *number >= static_cast<std::int64_t>(items.size())) {
    return Outside(value, Range(control));
  }
  control.SetListIndex(static_cast<int>(*number));
  return {};
}
std::string Set(OptionButton& control, const std::string& value) {
  if (value != "1") return "an option is chosen with 1";
  control.group.Select(control.choice);
  return {};
}
std::string Set(CheckBox& control, const std::string& value) {
  const auto on = ParseSwitch(value);
  if (!on) return Outside(value, Range(control));
  control.SetValue(*on);
  return {};
}
std::string Set(GraphicButton& control, const std::string& value) {
  const auto on = ParseSwitch(value);
  if (!on || control.style != GraphicButton::Style::Latching) return Outside(value, Range(control));
  if ((control.Value() == 1) != *on) control.Click();
  return {};
}

template <typename Control>
std::string Press(Control& control) {
  return std::string("a ") + Kind(control) + " cannot be clicked";
}
std::string Press(Button& control) { return control.Click(), std::string{}; }
std::string Press(GraphicButton& control) { return control.Click(), std::string{}; }
std::string Press(OptionButton& control) { return Set(control, "1"); }
std::string Press(ListBox& control) {
  if (!control.tall) return "a list cannot be clicked";
  if (control.ListIndex() < 0) return "no row is chosen";
  return control.Activate(), std::string{};
}
std::string Press(CheckBox& control) { return control.SetValue(!control.Value()), std::string{}; }
std::string Press(Picture& control) {
  if (!control.clicked) return "a picture cannot be clicked";
  return control.Click(), std::string{};
}
std::string Press(MenuEntry& control) {
  if (!control.children.empty()) return "it is a menu, not an entry";
  return control.Click(), std::string{};
}

std::string Refusal(const AnyControl& control) {
  const ControlCore& core = CoreOf(control);
  if (core.Usable()) return {};
  return core.Shown() ? "it is disabled" : "it is hidden";
}

}  // namespace

std::string KindOf(const AnyControl& control) {
  return std::visit([](auto* one) { return std::string(Kind(*one)); }, control);
}

std::string ValueOf(const AnyControl& control) {
  return std::visit([](auto* one) { return Value(*one); }, control);
}

std::string NumbersOf(const AnyControl& control) {
  if (Listing* const* listing = std::get_if<Listing*>(&control)) return (*listing)->Text();
  Plot* const* plot = std::get_if<Plot*>(&control);
  return plot != nullptr && (*plot)->screen ? PlotNumbers(**plot) : std::string{};
}

std::string RangeOf(const AnyControl& control) {
  return std::visit([](auto* one) { return Range(*one); }, control);
}

std::string SetControl(const AnyControl& control, const std::string& value) {
  if (auto refusal = Refusal(control); !refusal.empty()) return refusal;
  return std::visit([&value](auto* one) { return Set(*one, value); }, control);
}

std::string TypeInto(const AnyControl& control, const std::string& text, bool enter) {
  if (auto refusal = Refusal(control); !refusal.empty()) return refusal;
  TextBox* const* box = std::get_if<TextBox*>(&control);
  if (box == nullptr) return "it takes no text";
  if ((*box)->readOnly) return "it is read-only";
  (*box)->GotFocus();
  (*box)->Type(text);
  if (enter) (*box)->KeyPress(EnterKey);
  (*box)->LostFocus();
  return {};
}

std::string ClickControl(const AnyControl& control) {
  if (auto refusal = Refusal(control); !refusal.empty()) return refusal;
  return std::visit([](auto* one) { return Press(*one); }, control);
}

std::string PressKey(const AnyControl& control, const std::string& combination) {
  if (auto refusal = Refusal(control); !refusal.empty()) return refusal;
  if (Slider* slider = SliderIn(control); slider != nullptr) {
    return slider->Press(combination) ? std::string{} : "it knows no such key";
  }
  Plot* const* plot = std::get_if<Plot*>(&control);
  if (plot == nullptr || !(*plot)->keyPressed) return "it takes no keys";
  return (*plot)->keyPressed(combination) ? std::string{} : "it knows no such key now";
}

std::string PointAt(const AnyControl& control, const std::string& place) {
  if (auto refusal = Refusal(control); !refusal.empty()) return refusal;
  Plot* const* plot = std::get_if<Plot*>(&control);
  if (plot == nullptr || !(*plot)->pointer) return "there is nothing to point at";
  const auto blank = place.find(' ');
  const auto x = ParseNumber(place.substr(0, blank));
  const auto y = blank == std::string::npos ? std::nullopt : ParseNumber(place.substr(blank + 1));
  if (!x || !y) return "say a place of its axes, x and y";
  for (const PointerAction action : {PointerAction::Move, PointerAction::Press, PointerAction::Release}) {
    (*plot)->pointer({action, *x, *y});
  }
  return {};
}

std::string SetToDefault(const AnyControl& control) {
  if (auto refusal = Refusal(control); !refusal.empty()) return refusal;
  Slider* slider = SliderIn(control);
  if (slider == nullptr || !slider->defaultPosition) return "it has no default";
  return slider->SetDefault(), std::string{};
}

}  // namespace vc
