// The master control panel's dealings with the line and the unit's firmware.
#include "shell/MasterControl.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int FirmwareNeeded = 401;  // hundredths

std::string VersionOf(int hundredths) { return FixedText(hundredths / 100.0, 2); }

}  // namespace

void MasterControl::CheckPortAndRate() {
  for (MenuEntry& entry : menus.mnuComSelect) entry.SetChecked(entry.core.index == settings.comPort);
  for (MenuEntry& entry : menus.mnuBaudSelect) entry.SetChecked(entry.core.index == settings.baudIndex);
}

void MasterControl::CheckConnectEntries(bool connected) {
  menus.mnuConnect.SetChecked(connected);
  menus.mnuDisconnect.SetChecked(!connected);
}

std::string MasterControl::PortCaption() {
  return menus.mnuComSelect(MinMax(settings.comPort, 1, 9)).core.Caption();
}

std::string MasterControl::RateCaption() {
  return menus.mnuBaudSelect(MinMax(settings.baudIndex, 0, 4)).core.Caption();
}

void MasterControl::Connect() {
  desk.SetHourglass(true);
  device.InitComPort(true);
  CheckPortAndRate();  // a rate that was none has been corrected
  hooks.configureStages(true);
  desk.SetHourglass(false);
}

bool MasterControl::MayDisconnect(const std::string& title, const std::string& what) {
  if (!device.comm.CommPortOpen) return true;
  const std::string text =
      "Changing the " + what + " will disconnect the current session.  To connect using the new " + what +
      " setting use the 'Connect to " + ApplicationTitle + "' menu option under the 'Settings' menu.";
  if (desk.Box(box::AskOkCancel, title, text) != Answer::Ok) return false;
  device.DisconnectZorq(true);
  return true;
}

void MasterControl::SelectPort(int entry) {
  const std::int16_t port = MinMax(LowWord(entry), 1, 9);
  if (!MayDisconnect("COM Port Change", "COM Port")) return;
  settings.comPort = port;
  CheckPortAndRate();
  hooks.refreshConnectionText();
}

void MasterControl::SelectRate(int entry) {
  if (!MayDisconnect("Baud Rate Change", "Baud Rate")) return;
  settings.baudIndex = LowWord(entry);
  CheckPortAndRate();
  hooks.refreshConnectionText();
}

void MasterControl::CheckFirmwareVersion(bool ask) {
  int firmware = 0;
  int bootRom = 0;
  if (ask) {
    const bool answered = device.RequestVersion(firmware, bootRom);
    if (!device.comm.CommPortOpen) return;       // it has gone, and what it needs is not known
    if (answered) device.DisconnectZorq(false);  // the firmware window must find the port free
  }
  if (firmware < FirmwareNeeded && !device.hooks.ending()) OfferFirmwareUpdate();
}

void MasterControl::OfferFirmwareUpdate() {
  const Answer answer =
      desk.Box(box::InformationYesNo, "Firmware Needs Update",
               "The firmware on the Veltrana unit needs to be updated.  Would you like to update it "
               "now or wait until later (you will be prompted the next time you start the Veltrana "
               "software.)  Click 'Yes' to update the firmware or 'No' to continue.");
  if (answer != Answer::Yes) {
    desk.Box(box::Information, "Firmware Update Postponed",
             "Some features in the Veltrana may not work propertly until the firmware is updated.");
    return;
  }
  device.DisconnectZorq(true);
  hooks.enableMainTimer(false);
  desk.Box(box::Information, "Firmware Update",
           "This version of the " + ApplicationTitle +
               " software cannot update the firmware yet.  The unit has not been changed.");
  hooks.enableMainTimer(true);
}

void MasterControl::ShowAbout() {
  int firmware = 0;
  int bootRom = 0;
  const bool known = device.RequestVersion(firmware, bootRom);
  desk.Box(box::Information, "About " + ApplicationTitle,
           ApplicationTitle + " Master Control Program\nVersion " + VersionText() +
               "\n\nFirmware Version: " + (known ? VersionOf(firmware) : "Unknown") +
               "\nBoot ROM Version: " + (known ? VersionOf(bootRom) : "Unknown"));
}

void MasterControl::UpdateOnDemand() {
  if (++updatePresses < 2) return;
  menus.mnuDisconnect.Click();
  CheckFirmwareVersion(false);
  menus.mnuConnect.Click();
  updatePresses = 0;
}

}  // namespace vc
