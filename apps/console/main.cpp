// veltrana-console: the session on standard input and output. Its exit status is 0 where everything that was
// said has been done, 1 where a line of error was told or what it says could not be written, 2 where it was
// given arguments.
#include <array>
#include <cerrno>
#include <iostream>
#include <string>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "console/Console.h"
#include "host/CairoPictures.h"
#include "host/EndSignals.h"
#include "host/Folders.h"
#include "host/PdfPrinters.h"
#include "host/PosixFiles.h"
#include "host/PosixPrograms.h"
#include "host/PosixSerialPorts.h"
#include "host/StandardStreams.h"
#include "host/SystemClock.h"
#include "text/Convert.h"

namespace {

// Standard input as lines, without blocking longer than asked.
class LineInput {
 public:
  explicit LineInput(int wakeDescriptor) : wake(wakeDescriptor) {}

  // Waits at most so long for more, or until the other descriptor can be read.
  void Await(std::int64_t microseconds) {
    std::array<pollfd, 2> watched{{{ended ? -1 : STDIN_FILENO, POLLIN, 0}, {wake, POLLIN, 0}}};
    const timespec limit{microseconds / 1000000, microseconds % 1000000 * 1000};
    if (ppoll(watched.data(), watched.size(), &limit, nullptr) <= 0) return;
    if (watched[0].revents != 0) Read();
  }

  // Takes the next whole line; at the end of the input what is left counts as one.
  bool Take(std::string& line) {
    const auto end = text.find('\n');
    if (end == std::string::npos && !(ended && !text.empty())) return false;
    line = text.substr(0, end);
    text.erase(0, end == std::string::npos ? end : end + 1);
    return true;
  }

  bool Exhausted() const { return ended && text.empty(); }

 private:
  void Read() {
    std::array<char, 4096> block{};
    const ssize_t count = read(STDIN_FILENO, block.data(), block.size());
    if (count < 0 && errno == EINTR) return;
    ended = count <= 0;
    if (count > 0) text.append(block.data(), static_cast<std::size_t>(count));
  }

  int wake;
  std::string text;
  bool ended = false;
};

// Timers go on while the operator thinks. Where one of them waits in its turn and lets events run, a line is
// such an event.
void AwaitLine(host::TimerLoop& loop, vc::Clock& clock, LineInput& input, console::Console& face) {
  constexpr int longestMilliseconds = 1000;
  loop.SetIdle([&input, &face, within = false](std::int64_t microseconds) mutable {
    input.Await(microseconds);
    std::string line;
    if (std::exchange(within, true) && input.Take(line)) face.Execute(line);
  });
  try {
    loop.RunEvents(longestMilliseconds);
  } catch (const vc::Fault& fault) {
    face.Error("event", fault.description);
    std::cout.flush();
  }
  loop.SetIdle([&clock](std::int64_t microseconds) { clock.Sleep(microseconds); });
}

// Where the input has ended and the exit is refused, because a recording is being cleaned, say.
constexpr int RefusedMilliseconds = 1000;

int RunConsole() {
  host::EndSignals signals;
  const host::Folders folders = host::FindFolders();
  host::SystemClock clock;
  host::TimerLoop loop(clock);
  loop.SetEndAsked([&signals] { return signals.Come(); }, [&signals] { signals.Forget(); });
  host::PosixSerialPorts ports(folders.Ports());
  console::ConsoleDesk desk(std::cout, clock, folders);
  host::PosixFiles files;
  host::PdfPrinters printers(
      files, [&desk](const vc::PrintJob& job, int pages) { desk.TellPages(job.title, pages, job.file); });
  host::CairoPictures pictures;
  host::PosixPrograms programs;
  vc::Session session({clock, loop, desk, ports, files, printers, pictures, programs});
  console::Console face(session, desk, loop, std::cout);

  session.Start();
  LineInput input(signals.Descriptor());
  std::string line;
  // Whoever no longer reads what is said does not drive the program any more.
  while (!loop.Ending() && std::cout) {
    if (input.Take(line)) {
      face.Execute(line);
    } else if (input.Exhausted()) {
      const bool lost = !session.lastState.KeepsState() && session.setupContext.open.Changed();
      if (lost) desk.QueueAnswer("no");  // nobody is there any more who could say where to save it
      face.Execute("quit");
      if (!loop.Ending()) loop.RunFor(RefusedMilliseconds);
    } else {
      AwaitLine(loop, clock, input, face);
    }
  }
  session.Exit();
  return std::cout && !face.Failed() ? 0 : 1;
}

}  // namespace

int main(int argc, char** /*argv*/) {
  if (argc > 1) {
    std::cerr << "veltrana-console takes no arguments: its configuration lies in the setup files\n";
    return 2;
  }
  host::FillStandardStreams();
  return RunConsole();
}
