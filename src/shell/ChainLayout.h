// The master control panel's picture of the chain: its controls, laid out as the signal flows.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "panels/SliderText.h"
#include "shell/ConnectionIcon.h"
#include "shell/Logos.h"
#include "text/ProgramInfo.h"
#include "widgets/Controls.h"
#include "widgets/GraphicButton.h"
#include "widgets/LevelBar.h"
#include "widgets/Plot.h"

namespace vc {

// What is above the chain: the link, the switches of the whole unit, how the chain is laid out, the displays.
struct TopRow {
  explicit TopRow(Form& owner);
  Form& form;

  Frame fraTop{form, "fraTop", "", Arrangement::Columns};
  Picture imgLogo{fraTop, "imgLogo", ApplicationTitle, 1, DrawLogo, 0};
  Frame fraConnection{fraTop, "fraConnection", "Connection", Arrangement::Columns};
  Picture pbxInfoPic{fraConnection, "pbxInfoPic", "Activity", ConnectionIconImages, DrawConnectionIcon};
  TextBox txtComInfo{fraConnection, "txtComInfo", ""};
  Frame fraLayout{fraTop, "fraLayout", "Setup"};
  ListBox cmbBandwidth{fraLayout, "cmbBandwidth", "Bandwidth"};
  ListBox cmbConfig{fraLayout, "cmbConfig", "Configuration"};
  Frame fraPair{fraTop, "fraPair", "Setup Heard"};
  Frame fraSides{fraPair, "fraSides", "", Arrangement::Columns};
  OptionGroup optSetup{fraSides, "optSetup", 0, {"A", "B"}};
  GraphicButton btnCopySetup{fraPair, "btnCopySetup", "Copy to B", GraphicButton::Style::Push};
  Frame fraNumFilters{fraTop, "fraNumFilters", "Number of Filters", Arrangement::Columns};
  OptionGroup optNumFilters{fraNumFilters, "optNumFilters", 0, {"1", "2", "3", "4", "5", "6"}};
  Frame fraUnit{fraTop, "fraUnit", "Whole Chain"};
  GraphicButton btnProcEnabled{fraUnit, "btnProcEnabled", "Process", GraphicButton::Style::Latching};
  GraphicButton btnAdaptEnabled{fraUnit, "btnAdaptEnabled", "Adapt", GraphicButton::Style::Latching};
  GraphicButton btnClearAll{fraUnit, "btnClearAll", "Clear All", GraphicButton::Style::Push};
  Frame fraDisplays{fraTop, "fraDisplays", "Displays"};
  GraphicButton btnSpecAnalyzer{fraDisplays, "btnSpecAnalyzer", "Spectrum", GraphicButton::Style::Latching};
  GraphicButton btnCoeffDisplay{fraDisplays, "btnCoeffDisplay", "Coefficients",
                                GraphicButton::Style::Latching};
};

// One channel's input: what the operator gives it and what comes in.
struct InputChannel {
  InputChannel(Place place, int channel);
  Frame frame, columns;
  Slider sldrLevel;
  SliderEntry gain;
  Frame meter;
  GraphicButton clip;
  LevelBar bar;
  GraphicButton zero;
};

// A block that is on or off and has a window for its settings.
struct FixedBlock {
  FixedBlock(Place place, const std::string& name, const std::string& caption, std::string_view blockPanel);
  const std::string_view panel;  // the form that sets it up
  Frame frame;
  GraphicButton active;
  Label keys;  // its key numbers, as of every block
  GraphicButton config;
};

// An equalizer or a broadband stage: its kind can be chosen, and what has a computed response shows it.
// Family is "Eq" or "Broadband".
struct KindBlock {
  KindBlock(Place place, const std::string& family, int number);
  Frame frame;
  GraphicButton active;
  ListBox kind;
  Label keys;
  Plot response;
  GraphicButton config;
};

// A filter stage: as these, and what adapts can be stopped and cleared.
struct FilterBlock {
  FilterBlock(Place place, int stage);
  Frame frame;
  GraphicButton active;
  ListBox kind;
  Label keys;
  Plot response;
  GraphicButton adapt, clear, config;
};

struct ChainLayout {
  explicit ChainLayout(Form& owner);
  Form& form;

