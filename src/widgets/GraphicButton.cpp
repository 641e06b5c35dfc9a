#include "widgets/GraphicButton.h"

namespace vc {

GraphicButton::GraphicButton(Place place, const std::string& name, const std::string& caption,
                             Style buttonStyle, int index)
    : core(place, name, index, caption), style(buttonStyle) {
  place.form->controls.emplace_back(this);
}

void GraphicButton::SetValue(int latched) { core.Store(value, latched == 1 ? 1 : 0, "Value"); }

void GraphicButton::Click() {
  if (!core.Usable()) return;
  SetValue(style == Style::Latching && value == 0 ? 1 : 0);
  core.Raise(clicked);
}

}  // namespace vc
