// The simulated unit as a program: a serial line under a path, and a unit that answers on it.
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <iostream>
#include <memory>
#include <utility>
#include <variant>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t and sigprocmask are of the system's header
#include <sys/signalfd.h>
#include <unistd.h>

#include "unit/CoefficientFile.h"
#include "unit/Dump.h"
#include "unit/ImageFile.h"
#include "unit/MemoryFile.h"
#include "unit/Options.h"
#include "unit/PtyLine.h"
#include "unit/Unit.h"
#include "unit/WholeFile.h"
#include "unit/clean/Cleaning.h"
#include "unit/control/Control.h"
#include "unit/sound/LiveSound.h"

namespace {

constexpr int EnvironmentFault = 1;
constexpr int UsageFault = 2;

class Stopwatch {
 public:
  std::int64_t Microseconds() const {
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start = Clock::now();
};

int Complain(const std::string& text, int code) {
  std::cerr << "veltrana-unit: " << text << '\n';
  return code;
}

// A descriptor of the three standard ones that is closed would be the next file's that is opened. The unit is
// not stopped by a terminal that belongs to somebody else, nor ended by a reader that has gone.
void SecureStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", O_RDWR);
  }
  for (const int number : {SIGTTIN, SIGTTOU, SIGPIPE}) signal(number, SIG_IGN);
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

void Dump(unit::Unit& unit, const std::string& path) {
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

// Lets the unit begin with the images of the file, which may leave it in its boot ROM, and has every change
// written there.
void KeepImages(unit::Unit& unit, const std::string& path) {
  if (path.empty()) return;
  unit::LoadedImages loaded = unit::LoadImages(path);
  if (!loaded.trouble.empty()) Complain(loaded.trouble, EnvironmentFault);
  if (loaded.images) unit.Install(std::move(*loaded.images));
  if (!loaded.writable) return;
  unit.imagesChanged = [path](const unit::Images& images) { Write(path, unit::ImageFileText(images)); };
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

// The sound and the commands go on while nothing happens on the line.
std::optional<std::int64_t> NextEvent(const unit::control::Parts& parts,
                                      const unit::control::Control& control) {
  std::optional<std::int64_t> event = parts.unit.NextEvent();
  const auto orAt = [&event](std::int64_t time) { event = std::min(event.value_or(INT64_MAX), time); };
  if (parts.sound != nullptr) orAt(parts.sound->NextBlock());
  if (control.NextLook()) orAt(*control.NextLook());
  return event;
}

// Serves the line until the program is asked to end.
int Serve(unit::PtyLine& line, unit::control::Parts& parts, unit::control::Outlet& outlet, int requests,
          const unit::Options& options) {
  unit::Unit& unit = parts.unit;
  unit::control::Control control(STDIN_FILENO, parts, outlet);
  const Stopwatch watch;
  // A host that downloads sends its next frame at once: it finds the unit awake.
  constexpr std::int64_t awakeMicroseconds = 300;
  std::int64_t awakeUntil = 0;
  std::array<pollfd, 4> waits{{{requests, POLLIN, 0},
                               {line.Master(), POLLIN, 0},
                               {line.Watch(), POLLIN, 0},
                               {control.Event(), POLLIN, 0}}};
  while (true) {
    timespec left{};
    const std::int64_t now = watch.Microseconds();
    const std::optional<std::int64_t> event = now < awakeUntil ? now : NextEvent(parts, control);
    const int ready = ppoll(waits.data(), waits.size(), TimeUntil(event, now, left), nullptr);
    if (ready < 0 && errno != EINTR) return Complain("the line can't be watched", EnvironmentFault);
    if (ready > 0) Exchange(line, unit, watch);
    unit.sound.runUntil(watch.Microseconds());
    const unit::Bytes said = unit.Transmit(watch.Microseconds());
    if (!said.empty()) awakeUntil = watch.Microseconds() + awakeMicroseconds;
    line.Write(said);
    control.Serve(watch.Microseconds());
    if (options.attached && control.Ended()) return 0;
    if (ready <= 0 || waits[0].revents == 0) continue;
    if (!Grant(RequestFrom(requests), unit, options)) return 0;
  }
}

using OpenedSound = std::variant<std::unique_ptr<unit::sound::LiveSound>, std::string>;

// Nothing where there is to be no sound.
OpenedSound OpenSound(const unit::Options& options) {
  if (options.silent) return std::unique_ptr<unit::sound::LiveSound>();
  auto opened = unit::sound::LiveSound::Open({.in = options.in,
                                              .out = options.out,
                                              .looped = options.looped,
                                              .lenient = options.lenient,
                                              .seed = options.seed});
  if (auto* const sound = std::get_if<0>(&opened)) {
    (*sound)->failed = [](const std::string& what) { Complain(what, EnvironmentFault); };
  }
  return opened;
}

// Attaches the sound to a unit with its memories; an empty text, or what is wrong.
std::string Furnish(unit::Unit& unit, unit::sound::LiveSound* sound, const unit::Options& options) {
  if (sound != nullptr) sound->Attach(unit);
  KeepMemories(unit, options.memories);
  if (!options.memory || unit.Recall(*options.memory)) return {};
  return options.memories + ": memory " + std::to_string(*options.memory) + " is empty";
}

// The sound through the setting of a memory, as fast as it goes. What is still under way at the end of the
// file comes out as well.
int ProcessFast(const unit::Options& options) {
  constexpr double tailSeconds = 0.5;
  const OpenedSound opened = OpenSound(options);
  if (const auto* const wrong = std::get_if<std::string>(&opened)) return Complain(*wrong, EnvironmentFault);
  unit::sound::LiveSound& sound = *std::get<0>(opened);
  unit::Unit unit(options);
  const std::string wrong = Furnish(unit, &sound, options);
  if (!wrong.empty()) return Complain(wrong, EnvironmentFault);
  const Stopwatch watch;
  const auto more = [&] { return options.seconds == 0 || sound.Seconds() < options.seconds; };
  while (sound.Whole() && !sound.InputEnded() && more()) sound.RunBlock();
  const double heard = sound.Seconds();
  while (sound.Whole() && sound.Seconds() < heard + tailSeconds && more()) sound.RunBlock();
  if (sound.Whole()) sound.Close();
  if (!sound.Whole()) return EnvironmentFault;
  const double taken = static_cast<double>(watch.Microseconds()) / 1e6;
  std::cout << "veltrana-unit: " << heard << " s of sound in " << taken << " s, to " << options.out
            << std::endl;
  return 0;
}

unit::clean::CleaningWish WishOf(const unit::Options& options, const unit::Unit& unit) {
  return {
      .in = options.in,
      .out = options.out,
      .from = options.from,
      .to = options.to,
      .adaptive = options.keepAdaptive ? unit::clean::Learning::Kept : unit::clean::Learning::FromBeginning,
      .setup = options.memories + ", memory " + std::to_string(*options.memory),
      .lenient = options.lenient,
      .setting = unit.Held()};
}

// A recording through the setting of a memory; ended by a signal it leaves no file.
int CleanRecording(const unit::Options& options) {
  constexpr int lookEvery = 20;  // ms
  unit::Unit unit(options);
  const std::string wrong = Furnish(unit, nullptr, options);
  if (!wrong.empty()) return Complain(wrong, EnvironmentFault);
  unit::clean::Cleaning cleaning(WishOf(options, unit));
  pollfd asked{Requests(), POLLIN, 0};
  cleaning.Start();
  while (!cleaning.Finished()) {
    if (poll(&asked, 1, lookEvery) <= 0) continue;
    const std::uint32_t request = RequestFrom(asked.fd);
    if (request != SIGUSR1 && request != SIGUSR2) cleaning.Cancel();
  }
  if (cleaning.State() == unit::clean::CleaningState::Cancelled)
    return Complain("ended before " + options.out + " was whole", EnvironmentFault);
  if (!cleaning.Error().empty()) {
    return Complain(cleaning.Error() + (cleaning.Flawed() ? " (--lenient takes it as it is)" : ""),
                    EnvironmentFault);
  }
  for (const std::string& line : cleaning.Report()) std::cout << line << '\n';
  std::cout.flush();
  return 0;
}

int Run(const unit::Options& options) {
  const OpenedSound opened = OpenSound(options);
  if (const auto* const wrong = std::get_if<std::string>(&opened)) return Complain(*wrong, EnvironmentFault);
  unit::sound::LiveSound* const sound = std::get<0>(opened).get();
  unit::Unit unit(options);
  std::ofstream trace;
  if (!options.trace.empty()) {
    trace.open(options.trace);
    if (!trace) return Complain(options.trace + ": can't be written", EnvironmentFault);
    unit.trace = [&trace](const unit::TraceEvent& event) { trace << TraceLine(event) << std::endl; };
  }
  const std::string wrong = Furnish(unit, sound, options);
  if (!wrong.empty()) return Complain(wrong, EnvironmentFault);
  KeepImages(unit, options.images);
  const int requests = Requests();
  unit::PtyLine line;
  const std::string failure = line.Open(options.link);
  if (!failure.empty()) return Complain(failure, EnvironmentFault);
  unit::control::Outlet outlet(STDOUT_FILENO);
  outlet.Say("veltrana-unit: " + options.link + " (" + line.Device() + ") at " +
             std::to_string(options.baud) + " baud");
  unit::control::Parts parts{
      .unit = unit, .sound = sound, .cleaning = {}, .seed = options.seed, .devices = {}, .trouble = {}};
  if (sound != nullptr) {
    if (options.paused && !options.in.empty()) sound->Source().SetPlaying(false);
    sound->failed = [&parts](const std::string& what) {
      Complain(what, EnvironmentFault);
      parts.trouble = what;
    };
  }
  const int end = Serve(line, parts, outlet, requests, options);
  outlet.Drain(std::chrono::milliseconds(500));
  if (sound == nullptr) return end;
  sound->Close();
  return sound->Whole() ? end : EnvironmentFault;
}

}  // namespace

int main(int count, char** values) {
  SecureStandardStreams();
  const std::vector<std::string_view> arguments(values + 1, values + count);
  const auto parsed = unit::ParseOptions(arguments);
  if (const auto* const wrong = std::get_if<std::string>(&parsed)) return Complain(*wrong, UsageFault);
  const auto& options = std::get<unit::Options>(parsed);
  if (options.help) {
    std::cout << unit::Usage();
    return 0;
  }
  if (options.clean) return CleanRecording(options);
  return options.fast ? ProcessFast(options) : Run(options);
}
