// Opens any panel or display of the tables by the name of its form, whatever it edits.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "PanelRun.h"
#include "Unheard.h"
#include "model/Kinds.h"
#include "shell/Displays.h"
#include "shell/PanelHost.h"

namespace support {

// At a stage beside the first, since what takes the wrong index often takes that one.
inline constexpr int PanelStage = 2, PanelSide = 1, PanelMemory = 3;

// The panel that another one opens over itself.
inline constexpr std::string_view OverAnother = "CtlCustomCurve";
inline std::vector<std::string> PanelNames() {
  std::vector<std::string> names{std::string(OverAnother)};
  for (const vc::PanelRow& row : vc::PanelHost::Rows()) names.emplace_back(row.name);
  for (const vc::DisplayRow& row : vc::Displays::Rows()) names.emplace_back(row.form);
  return names;
}

// Where a kind has this panel, the stage is made that kind and its panel opened.
template <typename Kinds, typename Open>
bool OpenKind(PanelRun& run, const Kinds& kinds, std::int16_t& stored, std::string_view panel, Open open) {
  for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
    if (kinds[kind].panel != panel) continue;
    stored = static_cast<std::int16_t>(kind);
    run.session.master.ConfigMasterControl();
    open();
    return true;
  }
  return false;
}

// What is reached in none of these ways is a panel of the unit's memories, or does not open.
inline void OpenPanel(PanelRun& run, std::string_view panel) {
  if (panel == OverAnother) {
    constexpr std::int16_t custom = 3;
    run.record.sifROSSelect[PanelStage] = custom;
    OpenPanel(run, "CtlSIF");
    EXPECT_EQ(run.Click("btnEdit"), "");
    return;
  }
  for (const vc::DisplayRow& row : vc::Displays::Rows()) {
    if (row.form == panel) return run.session.master.ShowDisplay(row.which);
  }
  vc::ChainPanels& panels = run.session.panels;
  vc::SystemSettings& record = run.record;
  if (OpenKind(run, vc::FilterKinds(), record.filterType[PanelStage], panel,
               [&] { panels.OpenFilter(PanelStage); }) ||
      OpenKind(run, vc::EqKinds(), record.eqType[PanelSide], panel,
               [&] { panels.OpenEqualizer(PanelSide); }) ||
      OpenKind(run, vc::BroadbandKinds(), record.broadbandType[PanelSide], panel,
               [&] { panels.OpenBroadband(PanelSide); }))
    return;
  for (vc::FixedBlock* block : run.session.master.chain.FixedBlocks()) {
    if (block->panel == panel) return panels.OpenBlock(*block);
  }
  panels.OpenMemory(PanelMemory);
}

inline void ClosePanels(PanelRun& run) {
  while (run.Top().name != "MasterControl") run.CloseTop();
}

// What a panel needs that stands beside the master panel.
inline vc::PanelContext LoneContext(PanelRun& run, const std::string& suffix) {
  return {.settings = run.record,
          .edits = run.session.edits,
          .desk = run.test.desk,
          .forms = run.session.forms,
          .events = run.test.loop,
          .status = run.session.device.status,
          .portOpen = run.session.device.comm.CommPortOpen,
          .blockSwitch = nullptr,
          .suffix = suffix,
          .ofStage = true,
          .activated = DeadEnd{},
          .unloaded = DeadEnd{},
          .frequencyAxis = DeadEnd{},
          .turnFrequencyAxis = DeadEnd{},
          .storeOpenSetup = DeadEnd{},
          .switchSetup = DeadEnd{},
          .setupMark = DeadEnd{},
          .switchHeard = DeadEnd{},
          .storeInMemory = DeadEnd{},
          .exchangeTable = DeadEnd{},
          .askForEqualizerLevels = DeadEnd{},
          .spectra = run.session.spectrumReader,
          .clearAnalyzer = DeadEnd{},
          .takeAnalyzer = DeadEnd{}};
}

// Every panel that there is is opened: visit() with the panel on top, and the panel's name in the trace.
template <typename Visit>
void ForEachPanel(PanelRun& run, Visit visit) {
  for (const std::string& name : PanelNames()) {
    SCOPED_TRACE(name);
    OpenPanel(run, name);
    ASSERT_EQ(run.Top().name, name);
    visit();
    ClosePanels(run);
  }
}

}  // namespace support
