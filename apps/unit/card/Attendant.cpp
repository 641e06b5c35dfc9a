// A process that works for this one on what may hang or crash.
#include "unit/card/Attendant.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t and sigprocmask are of the system's header
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace unit::sound {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
constexpr milliseconds Leave(200);  // for an attendant that is let go
constexpr int Conversation = STDERR_FILENO + 1;

// Readable, or hung up.
bool Wait(int descriptor, milliseconds wait) {
  pollfd waits{descriptor, POLLIN, 0};
  return poll(&waits, 1, static_cast<int>(std::max<milliseconds::rep>(wait.count(), 0))) > 0;
}

milliseconds Until(Clock::time_point end) {
  return std::chrono::duration_cast<milliseconds>(end - Clock::now());
}

// What is the unit's alone stays with it; a key that ends the unit ends this process by the unit's end.
void LeaveBehind(int conversation) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGUSR1, SIGUSR2}) signal(number, SIG_IGN);
  if (conversation != Conversation) dup2(conversation, Conversation);
  const int nowhere = open("/dev/null", O_RDWR);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, standard);
  close_range(Conversation + 1, ~0U, 0);
}

}  // namespace

void Employer::Tell(const Records& records) const {
  std::string text;
  for (const std::string& record : records) text += record + '\0';
  text += '\0';
  // An employer that is gone hears nothing.
  for (std::size_t at = 0; at < text.size();) {
    const ssize_t sent = send(descriptor, text.data() + at, text.size() - at, MSG_NOSIGNAL);
    if (sent <= 0) return;
    at += static_cast<std::size_t>(sent);
  }
}

bool Employer::Stays(milliseconds wait) const { return !Wait(descriptor, wait); }

std::optional<Attendant> Attendant::Begin(const Work& work) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
  const pid_t employer = getpid();
  const pid_t child = fork();
  if (child != 0) {
    close(ends[1]);
    if (child > 0) return Attendant(child, ends[0]);
    close(ends[0]);
    return {};
  }
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  LeaveBehind(ends[1]);
  // It may have gone before it could be followed.
  if (getppid() == employer) work(Employer(Conversation));
  _exit(0);
}

Attendant::Attendant(Attendant&& other) noexcept
    : id(std::exchange(other.id, -1)), descriptor(std::exchange(other.descriptor, -1)) {}

Attendant::~Attendant() {
  if (id < 0) return;
  shutdown(descriptor, SHUT_WR);
  // Its end of the conversation is closed with it.
  const auto end = Clock::now() + Leave;
  std::array<char, 256> rest{};
  while (Until(end).count() > 0 && Wait(descriptor, Until(end)))
    if (read(descriptor, rest.data(), rest.size()) <= 0) break;
  kill(id, SIGKILL);
  waitpid(id, nullptr, 0);
  close(descriptor);
}

std::optional<Records> Attendant::Hear(milliseconds wait) {
  const auto end = Clock::now() + wait;
  Records records;
  std::string record;
  while (Wait(descriptor, Until(end))) {
    char byte = 0;
    if (read(descriptor, &byte, 1) != 1) return {};
    if (byte != '\0') {
      record += byte;
    } else if (record.empty()) {
      return records;
    } else {
      records.push_back(std::exchange(record, {}));
    }
  }
  return {};
}

bool Attendant::Alive() const {
  siginfo_t ended{};
  return waitid(P_PID, static_cast<id_t>(id), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0;
}

}  // namespace unit::sound
