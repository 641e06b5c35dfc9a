// The whole procedure, section by section.
#include "firmware/modFirmware.h"

#include <algorithm>
#include <utility>

#include "firmware/Xmodem.h"

namespace vc {
namespace {

constexpr int UploadError = 1010;
constexpr std::int32_t RestartTenths = 30;

const BootCommand StopApplication{"?TERMIN", "VELTRANUM", 9, 10, 5};
const BootCommand Confirm{"YY", "OK", 2, 200, 5};  // the unit answers when it has erased

struct SectionRow {
  BootCommand prepare;
  const char* updating;
};
const std::array<SectionRow, 2> Sections{{{{"?M", "MDL", 3, 10, 5}, "Updating Section 1 of 2"},
                                          {{"?D", "DDL", 3, 10, 5}, "Updating Section 2 of 2"}}};

std::size_t RowOf(int section) {
  if (section < 1 || section > 2) throw Fault{"There is no section " + std::to_string(section)};
  return static_cast<std::size_t>(section - 1);
}

std::string Named(int section) { return "section " + std::to_string(section); }

}  // namespace

modFirmware::modFirmware(const Platform& host, modDebug& objectLog, UploadView uploadView, const LineTap& tap)
    : commMain(host.ports, tap), platform(host), view(std::move(uploadView)), log(objectLog) {}

bool modFirmware::Fail(const std::string& why) {
  if (failure) return false;
  std::string reason = why;
  if (commMain.PortOpen() && commMain.Gone()) reason = "The port went away";
  if (firmwareAbort) reason = "The update has been stopped";
  if (platform.events.Ending()) reason = "The program ended";
  failure = Fault{reason, UploadError, "StartFirmwareUpdate"};
  return false;
}

bool modFirmware::OpenComPort(int port) {
  commMain.CommPort = std::clamp(port, 1, 9);
  std::string reason;
  return commMain.Open(reason) || Fail(reason);
}

bool modFirmware::CloseComPort() {
  commMain.Close();
  return true;
}

bool modFirmware::StartFirmwareUpdate(int port) {
  firmwareAbort = stopped = false;
  state = {};
  failure.reset();
  bool succeeded = false;
  try {
    succeeded = Run(port);
  } catch (const Fault& fault) {
    Fail(fault.description);
  }
  End(succeeded);
  return succeeded;
}

bool modFirmware::Run(int port) {
  return CloseComPort() && Connect(port) && EnterBootRom() && UpdateBoth() && Restart();
}

// However it ended: the line is free, the blinker stands, and the operator is told.
void modFirmware::End(bool succeeded) {
  firmwareAbort = true;
  CloseComPort();
  view.blink(false);
  view.doing(succeeded ? "" : "The update has failed");
  view.writing(false);
  if (succeeded) {
    view.section("Firmware Update Complete");
    view.HidePacketInfo();
  } else {
    view.failed(UnitStateText(state, failure.value_or(Fault{}).description));
  }
  if (!stopped && !platform.events.Ending()) TellEnd(succeeded);
}

void modFirmware::TellEnd(bool succeeded) const {
  if (succeeded) {
    platform.desk.Box(box::Information, "Upload Complete",
                      "Firmware uploaded successfully.  Click OK to continue");
  } else {
    platform.desk.Box(
        box::Critical, "Firmware Upload Error",
        "Error uploading firmware.  Unit may not function properly.  Please contact Norvane for assistance.");
  }
}

bool modFirmware::Connect(int port) {
  view.section("Connecting to Veltrana");
  view.blink(true);
  state.portOpened = OpenComPort(port);
  return state.portOpened;
}

bool modFirmware::EnterBootRom() {
  view.doing("Waiting for the unit's boot ROM");
  std::string reply;
  state.reached = TransmitCommand(StopApplication, reply);
  return state.reached || Fail("The unit did not answer at 115200 baud");
}

bool modFirmware::UpdateBoth() {
  for (const int section : {1, 2}) {
    const std::string path =
        FirmwarePath(platform.desk, platform.files, FirmwareFileNames.at(RowOf(section)));
    if (!UpdateFirmware(path, section)) return false;
    view.SetXmodemResults(0, 0);
    LetEventsRun(0);
  }
  return true;
}

bool modFirmware::UpdateFirmware(const std::string& path, int section) {
  const FirmwareImage image = ReadFirmware(platform.files, path);
  if (!image.Sendable()) return Fail(image.why);
  if (!Prepare(section) || !Erase(section)) return false;
  const bool done = Send(image.bytes, section) && Verify(image.bytes);
  if (done) {
    state.sections.at(RowOf(section)) = SectionState::Written;
  } else {
    TransmitEOT();  // so that the boot ROM leaves the transfer
  }
  return done;
}

bool modFirmware::Prepare(int section) {
  view.doing("Preparing " + Named(section));
  std::string reply;
  return TransmitCommand(Sections.at(RowOf(section)).prepare, reply) ||
         Fail("The unit did not take a download of " + Named(section));
}

// From here to the end the unit has no program that it could run.
bool modFirmware::Erase(int section) {
  view.doing("Erasing " + Named(section));
  view.writing(true);
  state.sections.at(RowOf(section)) = SectionState::Erased;
  std::string reply;
  return TransmitCommand(Confirm, reply) || Fail("The unit did not erase " + Named(section));
}

bool modFirmware::Send(std::span<const std::uint8_t> image, int section) {
  view.section(Sections.at(RowOf(section)).updating);
  view.doing("Sending " + Named(section));
  view.ShowPacketInfo();
  return SendFileXModem(image, image.size(), 1);
}

bool modFirmware::Verify(std::span<const std::uint8_t> image) {
  view.blink(true);
  view.section("Verifying Section Checksum");
  view.doing("Waiting for the unit's checksum");
  std::string reply;
  if (!WaitForXmodemResult(reply)) return Fail("The unit did not answer with a checksum");
  const std::string expected = xmodem::ChecksumText(image);
  return reply == expected ||
         Fail("The unit's checksum is " + reply + " and not " + expected + " as that of the file");
}

bool modFirmware::Restart() {
  view.section("Resetting Veltrana");
  view.doing("");
  if (!ResetDevice()) return Fail("The unit could not be restarted");
  state.restarted = true;
  Pause(RestartTenths);
  return true;
}

}  // namespace vc
