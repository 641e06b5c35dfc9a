// The simulated unit as a program: a serial line under a path, and a unit that answers on it.
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <iostream>
#include <utility>

#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t and sigprocmask are of the system's header
#include <sys/signalfd.h>
#include <unistd.h>

#include "unit/CoefficientFile.h"
#include "unit/Dump.h"
#include "unit/MemoryFile.h"
#include "unit/Options.h"
#include "unit/PtyLine.h"
#include "unit/Unit.h"
#include "unit/WholeFile.h"

namespace {

constexpr int EnvironmentFault = 1;
constexpr int UsageFault = 2;

class Stopwatch {
 public:
  std::int64_t Microseconds() const {
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start_).count();
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now();
};

int Complain(const std::string& text, int code) {
  std::cerr << "veltrana-unit: " << text << '\n';
  return code;
}

// A descriptor that becomes readable when the program is asked for something or to end.
int Requests() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGUSR2}) sigaddset(&signals, number);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

// The signal that has come; 0 where it can't be told.
std::uint32_t RequestFrom(int requests) {
  signalfd_siginfo request{};
  return read(requests, &request, sizeof request) == sizeof request ? request.ssi_signo : 0;
}

// A file that can't be written is no reason to leave the host without its unit.
void Write(const std::string& path, const std::string& text) {
  const std::string failure = unit::WriteWhole(path, text);
  if (!failure.empty()) Complain(failure, EnvironmentFault);
}

void Dump(const unit::Unit& unit, const std::string& path) {
  if (!path.empty()) Write(path, DumpText(unit));
}

// Lets the unit begin with the memories of the file, and has every store written there.
void KeepMemories(unit::Unit& unit, const std::string& path) {
  if (path.empty()) return;
  unit::LoadedMemories loaded = unit::LoadMemories(path);
  if (!loaded.trouble.empty()) Complain(loaded.trouble, EnvironmentFault);
  unit.memories = std::move(loaded.memories);
  if (!loaded.writable) return;
  unit.memoryStored = [path](const unit::Memories& memories) { Write(path, MemoryFileText(memories)); };
}

void Learn(unit::Unit& unit, const std::map<unsigned, std::string>& paths) {
  for (const auto& [page, path] : paths) {
    const auto read = unit::ReadCoefficients(path);
    if (const auto* const wrong = std::get_if<std::string>(&read)) {
      Complain(*wrong, EnvironmentFault);
    } else {
      unit.Learn(page, std::get<0>(read));
    }
  }
}

// False where the program is to end.
bool Grant(std::uint32_t request, unit::Unit& unit, const unit::Options& options) {
  switch (request) {
    case SIGUSR1:
      Dump(unit, options.dump);
      return true;
    case SIGUSR2:
      Learn(unit, options.coefficients);
      return true;
    default:
      return false;
  }
}

void Exchange(unit::PtyLine& line, unit::Unit& unit, const Stopwatch& watch) {
  using Host = unit::PtyLine::Host;
  const unit::PtyLine::Input input = line.Read();
  const auto dropSession = [&] {
    unit.LineClosed();
    line.DiscardSent();
  };
  if (input.host == Host::ClosedAndOpened) dropSession();
  unit.Receive(input.bytes, watch.Microseconds(), input.rate);
  if (input.host == Host::Closed) dropSession();
}

// The time until the event for ppoll(); nullptr waits without an end.
// A sleep ends too late for a character at the highest rate, so the last stretch is spent awake.
const timespec* TimeUntil(const std::optional<std::int64_t>& event, std::int64_t now, timespec& left) {
  if (!event) return nullptr;
  constexpr std::int64_t awakeMicroseconds = 150;
  const std::int64_t microseconds = std::max<std::int64_t>(*event - now - awakeMicroseconds, 0);
  left = {.tv_sec = microseconds / 1'000'000, .tv_nsec = microseconds % 1'000'000 * 1000};
  return &left;
}

// Serves the line until the program is asked to end.
int Serve(unit::PtyLine& line, unit::Unit& unit, int requests, const unit::Options& options) {
  const Stopwatch watch;
  // A host that downloads sends its next frame at once: it finds the unit awake.
  constexpr std::int64_t awakeMicroseconds = 300;
  std::int64_t awakeUntil = 0;
  std::array<pollfd, 3> waits{{{requests, POLLIN, 0}, {line.master(), POLLIN, 0}, {line.watch(), POLLIN, 0}}};
  while (true) {
    timespec left{};
    const std::int64_t now = watch.Microseconds();
    const std::optional<std::int64_t> event = now < awakeUntil ? now : unit.NextEvent();
    const int ready = ppoll(waits.data(), waits.size(), TimeUntil(event, now, left), nullptr);
    if (ready < 0 && errno != EINTR) return Complain("the line can't be watched", EnvironmentFault);
    if (ready > 0) Exchange(line, unit, watch);
    const unit::Bytes said = unit.Transmit(watch.Microseconds());
    if (!said.empty()) awakeUntil = watch.Microseconds() + awakeMicroseconds;
    line.Write(said);
    if (ready <= 0 || waits[0].revents == 0) continue;
    if (!Grant(RequestFrom(requests), unit, options)) return 0;
  }
}

int Run(const unit::Options& options) {
  unit::Unit unit(options);
  std::ofstream trace;
  if (!options.trace.empty()) {
    trace.open(options.trace);
    if (!trace) return Complain(options.trace + ": can't be written", EnvironmentFault);
    unit.trace = [&trace](const unit::TraceEvent& event) { trace << TraceLine(event) << std::endl; };
  }
  KeepMemories(unit, options.memories);
  const int requests = Requests();
  unit::PtyLine line;
  const std::string failure = line.Open(options.link);
  if (!failure.empty()) return Complain(failure, EnvironmentFault);
  std::cout << "veltrana-unit: " << options.link << " (" << line.device() << ") at " << options.baud
            << " baud" << std::endl;
  return Serve(line, unit, requests, options);
}

}  // namespace

int main(int count, char** values) {
  const std::vector<std::string_view> arguments(values + 1, values + count);
  const auto parsed = unit::ParseOptions(arguments);
  if (const auto* const wrong = std::get_if<std::string>(&parsed)) return Complain(*wrong, UsageFault);
  const auto& options = std::get<unit::Options>(parsed);
  if (options.help) {
    std::cout << unit::Usage();
    return 0;
  }
  return Run(options);
}
