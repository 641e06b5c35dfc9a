// Opening and closing the link, the first status and the version of the unit: the connection part of
// modDeviceComm.
#include <array>
#include <utility>

#include "link/modDeviceComm.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace vc {
namespace {

constexpr std::int16_t QueueSize = 4096;
constexpr int ProbeAttempts = 5;
constexpr std::int16_t StatusSeconds = 2;
constexpr std::int16_t StatusReplyBytes = 46;
constexpr std::int32_t StatusErrorPause = 100;
constexpr std::int16_t VersionReplyBytes = 10;
constexpr std::int32_t VersionHundredths = 200;
constexpr std::int16_t DtrOn = -1, DtrOff = 0;

// Three digits, units and hundredths; -1 where one of them is none.
int VersionAt(const std::string& reply, std::size_t offset) {
  int version = 0;
  for (const char digit : reply.substr(offset, 3)) {
    if (digit < '0' || digit > '9') return -1;
    version = version * 10 + (digit - '0');
  }
  return version;
}

constexpr std::size_t BootRomOffset = 4, FirmwareOffset = 7;

}  // namespace

modDeviceComm::modDeviceComm(veltrana& portCalls, LinkRecord linkRecord, LinkHooks wires)
    : portLibrary(portCalls), comm{portCalls, linkRecord}, hooks(std::move(wires)) {}

bool modDeviceComm::InitComPort(bool fullConnect) {
  bool wasOpen = false;
  RunStatements("InitComPort_Err",
                {
                    [this] { CloseBeforeConnect(); },
                    [this] { status.ClearLevels(); },
                    [this] { BaudTimeoutExtra = BaudOf(comm.record.baudIndex).extraHundredths; },
                    [this] { OpenPort(); },
                    [this] { ConfigurePort(); },
                    [this] { hooks.connectEntriesChecked(true); },
                    [&] { wasOpen = comm.CommPortOpen; },
                    [&] {
                      if (wasOpen) ProbeUnit();
                    },
                    [&] {
                      if (wasOpen && fullConnect) StartPolling();
                    },
                });
  return comm.CommPortOpen;
}

void modDeviceComm::CloseBeforeConnect() {
  comm.record.linkReady = false;
  DisconnectZorq(true);
  hooks.mainTimer(false);
  CommRetryCount = 0;
}

void modDeviceComm::OpenPort() {
  std::string name = "COM" + std::to_string(comm.record.comPort);
  name.push_back('\0');
  comm.CommPortId = portLibrary.OpenComm(name, QueueSize, QueueSize);
  ReplyTicksLeft = 0;
  ReplyBytesExpected = 0;
  unsettled = lossTold = false;
  if (comm.CommPortId >= 0) return;
  hooks.portUnavailable(portLibrary.openFailure);
  hooks.box(box::Exclamation, "Invalid/Unavailable for Local " + ApplicationTitle + " Connection",
            hooks.portCaption() + " is either invalid or unavailable. Please select another port for the " +
                ApplicationTitle);
}

void modDeviceComm::ConfigurePort() {
  if (comm.CommPortId < 0) return;
  portLibrary.FlushComm(comm.CommPortId, 0);
  portLibrary.FlushComm(comm.CommPortId, 1);
  if (comm.ApplyCommState(DtrOn)) {
    comm.CommPortOpen = true;
    return;
  }
  DisconnectZorq(true);
  hooks.box(box::Exclamation, "Unable to Configure COM Port",
            "Unable to configure " + hooks.portCaption() + ".  Please select another port.");
}

void modDeviceComm::ProbeUnit() {
  hooks.connectionState(StateConnected);
  if (GrabInitialZorqStatus(StatusSeconds)) return;
  hooks.box(box::Exclamation, ApplicationTitle + " Not Present",
            ApplicationTitle + " not present on port " + hooks.portCaption() +
                ".  Please check all settings and connections, then attempt reconnect.");
}

void modDeviceComm::StartPolling() {
  comm.record.linkReady = true;
  hooks.mainTimer(true);
  hooks.pollingStarted();
}

void modDeviceComm::DisconnectZorq(bool updateMenus) {
  RunStatements("DisconnectZorq Error", {[this] {
                                           // A port that was opened but could not be configured holds a
                                           // handle too.
                                           if (comm.CommPortId >= 0) comm.ApplyCommState(DtrOff);
                                         },
                                         [this] {
                                           if (comm.CommPortId >= 0) portLibrary.CloseComm(comm.CommPortId);
                                           comm.CommPortId = -1;
                                           comm.CommPortOpen = false;
                                           UnansweredHundredths = 0;
                                           hooks.portClosed();
                                         },
                                         [&] {
                                           if (!updateMenus) return;
                                           hooks.connectEntriesChecked(false);
                                           hooks.connectionState(StateClosed);
                                         }});
}

bool modDeviceComm::GrabInitialZorqStatus(std::int16_t seconds) {
  RunStatements("GrabInitialZorqStatus_Err",
                {[this] { status.ClearWords(); }, [this] { DrainPendingReply(); },
                 [&] {
                   const CommandFrame frame = MakeCommandFrame(command::MainStatus, 0);
                   const std::int32_t limit = seconds * 100 + 2 * BaudTimeoutExtra;
                   std::string reply;
                   const Outcome outcome =
                       Transact({frame, token::MainStatus, StatusReplyBytes, limit, StatusErrorPause},
                                ProbeAttempts, reply);
                   if (outcome == Outcome::Exhausted || outcome == Outcome::Gone) DisconnectZorq(true);
                   if (outcome != Outcome::Answered) return;
                   DecodeUnitStatus(status, reply);
                   status.unitOptionPrev = status.unitOption;
                   DecodeUnitMode(status, reply);
                 }});
  return comm.CommPortOpen;
}

modDeviceComm::Outcome modDeviceComm::ExchangeVersion(int attempts, int& firmware, int& bootRom) {
  const CommandFrame frame = MakeCommandFrame(command::Version, 0);
  Exchange exchange{frame, token::Version, VersionReplyBytes, VersionHundredths + BaudTimeoutExtra};
  exchange.drainEachTime = exchange.nothingBehind = true;
  // Digits that were damaged on the line are as bad as a damaged token.
  exchange.accept = [](const std::string& reply) {
    return VersionAt(reply, BootRomOffset) >= 0 && VersionAt(reply, FirmwareOffset) >= 0;
  };
  std::string reply;
  const Outcome outcome = Transact(exchange, attempts, reply);
  if (outcome == Outcome::Answered) {
    bootRom = VersionAt(reply, BootRomOffset);
    firmware = VersionAt(reply, FirmwareOffset);
  }
  return outcome;
}

bool modDeviceComm::PeekVersion(int& firmware, int& bootRom) {
  return ExchangeVersion(1, firmware, bootRom) == Outcome::Answered;
}

bool modDeviceComm::RequestVersion(int& firmware, int& bootRom) {
  const Outcome outcome = ExchangeVersion(ProbeAttempts, firmware, bootRom);
  if (outcome == Outcome::Exhausted) {
    hooks.box(box::Exclamation, ApplicationTitle + " Firmware Unreliable",
              ApplicationTitle + " present but failed to respond to version request on port " +
                  hooks.portCaption() + ".  The " + ApplicationTitle +
                  " firmware may be corrupted.  Please contact NRV at 000-555-0199 for tech support.");
    PauseForRecovery();
  }
  if (outcome == Outcome::Gone) LinkLost();
  return outcome == Outcome::Answered;
}

}  // namespace vc
