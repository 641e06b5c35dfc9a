// A session of its own in which every form of the program can be looked at: no unit, no file, the settings of
// a new setup, and a clock that sleeps at once.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/CairoPictures.h"
#include "host/PdfPrinters.h"
#include "host/PosixFiles.h"
#include "host/TimerLoop.h"
#include "shell/Session.h"

namespace manual {

class LeapingClock : public vc::Clock {
 public:
  std::int64_t Microseconds() override { return now; }
  vc::WallTime Wall() override { return {2000, 1, 1}; }
  void Sleep(std::int64_t microseconds) override { now += microseconds; }

 private:
  std::int64_t now = 0;
};

// Nobody sits at it: every box is answered by what changes nothing.
class EmptyDesk : public vc::Desk {
 public:
  explicit EmptyDesk(std::string place) : folder(std::move(place)) {}
  vc::Answer Box(int code, const std::string& /*title*/, const std::string& /*text*/) override {
    return vc::SafeAnswer(vc::box::ButtonsOf(code));
  }
  void Beep() override {}
  void SetHourglass(bool /*shown*/) override {}
  void ShowProgress(std::string_view /*what*/, int /*done*/, int /*total*/) override {}
  void ShowWaiting(int /*tenths*/) override {}
  bool Open(const std::string& /*target*/) override { return false; }
  void SetTheme(vc::Theme /*theme*/) override {}
  std::string InstallFolder() const override { return folder; }
  std::string ProgramFolder() const override { return folder; }
  std::string ExecutableFolder() const override { return folder; }
  bool ProgramFolderReadOnly() const override { return false; }

 private:
  std::string folder;
};

class NoPorts : public vc::SerialPorts {
 public:
  std::unique_ptr<vc::SerialPort> Open(const std::string& name, std::string& reason) override {
    reason = name + " is not there";
    return nullptr;
  }
  std::string PlaceForLine(const std::string& /*name*/) override { return {}; }
};

class NoPrograms : public vc::Programs {
 public:
  std::unique_ptr<vc::RunningProgram> Start(const std::string& path,
                                            const std::vector<std::string>& /*arguments*/,
                                            std::string& reason) override {
    reason = path + " is not there";
    return nullptr;
  }
};

class OpenForms {
 public:
  // In a folder that is empty and may be written.
  explicit OpenForms(const std::string& folder);

  using Visit = std::function<void(vc::Form& form)>;
  // Every form of the program, each once, open and filled: the master panel, the panels, the displays, what
  // these open over themselves, and the windows.
  void ForEach(const Visit& visit);

  LeapingClock clock;
  host::TimerLoop loop{clock};
  EmptyDesk desk;
  NoPorts ports;
  host::PosixFiles files;
  host::PdfPrinters printers{files, [](const vc::PrintJob&, int) {}};
  host::CairoPictures pictures;
  NoPrograms programs;
  vc::Session session;

 private:
  // The top one is visited, with what it opens over itself, and closed.
  void Top(const Visit& visit);
  void OpenPanel(std::string_view name);
  void CloseAll();
};

}  // namespace manual
