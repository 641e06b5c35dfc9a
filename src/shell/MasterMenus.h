// The menus of the master control panel.
#pragma once

#include "text/ProgramInfo.h"
#include "widgets/Controls.h"

namespace vc {

struct MasterMenus {
  explicit MasterMenus(Form& owner) : form(owner) {}
  Form& form;

  MenuEntry mnuFile{form, "mnuFile", "&File"};
  MenuEntry mnuNew{mnuFile, "mnuNew", "&New Filter Configuration"};
  MenuEntry mnuSave{mnuFile, "mnuSave", "&Save Setup File"};
  MenuEntry mnuSaveOpen{mnuFile, "mnuSaveOpen", "Save to Open Fi&le"};
  MenuEntry mnuOpen{mnuFile, "mnuOpen", "&Open Setup File"};
  MenuEntry mnuRecent{mnuFile, "mnuRecent", "&Recent Files"};
  // Named as the files are; the whole path is the tip.
  ControlArray<MenuEntry, 1, 8> mnuRecentFile{mnuRecent, "mnuRecentFile", {}};
  MenuEntry mnuRevert{mnuFile, "mnuRevert", "Re&vert to File"};
  MenuEntry mnuViewDescription{mnuFile, "mnuViewDescription", "&Edit File Description"};
  MenuEntry mnuWorkingFolder{mnuFile, "mnuWorkingFolder", "Edit &Working Folder"};
  MenuEntry mnuClean{mnuFile, "mnuClean", "&Clean a Recording..."};
  MenuEntry mnuExit{mnuFile, "mnuExit", "E&xit"};

  // Its letters are all taken, by the panel's keys and by other menus.
  MenuEntry mnuEdit{form, "mnuEdit", "Edit"};
  MenuEntry mnuUndo{mnuEdit, "mnuUndo", "&Undo"};
  MenuEntry mnuRedo{mnuEdit, "mnuRedo", "&Redo"};
  MenuEntry mnuSwitchSetup{mnuEdit, "mnuSwitchSetup", "&Switch to Setup B"};
  MenuEntry mnuCopySetup{mnuEdit, "mnuCopySetup", "&Copy Setup A to B"};

  MenuEntry mnuView{form, "mnuView", "&View"};
  ControlArray<MenuEntry, 0, 3> mnuTheme{
      mnuView, "mnuTheme", {"Colors of the &System", "&Light Colors", "&Dark Colors"}};
  MenuEntry mnuFrequencyAxis{mnuView, "mnuFrequencyAxis", "Lo&garithmic Frequency Axis"};

  MenuEntry mnuSettings{form, "mnuSettings", "Setti&ngs"};
  MenuEntry mnuConnect{mnuSettings, "mnuConnect", "&Connect to " + ApplicationTitle};
  MenuEntry mnuDisconnect{mnuSettings, "mnuDisconnect", "&Disconnect from " + ApplicationTitle};
  MenuEntry mnuLocalConnectSettings{mnuSettings, "mnuLocalConnectSettings", "Connect &Settings"};
  MenuEntry mnuComPort{mnuLocalConnectSettings, "mnuComPort", "&Com Port"};
  ControlArray<MenuEntry, 1, 9> mnuComSelect{
      mnuComPort, "mnuComSelect", {"COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8", "COM9"}};
  MenuEntry mnuBaudRate{mnuLocalConnectSettings, "mnuBaudRate", "&Baud Rate"};
  ControlArray<MenuEntry, 0, 5> mnuBaudSelect{
      mnuBaudRate, "mnuBaudSelect", {"9600 baud", "14400 baud", "19200 baud", "38400 baud", "115200 baud"}};
  MenuEntry mnuLevelControls{mnuSettings, "mnuLevelControls", "&Enable Software Input Level Controls"};
  MenuEntry mnuChannelSwap{mnuSettings, "mnuChannelSwap", "S&wap Digital Input Channels"};

  MenuEntry mnuUnit{mnuSettings, "mnuUnit", "Simulated &Unit..."};
  MenuEntry mnuHearBefore{mnuSettings, "mnuHearBefore", "Hear It &Before Processing"};

  MenuEntry mnuLineTrace{mnuSettings, "mnuLineTrace", "Line &Trace..."};

  MenuEntry mnuStandAlone{form, "mnuStandAlone", "S&tand-Alone"};
  ControlArray<MenuEntry, 1, 10> mnuMemorySelect{
      mnuStandAlone,
      "mnuMemorySelect",
      {"Memory &1", "Memory &2", "Memory &3", "Memory &4", "Memory &5", "Memory &6", "Memory &7", "Memory &8",
       "Memory &9", "Memory 1&0"}};

  MenuEntry mnuReport{form, "mnuReport", "&Report-Generator"};
  MenuEntry mnuPrintReport{mnuReport, "mnuPrintReport", "Print Report To &Printer"};
  MenuEntry mnuFileReport{mnuReport, "mnuFileReport", "Save Report To &File"};
  MenuEntry mnuAppendFileReport{mnuReport, "mnuAppendFileReport", "&Append Report To File"};
  MenuEntry mnuPrintScreen{mnuReport, "mnuPrintScreen", "&How To Print Screens"};

  MenuEntry mnuHelp{form, "mnuHelp", "&Help"};
  MenuEntry mnuHelpContents{mnuHelp, "mnuHelpContents", "&Overview"};
  MenuEntry mnuFastStart{mnuHelp, "mnuFastStart", "&Fast Start Instructions"};
  MenuEntry mnuHelpPrintScreen{mnuHelp, "mnuHelpPrintScreen", "&How To Print Screens"};
  MenuEntry mnuWebPage{mnuHelp, "mnuWebPage", MakerName + " Website"};
  MenuEntry mnuAbout{mnuHelp, "mnuAbout", "&About Master Control Program"};
};

}  // namespace vc
