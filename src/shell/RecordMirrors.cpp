#include "shell/RecordMirrors.h"

#include <array>
#include <variant>

#include "model/Bandwidth.h"
#include "model/Fields.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr double ZeroDecibels = 192;
constexpr std::array<std::int16_t, 2> Sides{1, 2};

void FillFrom(ListBox& list, const auto& rows, auto nameOf) {
  std::vector<std::string> items;
  for (const auto& row : rows) items.emplace_back(nameOf(row));
  list.SetItems(std::move(items));
}

// What an edit from a control of the master panel is called; a list with a caption needs no more than that.
EditOrigin OriginOf(const ControlCore& core) {
  return {core.AccessibleName(), core.form.name + "." + core.FullName()};
}

EditOrigin OriginOf(const ListBox& list) {
  const std::string& caption = list.core.Caption();
  return {caption.empty() ? list.core.AccessibleName() : caption,
          list.core.form.name + "." + list.core.FullName()};
}

}  // namespace

RecordMirrors::RecordMirrors(TopRow& topRow, ChainLayout& layout, ChainBlocks& chainBlocks,
                             RecordEdits& recordEdits)
    : top(topRow),
      chain(layout),
      blocks(chainBlocks),
      edits(recordEdits),
      settings(recordEdits.settings),
      switches(Switches()),
      lists(Lists()) {
  FillLists();
  Bind();
  BindInputs();
  BindClears();
}

void RecordMirrors::FillLists() {
  FillFrom(top.cmbBandwidth, Bandwidths(), [](const BandwidthRow& row) { return row.name; });
  FillFrom(top.cmbConfig, ConfigModes(), [](std::string_view mode) { return mode; });
}

std::vector<RecordMirrors::Switch> RecordMirrors::Switches() {
  constexpr auto processing = &SystemSettings::procEnabled, adapting = &SystemSettings::adaptEnabled;
  std::vector<Switch> rows{
      {chain.ihpf.active, "ihpfEnabled", 0, processing}, {chain.agc.active, "agcEnabled", 0, processing},
      {chain.ohpf.active, "ohpfEnabled", 0, processing}, {chain.limiter.active, "limiterEnabled", 0, nullptr},
      {top.btnProcEnabled, "procEnabled", 0, nullptr},   {top.btnAdaptEnabled, "adaptEnabled", 0, nullptr}};
  for (int stage = 1; stage <= FilterStages; ++stage) {
    rows.push_back({chain.Filter(stage).active, "filterActive", stage, processing});
    rows.push_back({chain.Filter(stage).adapt, "filterAdapt", stage, adapting});
  }
  for (const int side : Sides) {
    rows.push_back({chain.Equalizer(side).active, "eqActive", side, processing});
    rows.push_back({chain.Broadband(side).active, "broadbandActive", side, processing});
  }
  return rows;
}

std::vector<RecordMirrors::List> RecordMirrors::Lists() {
  std::vector<List> rows{{top.cmbBandwidth, "bandwidthIndex", 0}, {top.cmbConfig, "configMode", 0}};
  for (int stage = 1; stage <= FilterStages; ++stage) {
    rows.push_back({chain.Filter(stage).kind, "filterType", stage});
  }
  for (const int side : Sides) {
    rows.push_back({chain.Equalizer(side).kind, "eqType", side});
    rows.push_back({chain.Broadband(side).kind, "broadbandType", side});
  }
  return rows;
}

void RecordMirrors::Bind() {
  for (const auto& [button, field, index, needs] : switches) {
    button.clicked = [this, &shown = button, name = field, i = index] {
      Store(name, i, LowWord(shown.Value()), OriginOf(shown.core));
    };
  }
  for (const auto& [list, field, index] : lists) {
    list.changed = [this, &shown = list, name = field, i = index] {
      Store(name, i, LowWord(shown.ListIndex()), OriginOf(shown));
    };
  }
  top.optNumFilters.changed = [this] {
    Store("numFilters", 0, LowWord(top.optNumFilters.Selected() + 1),
          {WithoutAccessKey(top.fraNumFilters.core.Caption())});
  };
}

