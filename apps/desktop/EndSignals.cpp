#include "desktop/EndSignals.h"

#include <utility>

#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t is not in <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace desktop {

namespace {

sigset_t Watched() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  return signals;
}

}  // namespace

void EndSignals::Block() {
  const sigset_t signals = Watched();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

EndSignals::EndSignals(std::function<void()> requested) {
  const sigset_t signals = Watched();
  descriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor < 0) {  // then they end the program at once, as they do anywhere
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    return;
  }
  notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                   [this, tell = std::move(requested)] {
                     signalfd_siginfo taken{};
                     if (read(descriptor, &taken, sizeof taken) == sizeof taken) tell();
                   });
}

EndSignals::~EndSignals() {
  notifier.reset();
  if (descriptor >= 0) close(descriptor);
}

}  // namespace desktop
