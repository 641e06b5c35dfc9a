// The system's steady clock.
#pragma once

#include "platform/Clock.h"

namespace host {

class SystemClock : public vc::Clock {
 public:
  std::int64_t Microseconds() override;
  void Sleep(std::int64_t microseconds) override;
};

}  // namespace host