  Frame fraSignal{form, "fraSignal", "", Arrangement::Flow};

  Frame fraInputs{fraSignal, "fraInputs", "Inputs"};
  Frame fraInputHead{fraInputs, "fraInputHead", ""};
  Label lblGain{fraInputHead, "lblGain", "Gain and Level"};
  Label lblSwap{fraInputHead, "lblSwap", "(Swap)"};
  std::array<InputChannel, 2> inputs{InputChannel{fraInputs, 0}, InputChannel{fraInputs, 1}};

  Frame fraInputProcessor{fraSignal, "fraInputProcessor", "Input Processor"};
  FixedBlock ihpf{fraInputProcessor, "Ihpf", "Input HPF", "IHPFSetup"};
  FixedBlock agc{fraInputProcessor, "Agc", "AGC", "AGCSetup"};

  Frame fraChain{fraSignal, "fraChain", ""};
  Frame fraBlocks{fraChain, "fraBlocks", "", Arrangement::Flow};
  Frame fraBroadbandStages{fraBlocks, "fraBroadbandStages", "", Arrangement::Lanes};
  std::array<KindBlock, 2> broadband{KindBlock{fraBroadbandStages, "Broadband", 1},
                                     KindBlock{fraBroadbandStages, "Broadband", 2}};

  Frame fraStages{fraBlocks, "fraStages", "", Arrangement::Lanes};
  Frame fraFirstStages{fraStages, "fraFirstStages", "", Arrangement::Flow};
  std::array<FilterBlock, 3> firstStages{FilterBlock{fraFirstStages, 1}, FilterBlock{fraFirstStages, 2},
                                         FilterBlock{fraFirstStages, 3}};
  Frame fraLastStages{fraStages, "fraLastStages", "", Arrangement::Flow};
  std::array<FilterBlock, 3> lastStages{FilterBlock{fraLastStages, 4}, FilterBlock{fraLastStages, 5},
                                        FilterBlock{fraLastStages, 6}};

  Frame fraEqualizers{fraBlocks, "fraEqualizers", "", Arrangement::Lanes};
  std::array<KindBlock, 2> equalizers{KindBlock{fraEqualizers, "Eq", 1}, KindBlock{fraEqualizers, "Eq", 2}};

  Plot pltWholeChain{fraChain, "pltWholeChain", "Whole Chain"};

  Frame fraOutputProcessor{fraSignal, "fraOutputProcessor", "Output Processor"};
  FixedBlock ohpf{fraOutputProcessor, "Ohpf", "Output HPF", "OHPFSetup"};
  FixedBlock limiter{fraOutputProcessor, "Limiter", "Limiter", "LimiterSetup"};

  Frame fraOutputs{fraSignal, "fraOutputs", "Outputs", Arrangement::Lanes};
  Frame fraLeftOut{fraOutputs, "fraLeftOut", ""};
  Label lblLeftOut{fraLeftOut, "lblLeftOut", "Left"};
  GraphicButton btnClipOutputLeft{fraLeftOut, "btnClipOutputLeft", "Clip", GraphicButton::Style::Lamp};
  LevelBar lbOutputLeft{fraLeftOut, "lbOutputLeft", "Left Output"};
  Frame fraRightOut{fraOutputs, "fraRightOut", ""};
  Label lblRightOut{fraRightOut, "lblRightOut", "Right"};
  GraphicButton btnClipOutputRight{fraRightOut, "btnClipOutputRight", "Clip", GraphicButton::Style::Lamp};
  LevelBar lbOutputRight{fraRightOut, "lbOutputRight", "Right Output"};

  std::array<FixedBlock*, 4> FixedBlocks() { return {&ihpf, &agc, &ohpf, &limiter}; }
  // Stage 1..6, and equalizer or broadband stage 1 or 2.
  FilterBlock& Filter(int stage);
  KindBlock& Equalizer(int number) { return equalizers.at(static_cast<std::size_t>(number - 1)); }
  KindBlock& Broadband(int number) { return broadband.at(static_cast<std::size_t>(number - 1)); }
};

}  // namespace vc
