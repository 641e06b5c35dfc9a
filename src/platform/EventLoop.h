// Timers and events on the one interface thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace vc {

// Periodic callback, created stopped. Destruction stops it.
class Timer {
 public:
  virtual ~Timer() = default;
  virtual void SetEnabled(bool enabled) = 0;
  virtual bool Enabled() const = 0;
  virtual int IntervalMilliseconds() const = 0;
};

class EventLoop {
 public:
  virtual ~EventLoop() = default;
  virtual std::unique_ptr<Timer> CreateTimer(int intervalMilliseconds, std::function<void()> tick) = 0;
  // Lets timers and other events that are due run; waits at most so long for the first one.
  virtual void RunEvents(int waitMilliseconds) = 0;
  // For a routine that blocks: lets windows paint and nothing else. No timer and no handler runs; what the
  // operator does waits until the routine has returned.
  virtual void KeepShown() = 0;
  // Ends the program in its regular order as soon as the running handler has returned.
  virtual void RequestEnd() = 0;
  // True once the end was asked for: a loop that lets events run must then return.
  virtual bool Ending() const = 0;

  // While it is set the program must not end: requests to end it, those from outside too, are told here and
  // then forgotten.
  std::function<void()> endRefused;
};

}  // namespace vc
