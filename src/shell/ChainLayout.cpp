#include "shell/ChainLayout.h"

#include "link/Status.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using Style = GraphicButton::Style;

constexpr double LowestLevel = 96, HighestLevel = 255;
constexpr int PairsOfButtons = 2;

void PrepareLevelBar(LevelBar& bar) {
  std::vector<ScaleTick> ticks;
  for (const int decibels : {3, 0, -6, -12, -18, -30, -42, -54, -66}) {
    ticks.push_back({DbToBarPosition(decibels), std::to_string(decibels)});
  }
  constexpr int fromBelow = 1;
  bar.SetOrientation(fromBelow);
  bar.SetScale(ticks);
}

template <typename Kinds>
std::vector<std::string> NamesOf(const Kinds& kinds) {
  std::vector<std::string> names;
  for (const KindRow& row : kinds) names.emplace_back(row.name);
  return names;
}

}  // namespace

TopRow::TopRow(Form& owner) : form(owner) {
  fraUnit.buttonsPerRow = PairsOfButtons;
  fraDisplays.buttonsPerRow = 1;
  btnAdaptEnabled.SetLatchedTint(GraphicButton::Tint::Green);
}

InputChannel::InputChannel(Place place, int channel)
    : frame(place, "fraInput", channel == 0 ? "Left" : "Right", Arrangement::Rows, channel),
      columns(frame, "fraInputColumns", "", Arrangement::Columns, channel),
      sldrLevel(columns, "sldrLevel", "Gain", channel),
      gain(columns, "Gain", "txtGain", InputLevel(), sldrLevel, channel),
      bar(columns, channel == 0 ? "lbInputLeft" : "lbInputRight", "Input"),
      zero(frame, "btnZeroInputLevel", "0 dB", Style::Push, channel) {
  sldrLevel.SetRange(LowestLevel, HighestLevel);
  PrepareLevelBar(bar);
  frame.buttonsPerRow = 1;
}

FixedBlock::FixedBlock(Place place, const std::string& name, const std::string& caption)
    : frame(place, "fra" + name, caption),
      active(frame, "btn" + name, "Active", Style::Latching),
      config(frame, "btn" + name + "Config", "Setup", Style::Push) {
  frame.buttonsPerRow = 1;
}

KindBlock::KindBlock(Place place, const std::string& family, int number)
    : frame(place, "fra" + family, "", Arrangement::Rows, number),
      kind(frame, "cmb" + family, "", number),
      active(frame, "btn" + family + "Active", "Active", Style::Latching, number),
      config(frame, "btn" + family + "Config", "Setup", Style::Push, number) {
  frame.buttonsPerRow = PairsOfButtons;
  kind.SetItems(family == "Eq" ? NamesOf(EqKinds()) : NamesOf(BroadbandKinds()));
}

FilterBlock::FilterBlock(Place place, int stage)
    : frame(place, "fraStage", "", Arrangement::Rows, stage),
      kind(frame, "cmbFilter", "", stage),
      active(frame, "btnFilterActive", "Active", Style::Latching, stage),
      config(frame, "btnFilterConfig", "Setup", Style::Push, stage),
      adapt(frame, "btnFilterAdapt", "Adapt", Style::Latching, stage),
      clear(frame, "btnFilterClear", "Clear", Style::Push, stage) {
  frame.buttonsPerRow = PairsOfButtons;
  kind.SetItems(NamesOf(FilterKinds()));
  adapt.SetLatchedTint(GraphicButton::Tint::Green);
}

ChainLayout::ChainLayout(Form& owner) : form(owner) {
  for (LevelBar* bar : {&lbOutputLeft, &lbOutputRight}) {
    PrepareLevelBar(*bar);
    bar->SetMarkerStyle(HiddenMarker);
    bar->captioned = false;  // a label of its own stands above it
  }
}

FilterBlock& ChainLayout::Filter(int stage) {
  constexpr int perRow = 3;
  const auto place = static_cast<std::size_t>(stage - 1);
  return stage <= perRow ? firstStages.at(place) : lastStages.at(place - perRow);
}

}  // namespace vc
