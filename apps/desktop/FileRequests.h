// Setup files that the operator has opened in the file manager: the one that this program was started with,
// and those that later starts hand over.
#pragma once

#include <deque>
#include <memory>
#include <string>

#include <QSocketNotifier>
#include <QTimer>

#include "desktop/Program.h"
#include "host/Handover.h"

namespace desktop {

class FileRequests {
 public:
  // Takes what others hand over once the program has claimed its folder, also while the start still asks.
  FileRequests(Program& desktopProgram, host::Handover& handover);

  // Opened as soon as the master panel can be worked with; what is being asked meanwhile is answered first.
  void Add(const std::string& path);

 private:
  void Listen();
  void TakeOver();
  void Look();
  void ComeForward();

  Program& program;
  host::Handover& incoming;
  std::unique_ptr<QSocketNotifier> notifier;
  QTimer look;
  std::deque<std::string> waiting;
};

}  // namespace desktop
