// The master control panel's dealings with the line and the unit's firmware: the entries for the connection,
// its port and its rate.
#pragma once

#include <functional>
#include <string>

#include "link/modDeviceComm.h"
#include "model/RecordEdits.h"
#include "model/modDeviceConfig.h"
#include "platform/Desk.h"
#include "platform/Files.h"
#include "shell/MasterMenus.h"
#include "text/Wire.h"

namespace vc {

struct PeriodicService;
struct Windows;

struct ConnectionMenu {
  // What it works on.
  struct Around {
    MasterMenus& menus;
    RecordEdits& edits;
    modDeviceComm& device;
    modDeviceConfig& config;
    Desk& desk;
    Files& files;
    PeriodicService& periodic;
    Windows& windows;
    Wire<void(const std::string& text)> tell;  // to the operator, without a box
    // No unit was found: true where another one can be connected to now.
    Wire<bool()> offerUnit;
    Wire<void()> showUnit;  // where the operator has taken it up
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
  // at once. Where it is due the operator is asked, and told what follows. What is to follow an update waits
  // until its window has gone; of a program that ends it never comes. present is false where the unit went
  // away over the request, of which the operator has been told.
  void CheckFirmwareVersion(bool ask, const std::function<void(bool present)>& then);
  // At the second call: the update, as if it were due.
  void UpdateOnDemand();
  void ShowAbout();
  // Connects by the record's port and rate, and sends the settings.
  void Connect();
  // Shows the record's port and rate.
  void ShowSelection();

 private:
  void SelectPort(int entry);
  void SelectRate(int entry);
  // False where the operator wants to keep the session that a change would end.
  bool MayDisconnect(const std::string& title, const std::string& what);
  void OfferFirmwareUpdate(const std::function<void()>& then);
  void UpdateFirmware(const std::function<void()>& then);
  // Once the link stands again, or does not.
  void TellUpdate(const std::string& failure);

  Around around;
  std::string versionBefore;  // an update
  int updatePresses = 0;
};

}  // namespace vc
