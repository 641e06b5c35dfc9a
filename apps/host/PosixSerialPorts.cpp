#include "host/PosixSerialPorts.h"

// The kernel's own header: the rates between the standard ones are not in the library's.
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <utility>

#include <asm/termbits.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "host/DeviceRights.h"
#include "host/DeviceUsers.h"
#include "host/SystemClock.h"

namespace host {
namespace {

// Unix98 pseudo-terminals have these device numbers.
bool IsPseudoTerminal(int descriptor) {
  struct stat info {};
  if (fstat(descriptor, &info) != 0) return false;
  const unsigned number = major(info.st_rdev);
  return number >= 136 && number <= 143;
}

// Rates are made by dividing a clock: within three per cent a line still works.
bool NearEnough(std::uint32_t got, std::uint32_t wanted) {
  const std::uint32_t difference = got > wanted ? got - wanted : wanted - got;
  return difference * 100ULL <= wanted * 3ULL;
}

class PosixSerialPort : public vc::SerialPort {
 public:
  explicit PosixSerialPort(int openDescriptor)
      : descriptor(openDescriptor), pseudo(IsPseudoTerminal(openDescriptor)) {
    // The mark sticks to a pseudo-terminal for as long as its other end lives.
    if (!pseudo) ioctl(descriptor, TIOCEXCL);
    counts = ReadCounts();
  }
  ~PosixSerialPort() override {
    if (!pseudo) ioctl(descriptor, TIOCNXCL);
    close(descriptor);
  }
  PosixSerialPort(const PosixSerialPort&) = delete;
  PosixSerialPort& operator=(const PosixSerialPort&) = delete;

  bool Configure(const vc::SerialConfig& config) override;
  std::size_t Write(std::span<const std::uint8_t> bytes) override;
  std::size_t Read(std::span<std::uint8_t> bytes) override;
  vc::SerialErrors TakeErrors() override;
  std::size_t UnsentBytes() override;
  void DiscardInput() override { ioctl(descriptor, TCFLSH, TCIFLUSH); }
  void DiscardOutput() override { ioctl(descriptor, TCFLSH, TCOFLUSH); }
  void AwaitInput(std::int64_t microseconds) override;

 private:
  bool SetDtr(bool on) const;
  serial_icounter_struct ReadCounts() const;
  void NoteFailure();

