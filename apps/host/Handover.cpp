#include "host/Handover.h"

#include <array>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {
namespace {

// Only a pipe: what else may lie under the name is nobody's to write into. Negative where it is none.
int OpenPipe(const std::string& path, int way) {
  const int opened = open(path.c_str(), way | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY);
  struct stat status {};
  if (opened < 0 || (fstat(opened, &status) == 0 && S_ISFIFO(status.st_mode))) return opened;
  close(opened);
  return -1;
}

}  // namespace

Handover::~Handover() {
  if (descriptor >= 0) close(descriptor);
}

bool Handover::Give(const std::string& path) const {
  const std::string message = path + '\0';
  if (message.size() > PIPE_BUF) return false;  // longer than what is written at one stroke
  const int opened = OpenPipe(pipe, O_WRONLY);
  if (opened < 0) return false;
  const bool given = write(opened, message.data(), message.size()) == static_cast<ssize_t>(message.size());
  close(opened);
  return given;
}

// Both ends, so that it does not count as ended whenever a giver has closed its own.
bool Handover::Listen() {
  if (descriptor >= 0) return true;
  constexpr mode_t ownersOnly = 0600;
  mkfifo(pipe.c_str(), ownersOnly);  // it may be there already
  descriptor = OpenPipe(pipe, O_RDWR);
  return descriptor >= 0;
}

std::vector<std::string> Handover::Take() {
  std::array<char, PIPE_BUF> block{};
  for (ssize_t count = 0; descriptor >= 0 && (count = read(descriptor, block.data(), block.size())) > 0;) {
    begun.append(block.data(), static_cast<std::size_t>(count));
  }
  std::vector<std::string> paths;
  for (std::size_t end = 0; (end = begun.find('\0')) != std::string::npos; begun.erase(0, end + 1)) {
    if (end > 0) paths.push_back(begun.substr(0, end));
  }
  return paths;
}

}  // namespace host
