#include "shell/MasterControl.h"

#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int FirmwareNeeded = 401;  // hundredths

std::string VersionOf(int hundredths) { return FixedText(hundredths / 100.0, 2); }

void PrepareLevelBar(LevelBar& bar) {
  std::vector<ScaleTick> ticks;
  for (const int decibels : {3, 0, -6, -12, -18, -30, -42, -54, -66}) {
    ticks.push_back({DbToBarPosition(decibels), std::to_string(decibels)});
  }
  constexpr int fromBelow = 1;
  bar.SetOrientation(fromBelow);
  bar.SetScale(ticks);
}

}  // namespace

MasterControl::MasterControl(SystemSettings& record, modDeviceComm& link, Desk& operatorDesk)
    : form("MasterControl", ApplicationTitle + " Master Control Panel"),
      mnuConnect(mnuSettings, "mnuConnect", "&Connect to " + ApplicationTitle),
      mnuDisconnect(mnuSettings, "mnuDisconnect", "&Disconnect from " + ApplicationTitle),
      mnuComSelect(mnuComPort, "mnuComSelect",
                   {"COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8", "COM9"}),
      mnuBaudSelect(mnuBaudRate, "mnuBaudSelect",
                    {"9600 baud", "14400 baud", "19200 baud", "38400 baud", "115200 baud"}),
      settings(record),
      device(link),
      desk(operatorDesk) {
  txtComInfo.readOnly = true;
  for (LevelBar* bar : {&lbInputLeft, &lbInputRight, &lbOutputLeft, &lbOutputRight}) PrepareLevelBar(*bar);
  for (LevelBar* bar : {&lbOutputLeft, &lbOutputRight}) bar->SetMarkerStyle(HiddenMarker);
  ShowOversize(false);
  form.closeRequested = [this] { hooks.exit(); };
  BindMenus();
  BindKeys();
}

void MasterControl::BindMenus() {
  mnuNew.clicked = [this] { AskForNewSetup(); };
  mnuSave.clicked = [this] { hooks.storeSetup(); };
  mnuOpen.clicked = [this] { hooks.recallSetup(); };
  mnuViewDescription.clicked = [this] { hooks.editDescription(); };
  mnuWorkingFolder.clicked = [this] { hooks.pickWorkingFolder(); };
  mnuExit.clicked = [this] { hooks.exit(); };
  mnuConnect.clicked = [this] { Connect(); };
  mnuDisconnect.clicked = [this] { device.DisconnectZorq(true); };
  mnuAbout.clicked = [this] { ShowAbout(); };
  for (MenuEntry& entry : mnuComSelect) {
    entry.clicked = [this, index = entry.core.index] { SelectPort(index); };
  }
  for (MenuEntry& entry : mnuBaudSelect) {
    entry.clicked = [this, index = entry.core.index] { SelectRate(index); };
  }
  CheckConnectEntries(false);
}

void MasterControl::BindKeys() {
  form.keys["Alt+D"] = [this] { hooks.showObjectLog(); };
  form.keys["Alt+U"] = [this] { UpdateOnDemand(); };
}

void MasterControl::ConfigMasterControl() {
  const Mute inert(form);
  CheckPortAndRate();
}

void MasterControl::ShowOversize(bool shown) {
  for (Label& label : lblOversizeFilters) label.core.SetVisible(shown);
}

void MasterControl::CheckPortAndRate() {
  for (MenuEntry& entry : mnuComSelect) entry.SetChecked(entry.core.index == settings.comPort);
  for (MenuEntry& entry : mnuBaudSelect) entry.SetChecked(entry.core.index == settings.baudIndex);
}

void MasterControl::CheckConnectEntries(bool connected) {
  mnuConnect.SetChecked(connected);
  mnuDisconnect.SetChecked(!connected);
}

std::string MasterControl::PortCaption() {
  return mnuComSelect(MinMax(settings.comPort, 1, 9)).core.Caption();
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
  // The firmware window must find the port free.
  if (ask && device.RequestVersion(firmware, bootRom)) device.DisconnectZorq(false);
  if (firmware < FirmwareNeeded) OfferFirmwareUpdate();
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

void MasterControl::AskForNewSetup() {
  const Answer answer = desk.Box(
      box::InformationYesNo, "Create New Setup",
      "Make sure you have saved your current configuration before creating a new setup.\nSetup Recall may "
      "require 60 seconds to complete. Do you still wish to create a new setup?");
  if (answer == Answer::Yes) hooks.newSetup();
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
  mnuDisconnect.Click();
  CheckFirmwareVersion(false);
  mnuConnect.Click();
  updatePresses = 0;
}

}  // namespace vc