  int descriptor;
  bool pseudo;
  bool gone = false;
  serial_icounter_struct counts{};
};

bool PosixSerialPort::Configure(const vc::SerialConfig& config) {
  termios2 state{};
  if (ioctl(descriptor, TCGETS2, &state) != 0) return false;
  state.c_iflag = IGNBRK;  // a break is counted all the same
  state.c_oflag = 0;
  state.c_lflag = 0;
  state.c_cflag = CS8 | CREAD | CLOCAL | BOTHER | (BOTHER << IBSHIFT);
  // With these, "nothing there" and "gone" read differently.
  state.c_cc[VMIN] = 1;
  state.c_cc[VTIME] = 0;
  state.c_ispeed = state.c_ospeed = config.baud;
  if (ioctl(descriptor, TCSETS2, &state) != 0) return false;
  termios2 taken{};
  if (ioctl(descriptor, TCGETS2, &taken) != 0 || !NearEnough(taken.c_ospeed, config.baud)) return false;
  return SetDtr(config.dtr);
}

bool PosixSerialPort::SetDtr(bool on) const {
  const int line = TIOCM_DTR;
  if (ioctl(descriptor, on ? TIOCMBIS : TIOCMBIC, &line) == 0) return true;
  return errno == ENOTTY || errno == EINVAL;  // a line that has no DTR
}

serial_icounter_struct PosixSerialPort::ReadCounts() const {
  serial_icounter_struct now{};
  if (ioctl(descriptor, TIOCGICOUNT, &now) != 0) return counts;
  return now;
}

void PosixSerialPort::NoteFailure() {
  if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) gone = true;
}

std::size_t PosixSerialPort::Write(std::span<const std::uint8_t> bytes) {
  if (gone) return 0;
  const ssize_t count = write(descriptor, bytes.data(), bytes.size());
  if (count >= 0) return static_cast<std::size_t>(count);
  NoteFailure();
  return 0;
}

std::size_t PosixSerialPort::Read(std::span<std::uint8_t> bytes) {
  if (gone || bytes.empty()) return 0;
  const ssize_t count = read(descriptor, bytes.data(), bytes.size());
  if (count > 0) return static_cast<std::size_t>(count);
  if (count == 0) {
    gone = true;
  } else {
    NoteFailure();
  }
  return 0;
}

vc::SerialErrors PosixSerialPort::TakeErrors() {
  const serial_icounter_struct before = std::exchange(counts, ReadCounts());
  return {.framing = counts.frame != before.frame,
          .overrun = counts.overrun != before.overrun || counts.buf_overrun != before.buf_overrun,
          .parity = counts.parity != before.parity,
          .breakSeen = counts.brk != before.brk,
          .gone = gone};
}

std::size_t PosixSerialPort::UnsentBytes() {
  int count = 0;
  if (gone || ioctl(descriptor, TIOCOUTQ, &count) != 0 || count < 0) return 0;
  return static_cast<std::size_t>(count);
}

void PosixSerialPort::AwaitInput(std::int64_t microseconds) {
  constexpr std::int64_t million = 1000000;
  // A device that went away would wake us at once, for ever.
  if (gone) microseconds = std::min<std::int64_t>(microseconds, 10000);
  pollfd watched{gone ? -1 : descriptor, POLLIN, 0};
  // A command's acknowledgement is here within a millisecond: being woken for it would cost a tenth of that.
  // While another program wants the processor, it has it.
  constexpr std::int64_t shortMicroseconds = 1500;
  SystemClock clock;
  const std::int64_t start = clock.Microseconds();
  while (!gone && clock.Microseconds() - start < std::min(microseconds, shortMicroseconds)) {
    if (poll(&watched, 1, 0) != 0) return;
    sched_yield();
  }
  microseconds -= clock.Microseconds() - start;
  if (microseconds <= 0) return;
  const timespec limit{microseconds / million, microseconds % million * 1000};
  ppoll(&watched, 1, &limit, nullptr);
}

std::string WhyNotOpened(const std::string& path, int error) {
  switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
    case ENOTDIR:
      return path + " is not there";
    case EACCES:
    case EPERM:
      return WhyNoPermission(path);
    case EBUSY:
    case EWOULDBLOCK:
      return path + " is in use" + UsersOf(path);
    case ENOTTY:
      return path + " is not a serial line";
    default:
      return path + " cannot be opened: " + std::strerror(error);
  }
}

int OpenExclusive(const std::string& path, int& error) {
  const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  error = errno;
  if (descriptor < 0) return -1;
  termios2 state{};
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ioctl(descriptor, TCGETS2, &state) == 0) return descriptor;
  error = errno;
  close(descriptor);
  return -1;
}

}  // namespace

std::unique_ptr<vc::SerialPort> OpenSerialDevice(const std::string& path, std::string& reason) {
  int error = 0;
  const int descriptor = OpenExclusive(path, error);
  if (descriptor < 0) {
    reason = WhyNotOpened(path, error);
    return nullptr;
  }
  return std::make_unique<PosixSerialPort>(descriptor);
}

std::unique_ptr<vc::SerialPort> PosixSerialPorts::Open(const std::string& name, std::string& reason) {
  const std::string path = map.PathOf(name);
  if (path.empty()) {
    reason = name + ": this machine has no such serial port";
    return nullptr;
  }
  auto port = OpenSerialDevice(path, reason);
  if (!port && map.PlaceForLine(name) == path) reason = "the simulated unit that it led to has ended";
  if (!port) reason = name + ": " + reason;
  return port;
}

}  // namespace host
