#include "shell/ChainPanels.h"

#include <algorithm>
#include <utility>

#include "model/Clamp.h"
#include "model/Kinds.h"
#include "model/RegisterTable.h"
#include "persist/MemSelect.h"

namespace vc {
namespace {

// The row of a stored kind; a kind outside its table is corrected.
template <typename Kinds>
const KindRow& KindOf(const Kinds& kinds, std::int16_t& kind, std::int16_t otherwise) {
  if (kind < 0 || static_cast<std::size_t>(kind) >= kinds.size()) kind = otherwise;
  return kinds[static_cast<std::size_t>(kind)];
}

// Runs a routine for each stage of a family, with the family's index on it.
template <typename Routine>
void ForEachOf(std::int16_t& current, std::int16_t count, Routine routine) {
  const std::int16_t before = current;
  for (current = 1; current <= count; ++current) routine(current);
  current = before;
}

}  // namespace

ChainPanels::ChainPanels(const Around& parts) : around(parts) {}

PanelContext ChainPanels::ContextFor(const Block& block) {
  return {.settings = around.settings,
          .edits = around.edits,
          .desk = around.desk,
          .forms = around.forms,
          .events = around.events,
          .status = around.device.status,
          .portOpen = around.device.comm.CommPortOpen,
          .blockSwitch = block.blockSwitch,
          .adaptSwitch = block.adaptSwitch,
          .clearButton = block.clearButton,
          .suffix = block.suffix,
          .ofStage = block.ofStage,
          .activated = [this] { DisplayThisFilter(); },
          .unloaded = [this] { DisplayMasterControl(); },
          .frequencyAxis = [this] { return around.master.blocks.FrequencyAxisLaw(); },
          .turnFrequencyAxis = [this] { around.master.menus.mnuFrequencyAxis.Click(); },
          .storeOpenSetup = [this] { around.master.actions.StoreOpenSetup(); },
          .switchSetup = [this] { around.master.menus.mnuSwitchSetup.Click(); },
          .setupMark = [this] { return around.setupMark(); },
          .switchHeard = [this] { around.master.menus.mnuHearBefore.Click(); },
          .storeInMemory = [this](int memory, int function) { return StoreInMemory(memory, function); },
          .exchangeTable = [this](const TableExchange& exchange) { ExchangeTable(exchange); },
          .askForEqualizerLevels = [this](bool asked) { around.periodic.eqLevelsWanted = asked; },
          .spectra = around.spectra,
          .clearAnalyzer = [this] { around.edits.ClearAnalyzer(); },
          .takeAnalyzer = [this](bool own) { around.displays.LendAnalyzer(own); }};
}

void ChainPanels::Open(const std::function<Block()>& blockNow, bool besideDisplay) {
  const Block block = blockNow();
  if (!PanelHost::Has(block.panel)) {
    around.desk.Box(box::Information, std::string(block.name) + block.suffix,
                    "The control panel of \"" + std::string(block.name) +
                        "\" is not part of this version yet.  The filter itself works with the settings that "
                        "are stored for it.");
    return;
  }
  host.Close();  // its end brings the master panel back
  const bool display = around.periodic.pollMode != poll::MainLevels && besideDisplay;
  if (display) around.forms.Hide(around.master.form);
  around.displays.KeepOpen(display);
  host.Open(block.panel, ContextFor(block), display ? Modality::Modeless : Modality::Modal);
  openBlock = blockNow;
  opened = block;
}

void ChainPanels::Refresh() {
  if (!host.IsOpen()) return;
  if (openBlock() == opened) {
    host.Refresh();
  } else {
    host.Close();
  }
}

ChainPanels::Block ChainPanels::FilterBlockOf(int stage) {
  const KindRow& row = KindOf(FilterKinds(), around.settings.filterType[stage], FilterKind::RefCanceller);
  FilterBlock& block = around.master.chain.Filter(stage);
  return {row.panel,    row.name,    around.master.blocks.FilterSuffix(stage), &block.active, true,
          &block.adapt, &block.clear};
}

ChainPanels::Block ChainPanels::EqualizerBlockOf(int number) {
  const KindRow& row = KindOf(EqKinds(), around.settings.eqType[number], EqKind::Compressor);
  return {row.panel, row.name, around.master.blocks.EqualizerSuffix(number),
          &around.master.chain.Equalizer(number).active, true};
}

ChainPanels::Block ChainPanels::BroadbandBlockOf(int number) {
  const KindRow& row =
      KindOf(BroadbandKinds(), around.settings.broadbandType[number], BroadbandKind::NoiseEq);
  return {row.panel, row.name, around.master.blocks.BroadbandSuffix(number),
          &around.master.chain.Broadband(number).active, true};
}

void ChainPanels::OpenFilter(int stage) {
  around.settings.curFilter = static_cast<std::int16_t>(stage);
  Open([this, stage] { return FilterBlockOf(stage); },
       around.settings.filterType[stage] != FilterKind::SpectralInverse);
}

void ChainPanels::OpenEqualizer(int number) {
  around.settings.curEq = static_cast<std::int16_t>(number);
  Open([this, number] { return EqualizerBlockOf(number); }, true);
}

void ChainPanels::OpenBroadband(int number) {
  around.settings.curBroadband = static_cast<std::int16_t>(number);
  Open([this, number] { return BroadbandBlockOf(number); }, true);
}

void ChainPanels::OpenBlock(FixedBlock& block) {
  Open([&block] { return Block{block.panel, block.panel, "", &block.active, false}; }, false);
}

void ChainPanels::OpenMemory(int memory) {
  around.settings.auxMemory = static_cast<std::int16_t>(memory);
  Open([] { return Block{"AuxCtl", "AuxCtl", "", nullptr, false}; }, false);
}

void ChainPanels::ConfigGeneralFilters(const std::function<void()>& runEvents) {
  ForEachOf(around.settings.curFilter, FilterStages, [&](std::int16_t stage) {
    runEvents();
    const Block block = FilterBlockOf(stage);
    PanelHost::LoadUnshown(block.panel, ContextFor(block));
  });
}

void ChainPanels::ConfigEqualizers(const std::function<void()>& runEvents) {
  ForEachOf(around.settings.curEq, 2, [&](std::int16_t number) {
    runEvents();
    const Block block = EqualizerBlockOf(number);
    PanelHost::LoadUnshown(block.panel, ContextFor(block));
  });
}

void ChainPanels::ConfigBroadbandFilters(const std::function<void()>& runEvents) {
  ForEachOf(around.settings.curBroadband, 2, [&](std::int16_t number) {
    runEvents();
    const Block block = BroadbandBlockOf(number);
    PanelHost::LoadUnshown(block.panel, ContextFor(block));
  });
}

void ChainPanels::DisplayThisFilter() const {
  if (around.periodic.pollMode != poll::Coefficients) return;
  around.coefReader.Display(around.settings.curFilter);
  around.displays.Refresh();
}

void ChainPanels::DisplayMasterControl() const {
  around.displays.KeepOpen(false);
  Forms& forms = around.forms;
  const bool hidden = std::ranges::any_of(forms.open, [this](const Forms::Entry& entry) {
    return entry.form == &around.master.form && entry.hidden;
  });
  if (around.periodic.pollMode != poll::MainLevels && hidden) forms.Show(around.master.form);
}

void ChainPanels::ExchangeTable(const TableExchange& exchange) const {
  using Direction = MemSelect::Direction;
  constexpr std::string_view window = "MemSelect";
  around.windows.Get<MemSelect>(window).Prepare(
      exchange.direction == TableExchange::Recall ? Direction::Recall : Direction::Store, exchange.fileType,
      exchange.recalled);
  around.windows.OpenOver(window, exchange.over == nullptr ? host.OpenForm() : *exchange.over);
}

bool ChainPanels::StoreInMemory(int memory, int function) {
  modDeviceComm& device = around.device;
  const std::string title = "Memory " + std::to_string(memory) + " Storage";
  if (!device.comm.CommPortOpen) {
    around.desk.Box(box::Exclamation, title,
                    "There is no connection to the unit.  Nothing has been stored in its memory.");
    return false;
  }
  constexpr std::int16_t longestSeconds = 60;
  around.desk.SetHourglass(true);
  const bool timerWasOn = around.periodic.tmrBargraph->Enabled();
  around.periodic.EnableMainTimer(false);
  if (around.settings.settingsChanged != 0) around.edits.SendChanges();
  around.desk.ShowProgress("Storing settings in the unit", 0, 1);
  device.IssueCommand(registers::StoreInMemory, (function & 15) * 4 + (memory & 12) * 8 + (memory & 3),
                      longestSeconds);
  around.desk.ShowProgress("Storing settings in the unit", 1, 1);
  around.desk.SetHourglass(false);
  // A failure has told the operator and closed the line.
  const bool stored = device.comm.CommPortOpen;
  if (stored) around.periodic.EnableMainTimer(timerWasOn);
  around.master.lblStatus.core.SetCaption(
      stored ? "The settings are stored in memory " + std::to_string(memory) + " of the unit." : "");
  return stored;
}

}  // namespace vc
