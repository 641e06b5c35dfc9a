// The operator's desk in windows: real message boxes, the mouse pointer and what stands beside it.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "desktop/ProgressNote.h"
#include "desktop/SystemThemeWatch.h"
#include "desktop/Theme.h"
#include "host/Folders.h"
#include "platform/Clock.h"
#include "platform/Desk.h"

namespace desktop {

class QtDesk : public vc::Desk {
 public:
  QtDesk(vc::Clock& clock, host::Folders programFolders) : folders(std::move(programFolders)), note(clock) {}
  ~QtDesk() override { SetHourglass(false); }
  QtDesk(const QtDesk&) = delete;
  QtDesk& operator=(const QtDesk&) = delete;

  // Takes away what the operator has done while the running handler blocked; true where there was something.
  std::function<bool()> refuseHeld = [] { return false; };

  // Takes the hourglass and the progress off the screen for as long as the box is up; see ShowBox.
  vc::Answer Box(int code, const std::string& title, const std::string& text) override;
  void Beep() override;
  void SetHourglass(bool shown) override;
  void ShowProgress(std::string_view what, int done, int total) override { note.Show(what, done, total); }
  void ShowWaiting(int tenths) override { note.ShowWaiting(tenths); }
  bool Open(const std::string& target) override;
  void SetTheme(vc::Theme theme) override;
  std::string InstallFolder() const override { return folders.writable; }
  std::string DocumentFolder() const override { return folders.Documents(); }
  std::string ProgramFolder() const override { return folders.Files(); }
  std::string ExecutableFolder() const override { return folders.executable; }
  bool ProgramFolderReadOnly() const override { return folders.readOnly; }

 private:
  host::Folders folders;
  ProgressNote note;
  bool hourglass = false;
  SystemThemeWatch watch;
};

}  // namespace desktop
