#include "host/PosixPrograms.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
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

  // All that waits; ended once nobody can write any more.
  void ReadInto(std::string& text) {
    std::array<char, 65536> block{};
    while (!ended) {
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

// Takes a whole line off the beginning; at the end of all, what is left.
bool TakeLine(std::string& text, bool ended, std::string& line) {
  const auto end = text.find('\n');
  if (end == std::string::npos && (!ended || text.empty())) return false;
  line = text.substr(0, end);
  text.erase(0, end == std::string::npos ? end : end + 1);
  return true;
}

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

  std::optional<vc::Said> TakeAnswer() override {
    input.WriteFrom(unsaid);
    output.ReadInto(heard);
    errors.ReadInto(complained);
    for (std::string line; TakeLine(heard, output.Ended(), line);) {
      if (auto said = ReadJsonLine(line)) return said;
    }
    return std::nullopt;
  }

  bool Running() override {
    output.ReadInto(heard);
    return !Reaped() || !heard.empty();
  }

  std::string LastWords() override {
    errors.ReadInto(complained);
    for (std::string line; TakeLine(complained, Reaped(), line);) {
      if (!line.empty()) lastWords = line;
    }
    return lastWords;
  }

 private:
  bool Reaped() {
    if (!reaped) reaped = waitpid(id, nullptr, WNOHANG) == id;
    return reaped;
  }

  pid_t id;
  bool reaped = false;
  PipeEnd input, output, errors;
  std::string unsaid, heard, complained, lastWords;
};

struct Pipe {
  Pipe() { made = pipe2(ends.data(), O_CLOEXEC) == 0; }
  std::array<int, 2> ends{-1, -1};
  bool made = false;
};

}  // namespace

std::unique_ptr<vc::RunningProgram> PosixPrograms::Start(const std::string& path,
                                                         const std::vector<std::string>& arguments,
                                                         std::string& reason) {
  std::signal(SIGPIPE, SIG_IGN);  // a program that has ended is no reason to end
  Pipe in, out, errors;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in.ends[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errors.ends[1], STDERR_FILENO);
  std::vector<std::string> words{path};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t id = -1;
  const bool pipes = in.made && out.made && errors.made;
  const int failure =
      pipes ? posix_spawn(&id, path.c_str(), &actions, nullptr, pointers.data(), environ) : errno;
  posix_spawn_file_actions_destroy(&actions);
  for (const int end : {in.ends[0], out.ends[1], errors.ends[1]}) close(end);
  if (failure == 0) return std::make_unique<Child>(id, in.ends[1], out.ends[0], errors.ends[0]);
  for (const int end : {in.ends[1], out.ends[0], errors.ends[0]}) close(end);
  reason = path + ": " + std::strerror(failure);
  return nullptr;
}

}  // namespace host
