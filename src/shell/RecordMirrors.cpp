#include "shell/RecordMirrors.h"

#include <array>
#include <variant>

#include "model/Bandwidth.h"
#include "model/FieldAccess.h"
#include "model/Kinds.h"
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
  std::vector<Switch> rows{{chain.ihpf.active, RowOf<&SystemSettings::ihpfEnabled>(), 0, processing},
                           {chain.agc.active, RowOf<&SystemSettings::agcEnabled>(), 0, processing},
                           {chain.ohpf.active, RowOf<&SystemSettings::ohpfEnabled>(), 0, processing},
                           {chain.limiter.active, RowOf<&SystemSettings::limiterEnabled>(), 0, nullptr},
                           {top.btnProcEnabled, RowOf<&SystemSettings::procEnabled>(), 0, nullptr},
                           {top.btnAdaptEnabled, RowOf<&SystemSettings::adaptEnabled>(), 0, nullptr}};
  for (int stage = 1; stage <= FilterStages; ++stage) {
    rows.push_back({chain.Filter(stage).active, RowOf<&SystemSettings::filterActive>(), stage, processing});
    rows.push_back({chain.Filter(stage).adapt, RowOf<&SystemSettings::filterAdapt>(), stage, adapting});
  }
  for (const int side : Sides) {
    rows.push_back({chain.Equalizer(side).active, RowOf<&SystemSettings::eqActive>(), side, processing});
    rows.push_back(
        {chain.Broadband(side).active, RowOf<&SystemSettings::broadbandActive>(), side, processing});
  }
  return rows;
}

std::vector<RecordMirrors::List> RecordMirrors::Lists() {
  std::vector<List> rows{{top.cmbBandwidth, RowOf<&SystemSettings::bandwidthIndex>(), 0},
                         {top.cmbConfig, RowOf<&SystemSettings::configMode>(), 0}};
  for (int stage = 1; stage <= FilterStages; ++stage) {
    rows.push_back({chain.Filter(stage).kind, RowOf<&SystemSettings::filterType>(), stage});
  }
  for (const int side : Sides) {
    rows.push_back({chain.Equalizer(side).kind, RowOf<&SystemSettings::eqType>(), side});
    rows.push_back({chain.Broadband(side).kind, RowOf<&SystemSettings::broadbandType>(), side});
  }
  return rows;
}

void RecordMirrors::Bind() {
  for (const auto& [button, field, index, needs] : switches) {
    button.clicked = [this, &shown = button, row = &field, i = index] {
      Store(*row, i, shown.Value(), OriginOf(shown.core));
    };
  }
  for (const auto& [list, field, index] : lists) {
    list.changed = [this, &shown = list, row = &field, i = index] {
      Store(*row, i, shown.ListIndex(), OriginOf(shown));
    };
  }
  top.optNumFilters.changed = [this] {
    Store(RowOf<&SystemSettings::numFilters>(), 0, top.optNumFilters.Selected() + 1,
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
  Store(RowOf<&SystemSettings::levelControl>(), channel + 1, Nearest(input.sldrLevel.Position()),
        OriginOf(input.sldrLevel.core));
  input.gain.Redisplay();
}

void RecordMirrors::BindClears() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    GraphicButton& clear = chain.Filter(stage).clear;
    clear.clicked = [this, stage, &clear] {
      Store(RowOf<&SystemSettings::filterDirty>(), stage, -1, OriginOf(clear.core));
    };
  }
  top.btnClearAll.clicked = [this] { ClearAll(); };
}

void RecordMirrors::ClearAll() {
  std::vector<FieldEdit> all;
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (IsAdaptive(settings.filterType[stage]))
      all.push_back({&RowOf<&SystemSettings::filterDirty>(), stage, 0, -1.0});
  }
  for (const int side : Sides) {
    if (side == 1 || settings.configMode != ConfigMode::Mono)
      all.push_back({&RowOf<&SystemSettings::broadbandClear>(), side, 0, -1.0});
  }
  edits.Apply(all, OriginOf(top.btnClearAll.core));
}

int RecordMirrors::ValueOf(const FieldRow& row, int index) const {
  return static_cast<int>(NumberOf(settings, row, index, 0));
}

void RecordMirrors::Store(const FieldRow& row, int index, double value, const EditOrigin& origin) {
  const auto range = FieldRange(settings, row, index, 0);  // none for the marks of the run
  if (range && (value < range->lower || value > range->upper)) return;
  edits.Apply({{&row, index, 0, value}}, origin);
}

void RecordMirrors::Toggle(const FieldRow& row, const MenuEntry& entry) {
  Store(row, 0, ValueOf(row, 0) == 0 ? 1 : 0, {WithoutAccessKey(entry.core.Caption())});
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
