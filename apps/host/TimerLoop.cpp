#include "host/TimerLoop.h"

#include <algorithm>

namespace host {
namespace {

constexpr std::int64_t MicrosecondsPerMillisecond = 1000;

class LoopTimer : public vc::Timer {
 public:
  LoopTimer(std::shared_ptr<TimerLoop::Slot> timerSlot, vc::Clock& source)
      : slot(std::move(timerSlot)), clock(source) {}

  void SetEnabled(bool enabled) override {
    if (enabled && !slot->enabled) {
      slot->due = clock.Microseconds() + slot->interval * MicrosecondsPerMillisecond;
    }
    slot->enabled = enabled;
  }
  bool Enabled() const override { return slot->enabled; }
  int IntervalMilliseconds() const override { return slot->interval; }

 private:
  std::shared_ptr<TimerLoop::Slot> slot;
  vc::Clock& clock;
};

}  // namespace

std::unique_ptr<vc::Timer> TimerLoop::CreateTimer(int intervalMilliseconds, std::function<void()> tick) {
  std::erase_if(slots, [](const auto& slot) { return slot.expired(); });
  auto slot = std::make_shared<Slot>(Slot{intervalMilliseconds, std::move(tick)});
  slots.push_back(slot);
  return std::make_unique<LoopTimer>(std::move(slot), clock);
}

std::shared_ptr<TimerLoop::Slot> TimerLoop::Next() const {
  std::shared_ptr<Slot> next;
  for (const auto& weak : slots) {
    auto slot = weak.lock();
    if (slot && slot->enabled && (!next || slot->due < next->due)) next = std::move(slot);
  }
  return next;
}

void TimerLoop::RequestEnd() {
  if (endRefused) {
    forgetAsked();
    endRefused();
  } else {
    ending = true;
  }
}

void TimerLoop::RunEvents(int waitMilliseconds) {
  if (endRefused && endAsked()) RequestEnd();
  const std::int64_t end = clock.Microseconds() + waitMilliseconds * MicrosecondsPerMillisecond;
  if (auto next = Next(); !next || next->due > clock.Microseconds()) {
    const std::int64_t until = next ? std::min(next->due, end) : end;
    if (const std::int64_t rest = until - clock.Microseconds(); rest > 0) idle(rest);
  }
  // Every timer that is due by now fires once; the one that fires longest after its time goes first.
  const std::int64_t now = clock.Microseconds();
  while (auto next = Next()) {
    if (next->due > now || Ending()) break;
    const std::int64_t interval = next->interval * MicrosecondsPerMillisecond;
    next->due += interval;
    if (next->due <= now) next->due = now + interval;  // ticks that were missed do not come in a burst
    next->tick();
  }
}

void TimerLoop::RunFor(int milliseconds) {
  const std::int64_t end = clock.Microseconds() + milliseconds * MicrosecondsPerMillisecond;
  while (!Ending()) {
    const std::int64_t rest = end - clock.Microseconds();
    if (rest <= 0) break;
    RunEvents(static_cast<int>((rest + MicrosecondsPerMillisecond - 1) / MicrosecondsPerMillisecond));
  }
}

}  // namespace host
