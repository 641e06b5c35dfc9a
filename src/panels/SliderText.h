// The one place that knows how an edit travels between a slider, its text box and the record: rounding,
// clamping, bad text, Enter, the change mark.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "panels/DisplayLaw.h"
#include "panels/Panel.h"

namespace vc {

// The element that a control edits at this moment, in the record or in another one.
using Element = std::function<std::int16_t&(SystemSettings& record)>;

struct SliderRange {
  double lower, upper;
};

// A text box that shows a slider's position by a law and takes one by it. The first one of a slider gives the
// slider its numbers.
struct SliderEntry {
  SliderEntry(Place place, const std::string& caption, const std::string& name, DisplayLaw displayLaw,
              Slider& shownSlider, int index = NoIndex);
  SliderEntry(const SliderEntry&) = delete;
  SliderEntry& operator=(const SliderEntry&) = delete;

  TextBox text;
  const DisplayLaw law;
  // What typed positions are held to where that is less than the slider's range.
  std::function<SliderRange()> typedRange;

  // Shows words in place of the position until the box is left.
  void Show(const std::string& words);
  // Shows the slider's position.
  void Redisplay();

 private:
  // Bad text, and a text that nobody has changed, leave everything as it is.
  void Take();
  SliderRange Bounds() const;

  Slider& slider;
  std::string written;
};

// A slider over an element of the record, without a text of its own.
struct SliderField {
  SliderField(Panel& owner, Place place, const std::string& caption, const std::string& name,
              const DisplayLaw& law, std::function<SliderRange()> sliderRange, Element recordElement);
  SliderField(const SliderField&) = delete;
  SliderField& operator=(const SliderField&) = delete;

  Slider slider;
  std::function<void()> redisplay = [] {};  // every text that depends on the position
  // Stores a position in the record; it may set the slider to another one.
  std::function<void(double position)> store;

  // Takes range and position from the record. A value outside the range moves into it, in the record as well.
  void Fill();

 private:
  void Moved();
  std::int16_t& Stored() { return element(panel.settings); }
  double DefaultPosition() const;

  Panel& panel;
  std::function<SliderRange()> range;
  Element element;
  std::function<std::int16_t(double)> stored;
  std::function<double(std::int16_t)> positionOf;
  bool filling = false;
};

// The two of them side by side, as most parameters have them.
struct SliderText {
  SliderText(Panel& panel, Place place, const std::string& caption, const std::string& sliderName,
             const std::string& textName, const DisplayLaw& law, const std::function<SliderRange()>& range,
             const Element& element);

  SliderField field;
  SliderEntry entry;
};

// Option buttons over an element of the record, under their caption.
struct OptionField {
  OptionField(Panel& owner, Place place, const std::string& frameName, const std::string& caption,
              const std::string& name, const std::vector<std::string>& captions, Element recordElement);
  OptionField(const OptionField&) = delete;
  OptionField& operator=(const OptionField&) = delete;

  Frame frame;
  OptionGroup options;

 private:
  void Fill();
  std::int16_t& Stored() { return element(panel.settings); }

  Panel& panel;
  Element element;
};

}  // namespace vc
