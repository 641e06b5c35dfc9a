#include "widgets/GraphicButton.h"

namespace vc {

GraphicButton::GraphicButton(Place place, const std::string& name, const std::string& caption,
                             Style buttonStyle, int index)
    : core(place, name, index, caption), style(buttonStyle) {
  place.form->controls.emplace_back(this);
}

void GraphicButton::SetValue(int latched) {
  core.Store(value, latched == 1 ? 1 : 0, "Value");
  Refresh();
}

GraphicButton::PictureState GraphicButton::PictureNow() const {
  if (!core.Enabled()) return PictureState::Disabled;
  return value == 1 ? PictureState::Down : PictureState::Up;
}

GraphicButton::PictureState GraphicButton::Picture() const {
  return PictureNow() == replaced ? asked : PictureNow();
}

void GraphicButton::Refresh(int state) {
  constexpr int first = static_cast<int>(PictureState::Up), last = static_cast<int>(PictureState::Disabled);
  if (state != 0 && (state < first || state > last)) {
    if (core.form.complain) core.form.complain("Invalid picture state in GraphicButton:Refresh()");
    return;
  }
  const PictureState before = Picture();
  replaced = PictureNow();
  asked = state == 0 ? replaced : static_cast<PictureState>(state);
  if (asked != before) core.Changed("Picture");
}

void GraphicButton::Raise(const std::function<void(const MouseEvent&)>& handler,
                          const MouseEvent& event) const {
  if (!handler) return;
  core.Raise([&handler, &event] { handler(event); });
}

void GraphicButton::MouseDown(const MouseEvent& event) {
  if (!core.Usable()) return;
  Refresh(static_cast<int>(PictureState::Down));
  Raise(mouseDown, event);
}

void GraphicButton::MouseMove(const MouseEvent& event) {
  if (core.Usable()) Raise(mouseMove, event);
}

void GraphicButton::MouseUp(const MouseEvent& event) {
  if (!core.Usable()) return;
  SetValue(style == Style::Latching && value == 0 ? 1 : 0);
  Raise(mouseUp, event);
  core.Raise(clicked);
}

}  // namespace vc