void RecordMirrors::BindInputs() {
  for (const int channel : {0, 1}) {
    InputChannel& input = chain.inputs.at(static_cast<std::size_t>(channel));
    input.sldrLevel.changed = [this, channel] { StoreLevel(channel); };
    input.sldrLevel.released = [this] { edits.history.CloseStep(); };
    input.sldrLevel.defaultPosition = [] { return ZeroDecibels; };
    input.zero.clicked = [&input] { input.sldrLevel.SetPosition(ZeroDecibels); };
  }
}

void RecordMirrors::StoreLevel(int channel) {
  InputChannel& input = chain.inputs.at(static_cast<std::size_t>(channel));
  edits.history.KeepOpen(input.sldrLevel.Held());
  Store("levelControl", channel + 1, Nearest(input.sldrLevel.Position()), OriginOf(input.sldrLevel.core));
  input.gain.Redisplay();
}

void RecordMirrors::BindClears() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    chain.Filter(stage).clear.clicked = [this, stage] {
      ClearStage(stage);
      MarkEdited(settings);
    };
  }
  top.btnClearAll.clicked = [this] { ClearAll(); };
}

void RecordMirrors::ClearStage(int stage) { settings.filterDirty[stage] = -1; }

void RecordMirrors::ClearAll() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (IsAdaptive(settings.filterType[stage])) ClearStage(stage);
  }
  settings.broadbandClear[1] = -1;
  if (settings.configMode != ConfigMode::Mono) settings.broadbandClear[2] = -1;
  MarkEdited(settings);
}

std::int16_t RecordMirrors::ValueOf(std::string_view field, int index) const {
  return std::get<std::int16_t>(FindField(field)->value(settings, index, 0));
}

void RecordMirrors::Store(std::string_view field, int index, std::int16_t value, const EditOrigin& origin) {
  blocks.ShowOnce([&] { edits.Store(field, index, value, origin); });
}

void RecordMirrors::Toggle(std::string_view field, const MenuEntry& entry) {
  const std::int16_t toggled = ValueOf(field, 0) == 0 ? 1 : 0;
  Store(field, 0, toggled, {WithoutAccessKey(entry.core.Caption())});
}

void RecordMirrors::Show() {
  ShowInputs();
  for (const auto& [button, field, index, needs] : switches) {
    button.SetValue(ValueOf(field, index));
    button.core.SetEnabled(needs == nullptr || settings.*needs != 0);
  }
  for (const auto& [list, field, index] : lists) list.SetListIndex(ValueOf(field, index));
  for (int stage = 1; stage <= FilterStages; ++stage) blocks.ConfigureFilterStageButtons(stage);
}

void RecordMirrors::ShowInputs() {
  const bool controls = settings.levelControlsShown != 0;
  for (const int channel : {0, 1}) {
    InputChannel& input = chain.inputs.at(static_cast<std::size_t>(channel));
    input.sldrLevel.SetPosition(settings.levelControl[channel + 1]);
    input.gain.Redisplay();
    for (ControlCore* core : {&input.sldrLevel.core, &input.gain.text.core, &input.zero.core}) {
      core->SetEnabled(controls);
    }
  }
  chain.lblGain.core.SetEnabled(controls);
}

void RecordMirrors::ShowConfiguration() {
  top.cmbBandwidth.SetListIndex(settings.bandwidthIndex);
  top.cmbConfig.SetListIndex(settings.configMode);
}

void RecordMirrors::ShowNumFilters() {
  for (const auto& button : top.optNumFilters.buttons) {
    button->core.SetEnabled(button->core.index < settings.maxDspStages);
  }
  top.optNumFilters.Select(settings.numFilters - 1);
}

}  // namespace vc
