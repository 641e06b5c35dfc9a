// What asks the program from outside to end: the system's signals, and the session manager before a logout.
#pragma once

#include <functional>

#include <QSocketNotifier>

#include "host/EndSignals.h"

namespace desktop {

class EndRequests {
 public:
  // end is called for every signal, save where the session manager asks that work be kept. Where end is
  // refused, which refused tells, the session goes on.
  EndRequests(host::EndSignals& endSignals, std::function<void()> end, std::function<void()> save,
              std::function<bool()> refused);

 private:
  QSocketNotifier notifier;
};

}  // namespace desktop
