// Time that passes only when somebody waits for it.
#pragma once

#include "platform/Clock.h"

namespace support {

class VirtualClock : public vc::Clock {
 public:
  std::int64_t Microseconds() override { return now; }
  // It starts a second after noon on the last day of a February.
  vc::WallTime Wall() override {
    const auto second = static_cast<int>(now / 1000000);
    return {2028, 2, 29, (12 + second / 3600) % 24, second / 60 % 60, second % 60};
  }
  void Sleep(std::int64_t microseconds) override { now += microseconds > 0 ? microseconds : 0; }
  double Seconds() const { return static_cast<double>(now) / 1e6; }

 private:
  std::int64_t now = 1000000;
};

}  // namespace support
