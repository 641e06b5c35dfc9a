// The only source of time. Under test it is virtual: waiting costs nothing and every run is the same.
#pragma once

#include <cstdint>

namespace vc {

class Clock {
 public:
  virtual ~Clock() = default;
  // Microseconds since some fixed moment; never falls.
  virtual std::int64_t Microseconds() = 0;
  // Blocks the whole program, with no event let through.
  virtual void Sleep(std::int64_t microseconds) = 0;
};

}  // namespace vc
