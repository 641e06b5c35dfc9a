// The system's clocks.
#pragma once

#include "platform/Clock.h"

namespace host {

class SystemClock : public vc::Clock {
 public:
  std::int64_t Microseconds() override;
  vc::WallTime Wall() override;
  void Sleep(std::int64_t microseconds) override;
};

}  // namespace host
