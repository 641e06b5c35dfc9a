// The one place that knows how an edit travels between a slider, its text box and the record: rounding,
// clamping, bad text, Enter, the change mark. An up-down control is moved by a slider, too.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "panels/DisplayLaw.h"
#include "panels/Parameter.h"

namespace vc {

struct SliderRange {
  double lower, upper;
};
// A range that never changes.
std::function<SliderRange()> Fixed(double lower, double upper);

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

// What a slider edits: a parameter, by a law and within a range.
struct SliderField {
  SliderField(Panel& owner, Slider& moved, const DisplayLaw& law, std::function<SliderRange()> sliderRange,
              Parameter edited);
  SliderField(const SliderField&) = delete;
  SliderField& operator=(const SliderField&) = delete;

  Slider& slider;
  // What depends on the position, in the order in which it is shown anew.
  std::vector<std::function<void()>> texts;
  // Holds a value to what another parameter leaves it, where there is such a rule; a slider that wants to go
  // beyond is stopped there with a beep.
  std::function<double(double value)> within;
  // A value outside the range is shown at its end and stays as it is until the slider is moved.
  bool storedWhenMoved = false;

  // Takes range and position from the parameter. A value outside the range moves into it, in the record as
  // well, but for one that is stored when it is moved. One between the whole numbers of an up-down control
  // stays what it is.
  void Fill();

 private:
  void Moved();
  void Store(double wished);
  double Wished() const;  // the value of the position
  bool ShowsValue() const;
  void TakePosition();
  void Redisplay() const;

  Panel& panel;
  std::function<SliderRange()> range;
  Parameter parameter;
  std::function<double(double)> stored, positionOf;
  bool filling = false;
};

// A slider and its number side by side, as most parameters have them.
struct SliderText {
  SliderText(Panel& panel, Place place, const std::string& caption, const std::string& sliderName,
             const std::string& textName, const DisplayLaw& law, const std::function<SliderRange()>& range,
             const Parameter& parameter, int index = NoIndex);

  Slider slider;
  SliderField field;
  SliderEntry entry;
};

// The same with an up-down control.
struct UpDownText {
  UpDownText(Panel& panel, Place place, const std::string& caption, const std::string& upDownName,
             const std::string& textName, const DisplayLaw& law, const std::function<SliderRange()>& range,
             const Parameter& parameter, int index = NoIndex);

  UpDown upDown;
  SliderField field;
  SliderEntry entry;
};

// Option buttons over a parameter, under their caption.
struct OptionField {
  OptionField(Panel& owner, Place place, const std::string& frameName, const std::string& caption,
              const std::string& name, const std::vector<std::string>& captions, Parameter edited);
  OptionField(const OptionField&) = delete;
  OptionField& operator=(const OptionField&) = delete;

  Frame frame;
  OptionGroup options;
  // What a stored number that is no choice becomes: the first one, or the nearest.
  bool nearest = false;

 private:
  void Fill();

  Parameter parameter;
};

}  // namespace vc
