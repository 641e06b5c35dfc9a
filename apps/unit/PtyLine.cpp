// The unit's end of the serial line: a pseudo-terminal that the host finds under a symbolic link.
#include "unit/PtyLine.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "unit/LineRate.h"

namespace unit {
namespace {

std::string Failure(const std::string& what) { return what + ": " + std::strerror(errno); }

std::string LinkTarget(const std::string& link) {
  std::array<char, PATH_MAX> target{};
  const ssize_t size = readlink(link.c_str(), target.data(), target.size());
  return size > 0 ? std::string(target.data(), static_cast<std::size_t>(size)) : std::string();
}

// Before a host has set the line up, no byte may be echoed or changed.
bool MakeRaw(int terminal) {
  termios settings{};
  if (tcgetattr(terminal, &settings) != 0) return false;
  cfmakeraw(&settings);
  return tcsetattr(terminal, TCSANOW, &settings) == 0;
}

}  // namespace

void Descriptor::Take(int opened) {
  Close();
  descriptor = opened;
}

void Descriptor::Close() {
  if (Valid()) close(descriptor);
  descriptor = -1;
}

PtyLine::~PtyLine() {
  // Another unit may have put its own link there meanwhile.
  if (!link.empty() && LinkTarget(link) == device) unlink(link.c_str());
}

std::string PtyLine::Open(const std::string& linkPath) {
  const std::string failure = OpenTerminal();
  return failure.empty() ? MakeLink(linkPath) : failure;
}

std::string PtyLine::OpenTerminal() {
  master.Take(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  std::array<char, PATH_MAX> name{};
  if (!master.Valid() || grantpt(Master()) != 0 || unlockpt(Master()) != 0 ||
      ptsname_r(Master(), name.data(), name.size()) != 0) {
    return Failure("no pseudo-terminal");
  }
  device = name.data();
  slave.Take(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (!slave.Valid() || !MakeRaw(slave.Number())) return Failure(device);
  watch.Take(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!watch.Valid() || inotify_add_watch(Watch(), device.c_str(), IN_OPEN | IN_CLOSE) < 0) {
    return Failure("no watch on " + device);
  }
  return {};
}

std::string PtyLine::MakeLink(const std::string& linkPath) {
  struct stat there {};
  if (lstat(linkPath.c_str(), &there) == 0) {
    if (!S_ISLNK(there.st_mode)) return linkPath + ": is there already and is no symbolic link";
    if (unlink(linkPath.c_str()) != 0) return Failure(linkPath);
  }
  if (symlink(device.c_str(), linkPath.c_str()) != 0) return Failure(linkPath);
  link = linkPath;
  return {};
}

PtyLine::Input PtyLine::Read() {
  std::array<std::uint8_t, 4096> buffer{};
  Input input;
  const ssize_t count = read(Master(), buffer.data(), buffer.size());
  if (count > 0) input.bytes.assign(buffer.begin(), buffer.begin() + count);
  // Asked after the read: so bytes of a new visit can't be taken for bytes of the one before.
  input.host = HostChange();
  input.rate = LineRate(Master());
  return input;
}

PtyLine::Host PtyLine::HostChange() const {
  alignas(inotify_event) std::array<char, 4096> buffer{};
  Host host = Host::Stayed;
  ssize_t count = 0;
  while ((count = read(Watch(), buffer.data(), buffer.size())) > 0) {
    inotify_event event{};
    for (ssize_t at = 0; at < count; at += static_cast<ssize_t>(sizeof event + event.len)) {
      std::memcpy(&event, buffer.data() + at, sizeof event);
      if ((event.mask & IN_CLOSE) != 0) host = Host::Closed;
      if ((event.mask & IN_OPEN) != 0 && host == Host::Closed) host = Host::ClosedAndOpened;
    }
  }
  return host;
}

void PtyLine::Write(std::span<const std::uint8_t> bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = write(Master(), bytes.data(), bytes.size());
    if (count <= 0) return;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

void PtyLine::DiscardSent() const { tcflush(slave.Number(), TCIFLUSH); }

}  // namespace unit
