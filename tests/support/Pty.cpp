#include "Pty.h"

#include <array>
#include <chrono>
#include <stdexcept>

#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace support {

Pty::Pty() : master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  std::array<char, 128> name{};
  if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0 ||
      ptsname_r(master, name.data(), name.size()) != 0) {
    throw std::runtime_error("no pseudo-terminal");
  }
  path = name.data();
}

void Pty::CloseMaster() {
  if (master >= 0) close(master);
  master = -1;
}

void Pty::Write(const std::string& bytes) const {
  if (write(master, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("the pseudo-terminal is full");
  }
}

std::vector<std::uint8_t> Pty::Read(std::size_t count, int milliseconds) const {
  using Steady = std::chrono::steady_clock;
  const auto end = Steady::now() + std::chrono::milliseconds(milliseconds);
  std::vector<std::uint8_t> bytes;
  while (bytes.size() < count && Steady::now() < end) {
    pollfd watched{master, POLLIN, 0};
    poll(&watched, 1, 10);
    std::array<std::uint8_t, 256> block{};
    if ((watched.revents & POLLIN) == 0) {
      if ((watched.revents & POLLHUP) != 0) usleep(2000);  // nobody has opened the other end
      continue;
    }
    const ssize_t got = read(master, block.data(), std::min(block.size(), count - bytes.size()));
    if (got > 0) bytes.insert(bytes.end(), block.begin(), block.begin() + got);
  }
  return bytes;
}

unsigned Pty::Rate() const {
  termios2 state{};
  return ioctl(master, TCGETS2, &state) == 0 ? state.c_ospeed : 0;
}

}  // namespace support
