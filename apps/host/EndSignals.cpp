#include "host/EndSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>

#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigaction is not in <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace host {
namespace {

constexpr std::array<int, 4> Watched{SIGTERM, SIGINT, SIGHUP, SIGQUIT};

// A handler can reach nothing but a global. Blocked signals and a signalfd would need none, but every program
// that this one starts would inherit the block.
std::atomic<int> told{-1};

void Tell(int /*number*/) {
  const int error = errno;
  const std::uint64_t once = 1;
  [[maybe_unused]] const ssize_t written = write(told, &once, sizeof once);
  errno = error;
}

bool Ignored(int number) {
  struct sigaction now {};
  return sigaction(number, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

}  // namespace

EndSignals::EndSignals() : descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  signal(SIGPIPE, SIG_IGN);
  if (descriptor < 0) return;
  told = descriptor;
  struct sigaction action {};
  action.sa_handler = Tell;
  action.sa_flags = SA_RESTART;
  for (const int number : Watched) {
    const bool outlivesTerminal = number == SIGHUP && Ignored(number);
    if (!outlivesTerminal) sigaction(number, &action, nullptr);
  }
}

EndSignals::~EndSignals() {
  if (descriptor < 0) return;
  for (const int number : Watched) {
    if (!Ignored(number)) signal(number, SIG_DFL);
  }
  told = -1;
  close(descriptor);
}

bool EndSignals::Take() {
  std::uint64_t count = 0;
  const bool taken = descriptor >= 0 && read(descriptor, &count, sizeof count) == sizeof count;
  come = come || taken;
  return taken;
}

bool EndSignals::Come() const {
  pollfd watched{descriptor, POLLIN, 0};
  return come || (descriptor >= 0 && poll(&watched, 1, 0) == 1);
}

void EndSignals::Forget() {
  Take();
  come = false;
}

}  // namespace host
