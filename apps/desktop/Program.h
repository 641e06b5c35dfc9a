// One run of the desktop program: the session and everything that the desktop supplies to it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "desktop/FormWindows.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEventLoop.h"
#include "desktop/QtPictures.h"
#include "desktop/QtPrinters.h"
#include "host/Folders.h"
#include "host/PosixFiles.h"
#include "host/PosixPrograms.h"
#include "host/PosixSerialPorts.h"
#include "host/SystemClock.h"
#include "shell/Session.h"

namespace desktop {

struct Program {
  explicit Program(host::Folders where = host::FindFolders()) : folders(std::move(where)) {
    desk.refuseHeld = [this] { return events.RefuseHeld(); };
    windows.filesDropped = [this](const std::vector<std::string>& paths) { session.atHand.Drop(paths); };
  }

  host::Folders folders;
  host::SystemClock clock;
  QtEventLoop events;
  QtDesk desk{clock, folders};
  host::PosixSerialPorts ports{folders.Ports()};
  host::PosixFiles files;
  QtPrinters printers{files};
  QtPictures pictures;
  host::PosixPrograms programs;
  vc::Session session{{clock, events, desk, ports, files, printers, pictures, programs}};
  FormWindows windows{session.forms};
};

}  // namespace desktop
