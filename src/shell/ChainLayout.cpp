#include "shell/ChainLayout.h"

#include "link/Status.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using Style = GraphicButton::Style;

constexpr double LowestLevel = 96, HighestLevel = 255;
constexpr int PairsOfButtons = 2;

void PrepareMeter(LevelBar& bar, GraphicButton& clip) {
  clip.SetLatchedTint(GraphicButton::Tint::Red);
  bar.captioned = false;  // what is around it says whose level it is
  std::vector<ScaleTick> ticks;
  for (const int decibels : {0, -6, -12, -18, -30, -42, -54, -66, 3}) {
    ticks.push_back({DbToBarPosition(decibels), std::to_string(decibels)});
  }
  constexpr int fromBelow = 1;
  bar.SetOrientation(fromBelow);
  bar.SetScale(ticks);
}

void PrepareBlock(Frame& frame, GraphicButton& active) {
  frame.look = FrameLook::Card;
  active.inTitle = true;
}

template <typename Kinds>
std::vector<std::string> NamesOf(const Kinds& kinds) {
  std::vector<std::string> names;
  for (const KindRow& row : kinds) names.emplace_back(row.name);
  return names;
}

}  // namespace

TopRow::TopRow(Form& owner) : form(owner) {
  fraTop.look = FrameLook::Card;
  imgLogo.lines = {3, 3};
  for (Frame* frame :
       {&fraConnection, &fraLayout, &fraPair, &fraSides, &fraNumFilters, &fraUnit, &fraDisplays}) {
    frame->look = FrameLook::Flat;
  }
  fraUnit.buttonsPerRow = PairsOfButtons;
  fraDisplays.buttonsPerRow = 1;
  btnAdaptEnabled.SetLatchedTint(GraphicButton::Tint::Green);
}

InputChannel::InputChannel(Place place, int channel)
    : frame(place, "fraInput", channel == 0 ? "Left" : "Right", Arrangement::Rows, channel),
      columns(frame, "fraInputColumns", "", Arrangement::Columns, channel),
      sldrLevel(columns, "sldrLevel", "Gain", channel),
      gain(columns, "Gain", "txtGain", InputLevel(), sldrLevel, channel),
      meter(columns, "fraInputMeter", "", Arrangement::Rows, channel),
      clip(meter, channel == 0 ? "btnClipInputLeft" : "btnClipInputRight", "Clip", Style::Lamp),
      bar(meter, channel == 0 ? "lbInputLeft" : "lbInputRight", "Input"),
      zero(frame, "btnZeroInputLevel", "0 dB", Style::Push, channel) {
  sldrLevel.SetRange(LowestLevel, HighestLevel);
  PrepareMeter(bar, clip);
  frame.look = FrameLook::Flat;
  frame.buttonsPerRow = meter.buttonsPerRow = 1;
}

FixedBlock::FixedBlock(Place place, const std::string& name, const std::string& caption,
                       std::string_view blockPanel)
    : panel(blockPanel),
      frame(place, "fra" + name, caption),
      active(frame, "btn" + name, "Active", Style::Latching),
      keys(frame, "lbl" + name + "Keys", ""),
      config(frame, "btn" + name + "Config", "Setup", Style::Push) {
  PrepareBlock(frame, active);
  frame.buttonsPerRow = 1;
}

KindBlock::KindBlock(Place place, const std::string& family, int number)
    : frame(place, "fra" + family, "", Arrangement::Rows, number),
      active(frame, "btn" + family + "Active", "Active", Style::Latching, number),
      kind(frame, "cmb" + family, "", number),
      keys(frame, "lbl" + family + "Keys", "", number),
      response(frame, "plt" + family, "Computed Response", number),
      config(frame, "btn" + family + "Config", "Setup", Style::Push, number) {
  PrepareBlock(frame, active);
  frame.collapses = true;
  response.small = true;
  frame.buttonsPerRow = 1;
  kind.SetItems(family == "Eq" ? NamesOf(EqKinds()) : NamesOf(BroadbandKinds()));
}

FilterBlock::FilterBlock(Place place, int stage)
    : frame(place, "fraStage", "", Arrangement::Rows, stage),
      active(frame, "btnFilterActive", "Active", Style::Latching, stage),
      kind(frame, "cmbFilter", "", stage),
      keys(frame, "lblFilterKeys", "", stage),
      response(frame, "pltFilter", "Computed Response", stage),
      adapt(frame, "btnFilterAdapt", "Adapt", Style::Latching, stage),
      clear(frame, "btnFilterClear", "Clear", Style::Push, stage),
      config(frame, "btnFilterConfig", "Setup", Style::Push, stage) {
  PrepareBlock(frame, active);
  frame.buttonsPerRow = PairsOfButtons;
  response.small = true;
  adapt.SetLatchedTint(GraphicButton::Tint::Green);
  kind.SetItems(NamesOf(FilterKinds()));
}

ChainLayout::ChainLayout(Form& owner) : form(owner) {
  for (Frame* frame : {&fraInputs, &fraInputProcessor, &fraOutputProcessor, &fraOutputs}) {
    frame->look = FrameLook::Panel;
  }
  fraLastStages.collapses = true;
  pltWholeChain.low = true;
  for (Frame* frame : {&fraLeftOut, &fraRightOut}) frame->buttonsPerRow = 1;
  PrepareMeter(lbOutputLeft, btnClipOutputLeft);
  PrepareMeter(lbOutputRight, btnClipOutputRight);
  for (LevelBar* bar : {&lbOutputLeft, &lbOutputRight}) bar->SetMarkerStyle(HiddenMarker);
}

FilterBlock& ChainLayout::Filter(int stage) {
  constexpr int perRow = 3;
  const auto place = static_cast<std::size_t>(stage - 1);
  return stage <= perRow ? firstStages.at(place) : lastStages.at(place - perRow);
}

}  // namespace vc
