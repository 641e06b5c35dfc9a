#include "shell/MasterControl.h"

#include <variant>

#include "link/ConnectionState.h"
#include "model/Bandwidth.h"
#include "model/Fields.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr double ZeroDecibels = 192;
constexpr std::array<std::int16_t, 2> Sides{1, 2};

void Fill(ListBox& list, const auto& rows, auto nameOf) {
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

MasterControl::MasterControl(RecordEdits& recordEdits, modDeviceComm& link, Desk& operatorDesk)
    : form("MasterControl", ApplicationTitle + " Master Control Panel"),
      blocks(chain, recordEdits.settings),
      edits(recordEdits),
      settings(recordEdits.settings),
      device(link),
      desk(operatorDesk) {
  constexpr std::int32_t longestSilence = 20000;  // hundredths, until the link is given up
  top.txtComInfo.readOnly = true;
  top.txtComInfo.widest = ConnectionText(StateConnected, 1, LastBaudIndex) + UnansweredText(longestSilence);
  lblSetupFile.elided = true;
  form.initialFocus = &top.txtComInfo.core;  // where no stray key or wheel can change anything
  Fill(top.cmbBandwidth, Bandwidths(), [](const BandwidthRow& row) { return row.name; });
  Fill(top.cmbConfig, ConfigModes(), [](std::string_view mode) { return mode; });
  ShowOversize(false);
  form.closeRequested = [this] { hooks.exit(); };
  BindMenus();
  BindMirrors();
  BindInputs();
  BindBlocks();
  BindDisplays();
  BindKeys();
}

std::vector<MasterControl::MirroredSwitch> MasterControl::Switches() {
  constexpr auto processing = &SystemSettings::procEnabled, adapting = &SystemSettings::adaptEnabled;
  std::vector<MirroredSwitch> rows{
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

std::vector<MasterControl::MirroredList> MasterControl::Lists() {
  std::vector<MirroredList> rows{{top.cmbBandwidth, "bandwidthIndex", 0}, {top.cmbConfig, "configMode", 0}};
  for (int stage = 1; stage <= FilterStages; ++stage) {
    rows.push_back({chain.Filter(stage).kind, "filterType", stage});
  }
  for (const int side : Sides) {
    rows.push_back({chain.Equalizer(side).kind, "eqType", side});
    rows.push_back({chain.Broadband(side).kind, "broadbandType", side});
  }
  return rows;
}

void MasterControl::BindMirrors() {
  for (const auto& [button, field, index, needs] : Switches()) {
    button.clicked = [this, &shown = button, name = field, i = index] {
      blocks.ShowOnce([&] { edits.Store(name, i, LowWord(shown.Value()), OriginOf(shown.core)); });
    };
  }
  for (const auto& [list, field, index] : Lists()) {
    list.changed = [this, &shown = list, name = field, i = index] {
      blocks.ShowOnce([&] { edits.Store(name, i, LowWord(shown.ListIndex()), OriginOf(shown)); });
    };
  }
  top.optNumFilters.changed = [this] {
    edits.Store("numFilters", 0, LowWord(top.optNumFilters.Selected() + 1),
                {WithoutAccessKey(top.fraNumFilters.core.Caption())});
  };
}

void MasterControl::BindInputs() {
  for (const int channel : {0, 1}) {
    InputChannel& input = chain.inputs.at(static_cast<std::size_t>(channel));
    input.sldrLevel.changed = [this, channel] { StoreLevel(channel); };
    input.sldrLevel.released = [this] { edits.history.CloseStep(); };
    input.sldrLevel.defaultPosition = [] { return ZeroDecibels; };
    input.zero.clicked = [&input] { input.sldrLevel.SetPosition(ZeroDecibels); };
  }
}

void MasterControl::StoreLevel(int channel) {
  InputChannel& input = chain.inputs.at(static_cast<std::size_t>(channel));
  edits.history.KeepOpen(input.sldrLevel.Held());
  edits.Store("levelControl", channel + 1, Nearest(input.sldrLevel.Position()),
              OriginOf(input.sldrLevel.core));
  input.gain.Redisplay();
}

void MasterControl::BindBlocks() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    FilterBlock& block = chain.Filter(stage);
    block.config.clicked = [this, stage] { hooks.openFilter(stage); };
    block.clear.clicked = [this, stage] {
      ClearStage(stage);
      MarkEdited(settings);
    };
  }
  for (const int side : Sides) {
    chain.Equalizer(side).config.clicked = [this, side] { hooks.openEqualizer(side); };
    chain.Broadband(side).config.clicked = [this, side] { hooks.openBroadband(side); };
  }
  const auto opens = [this](FixedBlock& block, const char* panel) {
    block.config.clicked = [this, &block, panel] { hooks.openBlock(panel, block); };
  };
  opens(chain.ihpf, "IHPFSetup");
  opens(chain.agc, "AGCSetup");
  opens(chain.ohpf, "OHPFSetup");
  opens(chain.limiter, "LimiterSetup");
  top.btnClearAll.clicked = [this] { ClearAll(); };
}

void MasterControl::ClearStage(int stage) { settings.filterDirty[stage] = -1; }

void MasterControl::ClearAll() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    if (IsAdaptive(settings.filterType[stage])) ClearStage(stage);
  }
  settings.broadbandClear[1] = -1;
  if (settings.configMode != ConfigMode::Mono) settings.broadbandClear[2] = -1;
  MarkEdited(settings);
}

std::int16_t MasterControl::ValueOf(std::string_view field, int index) const {
  return std::get<std::int16_t>(FindField(field)->value(settings, index, 0));
}

void MasterControl::ConfigMasterControl() {
  const Mute inert(form);
  ShowInputs();
  ShowMirrors();
  ShowEdits();
  CheckPortAndRate();
  menus.mnuLevelControls.SetChecked(settings.levelControlsShown != 0);
  menus.mnuChannelSwap.SetChecked(settings.channelSwap != 0);
  chain.lblSwap.core.SetVisible(settings.channelSwap != 0);
  blocks.ShowSignalPath();
}

void MasterControl::ShowInputs() {
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

void MasterControl::ShowMirrors() {
  for (const auto& [button, field, index, needs] : Switches()) {
    button.SetValue(ValueOf(field, index));
    button.core.SetEnabled(needs == nullptr || settings.*needs != 0);
  }
  for (const auto& [list, field, index] : Lists()) list.SetListIndex(ValueOf(field, index));
  for (int stage = 1; stage <= FilterStages; ++stage) blocks.ConfigureFilterStageButtons(stage);
}

void MasterControl::ShowConfiguration() {
  {
    const Mute inert(form);
    top.cmbBandwidth.SetListIndex(settings.bandwidthIndex);
    top.cmbConfig.SetListIndex(settings.configMode);
  }
  ConfigureStages();
}

void MasterControl::ConfigureStages() {
  {
    const Mute inert(form);
    for (const auto& button : top.optNumFilters.buttons) {
      button->core.SetEnabled(button->core.index < settings.maxDspStages);
    }
    top.optNumFilters.Select(settings.numFilters - 1);
  }
  blocks.ConfigureBlocks();
}

}  // namespace vc
