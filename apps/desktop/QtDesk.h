// The operator's desk in windows: real message boxes and the mouse pointer.
#pragma once

#include <string>

#include "platform/Desk.h"

namespace desktop {

class QtDesk : public vc::Desk {
 public:
  explicit QtDesk(std::string folder) : installFolder(std::move(folder)) {}
  ~QtDesk() override { SetHourglass(false); }
  QtDesk(const QtDesk&) = delete;
  QtDesk& operator=(const QtDesk&) = delete;

  // The box blocks the whole program's windows: no handler may run between the question and its answer. A box
  // that is taken away without an answer, as at the end of the program, counts as the safe one.
  vc::Answer Box(int code, const std::string& title, const std::string& text) override;
  void SetHourglass(bool shown) override;
  std::string InstallFolder() const override { return installFolder; }

 private:
  std::string installFolder;
  bool hourglass = false;
};

}  // namespace desktop
