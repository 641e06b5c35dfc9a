// What the menus and the keys of the master control panel do, but for the connection.
#pragma once

#include <functional>
#include <string>

#include "model/EditHistory.h"
#include "platform/Desk.h"
#include "shell/ChainLayout.h"
#include "shell/ConnectionMenu.h"
#include "shell/MasterMenus.h"
#include "shell/RecordMirrors.h"
#include "text/Wire.h"

namespace vc {

struct ChainPanels;
struct Look;
struct Reports;
struct Windows;

// What only the session can do.
struct SessionCalls {
  Wire<void()> newSetup;
  Wire<void(const std::string& what, const std::function<void()>& go)> before;  // see SetupContext
  Wire<void()> exit;
  // No unit was found: true where the simulated one runs instead now.
  Wire<bool()> offerUnit;
  Wire<void()> showUnit;           // where it was taken up
  Wire<void(int side)> hearSetup;  // SetupPair::A or B
  Wire<void()> switchSetup, copySetup;
  Wire<void()> switchHeard;  // between before and after, of the simulated unit
  Wire<void(bool wanted)> queueRefresh;
  // Tells the operator something, on the splash while that is up and on the master panel from then on.
  Wire<void(const std::string& text)> tell;
};

struct MenuActions {
  // What it works on.
  struct Around {
    MasterMenus& menus;
    TopRow& top;
    ChainLayout& chain;
    RecordMirrors& mirrors;
    ChainBlocks& blocks;
    ConnectionMenu& connection;
    EditHistory& history;
    Desk& desk;
    ChainPanels& panels;
    Windows& windows;
    Look& look;
    Reports& reports;
    SessionCalls session;
  };
  explicit MenuActions(const Around& parts);

  // Which step can be undone, and which done again.
  void ShowSteps();
  // Which of the two setups is heard: 0 A, 1 B.
  void ShowSetupHeard(int side);
  void CheckTheme(Theme theme);
  // Stores to the open file, with all that is asked before; the window stays where that comes to nothing.
  void StoreOpenSetup();

 private:
  void BindFileMenu();
  void BindEditMenu();
  void BindSetups();
  void BindSettings();
  void BindReports();
  void BindHelp();
  void BindKeys();
  void OpenFileWindow(std::string_view name);
  void AskForNewSetup();
  void OpenWebPage();

  Around around;
  MasterMenus& menus;
};

}  // namespace vc
