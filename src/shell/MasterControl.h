// The master control panel: so far its connection part, the level bars and the menus that belong to them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "link/modDeviceComm.h"
#include "model/SystemSettings.h"
#include "platform/Desk.h"
#include "shell/ConnectionIcon.h"
#include "widgets/Controls.h"
#include "widgets/Form.h"
#include "widgets/LevelBar.h"

namespace vc {

// What the panel needs of the session around it.
struct MasterHooks {
  std::function<void(bool on)> enableMainTimer = [](bool) {};
  std::function<void(bool fit)> configureStages = [](bool) {};
  std::function<void()> refreshConnectionText = [] {};
  std::function<void()> showObjectLog = [] {};
  std::function<void()> newSetup = [] {};
  std::function<void()> storeSetup = [] {};
  std::function<void()> recallSetup = [] {};
  std::function<void()> editDescription = [] {};
  std::function<void()> pickWorkingFolder = [] {};
  std::function<void()> exit = [] {};
};

struct MasterControl {
  MasterControl(SystemSettings& record, modDeviceComm& link, Desk& operatorDesk);

  Form form;
  MasterHooks hooks;

  MenuEntry mnuFile{form, "mnuFile", "&File"};
  MenuEntry mnuNew{mnuFile, "mnuNew", "&New Filter Configuration"};
  MenuEntry mnuSave{mnuFile, "mnuSave", "&Save Setup File"};
  MenuEntry mnuOpen{mnuFile, "mnuOpen", "&Open Setup File"};
  MenuEntry mnuViewDescription{mnuFile, "mnuViewDescription", "&Edit File Description"};
  MenuEntry mnuWorkingFolder{mnuFile, "mnuWorkingFolder", "Edit &Working Folder"};
  MenuEntry mnuExit{mnuFile, "mnuExit", "E&xit"};

  MenuEntry mnuSettings{form, "mnuSettings", "Setti&ngs"};
  MenuEntry mnuConnect;
  MenuEntry mnuDisconnect;
  MenuEntry mnuLocalConnectSettings{mnuSettings, "mnuLocalConnectSettings", "Connect &Settings"};
  MenuEntry mnuComPort{mnuLocalConnectSettings, "mnuComPort", "&Com Port"};
  ControlArray<MenuEntry, 1, 9> mnuComSelect;
  MenuEntry mnuBaudRate{mnuLocalConnectSettings, "mnuBaudRate", "&Baud Rate"};
  ControlArray<MenuEntry, 0, 5> mnuBaudSelect;

  MenuEntry mnuHelp{form, "mnuHelp", "&Help"};
  MenuEntry mnuAbout{mnuHelp, "mnuAbout", "&About Master Control Program"};

  Frame fraConnection{form, "fraConnection", "Connection", Arrangement::Columns};
  Picture pbxInfoPic{fraConnection, "pbxInfoPic", "Activity", ConnectionIconImages, DrawConnectionIcon};
  TextBox txtComInfo{fraConnection, "txtComInfo", "State"};

  Frame fraLevels{form, "fraLevels", "", Arrangement::Columns};
  Frame fraInputs{fraLevels, "fraInputs", "Inputs", Arrangement::Columns};
  LevelBar lbInputLeft{fraInputs, "lbInputLeft", "Left"};
  LevelBar lbInputRight{fraInputs, "lbInputRight", "Right"};
  Frame fraOutputs{fraLevels, "fraOutputs", "Outputs", Arrangement::Columns};
  LevelBar lbOutputLeft{fraOutputs, "lbOutputLeft", "Left"};
  LevelBar lbOutputRight{fraOutputs, "lbOutputRight", "Right"};

  // Shown while a filter has borrowed DSP stages.
  ControlArray<Label, 0, 2> lblOversizeFilters{
      form, "lblOversizeFilters", {"Oversize Filters", "A filter has borrowed DSP stages of the unit."}};

  Label lblStatus{form, "lblStatus", ""};

  // Fills the panel from the record, with every handler of its controls inert.
  void ConfigMasterControl();
  void ShowOversize(bool shown);
  // Puts the check marks of the port and rate menus where the record says.
  void CheckPortAndRate();
  void CheckConnectEntries(bool connected);
  // Caption of the chosen port's entry, "COM1".
  std::string PortCaption();
  // With ask it requests the unit's version, and drops the link where that worked; without, the update is due
  // at once. Where it is due the operator is asked, and told what follows.
  void CheckFirmwareVersion(bool ask);

 private:
  void BindMenus();
  void BindKeys();
  void Connect();
  void SelectPort(int entry);
  void SelectRate(int entry);
  // False where the operator wants to keep the session that a change would end.
  bool MayDisconnect(const std::string& title, const std::string& what);
  void OfferFirmwareUpdate();
  void AskForNewSetup();
  void ShowAbout();
  void UpdateOnDemand();

  SystemSettings& settings;
  modDeviceComm& device;
  Desk& desk;
  int updatePresses = 0;
};

}  // namespace vc
