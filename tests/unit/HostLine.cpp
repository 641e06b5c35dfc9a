// A host's end of a real line to the simulated unit, for tests in real time.
#include "unit/HostLine.h"

#include <array>
#include <chrono>
#include <stdexcept>
#include <thread>

#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace unit_test {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

void SetUp(int descriptor, int rate) {
  termios2 settings{};
  ioctl(descriptor, TCGETS2, &settings);
  settings.c_iflag = settings.c_oflag = settings.c_lflag = 0;
  settings.c_cflag = CS8 | CREAD | CLOCAL | BOTHER | (BOTHER << IBSHIFT);
  settings.c_ispeed = settings.c_ospeed = static_cast<speed_t>(rate);
  ioctl(descriptor, TCSETS2, &settings);
  ioctl(descriptor, TCFLSH, TCIOFLUSH);
}

}  // namespace

HostLine::HostLine(const fs::path& path, int rate)
    : descriptor(open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  if (IsOpen() && rate > 0) SetUp(descriptor, rate);
}

HostLine::~HostLine() {
  if (IsOpen()) close(descriptor);
}

void HostLine::Write(const Bytes& bytes) const {
  if (write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("the line does not take the bytes");
  }
}

std::string HostLine::Read(std::size_t count, int milliseconds) const {
  const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
  std::string heard;
  while (heard.size() < count) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd wait{descriptor, POLLIN, 0};
    if (left <= 0 || poll(&wait, 1, static_cast<int>(left)) <= 0) break;
    std::array<char, 256> buffer{};
    const ssize_t got = read(descriptor, buffer.data(), buffer.size());
    if (got <= 0) break;
    heard.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return heard;
}

int HostLine::Waiting() const {
  int count = 0;
  ioctl(descriptor, FIONREAD, &count);
  return count;
}

std::string HostLine::Ask(const Bytes& bytes, std::size_t count, int milliseconds) const {
  Write(bytes);
  return Read(count, milliseconds);
}

bool Soon(const std::function<bool()>& condition) {
  for (int i = 0; i < 2000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

}  // namespace unit_test
