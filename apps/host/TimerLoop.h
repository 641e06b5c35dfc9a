// Timers on any clock, without a toolkit: the event loop of the console, and under a virtual clock of the
// tests.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/Clock.h"
#include "platform/EventLoop.h"

namespace host {

class TimerLoop : public vc::EventLoop {
 public:
  explicit TimerLoop(vc::Clock& source) : clock(source), idle([this](std::int64_t us) { clock.Sleep(us); }) {}

  std::unique_ptr<vc::Timer> CreateTimer(int intervalMilliseconds, std::function<void()> tick) override;
  void RunEvents(int waitMilliseconds) override;
  void KeepShown() override {}  // nothing is shown
  void RequestEnd() override;
  bool Ending() const override { return ending || (!endRefused && endAsked()); }

  // Runs events for so long, or until the end is asked for.
  void RunFor(int milliseconds);
  // Replaces the sleep between events: it gets the longest time to wait and may return early.
  void SetIdle(std::function<void(std::int64_t microseconds)> wait) { idle = std::move(wait); }

  // Asked whenever it matters; where it is true the end has been asked for from outside, until that is
  // forgotten.
  void SetEndAsked(std::function<bool()> asked, std::function<void()> forget) {
    endAsked = std::move(asked);
    forgetAsked = std::move(forget);
  }

  // A timer as the loop sees it; public for the timer handles only.
  struct Slot {
    int interval;
    std::function<void()> tick;
    bool enabled = false;
    std::int64_t due = 0;
  };

 private:
  std::shared_ptr<Slot> Next() const;

  vc::Clock& clock;
  std::function<void(std::int64_t)> idle;
  std::vector<std::weak_ptr<Slot>> slots;
  std::function<bool()> endAsked = [] { return false; };
  std::function<void()> forgetAsked = [] {};
  bool ending = false;
};

}  // namespace host
