#include "panels/SliderText.h"

#include <algorithm>
#include <utility>

#include "model/Settings.h"

namespace vc {

SliderEntry::SliderEntry(Place place, const std::string& caption, const std::string& name,
                         DisplayLaw displayLaw, Slider& shownSlider, int index)
    : text(place, name, caption, index), law(std::move(displayLaw)), slider(shownSlider) {
  text.unit = law.unit;
  text.shows = &shownSlider;
  if (!slider.show) {
    slider.show = law.show;
    slider.parse = law.parse;
  }
  text.lostFocus = [this] { Take(); };
  text.keyPress = [this](int code) {
    if (code == EnterKey) Take();
  };
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

SliderField::SliderField(Panel& owner, Place place, const std::string& caption, const std::string& name,
                         const DisplayLaw& law, std::function<SliderRange()> sliderRange,
                         Element recordElement)
    : slider(place, name, caption),
      panel(owner),
      range(std::move(sliderRange)),
      element(std::move(recordElement)),
      stored(law.stored),
      positionOf(law.position) {
  slider.KeyArrowStepSize = slider.KeyPageStepSize = slider.MouseWheelStepSize = law.step;
  slider.defaultPosition = [this] { return DefaultPosition(); };
  store = [this](double position) { Stored() = stored(position); };
  slider.changed = [this] { Moved(); };
  slider.released = [this] { panel.context.edits.history.CloseStep(); };
  panel.parameters.emplace_back([this] { Fill(); });
}

void SliderField::Moved() {
  if (filling) return;
  panel.context.edits.history.KeepOpen(slider.Held());
  panel.Edit(slider.core, slider.core.Caption(), [this] { store(slider.Position()); });
  redisplay();
}

double SliderField::DefaultPosition() const {
  const auto factory = std::make_unique<SystemSettings>();
  InitSettings(*factory);
  return positionOf(element(*factory));
}

void SliderField::Fill() {
  filling = true;
  const auto [lower, upper] = range();
  slider.SetRange(lower, upper);
  slider.SetPosition(positionOf(Stored()));
  filling = false;
  if (stored(slider.Position()) != Stored()) Moved();
  redisplay();
}

SliderText::SliderText(Panel& panel, Place place, const std::string& caption, const std::string& sliderName,
                       const std::string& textName, const DisplayLaw& law,
                       const std::function<SliderRange()>& range, const Element& element)
    : field(panel, place, caption, sliderName, law, range, element),
      entry(place, caption, textName, law, field.slider) {
  field.redisplay = [this] { entry.Redisplay(); };
}

OptionField::OptionField(Panel& owner, Place place, const std::string& frameName, const std::string& caption,
                         const std::string& name, const std::vector<std::string>& captions,
                         Element recordElement)
    : frame(place, frameName, caption),
      options(frame, name, 0, captions),
      panel(owner),
      element(std::move(recordElement)) {
  options.changed = [this] {
    panel.Edit(options.buttons.front()->core, frame.core.Caption(),
               [this] { Stored() = static_cast<std::int16_t>(options.Selected()); });
  };
  panel.parameters.emplace_back([this] { Fill(); });
}

void OptionField::Fill() {
  const auto listed = static_cast<std::int16_t>(options.buttons.size());
  const std::int16_t choice = Stored();
  const bool known = choice >= 0 && choice < listed;
  {
    const Mute inert(panel.form);
    options.Select(known ? choice : 0);
  }
  if (!known) options.changed();
}

}  // namespace vc
