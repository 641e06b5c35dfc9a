// The master control panel: the operator's view of the whole chain.
#pragma once

#include <cstdint>
#include <string>

#include "link/modDeviceComm.h"
#include "model/RecordEdits.h"
#include "model/SystemSettings.h"
#include "platform/Desk.h"
#include "shell/ChainBlocks.h"
#include "shell/ChainLayout.h"
#include "shell/ConnectionMenu.h"
#include "shell/MasterMenus.h"
#include "shell/MenuActions.h"
#include "shell/RecordMirrors.h"
#include "widgets/Controls.h"
#include "widgets/Form.h"

namespace vc {

struct Displays;

struct MasterControl {
  // What it works on. Some of these come to be only after the panel.
  struct Around {
    RecordEdits& edits;
    modDeviceConfig& config;
    modDeviceComm& device;
    Desk& desk;
    Files& files;
    PeriodicService& periodic;
    ChainPanels& panels;
    Displays& displays;
    Windows& windows;
    Look& look;
    Reports& reports;
    SessionCalls session;
  };
  explicit MasterControl(const Around& parts);

  Form form;
  MasterMenus menus{form};
  TopRow top{form};
  ChainLayout chain{form};
  // Shown while a filter has borrowed DSP stages.
  Frame fraFoot{form, "fraFoot", "", Arrangement::Columns};
  ControlArray<Label, 0, 2> lblOversizeFilters{
      fraFoot, "lblOversizeFilters", {"Oversize Filters", "A filter has borrowed DSP stages of the unit."}};
  Label lblStatus{fraFoot, "lblStatus", ""};
  // How the settings are kept, where that is not as always.
  Label lblKeeping{fraFoot, "lblKeeping", ""};
  // Before or after, while the simulated unit can be heard.
  Label lblHeard{fraFoot, "lblHeard", ""};
  Label lblSetupHeard{fraFoot, "lblSetupHeard", ""};
  Label lblSetupFile{fraFoot, "lblSetupFile", ""};  // the path of the open setup
  Picture imgNamedLogo{fraFoot, "imgLogo", ApplicationTitle, 1, DrawNamedLogo, 1};

  ChainBlocks blocks;
  RecordMirrors mirrors;
  ConnectionMenu connection;
  MenuActions actions;

  // Fills the panel from the record, with every handler of its controls inert.
  void ConfigMasterControl();
  // The lists of bandwidth and configuration alone, in the same way.
  void ShowConfiguration();
  // How many filters may be chosen and how many are, and the blocks.
  void ConfigureStages();
  // display::None, Coefficients or Spectrum, see Displays; the buttons follow.
  void ShowDisplay(std::int16_t which);
  // How the frequencies of all responses are laid out.
  void LayOutFrequencies(AxisLaw law);
  void ShowOversize(bool shown);
  void ShowKeeping(const std::string& note);

 private:
  void BindBlocks();
  void OpenFilter(const ChainFilter& filter);
  void BindDisplays();

  SystemSettings& settings;
  ChainPanels& panels;
  Displays& displays;
};

}  // namespace vc
