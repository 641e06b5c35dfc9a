// The simulated unit as this session's own: it is started, given a port of the record and connected to, and
// what the operator has to know of it is told.
#pragma once

#include <string>

#include "link/modDeviceComm.h"
#include "model/RecordEdits.h"
#include "platform/Desk.h"
#include "shell/ConnectionMenu.h"
#include "sound/UnitProgram.h"
#include "text/Wire.h"

namespace vc {

struct UnitConnection {
  // What it works on.
  struct Around {
    UnitProgram& unit;
    SystemSettings& settings;
    modDeviceComm& device;
    ConnectionMenu& connection;
    Desk& desk;
    Wire<void(const std::string& text)> tell;  // on the status line
  };
  explicit UnitConnection(const Around& parts) : around(parts) {}

  // Starts it where it does not run, and connects to it. Empty, or why it does not run; a link that could not
  // be made to it is told as any other.
  std::string Start();
  // Drops the line to it and ends it. The operator's own port stands again.
  void Stop();
  // It has ended by itself.
  void TellDeath(const std::string& lastWords);

 private:
  bool MayConnect() const;
  // The record's port is lent to the unit for as long as that has another one: what the operator keeps in
  // files and over the exit stays the port that was chosen.
  void TakePort();
  void GiveBackPort();

  Around around;
};

}  // namespace vc
