// The system's requests to end (SIGTERM, SIGINT) as events on the interface thread.
#pragma once

#include <functional>
#include <memory>

#include <QSocketNotifier>

namespace desktop {

class EndSignals {
 public:
  // Keeps the signals from ending the program by themselves. To be called before the first thread starts: a
  // thread that does not block them would take them.
  static void Block();
  explicit EndSignals(std::function<void()> requested);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  int descriptor;
  std::unique_ptr<QSocketNotifier> notifier;
};

}  // namespace desktop
