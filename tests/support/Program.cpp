#include "Program.h"

#include <array>
#include <chrono>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

using Clock = std::chrono::steady_clock;

Program::Program(const std::string& path, const std::vector<std::string>& arguments) {
  std::array<int, 2> in{};
  std::array<int, 2> out{};
  if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)
    throw std::runtime_error("no pipe");
  std::vector<char*> words{const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  child = fork();
  if (child == 0) {
    dup2(in[0], STDIN_FILENO);
    dup2(out[1], STDOUT_FILENO);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that crashes leaves nobody behind
    signal(SIGPIPE, SIG_DFL);          // whatever this program does with it
    execv(path.c_str(), words.data());
    _exit(127);
  }
  close(in[0]);
  close(out[1]);
  input = in[1];
  output = out[0];
  signal(SIGPIPE, SIG_IGN);
}

Program::~Program() {
  CloseInput();
  CloseOutput();
  if (child > 0) {
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
  }
}

void Program::CloseInput() {
  if (input >= 0) close(input);
  input = -1;
}

void Program::CloseOutput() {
  if (output >= 0) close(output);
  output = -1;
}

void Program::Say(const std::string& line) const {
  const std::string text = line + "\n";
  if (write(input, text.data(), text.size()) < 0) throw std::runtime_error("the program does not listen");
}

std::string Program::Await(const std::string& beginning, int milliseconds) {
  const auto end = Clock::now() + std::chrono::milliseconds(milliseconds) * TIME_ALLOWANCE;
  while (true) {
    for (auto stop = pending.find('\n'); stop != std::string::npos; stop = pending.find('\n')) {
      std::string line = pending.substr(0, stop);
      pending.erase(0, stop + 1);
      if (line.starts_with(beginning)) return line;
    }
    if (Clock::now() >= end) return {};
    pollfd watched{output, POLLIN, 0};
    if (poll(&watched, 1, 20) <= 0) continue;
    std::array<char, 4096> block{};
    const ssize_t got = read(output, block.data(), block.size());
    if (got <= 0) return {};
    pending.append(block.data(), static_cast<std::size_t>(got));
  }
}

int Program::AwaitEnd(int milliseconds) {
  const auto end = Clock::now() + std::chrono::milliseconds(milliseconds) * TIME_ALLOWANCE;
  while (Clock::now() < end) {
    int status = 0;
    if (waitpid(child, &status, WNOHANG) == child) {
      child = -1;
      return WIFEXITED(status) ? WEXITSTATUS(status) : -2;
    }
    usleep(2000);
  }
  return -1;
}

void Program::Signal(int number) const { kill(child, number); }

}  // namespace support
