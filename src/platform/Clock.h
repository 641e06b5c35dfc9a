// The only source of time. Under test it is virtual: waiting costs nothing and every run is the same.
#pragma once

#include <cstdint>

namespace vc {

// The date and the time of day where the operator is, as a calendar and a clock on the wall show them.
struct WallTime {
  int year = 0, month = 0, day = 0;  // month and day from 1
  int hour = 0, minute = 0, second = 0;
  bool operator==(const WallTime&) const = default;
};

class Clock {
 public:
  virtual ~Clock() = default;
  // Microseconds since some fixed moment; never falls.
  virtual std::int64_t Microseconds() = 0;
  // For what the operator reads. It may be put back or forward: nothing may be measured by it.
  virtual WallTime Wall() = 0;
  // Blocks the whole program, with no event let through.
  virtual void Sleep(std::int64_t microseconds) = 0;
};

}  // namespace vc
