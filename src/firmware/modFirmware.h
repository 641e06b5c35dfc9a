// The update of the unit's own program: the dialogue with its boot ROM, and the transfer of the two sections.
// All waits let events run, use no processor time, and end when firmwareAbort is set, the line goes away or
// the program ends.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "firmware/FirmwareFile.h"
#include "firmware/FirmwarePort.h"
#include "link/TenthsTimer.h"
#include "platform/Platform.h"
#include "text/Convert.h"
#include "text/Wire.h"
#include "text/modDebug.h"

namespace vc {

// What goes to the boot ROM as plain text without a line end. With a least length the answer counts by its
// length alone; without, it must be the expected one or hold it.
struct BootCommand {
  std::string text, expected;
  int leastLength = 0;     // a negative one is none
  int timeoutTenths = 10;  // of an attempt; 10 where it is not above 0
  int attempts = 5;        // 5 where it is below 1
};

// How far a section of the unit's memory has come. From Erased on nothing but a whole update will do.
enum class SectionState { Untouched, Erased, Written };

struct UpdateState {
  bool portOpened = false;
  bool reached = false;  // the boot ROM has answered
  std::array<SectionState, 2> sections{};
  bool restarted = false;
};

// What the window shows of an update.
struct UploadView {
  Wire<void(const std::string& text)> section;  // the stage
  Wire<void(const std::string& text)> doing;    // what is waited for
  Wire<void(bool on)> blink;
  Wire<bool(int total, int done)> SetXmodemResults;  // packets; false aborts
  Wire<void()> ShowPacketInfo;
  Wire<void()> HidePacketInfo;
  // From the first erasing to the end: whoever ends the program or the window then leaves the unit without
  // one.
  Wire<void(bool on)> writing;
  Wire<void(const std::string& words)> failed;  // in what state the unit is, and what to do
};

// "The unit ...": in what state an update that failed has left it, and what the operator is to do now.
std::string UnitStateText(const UpdateState& state, const std::string& why);

struct modFirmware {
  modFirmware(const Platform& host, modDebug& objectLog, UploadView uploadView, const LineTap& tap);

  FirmwarePort commMain;
  // Set by whoever wants an update to end, and by its end in whatever way.
  bool firmwareAbort = false;
  bool stopped = false;  // the operator has ended it; then no box follows
  UpdateState state;
  std::optional<Fault> failure;          // of the last update: its first one
  std::optional<Fault> raisedMeanwhile;  // by a handler that ran during a wait

  // The whole procedure on that port of the record. False where it failed, of which the operator was told.
  bool StartFirmwareUpdate(int port);

  bool OpenComPort(int port);
  bool CloseComPort();
  bool TransmitCommand(const BootCommand& command, std::string& reply);
  // True once the command went out: the unit restarts without an answer.
  bool ResetDevice();
  // Section 1 or 2, from a file.
  bool UpdateFirmware(const std::string& path, int section);
  // So many bytes of the image from one on, counted from 1.
  bool SendFileXModem(std::span<const std::uint8_t> image, std::size_t byteCount, std::size_t firstByte);
  bool WaitForNak();
  // What stands behind the ACK is left.
  bool WaitForAck();
  // Raises a Fault for data that are not 128 bytes.
  bool TransmitXmodemPacket(std::span<const std::uint8_t> data, std::int32_t number);
  bool TransmitEOT();
  bool WaitForXmodemResult(std::string& reply);

 private:
  enum class Outcome { Accepted, Refused, Stopped };
  Outcome TryCommand(const BootCommand& command, std::string& reply);
  bool Accepted(const BootCommand& command, std::string& reply);
  void TakeRest(std::string& reply);
  bool SendPacket(std::span<const std::uint8_t> packet);
  bool SendPackets(std::span<const std::uint8_t> image, std::int32_t count);
  bool Report(std::int32_t total, std::int32_t done);
  bool Connect(int port);
  bool EnterBootRom();
  bool UpdateBoth();
  bool Prepare(int section);
  bool Erase(int section);
  bool Send(std::span<const std::uint8_t> image, int section);
  bool Verify(std::span<const std::uint8_t> image);
  bool Restart();
  bool Run(int port);
  void End(bool succeeded);
  void TellEnd(bool succeeded) const;
  // True once done is; false where the time is over or the update must end before.
  bool Wait(std::int32_t tenths, const std::function<bool()>& done);
  // The same, woken at once by what comes in.
  bool AwaitAnswer(std::int32_t tenths, const std::function<bool()>& done);
  bool WaitWith(const std::function<void()>& rest, std::int32_t tenths, const std::function<bool()>& done);
  void Pause(std::int32_t tenths);
  void LetEventsRun(int milliseconds);
  bool Stopped();
  // False, with the first reason kept.
  bool Fail(const std::string& why);

  Platform platform;
  UploadView view;
  modDebug& log;
};

}  // namespace vc
