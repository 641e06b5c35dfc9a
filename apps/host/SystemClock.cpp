#include "host/SystemClock.h"

#include <chrono>
#include <thread>

namespace host {

std::int64_t SystemClock::Microseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

void SystemClock::Sleep(std::int64_t microseconds) {
  std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

}  // namespace host
