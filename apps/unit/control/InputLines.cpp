#include "unit/control/InputLines.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace unit::control {

struct InputLines::Shared {
  std::mutex lock;
  std::condition_variable taken;
  std::string bytes;
  bool end = false, given = false;  // given: up, nobody takes anything any more
  int event = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);

  Shared() = default;
  ~Shared() { close(event); }
  Shared(const Shared&) = delete;
  Shared& operator=(const Shared&) = delete;

  void Wake() const {
    constexpr std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(event, &one, sizeof one);
  }

  // False where nobody listens any more.
  bool Give(const char* from, std::size_t count) {
    std::unique_lock guard(lock);
    taken.wait(guard, [this] { return bytes.empty() || given; });
    bytes.assign(from, count);
    end = count == 0;
    Wake();
    return !given && !end;
  }

  void ReadAll(int descriptor) {
    // A terminal says no as long as its foreground belongs to others.
    constexpr auto refusalPause = std::chrono::milliseconds(250);
    std::array<char, 65536> block{};
    while (true) {
      const ssize_t count = read(descriptor, block.data(), block.size());
      if (count < 0 && (errno == EINTR || errno == EIO || errno == EAGAIN)) {
        if (errno != EINTR) std::this_thread::sleep_for(refusalPause);
        continue;
      }
      if (!Give(block.data(), count > 0 ? static_cast<std::size_t>(count) : 0)) return;
    }
  }
};

InputLines::InputLines(int descriptor) : shared(std::make_shared<Shared>()) {
  std::thread([own = shared, descriptor] { own->ReadAll(descriptor); }).detach();
}

InputLines::~InputLines() {
  const std::lock_guard guard(shared->lock);
  shared->given = true;
  shared->taken.notify_one();
}

int InputLines::Event() const { return shared->event; }

void InputLines::Fetch() {
  std::string bytes;
  {
    const std::lock_guard guard(shared->lock);
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t got = read(shared->event, &count, sizeof count);
    bytes = std::exchange(shared->bytes, {});
    lastBytes = shared->end;
    shared->taken.notify_one();
  }
  Append(bytes);
}

void InputLines::Append(const std::string& bytes) {
  pending += bytes;
  const std::size_t stop = pending.find('\n');
  const bool tooLong = (stop == std::string::npos ? pending.size() : stop) > LongestLine;
  if (!tooLong && !passing) return;
  passing = true;
  pending.erase(0, stop == std::string::npos ? pending.size() : stop);
}

std::optional<InputLines::Line> InputLines::Take() {
  if (pending.find('\n') == std::string::npos) Fetch();
  const std::size_t stop = pending.find('\n');
  if (stop == std::string::npos) {
    ended = lastBytes;
    return std::nullopt;
  }
  Line line{.text = pending.substr(0, stop), .tooLong = std::exchange(passing, false)};
  pending.erase(0, stop + 1);
  return line;
}

}  // namespace unit::control
