// A session of its own in which every form of the program can be looked at: no unit, no file, the settings of
// a new setup, and a clock that sleeps at once. Nobody sits at it: boxes are answered by what changes
// nothing.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "NoPrograms.h"
#include "QuietDesk.h"
#include "VirtualClock.h"
#include "host/CairoPictures.h"
#include "host/PdfPrinters.h"
#include "host/PosixFiles.h"
#include "host/TimerLoop.h"
#include "shell/Session.h"

namespace manual {

class NoPorts : public vc::SerialPorts {
 public:
  std::unique_ptr<vc::SerialPort> Open(const std::string& name, std::string& reason) override {
    reason = name + " is not there";
    return nullptr;
  }
  std::string PlaceForLine(const std::string& /*name*/) override { return {}; }
};

class OpenForms {
 public:
  // In a folder that is empty and may be written.
  explicit OpenForms(const std::string& folder);

  using Visit = std::function<void(vc::Form& form)>;
  // Every form of the program, each once, open and filled: the master panel, the panels, the displays, what
  // these open over themselves, and the windows.
  void ForEach(const Visit& visit);

  support::VirtualClock clock;
  host::TimerLoop loop{clock};
  fuzz::QuietDesk desk;
  NoPorts ports;
  host::PosixFiles files;
  host::PdfPrinters printers{files, [](const vc::PrintJob&, int) {}};
  host::CairoPictures pictures;
  support::NoPrograms programs;
  vc::Session session;

 private:
  // The top one is visited, with what it opens over itself, and closed.
  void Top(const Visit& visit);
  void OpenPanel(std::string_view name);
  void CloseAll();
};

}  // namespace manual
