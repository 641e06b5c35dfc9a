#include "widgets/ProgressBar.h"

#include <algorithm>

namespace vc {

ProgressBar::ProgressBar(Place place, const std::string& name, const std::string& caption, int index)
    : core(place, name, index, caption) {
  place.form->controls.emplace_back(this);
}

void ProgressBar::SetSteps(std::int32_t fullScale) {
  const std::int32_t oldSteps = steps;
  core.Store(steps, std::max(fullScale, 0), "Steps");
  SetValue(Rescaled(value, oldSteps, steps));
}

void ProgressBar::SetValue(std::int32_t newValue) {
  core.Store(value, std::max(0, std::min(newValue, steps)), "Value");
}

std::int32_t ProgressBar::Step(std::int32_t count) {
  SetValue(Stepped(value, count, steps));
  return value;
}

std::string ProgressBar::Reading() const { return std::to_string(value) + " of " + std::to_string(steps); }

void ProgressBar::Draw(Surface& surface, const Rectangle& area) const {
  if (core.Enabled()) {
    const auto& bands =
        gradient.Bands({{0, surface.Translated(fromColor)}, {BarUnits, surface.Translated(toColor)}});
    DrawFilling(surface, area, {orientation, UnitsOf(value, steps, BarUnits), backColor}, bands);
  }
  DrawBorder(surface, area, borderStyle, borderColor);
}

}  // namespace vc
