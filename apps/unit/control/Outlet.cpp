#include "unit/control/Outlet.h"

#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace unit::control {
namespace {

constexpr std::size_t FullSize = 262'144;  // bytes

// False where nobody reads any more.
bool WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count > 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {  // somebody else has made it so
      pollfd ready{descriptor, POLLOUT, 0};
      poll(&ready, 1, -1);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace

struct Outlet::Shared {
  std::mutex lock;
  std::condition_variable more, less;
  std::string waiting;
  bool busy = false, over = false;

  void WriteOn(int descriptor) {
    bool read = true;
    std::unique_lock guard(lock);
    while (true) {
      more.wait(guard, [this] { return !waiting.empty() || over; });
      if (waiting.empty()) return;
      const std::string text = std::exchange(waiting, {});
      busy = true;
      guard.unlock();
      read = read && WriteAll(descriptor, text);
      guard.lock();
      busy = false;
      less.notify_all();
    }
  }
};

Outlet::Outlet(int descriptor) : shared(std::make_shared<Shared>()) {
  std::thread([own = shared, descriptor] { own->WriteOn(descriptor); }).detach();
}

Outlet::~Outlet() {
  const std::lock_guard guard(shared->lock);
  shared->over = true;
  shared->more.notify_one();
}

void Outlet::Say(const std::string& line) {
  const std::lock_guard guard(shared->lock);
  shared->waiting += line + '\n';
  shared->more.notify_one();
}

bool Outlet::Full() const {
  const std::lock_guard guard(shared->lock);
  return shared->waiting.size() >= FullSize;
}

void Outlet::Drain(std::chrono::milliseconds longest) {
  std::unique_lock guard(shared->lock);
  shared->less.wait_for(guard, longest, [this] { return shared->waiting.empty() && !shared->busy; });
}

}  // namespace unit::control
