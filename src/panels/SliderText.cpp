#include "panels/SliderText.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vc {

std::function<SliderRange()> Fixed(double lower, double upper) {
  return [lower, upper] { return SliderRange{lower, upper}; };
}

SliderEntry::SliderEntry(Place place, const std::string& caption, const std::string& name,
                         DisplayLaw displayLaw, Slider& shownSlider, int index)
    : text(place, name, caption, index), law(std::move(displayLaw)), slider(shownSlider) {
  text.unit = law.unit;
  text.shows = &shownSlider;
  if (!slider.show) {
    slider.show = law.show;
    slider.parse = law.parse;
  }
  text.WhenTaken([this] { Take(); });
}

void SliderEntry::Show(const std::string& words) {
  written = words;
  text.SetText(written);
}

void SliderEntry::Redisplay() { Show(law.show(slider.Position())); }

SliderRange SliderEntry::Bounds() const {
  const SliderRange whole{slider.PositionMin(), slider.PositionMax()};
  return typedRange ? typedRange() : whole;
}

void SliderEntry::Take() {
  if (text.Text() != written) {
    try {
      const SliderRange bounds = Bounds();
      slider.SetPosition(std::max(bounds.lower, std::min(law.parse(text.Text()), bounds.upper)));
      slider.Release();
    } catch (const Fault&) {
      // what was typed vanishes with the redisplay
    }
  }
  Redisplay();
}

SliderField::SliderField(Panel& owner, Slider& moved, const DisplayLaw& law,
                         std::function<SliderRange()> sliderRange, Parameter edited)
    : slider(moved),
      panel(owner),
      range(std::move(sliderRange)),
      parameter(std::move(edited)),
      stored(law.stored),
      positionOf(law.position) {
  slider.snaps = law.snaps;
  for (double* size : {&slider.KeyArrowStepSize, &slider.KeyPageStepSize, &slider.MouseWheelStepSize}) {
    *size *= law.step;
  }
  slider.defaultPosition = [this] { return positionOf(parameter.factory()); };
  slider.changed = [this] { Moved(); };
  slider.released = [this] { panel.context.edits.history.CloseStep(); };
  panel.parameters.emplace_back([this] { Fill(); });
}

void SliderField::Redisplay() const {
  for (const auto& text : texts) text();
}

void SliderField::Moved() {
  if (filling) return;
  const double wished = Wished();
  if (!slider.snaps || wished != parameter.value()) Store(wished);
  if (slider.snaps || parameter.value() != wished) TakePosition();
  Redisplay();
}

void SliderField::Store(double wished) {
  const double value = within ? within(wished) : wished;
  panel.context.edits.history.KeepOpen(slider.Held());
  parameter.store(value, slider.core, slider.core.Caption());
  if (value != wished && !panel.Filling()) panel.context.desk.Beep();
}

double SliderField::Wished() const { return parameter.kept(stored(slider.Position())); }

bool SliderField::ShowsValue() const {
  const double value = parameter.value();
  return slider.whole ? slider.Position() == std::nearbyint(positionOf(value)) : Wished() == value;
}

void SliderField::TakePosition() {
  filling = true;
  const auto [lower, upper] = range();
  slider.SetRange(lower, upper);
  slider.SetPosition(positionOf(parameter.value()));
  filling = false;
}

void SliderField::Fill() {
  if (panel.IsSource(slider.core)) return;  // the hand has it between two values that are stored
  TakePosition();
  if (!storedWhenMoved && !ShowsValue()) Moved();
  Redisplay();
}

SliderText::SliderText(Panel& panel, Place place, const std::string& caption, const std::string& sliderName,
                       const std::string& textName, const DisplayLaw& law,
                       const std::function<SliderRange()>& range, const Parameter& parameter, int index)
    : slider(place, sliderName, caption, index),
      field(panel, slider, law, range, parameter),
      entry(place, caption, textName, law, slider, index) {
  field.texts.emplace_back([this] { entry.Redisplay(); });
}

UpDownText::UpDownText(Panel& panel, Place place, const std::string& caption, const std::string& upDownName,
                       const std::string& textName, const DisplayLaw& law,
                       const std::function<SliderRange()>& range, const Parameter& parameter, int index)
    : upDown(place, upDownName, caption, index),
      field(panel, upDown.slider, law, range, parameter),
      entry(place, caption, textName, law, upDown.slider, index) {
  field.texts.emplace_back([this] { entry.Redisplay(); });
}

OptionField::OptionField(Panel& owner, Place place, const std::string& frameName, const std::string& caption,
                         const std::string& name, const std::vector<std::string>& captions, Parameter edited)
    : frame(place, frameName, caption), options(frame, name, 0, captions), parameter(std::move(edited)) {
  options.changed = [this] {
    parameter.store(options.Selected(), options.buttons.front()->core, frame.core.Caption());
  };
  owner.parameters.emplace_back([this] { Fill(); });
}

void OptionField::Fill() {
  const auto listed = static_cast<int>(options.buttons.size());
  const double choice = parameter.value();
  const bool known = choice >= 0 && choice < listed;
  {
    const Mute inert(frame.core.form);
    options.Select(known || nearest ? static_cast<int>(std::clamp(choice, 0.0, listed - 1.0)) : 0);
  }
  if (!known) options.changed();
}

}  // namespace vc
