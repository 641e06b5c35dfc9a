// veltrana-console: the session on standard input and output.
#include <array>
#include <iostream>
#include <string>

#include <poll.h>
#include <unistd.h>

#include "console/Console.h"
#include "host/Folders.h"
#include "host/PosixFiles.h"
#include "host/PosixSerialPorts.h"
#include "host/SystemClock.h"
#include "text/Convert.h"

namespace {

// Standard input as lines, without blocking longer than asked.
class LineInput {
 public:
  // Waits at most so long for more; true while there may be more to come.
  bool Await(std::int64_t microseconds) {
    pollfd watched{STDIN_FILENO, POLLIN, 0};
    const timespec limit{microseconds / 1000000, microseconds % 1000000 * 1000};
    if (ended || ppoll(&watched, 1, &limit, nullptr) <= 0) return !ended;
    std::array<char, 4096> block{};
    const ssize_t count = read(STDIN_FILENO, block.data(), block.size());
    if (count > 0) {
      text.append(block.data(), static_cast<std::size_t>(count));
    } else {
      ended = true;
    }
    return !ended;
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
  std::string text;
  bool ended = false;
};

int RunConsole() {
  const host::Folders folders = host::FindFolders();
  host::SystemClock clock;
  host::TimerLoop loop(clock);
  host::PosixSerialPorts ports({.linkFolder = folders.executable + "/ports"});
  console::ConsoleDesk desk(std::cout, clock, folders);
  host::PosixFiles files;
  vc::Session session({clock, loop, desk, ports, files});
  console::Console face(session, desk, loop, std::cout);

  session.Start();
  LineInput input;
  std::string line;
  constexpr int longestWaitMilliseconds = 1000;
  while (!loop.Ending()) {
    if (input.Take(line)) {
      face.Execute(line);
    } else if (input.Exhausted()) {
      face.Execute("quit");
    } else {
      // Timers go on while the operator thinks.
      loop.SetIdle([&input](std::int64_t microseconds) { input.Await(microseconds); });
      try {
        loop.RunEvents(longestWaitMilliseconds);
      } catch (const vc::Fault& fault) {
        std::cout << "error " << fault.description << std::endl;
      }
      loop.SetIdle([&clock](std::int64_t microseconds) { clock.Sleep(microseconds); });
    }
  }
  session.Exit();
  return 0;
}

}  // namespace

int main(int argc, char** /*argv*/) {
  if (argc > 1) {
    std::cerr << "veltrana-console takes no arguments: its configuration lies in the setup files\n";
    return 2;
  }
  return RunConsole();
}
