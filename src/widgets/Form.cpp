#include "widgets/Form.h"

#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"
#include "widgets/LevelBar.h"
#include "widgets/Listing.h"
#include "widgets/Plot.h"
#include "widgets/ProgressBar.h"
#include "widgets/Waterfall.h"

namespace vc {

Place::Place(Frame& owner) : form(&owner.core.form), frame(&owner) {}

Place::Place(MenuEntry& owner) : form(&owner.core.form), menu(&owner) {}

ControlCore::ControlCore(Place place, std::string controlName, int controlIndex, std::string controlCaption)
    : form(*place.form),
      frame(place.frame),
      name(std::move(controlName)),
      index(controlIndex),
      caption(std::move(controlCaption)) {}

std::string ControlCore::FullName() const {
  return index == NoIndex ? name : name + "(" + std::to_string(index) + ")";
}

std::string ControlCore::AccessibleName() const {
  std::string text = WithoutAccessKey(caption);
  if (!spokenBehind.empty()) text += ", " + spokenBehind;
  const Frame* around = frame;
  while (around != nullptr && around->core.caption.empty()) around = around->core.frame;
  if (around == nullptr) return text;
  if (!text.empty()) text.insert(0, ", ");
  return WithoutAccessKey(around->core.caption) + text;
}

bool ControlCore::Shown() const { return visible && (frame == nullptr || frame->core.Shown()); }
bool ControlCore::Active() const { return enabled && (frame == nullptr || frame->core.Active()); }
bool ControlCore::Usable() const { return Shown() && Active(); }

void ControlCore::SetCaption(const std::string& text) { Store(caption, text, "Caption"); }
void ControlCore::SetEnabled(bool on) { Store(enabled, on, "Enabled"); }
void ControlCore::SetVisible(bool on) { Store(visible, on, "Visible"); }

void ControlCore::Changed(std::string_view property) const {
  if (form.controlChanged) form.controlChanged(*this, property);
}

void ControlCore::Raise(const std::function<void()>& handler) const {
  if (handler && form.muted == 0) handler();
}

void Form::SetCaption(const std::string& text) {
  if (caption == text) return;
  caption = text;
  if (captionChanged) captionChanged();
}

std::string Form::Press(const std::string& combination) {
  if (combination == "Escape") return Escape(), std::string{};
  if (combination == HelpKey) {
    if (helpAsked) helpAsked();
    return {};
  }
  for (const AnyControl& control : controls) {
    auto* const* entry = std::get_if<MenuEntry*>(&control);
    if (entry == nullptr || (*entry)->shortcut != combination) continue;
    if (!(*entry)->core.Usable()) return "it is disabled";
    return (*entry)->Click(), std::string{};
  }
  const auto found = keys.find(combination);
  if (found == keys.end()) return name + " knows no such key";
  const auto pressed = found->second;  // a copy: it may take the form away
  TakeTyped();
  pressed();
  return {};
}

void Form::TakeTyped() {
  for (const AnyControl& control : controls) {
    auto* const* text = std::get_if<TextBox*>(&control);
    if (text != nullptr && (*text)->Typed()) (*text)->LostFocus();
  }
}

void Form::Focus(const ControlCore& control) const {
  if (focusWanted) focusWanted(control);
}

bool Form::MayClose() const {
  if (refusal.empty()) return true;
  if (closeRefused) closeRefused();
  return false;
}

void Form::Escape() {
  for (const AnyControl& control : controls) {
    auto* const* text = std::get_if<TextBox*>(&control);
    if (text != nullptr && (*text)->Typed()) return (*text)->PutBack();
  }
  const Button* end = cancelButton == nullptr ? okButton : cancelButton;
  if (end != nullptr && MayClose()) end->Click();
}

Frame::Frame(Place place, const std::string& name, const std::string& caption, Arrangement arranged,
             int index)
    : core(place, name, index, caption), arrangement(arranged) {
  place.form->controls.emplace_back(this);
}

ControlCore& CoreOf(const AnyControl& control) {
  return std::visit([](auto* one) -> ControlCore& { return one->core; }, control);
}

std::string AsCaption(std::string_view text) {
  std::string caption;
  for (const char character : text) {
    const bool control = static_cast<unsigned char>(character) < ' ';
    caption += character == '&' ? "&&" : control ? "?" : std::string(1, character);
  }
  return caption;
}

std::string WithoutAccessKey(std::string_view caption) {
  std::string text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    text += caption[i];
  }
  return text;
}

}  // namespace vc
