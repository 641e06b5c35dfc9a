// The boot ROM: what the unit runs while there is no application, or while the host replaces it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "unit/Bytes.h"
#include "unit/FirmwareImage.h"
#include "unit/RomFaults.h"
#include "unit/RomParser.h"
#include "unit/XmodemReceiver.h"

namespace unit {

inline constexpr int RomBaud = 115200;  // whatever the application's rate is
inline constexpr std::int64_t RestartMicroseconds = 1'000'000;

// What comes of something that the host has said, or of the time that has passed.
struct RomAction {
  Bytes heard;  // empty where the boot ROM speaks by itself
  std::string heardMeaning;
  Bytes answer;  // empty where it keeps silent
  std::string answerMeaning;
  std::int64_t delay = 0;           // microseconds before the answer
  bool taken = false;               // the host was heard and obeyed
  bool flashed = false;             // a section has another content
  std::optional<std::int64_t> off;  // for so many microseconds the unit is dead, and then starts anew
};

// All times are microseconds and must not fall from call to call.
class BootRom {
 public:
  // Erasing a section takes so many microseconds, in which it hears nothing.
  BootRom(std::int64_t eraseMicroseconds, RomFaults onRequest)
      : eraseTime(eraseMicroseconds), faults(std::move(onRequest)) {}

  // The host has told the running application to stop: the boot ROM is entered where the action is taken.
  RomAction Stop(std::int64_t time);

  // A byte that arrived at `time`; by which Elapse was asked as often as NextEvent said.
  std::optional<RomAction> Hear(std::uint8_t byte, std::int64_t time);

  // Does what is due at `time`, which NextEvent has named.
  std::optional<RomAction> Elapse(std::int64_t time);
  std::optional<std::int64_t> NextEvent() const;

  // Waits for a command, with nothing half heard and no transfer under way; the sections stay as they are.
  void Reset();

  // "boot ROM waits", "boot ROM receives section 1, 12 packets", ...
  std::string StateText() const;

  // How often the host has said something that the boot ROM would answer, or act on.
  std::uint32_t Exchanges() const { return exchanges; }

  // Whether the unit can run what is in its sections: both complete, and of one version, so that it does not
  // run half an update.
  bool CanStart() const;

  // What was received of a section gets there at the end of the transfer. Free to fill while no transfer
  // runs.
  Images images;

 private:
  enum class State { Waiting, Chosen, Erasing, Receiving, Received };
  using Kind = RomRequest::Kind;

  RomAction React(const RomRequest& request, std::int64_t time);
  bool Takes(Kind kind) const;
  void Obey(const RomRequest& request, std::int64_t time, RomAction& action);
  void Choose(Section chosen, RomAction& action);
  void Erase(std::int64_t time, RomAction& action);
  void TakePacket(const Bytes& packet, RomAction& action);
  void EndTransfer(RomAction& action);
  std::optional<RomAction> RingAlarm(std::int64_t time);
  RomAction EndErasure(std::int64_t time);
  RomAction AskForPackets(std::int64_t time);
  void Enter(State next);

  std::int64_t eraseTime;
  RomFaults faults;
  RomParser parser;
  State state = State::Waiting;
  Section section = Section::Main;
  XmodemReceiver receiver{SectionCapacity};
  std::optional<std::int64_t> alarm;   // when the erasure ends, or the host is asked for packets or given up
  std::optional<RomFault> eraseFault;  // what befalls the answer that the erasure ends with
  std::int64_t lastHeard = 0;
  std::uint32_t exchanges = 0;
};

}  // namespace unit
