#include "shell/MasterControl.h"

#include "link/ConnectionState.h"
#include "text/ProgramInfo.h"

namespace vc {

MasterControl::MasterControl(RecordEdits& recordEdits, modDeviceComm& link, Desk& operatorDesk,
                             PeriodicService& timers)
    : form("MasterControl", ApplicationTitle + " Master Control Panel"),
      blocks(chain, recordEdits.settings),
      mirrors(top, chain, blocks, recordEdits),
      connection({menus, recordEdits.settings, link, recordEdits.config, operatorDesk, timers}),
      edits(recordEdits),
      settings(recordEdits.settings),
      desk(operatorDesk) {
  constexpr std::int32_t longestSilence = 20000;  // hundredths, until the link is given up
  top.txtComInfo.readOnly = true;
  top.txtComInfo.widest = ConnectionText(StateConnected, 1, LastBaudIndex) + UnansweredText(longestSilence);
  lblSetupFile.elided = true;
  form.initialFocus = &top.txtComInfo.core;  // where no stray key or wheel can change anything
  ShowOversize(false);
  form.closeRequested = [this] { hooks.exit(); };
  BindMenus();
  BindBlocks();
  BindDisplays();
  BindKeys();
}

void MasterControl::BindBlocks() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    chain.Filter(stage).config.clicked = [this, stage] { hooks.openFilter(stage); };
  }
  for (const int side : {1, 2}) {
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
}

void MasterControl::ConfigMasterControl() {
  const Mute inert(form);
  mirrors.Show();
  ShowEdits();
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

}  // namespace vc
