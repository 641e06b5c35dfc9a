// The master control panel: the operator's view of the whole chain.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "link/modDeviceComm.h"
#include "model/SystemSettings.h"
#include "platform/Desk.h"
#include "shell/ChainBlocks.h"
#include "shell/ChainLayout.h"
#include "shell/ConnectionMenu.h"
#include "shell/MasterMenus.h"
#include "shell/RecordEdits.h"
#include "shell/RecordMirrors.h"
#include "widgets/Controls.h"
#include "widgets/Form.h"

namespace vc {

// What the panel needs of the session around it.
struct MasterHooks {
  std::function<void()> showObjectLog = [] {};
  std::function<void()> newSetup = [] {};
  std::function<void()> storeSetup = [] {};
  std::function<void()> storeOpenSetup = [] {};
  std::function<void()> recallSetup = [] {};
  std::function<void()> editDescription = [] {};
  std::function<void()> pickWorkingFolder = [] {};
  std::function<void(Theme theme)> chooseTheme = [](Theme) {};
  // Opens the help at a topic, 0 for its beginning; false where there is no help to open.
  std::function<bool(int context)> openHelp = [](int) { return false; };
  std::function<void()> exit = [] {};
  // Windows of the chain's blocks: filter stage 1..6, equalizer and broadband stage 1 or 2, a fixed block by
  // the name of its form (a literal), a stand-alone memory 1..10.
  std::function<void(int stage)> openFilter = [](int) {};
  std::function<void(int number)> openEqualizer = [](int) {};
  std::function<void(int number)> openBroadband = [](int) {};
  std::function<void(std::string_view form, FixedBlock& block)> openBlock = [](std::string_view,
                                                                               FixedBlock&) {};
  std::function<void(int memory)> openMemory = [](int) {};
  // One of the displays, or none, has been chosen.
  std::function<void(std::int16_t which)> displayChosen = [](std::int16_t) {};
};

// What ShowDisplay shows.
namespace display {
inline constexpr std::int16_t None = 0, Coefficients = 1, Spectrum = 2;
}  // namespace display

struct MasterControl {
  MasterControl(RecordEdits& recordEdits, modDeviceComm& link, Desk& operatorDesk, PeriodicService& timers);

  Form form;
  MasterHooks hooks;

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
  Label lblSetupFile{fraFoot, "lblSetupFile", ""};  // the path of the open setup

  ChainBlocks blocks;
  RecordMirrors mirrors;
  ConnectionMenu connection;

  // Fills the panel from the record, with every handler of its controls inert.
  void ConfigMasterControl();
  // The lists of bandwidth and configuration alone, in the same way.
  void ShowConfiguration();
  // How many filters may be chosen and how many are, and the blocks.
  void ConfigureStages();
  // display::None, Coefficients or Spectrum; the buttons follow.
  void ShowDisplay(std::int16_t which);
  void ShowOversize(bool shown);
  void ShowKeeping(const std::string& note);
  void CheckTheme(Theme theme);

 private:
  void BindMenus();
  void BindSettingsMenu();
  void BindLaterMenus();
  void BindBlocks();
  void BindDisplays();
  void BindKeys();
  void ShowEdits();
  void OpenHelp(const std::string& topic, int context);
  void TellLater(const std::string& what);
  void AskForNewSetup();

  RecordEdits& edits;
  SystemSettings& settings;
  Desk& desk;
  std::int16_t displayed = display::None;
};

}  // namespace vc
