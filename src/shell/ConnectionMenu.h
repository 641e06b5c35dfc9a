// The master control panel's dealings with the line and the unit's firmware: the entries for the connection,
// its port and its rate.
#pragma once

#include <string>

#include "link/modDeviceComm.h"
#include "model/RecordEdits.h"
#include "model/modDeviceConfig.h"
#include "platform/Desk.h"
#include "shell/MasterMenus.h"

namespace vc {

struct PeriodicService;

struct ConnectionMenu {
  // What it works on.
  struct Around {
    MasterMenus& menus;
    RecordEdits& edits;
    modDeviceComm& device;
    modDeviceConfig& config;
    Desk& desk;
    PeriodicService& periodic;
  };
  explicit ConnectionMenu(const Around& parts);

  // Puts the check marks of the port and rate menus where the record says.
  void CheckPortAndRate();
  void CheckConnectEntries(bool connected);
  // Caption of the chosen port's entry, "COM1".
  std::string PortCaption();
  // Of the chosen rate's entry, "19200 baud".
  std::string RateCaption();
  // With ask it requests the unit's version, and drops the link where that worked; without, the update is due
  // at once. Where it is due the operator is asked, and told what follows. False where the unit went away
  // over the request, of which the operator has been told.
  bool CheckFirmwareVersion(bool ask);
  // At the second call: the update, as if it were due.
  void UpdateOnDemand();
  void ShowAbout();

 private:
  void Connect();
  void SelectPort(int entry);
  void SelectRate(int entry);
  // False where the operator wants to keep the session that a change would end.
  bool MayDisconnect(const std::string& title, const std::string& what);
  void ShowSelection();
  void OfferFirmwareUpdate();

  Around around;
  int updatePresses = 0;
};

}  // namespace vc
