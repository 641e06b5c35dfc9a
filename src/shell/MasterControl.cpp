#include "shell/MasterControl.h"

#include <variant>

#include "link/ConnectionState.h"
#include "model/FieldAccess.h"
#include "shell/ChainPanels.h"
#include "shell/Displays.h"
#include "shell/PeriodicService.h"
#include "text/ProgramInfo.h"

namespace vc {

MasterControl::MasterControl(const Around& parts)
    : form("MasterControl", ApplicationTitle + " Master Control Panel", FormLook::Dense),
      blocks(chain, parts.edits.settings),
      mirrors(top, chain, blocks, parts.edits),
      connection({menus, parts.edits, parts.device, parts.config, parts.desk, parts.files, parts.periodic,
                  parts.windows, parts.session.tell, parts.session.offerUnit, parts.session.showUnit}),
      actions({menus, top, chain, mirrors, blocks, connection, parts.edits.history, parts.desk, parts.panels,
               parts.windows, parts.look, parts.reports, parts.session}),
      settings(parts.edits.settings),
      panels(parts.panels),
      displays(parts.displays) {
  constexpr std::int32_t longestSilence = 20000;  // hundredths, until the link is given up
  top.txtComInfo.readOnly = true;
  top.txtComInfo.widest = ConnectionText(StateConnected, 1, LastBaudIndex) + UnansweredText(longestSilence);
  lblSetupFile.elided = true;
  imgNamedLogo.lines = {5, 1};
  for (Label& label : lblOversizeFilters) label.keepsRoom = true;
  form.initialFocus = &top.txtComInfo.core;  // where no stray key or wheel can change anything
  for (Picture* logo : {&top.imgLogo, &imgNamedLogo}) {
    logo->core.tip = WithoutAccessKey(menus.mnuWebPage.core.Caption());
    logo->clicked = [this] { menus.mnuWebPage.Click(); };
  }
  ShowOversize(false);
  lblHeard.core.SetVisible(false);
  form.closeRequested = menus.mnuExit.clicked;
  BindBlocks();
  BindDisplays();
}

void MasterControl::BindBlocks() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    chain.Filter(stage).config.clicked = [this, stage] { panels.OpenFilter(stage); };
  }
  for (const int side : {1, 2}) {
    chain.Equalizer(side).config.clicked = [this, side] { panels.OpenEqualizer(side); };
    chain.Broadband(side).config.clicked = [this, side] { panels.OpenBroadband(side); };
  }
  blocks.whole.open = [this](const ChainFilter& filter) { OpenFilter(filter); };
  for (FixedBlock* block : chain.FixedBlocks()) {
    block->config.clicked = [this, opened = block] { panels.OpenBlock(*opened); };
  }
}

void MasterControl::OpenFilter(const ChainFilter& filter) {
  if (const auto* end = std::get_if<ChainEnd>(&filter)) {
    return panels.OpenBlock(*end == ChainEnd::Input ? chain.ihpf : chain.ohpf);
  }
  const auto& block = std::get<BlockKind>(filter);
  if (block.family == BlockFamily::Filter) return panels.OpenFilter(block.number);
  if (block.family == BlockFamily::Equalizer) return panels.OpenEqualizer(block.number);
  panels.OpenBroadband(block.number);
}

void MasterControl::ConfigMasterControl() {
  const Mute inert(form);
  mirrors.Show();
  actions.ShowSteps();
  connection.CheckPortAndRate();
  menus.mnuLevelControls.SetChecked(settings.levelControlsShown != 0);
  menus.mnuChannelSwap.SetChecked(settings.channelSwap != 0);
  chain.lblSwap.core.SetVisible(settings.channelSwap != 0);
  blocks.ShowSignalPath();
}

void MasterControl::ShowConfiguration() {
  {
    const Mute inert(form);
    mirrors.ShowConfiguration();
  }
  ConfigureStages();
}

void MasterControl::ConfigureStages() {
  {
    const Mute inert(form);
    mirrors.ShowNumFilters();
  }
  blocks.ConfigureBlocks();
}

void MasterControl::BindDisplays() {
  top.btnCoeffDisplay.clicked = [this] {
    ShowDisplay(top.btnCoeffDisplay.Value() == 1 ? display::Coefficients : display::None);
  };
  top.btnSpecAnalyzer.clicked = [this] {
    ShowDisplay(top.btnSpecAnalyzer.Value() == 1 ? display::Spectrum : display::None);
  };
}

void MasterControl::ShowDisplay(std::int16_t which) { displays.Show(which); }

void MasterControl::LayOutFrequencies(AxisLaw law) {
  menus.mnuFrequencyAxis.SetChecked(law == AxisLaw::Logarithmic);
  blocks.LayOutFrequencies(law);
  panels.Refresh();
}

void MasterControl::ShowOversize(bool shown) {
  for (Label& label : lblOversizeFilters) label.core.SetVisible(shown);
}

void MasterControl::ShowKeeping(const std::string& note) {
  lblKeeping.core.SetCaption(note);
  lblKeeping.core.SetVisible(!note.empty());
}

}  // namespace vc
