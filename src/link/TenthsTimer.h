// Delays and time-outs in tenths of a second that run on the platform's timers.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Platform.h"
#include "text/modDebug.h"

namespace vc {

// Two independent down-counters behind a timer of 100 ms each, so that nobody need poll the clock.
struct frmTenthsTimer {
  explicit frmTenthsTimer(Platform& host);
  frmTenthsTimer(const frmTenthsTimer&) = delete;
  frmTenthsTimer& operator=(const frmTenthsTimer&) = delete;

  // A negative count, or a start while the counter still runs, shows a critical box and ends the program.
  void StartTimeout(std::int32_t tenths);
  bool CheckTimeout() const { return timeout.count == 0; }
  std::int32_t CurrentTimeoutValue() const { return timeout.count; }
  void StopTimeout();

  void StartWait(std::int32_t tenths);
  bool CheckWait() const { return wait.count == 0; }
  std::int32_t CurrentWaitValue() const { return wait.count; }
  void StopWait();

 private:
  struct Counter {
    std::unique_ptr<Timer> timer;
    std::int32_t count = 0;
  };
  void Start(Counter& counter, std::int32_t tenths, const std::string& routine) const;
  static void Stop(Counter& counter);

  Platform& platform;
  Counter timeout, wait;
};

// The general delay and time-out object, one instance per need; it stands in the object log while it lives.
struct TenthsTimer {
  TenthsTimer(Platform& host, modDebug& objectLog);
  ~TenthsTimer();
  TenthsTimer(const TenthsTimer&) = delete;
  TenthsTimer& operator=(const TenthsTimer&) = delete;

  // Blocks the whole program, pumping nothing.
  void Pause(std::int32_t tenths);
  // Waits while other events run; returns early when the program is to end.
  void Wait(std::int32_t tenths);
  void StartTimeout(std::int32_t tenths) { form.StartTimeout(tenths); }
  bool CheckTimeout() const { return form.CheckTimeout(); }
  std::int32_t CurrentTimeoutValue() const { return form.CurrentTimeoutValue(); }
  void StopTimeout() { form.StopTimeout(); }
  // As Wait, on the time-out counter.
  void DoNothing(std::int32_t tenths);

 private:
  Platform& platform;
  modDebug& log;
  frmTenthsTimer form;
  std::int32_t serial;
};

}  // namespace vc
