#include "shell/ReportSources.h"

#include <algorithm>
#include <memory>

#include "model/Kinds.h"
#include "model/Loans.h"
#include "shell/PanelHost.h"
#include "text/Convert.h"

namespace vc {
namespace {

// The record as the operator has it, with a door of its own that leads to no unit and to no window. What a
// panel moves into its range when it is filled is moved here.
struct RecordCopy {
  RecordCopy(const SystemSettings& record, Clock& clock)
      : settings(OperatorsRecord(record)),
        edits(settings, clock,
              {.configureStages = [](bool) {},
               .download = [](int) {},
               .forgetBandwidth = [] {},
               .holdsTable = [](int) { return false; },
               .requestAnalyzerClear = [] {},
               .undisturbed = [](const std::function<void()>&) {},
               .edited = [] {},
               .setupExchanged = [] {},
               .stepsChanged = [] {}}) {}

  SystemSettings settings;
  RecordEdits edits;
  Forms forms{[](const std::string&) {}};
};

std::vector<ReportLine> SystemLines(const SystemSettings& settings, const TopRow& top) {
  const auto number = [](const std::int16_t& field) {
    return ReportPiece([&field] { return std::to_string(field); });
  };
  const auto whether = [](const std::int16_t& field, const char* on, const char* off) {
    return ReportPiece::Whether([&field] { return field != 0; }, on, off);
  };
  const ReportPiece sampleRate([&settings] {
    constexpr double kilo = 1000;
    constexpr int decimals = 4;
    return FixedText(static_cast<double>(settings.sampleRate) / kilo, decimals);
  });
  return {ReportLine("Bandwidth: ", top.cmbBandwidth),
          ReportLine("Sample Frequency: ", sampleRate, " kHz"),
          ReportLine("Configuration: ", top.cmbConfig),
          ReportLine("Number DSP Stages: ", number(settings.numFilters)),
          ReportLine("Number Broadband Stages: 1"),
          ReportLine("Number EQ Stages: 1"),
          ReportLine("Adaptation: ", whether(settings.adaptEnabled, "Active", "Inactive")),
          ReportLine("Digital Channel Swap ", whether(settings.channelSwap, "Enabled", "Disabled")),
          ReportLine("Processor: ", whether(settings.procEnabled, "In", "Out"))};
}

std::vector<ReportLine> LevelLines(const SystemSettings& settings, const ChainLayout& chain) {
  const auto shown = [&settings] { return settings.levelControlsShown != 0; };
  return {ReportLine("Front panel controls used to set input level.").Where([shown] { return !shown(); }),
          ReportLine("Left: ", chain.inputs[0].gain, " dB").Where(shown),
          ReportLine("Right: ", chain.inputs[1].gain, " dB").Where(shown)};
}

// Of the kind that a list shows; empty where it is none of them.
std::string_view PanelOf(std::span<const KindRow> kinds, const ListBox& list) {
  return list.ListIndex() < 0 ? std::string_view{} : kinds[static_cast<std::size_t>(list.ListIndex())].panel;
}

}  // namespace

ReportSources::ReportSources(const Around& parts)
    : around(parts),
      systemSettings(SystemLines(parts.settings, parts.master.top)),
      inputLevels(LevelLines(parts.settings, parts.master.chain)) {}

ReportWires ReportSources::Wires() {
  return {.hourglass = [this](bool shown) { around.desk.SetHourglass(shown); },
          .description = [this] { return around.settings.setupDescription; },
          .systemSettings = [this] { return TextsOf(systemSettings); },
          .inputLevels = [this] { return TextsOf(inputLevels); },
          .block = [this](std::string_view panel) { return BlockOf(panel); },
          .stages = [this] { return StagesInUse(); },
          .analyzerShown = [this] { return around.displays.Shown() == display::Spectrum; }};
}

std::vector<ReportSources::Stage> ReportSources::Chain() const {
  ChainLayout& chain = around.master.chain;
  std::vector<Stage> stages;
  for (const int side : {1, 2}) {
    KindBlock& block = chain.Broadband(side);
    stages.push_back({"Broadband Filter",
                      block.frame,
                      block.kind,
                      {PanelOf(BroadbandKinds(), block.kind), block.active, nullptr,
                       &SystemSettings::curBroadband, side}});
  }
  for (int stage = 1; stage <= FilterStages; ++stage) {
    FilterBlock& block = chain.Filter(stage);
    stages.push_back({"Filter",
                      block.frame,
                      block.kind,
                      {PanelOf(FilterKinds(), block.kind), block.active, &block.adapt,
                       &SystemSettings::curFilter, stage}});
  }
  for (const int side : {1, 2}) {
    KindBlock& block = chain.Equalizer(side);
    stages.push_back({"Equalizer",
                      block.frame,
                      block.kind,
                      {PanelOf(EqKinds(), block.kind), block.active, nullptr, &SystemSettings::curEq, side}});
  }
  return stages;
}

std::vector<ReportStage> ReportSources::StagesInUse() const {
  std::vector<ReportStage> inUse;
  for (const Stage& stage : Chain()) {
    if (!stage.frame.core.Active()) continue;
    const bool active = stage.asked.active.Value() == 1;
    inUse.push_back({stage.frame.core.Caption(), stage.family, active, stage.kind.Text(),
                     active ? Ask(stage.asked) : std::vector<ReportText>{}});
  }
  return inUse;
}

ReportBlock ReportSources::BlockOf(std::string_view panel) const {
  const auto blocks = around.master.chain.FixedBlocks();
  FixedBlock& block = **std::ranges::find(blocks, panel, &FixedBlock::panel);
  return {block.frame.core.Caption(), block.active.Value() == 1, Ask({panel, block.active})};
}

// What a panel could do beside showing leads nowhere.
std::vector<ReportText> ReportSources::Ask(const Asked& asked) const {
  const auto copy = std::make_unique<RecordCopy>(around.settings, around.clock);
  if (asked.current != nullptr) copy->settings.*asked.current = static_cast<std::int16_t>(asked.number);
  return PanelHost::Ask(asked.panel, {.settings = copy->settings,
                                      .edits = copy->edits,
                                      .desk = around.desk,
                                      .forms = copy->forms,
                                      .events = around.events,
                                      .status = around.device.status,
                                      .portOpen = around.device.comm.CommPortOpen,
                                      .blockSwitch = &asked.active,
                                      .adaptSwitch = asked.adapt,
                                      .suffix = "",
                                      .ofStage = false,
                                      .activated = [] {},
                                      .unloaded = [] {},
                                      .frequencyAxis = [] { return AxisLaw::Linear; },
                                      .turnFrequencyAxis = [] {},
                                      .storeOpenSetup = [] {},
                                      .switchSetup = [] {},
                                      .setupMark = [] { return std::string{}; },
                                      .switchHeard = [] {},
                                      .storeInMemory = [](int, int) { return false; },
                                      .exchangeTable = [](const TableExchange&) {},
                                      .askForEqualizerLevels = [](bool) {},
                                      .spectra = around.spectra,
                                      .clearAnalyzer = [] {},
                                      .takeAnalyzer = [](bool) {}});
}

}  // namespace vc
