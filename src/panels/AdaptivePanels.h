// The panels of the two kinds of adaptive filter: how large it is, how fast it adapts and when, and which
// signal comes out. The unit itself adapts the coefficients.
#pragma once

#include <span>

#include "panels/FSAdjust.h"
#include "panels/SliderText.h"
#include "panels/StageLevels.h"

namespace vc {

struct AdaptiveFilter {
  const char* form;
  const char* title;
  const char* spanCaption;
  std::int16_t tableType;                  // of its coefficients, where they are stored and recalled
  std::size_t conditions;                  // how many of the conditions it offers
  std::span<const int> lblThreshBargraph;  // dB of the numbers beside the bar, those that matter most first
  const FieldRow &taps, &span, &mu, &autoNormalize, &adaptSelect, &thresh, &processOutput;
  const FieldRow *delayChan, *rightChannel;  // none where it has no second input
};
extern const AdaptiveFilter Ctl1CH, Ctl2CH;

// A length in samples on a slider, told in samples and in milliseconds.
struct LengthField {
  // The texts are named name and name with "Time" behind it.
  LengthField(Panel& panel, Place place, const std::string& sliderName, const std::string& name,
              const DisplayLaw& inSamples, const DisplayLaw& inTime,
              const std::function<SliderRange()>& range, const Parameter& parameter);
  Slider slider;
  SliderField field;
  SliderEntry samples, time;
};

// When a filter adapts: on which condition, by the level of which signal, and whether it does so now.
struct AdaptCondition {
  AdaptCondition(Panel& owner, Place place, const AdaptiveFilter& filter);

  Frame fraCondition;
  Frame fraAdapting{fraCondition, "fraAdapting", "", Arrangement::Columns};
  Picture imgLedOn, imgLedOff;
  Label lblAdapting{fraAdapting, "lblAdapting", "Adapting"};
  Frame fraWhen{fraCondition, "fraWhen", "", Arrangement::Columns};
  OptionField adaptSelect;
  Frame fraLevel{fraWhen, "fraLevel", ""};
  Label lblInput{fraLevel, "lblInput", "Input"};
  LevelBar lbInput{fraLevel, "lbInput", "Level"};
  SliderText thresh;
  Frame fraLegend{fraCondition, "fraLegend", "", Arrangement::Columns};
  Label lblThreshold{fraLegend, "lblThreshold", "Line in the bar: threshold"};
  Label lblThreshVal{fraLegend, "lblThreshVal", ""};
  StageLevels tmrInputLevel;

 private:
  void PrepareBar(std::span<const int> scale);
  void Show();
  void ShowAdapting(bool adapting);
};

struct AdaptivePanel {
  AdaptivePanel(const PanelContext& context, const AdaptiveFilter& description);

  const AdaptiveFilter& filter;
  Panel panel;
  Frame fraSettings{panel.form, "fraSettings", "", Arrangement::Columns};
  Frame fraFilter{fraSettings, "fraFilter", ""};
  Frame fraTaps{fraFilter, "fraTaps", ""};
  LengthField taps;
  Button btnAdjustMaximum{fraTaps, "btnAdjustMaximum", "Adjust Maximum..."};
  Frame fraPredSpan{fraFilter, "fraPredSpan", filter.spanCaption};
  LengthField span;
  Frame fraAdapt{fraFilter, "fraAdapt", "Adapt Rate"};
  Slider sldrAdapt{fraAdapt, "sldrAdapt", ""};
  SliderField mu;
  SliderEntry shownMu;
  GraphicButton btnAutoNormalize{fraAdapt, "btnAutoNormalize", "Auto Normalize",
                                 GraphicButton::Style::Latching};
  Frame fraChannels{fraFilter, "fraChannels", "", Arrangement::Columns};
  OptionField processOutput;
  std::unique_ptr<OptionField> delayChan;
  AdaptCondition condition{panel, fraSettings, filter};
  MirroredButton adapt, clear;
  Button btnStore{panel.form, "btnStore", "Store..."}, btnRecall{panel.form, "btnRecall", "Recall..."};
  PanelFoot foot{panel, "btnFilterActive", "Active"};
  FSAdjust adjust{panel, filter.taps};

 private:
  void BindAutoNormalize();
  void BindButtons();
  void Describe();
  void Exchange(TableExchange::Direction direction);
  void TellRightChannel();
  void ShowLimits();
};

}  // namespace vc
