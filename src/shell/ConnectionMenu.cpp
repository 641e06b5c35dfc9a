#include "shell/ConnectionMenu.h"

#include "firmware/FrmFirmwareUpload.h"
#include "link/veltrana.h"
#include "model/FieldAccess.h"
#include "model/Loans.h"
#include "shell/PeriodicService.h"
#include "shell/Windows.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr int FirmwareNeeded = 401;  // hundredths
const std::string Unknown = "unknown";

std::string VersionOf(int hundredths) { return FixedText(hundredths / 100.0, 2); }

}  // namespace

ConnectionMenu::ConnectionMenu(const Around& parts) : around(parts) {
  MasterMenus& menus = around.menus;
  menus.mnuConnect.clicked = [this] { Connect(); };
  menus.mnuDisconnect.clicked = [this] { around.device.DisconnectZorq(true); };
  for (MenuEntry& entry : menus.mnuComSelect) {
    entry.clicked = [this, index = entry.core.index] { SelectPort(index); };
  }
  for (MenuEntry& entry : menus.mnuBaudSelect) {
    entry.clicked = [this, index = entry.core.index] { SelectRate(index); };
  }
  CheckConnectEntries(false);
}

void ConnectionMenu::CheckPortAndRate() {
  const SystemSettings& settings = around.edits.settings;
  for (MenuEntry& entry : around.menus.mnuComSelect) entry.SetChecked(entry.core.index == settings.comPort);
  for (MenuEntry& entry : around.menus.mnuBaudSelect)
    entry.SetChecked(entry.core.index == settings.baudIndex);
}

void ConnectionMenu::CheckConnectEntries(bool connected) {
  around.menus.mnuConnect.SetChecked(connected);
  around.menus.mnuDisconnect.SetChecked(!connected);
}

std::string ConnectionMenu::PortCaption() {
  return around.menus.mnuComSelect(MinMax(around.edits.settings.comPort, 1, 9)).core.Caption();
}

std::string ConnectionMenu::RateCaption() {
  return around.menus.mnuBaudSelect(MinMax(around.edits.settings.baudIndex, 0, 4)).core.Caption();
}

void ConnectionMenu::Connect() {
  around.desk.SetHourglass(true);
  if (!around.device.InitComPort(true) && around.offerUnit()) around.device.InitComPort(true);
  CheckPortAndRate();  // a rate that was none has been corrected
  around.config.ConfigureStages(true);
  around.desk.SetHourglass(false);
  around.showUnit();
}

void ConnectionMenu::ShowSelection() {
  CheckPortAndRate();
  around.periodic.ShowConnectionAnew();
}

bool ConnectionMenu::MayDisconnect(const std::string& title, const std::string& what) {
  if (!around.device.comm.CommPortOpen) return true;
  const std::string text =
      "Changing the " + what + " will disconnect the current session.  To connect using the new " + what +
      " setting use the 'Connect to " + ApplicationTitle + "' menu option under the 'Settings' menu.";
  if (around.desk.Box(box::AskOkCancel, title, text) != Answer::Ok) return false;
  around.device.DisconnectZorq(true);
  return true;
}

void ConnectionMenu::SelectPort(int entry) {
  const std::int16_t port = MinMax(LowWord(entry), 1, 9);
  if (!MayDisconnect("COM Port Change", "COM Port")) return;
  TakeBack(around.edits.settings, RowOf<&SystemSettings::comPort>(), 0, 0);
  around.edits.Apply({{&RowOf<&SystemSettings::comPort>(), 0, 0, static_cast<double>(port)}}, {});
  ShowSelection();
}

void ConnectionMenu::SelectRate(int entry) {
  if (!MayDisconnect("Baud Rate Change", "Baud Rate")) return;
  around.edits.Apply({{&RowOf<&SystemSettings::baudIndex>(), 0, 0, static_cast<double>(entry)}}, {});
  ShowSelection();
}

void ConnectionMenu::CheckFirmwareVersion(bool ask, const std::function<void(bool present)>& then) {
  modDeviceComm& device = around.device;
  int firmware = 0;
  int bootRom = 0;
  if (ask) {
    const bool answered = device.RequestVersion(firmware, bootRom);
    versionBefore = answered ? VersionOf(firmware) : Unknown;
    if (!device.comm.CommPortOpen) return then(false);  // what it needs is not known
    if (answered) device.DisconnectZorq(false);         // the firmware window must find the port free
  }
  if (firmware >= FirmwareNeeded || device.hooks.ending()) return then(true);
  OfferFirmwareUpdate([then] { then(true); });
}

void ConnectionMenu::OfferFirmwareUpdate(const std::function<void()>& then) {
  const std::string missing = FirmwareFilesText(around.desk, around.files);
  if (!missing.empty()) around.tell("The firmware cannot be updated: " + missing + ".");
  const Answer answer =
      around.desk.Box(box::InformationYesNo, "Firmware Needs Update",
                      "The firmware on the Veltrana unit needs to be updated.  Would you like to update it "
                      "now or wait until later (you will be prompted the next time you start the Veltrana "
                      "software.)  Click 'Yes' to update the firmware or 'No' to continue.");
  if (answer == Answer::Yes) return UpdateFirmware(then);
  around.desk.Box(box::Information, "Firmware Update Postponed",
                  "Some features in the Veltrana may not work propertly until the firmware is updated.");
  then();
}

void ConnectionMenu::UpdateFirmware(const std::function<void()>& then) {
  around.tell("");  // of an update before this one
  around.device.DisconnectZorq(true);
  around.periodic.EnableMainTimer(false);
  constexpr std::string_view window = "FrmFirmwareUpload";
  around.windows.Get<FrmFirmwareUpload>(window).Take(versionBefore, [this, then](const std::string& failure) {
    around.periodic.EnableMainTimer(true);
    then();
    TellUpdate(failure);
  });
  around.windows.Open(window);
}

void ConnectionMenu::TellUpdate(const std::string& failure) {
  if (!failure.empty()) return around.tell(failure);
  int firmware = 0;
  int bootRom = 0;
  const bool known = around.device.PeekVersion(firmware, bootRom);
  const std::string after = known ? VersionOf(firmware) + " after it"
                                  : "unknown after it.  If the unit does not connect, switch it off and on";
  around.tell("Firmware " + versionBefore + " before the update, " + after);
}

void ConnectionMenu::ShowAbout() {
  int firmware = 0;
  int bootRom = 0;
  const bool known = around.device.RequestVersion(firmware, bootRom);
  around.desk.Box(box::Information, "About " + ApplicationTitle,
                  ApplicationTitle + " Master Control Program\nVersion " + VersionText() +
                      "\n\nFirmware Version: " + (known ? VersionOf(firmware) : "Unknown") +
                      "\nBoot ROM Version: " + (known ? VersionOf(bootRom) : "Unknown"));
}

void ConnectionMenu::UpdateOnDemand() {
  if (++updatePresses < 2) return;
  updatePresses = 0;
  int firmware = 0;
  int bootRom = 0;
  const bool known = around.device.PeekVersion(firmware, bootRom);
  versionBefore = known ? VersionOf(firmware) : Unknown;
  around.menus.mnuDisconnect.Click();
  CheckFirmwareVersion(false, [this](bool /*present*/) { around.menus.mnuConnect.Click(); });
}

}  // namespace vc
