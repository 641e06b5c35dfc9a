// The simulated unit as this session's own: it is started, given a port of the record and connected to, and
// what the operator has to know of it is told.
#pragma once

#include <string>

#include "link/modDeviceComm.h"
#include "model/RecordEdits.h"
#include "platform/Desk.h"
#include "shell/Windows.h"
#include "sound/UnitProgram.h"
#include "text/Wire.h"

namespace vc {

struct MasterControl;

struct UnitConnection {
  // What it works on.
  struct Around {
    UnitProgram& unit;
    SystemSettings& settings;
    modDeviceComm& device;
    MasterControl& master;
    Windows& windows;
    Forms& forms;
    Desk& desk;
  };
  explicit UnitConnection(const Around& parts) : around(parts) {}

  // Starts it where it does not run, and connects to it. Empty, or why it does not run; a link that could not
  // be made to it is told as any other.
  std::string Start();
  // Drops the line to it and ends it. The operator's own port stands again.
  void Stop();
  // The line that is open is its.
  bool Connected() const;
  // No unit was found: the operator is asked once in a run whether this one is to be started. True where it
  // runs now, and the record has its port.
  bool OfferInstead();
  // Where the operator has agreed to that, and once the windows are there: what it is to hear is asked.
  void ShowStarted();

  // The other one of what is heard, before and after.
  void SwitchHeard();
  bool HearsBefore() const;

  // It has told something, or has ended by itself.
  void Follow();
  void TellDeath();

 private:
  bool MayConnect() const;
  // Empty, or why it does not run.
  std::string StartUnconnected();
  // The record's port is lent to the unit for as long as that has another one: what the operator keeps in
  // files and over the exit stays the port that was chosen.
  void TakePort();
  void GiveBackPort();
  void ShowHeard();

  Around around;
  bool offered = false, toBeShown = false;
  // What the operator wants to hear, until the unit has told that it is so.
  enum class Wish { None, Asked, Answered } wish = Wish::None;
  bool wantsBefore = false;
};

}  // namespace vc
