#include "host/PosixPrograms.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <initializer_list>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/JsonLine.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// More than this waits in the pipe, and its writer with it.
constexpr std::size_t MostHeard = std::size_t{4} << 20U;

// One end of a pipe that never blocks.
class PipeEnd {
 public:
  explicit PipeEnd(int opened) : descriptor(opened) { fcntl(opened, F_SETFL, O_NONBLOCK); }
  PipeEnd(const PipeEnd&) = delete;
  PipeEnd& operator=(const PipeEnd&) = delete;
  ~PipeEnd() { Close(); }
  void Close() {
    if (descriptor >= 0) close(descriptor);
    descriptor = -1;
  }

  // What waits, as far as there is room; ended once nobody can write any more.
  void ReadInto(std::string& text) {
    std::array<char, 65536> block{};
    while (!ended && text.size() < MostHeard) {
      const ssize_t got = read(descriptor, block.data(), block.size());
      if (got < 0 && errno == EINTR) continue;
      if (got < 0 && errno == EAGAIN) return;
      ended = got <= 0;
      if (got > 0) text.append(block.data(), static_cast<std::size_t>(got));
    }
  }

  // As much as is taken now.
  void WriteFrom(std::string& text) const {
    while (!text.empty()) {
      const ssize_t taken = write(descriptor, text.data(), text.size());
      if (taken < 0 && errno == EINTR) continue;
      if (taken < 0 && errno == EAGAIN) return;
      text.erase(0, taken < 0 ? std::string::npos : static_cast<std::size_t>(taken));
    }
  }

  bool Ended() const { return ended; }

 private:
  int descriptor;
  bool ended = false;
};

// Whole lines out of what has come so far.
class Lines {
 public:
  std::string& Text() { return text; }
  // The next one; where no more can come, what is left counts as one. A line that fills all the room is none.
  bool Take(bool last, std::string& line) {
    const auto end = text.find('\n', taken);
    const bool whole = end != std::string::npos;
    if (whole || (last && taken < text.size())) {
      line = text.substr(taken, whole ? end - taken : end);
      taken = whole ? end + 1 : text.size();
      return true;
    }
    text.erase(0, text.size() - taken < MostHeard ? taken : std::string::npos);
    taken = 0;
    return false;
  }
  bool Empty() const { return taken == text.size(); }

 private:
  std::string text;
  std::size_t taken = 0;
};

class Child : public vc::RunningProgram {
 public:
  Child(pid_t process, int in, int out, int complaints)
      : id(process), input(in), output(out), errors(complaints) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() override {
    input.Close();
    constexpr auto patience = milliseconds(1000);
    const auto end = steady_clock::now() + patience;
    while (!Reaped() && steady_clock::now() < end) std::this_thread::sleep_for(milliseconds(5));
    if (reaped) return;
    kill(id, SIGKILL);
    waitpid(id, nullptr, 0);
  }

  void Say(const std::string& line) override {
    unsaid += line + '\n';
    input.WriteFrom(unsaid);
  }

  // What does not answer but talks is heard out later.
  std::optional<vc::Said> TakeAnswer() override {
    input.WriteFrom(unsaid);
    const bool last = Reaped();  // asked before the read: what it has said is all there then
    output.ReadInto(heard.Text());
    LastWords();
    std::string line;
    for (int passed = 0; passed < MostPassed && heard.Take(last, line); ++passed) {
      if (!line.starts_with('{')) continue;
      if (auto said = ReadJsonLine(line)) return said;
    }
    return std::nullopt;
  }

  bool Running() override {
    if (!Reaped()) return true;
    output.ReadInto(heard.Text());
    return !heard.Empty();
  }

  std::string LastWords() override {
    const bool last = Reaped();
    errors.ReadInto(complained.Text());
    for (std::string line; complained.Take(last, line);) {
      if (!line.empty()) lastWords = line.substr(0, LongestWords);
    }
    return lastWords;
  }

 private:
  static constexpr int MostPassed = 2000;
  static constexpr std::size_t LongestWords = 500;

  bool Reaped() {
    if (!reaped) reaped = waitpid(id, nullptr, WNOHANG) == id;
    return reaped;
  }

  pid_t id;
  bool reaped = false;
  PipeEnd input, output, errors;
  std::string unsaid, lastWords;
  Lines heard, complained;
};

struct Pipe {
  Pipe() { made = pipe2(ends.data(), O_CLOEXEC) == 0; }
  std::array<int, 2> ends{-1, -1};
  bool made = false;
};

// Its ends of the pipes in the place of its standard streams, and a group of its own: what the terminal sends
// to this program's is for this program, which ends the other one when it needs it no more. 0, or what
// failed.
int Spawn(const std::string& path, const std::vector<std::string>& arguments,
          const std::array<int, 3>& streams, pid_t& id) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int stream = 0; stream < 3; ++stream) {
    posix_spawn_file_actions_adddup2(&actions, streams.at(static_cast<std::size_t>(stream)), stream);
  }
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  posix_spawnattr_setpgroup(&attributes, 0);
  std::vector<std::string> words{path};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const int failure = posix_spawn(&id, path.c_str(), &actions, &attributes, pointers.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return failure;
}

void CloseAll(std::initializer_list<int> descriptors) {
  for (const int descriptor : descriptors) {
    if (descriptor >= 0) close(descriptor);
  }
}

}  // namespace

std::unique_ptr<vc::RunningProgram> PosixPrograms::Start(const std::string& path,
                                                         const std::vector<std::string>& arguments,
                                                         std::string& reason) {
  std::signal(SIGPIPE, SIG_IGN);  // a program that has ended is no reason to end
  const Pipe in, out, errors;
  pid_t id = -1;
  const bool pipes = in.made && out.made && errors.made;
  const int failure = pipes ? Spawn(path, arguments, {in.ends[0], out.ends[1], errors.ends[1]}, id) : EMFILE;
  CloseAll({in.ends[0], out.ends[1], errors.ends[1]});
  if (failure == 0) return std::make_unique<Child>(id, in.ends[1], out.ends[0], errors.ends[0]);
  CloseAll({in.ends[1], out.ends[0], errors.ends[0]});
  reason = path + ": " + std::strerror(failure);
  return nullptr;
}

}  // namespace host
