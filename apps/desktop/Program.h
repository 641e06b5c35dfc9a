// One run of the desktop program: the session and everything that the desktop supplies to it.
#pragma once

#include "desktop/FormWindows.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEventLoop.h"
#include "host/Folders.h"
#include "host/PosixSerialPorts.h"
#include "host/SystemClock.h"
#include "shell/Session.h"

namespace desktop {

struct Program {
  host::Folders folders = host::FindFolders();
  host::SystemClock clock;
  QtEventLoop events;
  QtDesk desk{clock, folders.writable};
  host::PosixSerialPorts ports{{.linkFolder = folders.executable + "/ports"}};
  vc::Session session{{clock, events, desk, ports}};
  FormWindows windows{session.forms};
};

}  // namespace desktop
