#include "link/TenthsTimer.h"

namespace vc {
namespace {

constexpr int TickMilliseconds = 100;
constexpr std::int64_t MicrosecondsPerTenth = 100000;

}  // namespace

frmTenthsTimer::frmTenthsTimer(Platform& host) : platform(host) {
  for (Counter* counter : {&timeout, &wait}) {
    counter->timer = host.events.CreateTimer(TickMilliseconds, [counter] {
      counter->timer->SetEnabled(false);
      if (counter->count > 0) --counter->count;
      counter->timer->SetEnabled(true);
    });
  }
}

void frmTenthsTimer::Start(Counter& counter, std::int32_t tenths, const std::string& routine) const {
  const std::string name = "frmTenthsTimer." + routine + ": ";
  std::string complaint;
  if (counter.count != 0) complaint = name + "StartTimeout re-entered, Fatal Error!";
  if (tenths < 0) complaint = name + "tenthsofSecond must be positive!";
  if (!complaint.empty()) {
    platform.desk.Box(box::Critical, "Error", complaint);
    platform.events.RequestEnd();
    return;
  }
  counter.count = tenths;
  counter.timer->SetEnabled(true);
}

void frmTenthsTimer::Stop(Counter& counter) {
  counter.timer->SetEnabled(false);
  counter.count = 0;
}

void frmTenthsTimer::StartTimeout(std::int32_t tenths) { Start(timeout, tenths, "StartTimeout"); }
void frmTenthsTimer::StopTimeout() { Stop(timeout); }
void frmTenthsTimer::StartWait(std::int32_t tenths) { Start(wait, tenths, "StartWait"); }
void frmTenthsTimer::StopWait() { Stop(wait); }

TenthsTimer::TenthsTimer(Platform& host, modDebug& objectLog)
    : platform(host), log(objectLog), form(host), serial(objectLog.RegisterObject("TenthsTimer")) {}

TenthsTimer::~TenthsTimer() { log.UnregisterObject(serial); }

void TenthsTimer::Pause(std::int32_t tenths) { platform.clock.Sleep(tenths * MicrosecondsPerTenth); }

void TenthsTimer::Wait(std::int32_t tenths) {
  form.StartWait(tenths);
  while (!form.CheckWait() && !platform.events.Ending()) platform.events.RunEvents(TickMilliseconds);
  form.StopWait();
}

void TenthsTimer::DoNothing(std::int32_t tenths) {
  form.StartTimeout(tenths);
  while (!form.CheckTimeout() && !platform.events.Ending()) platform.events.RunEvents(TickMilliseconds);
  form.StopTimeout();
}

}  // namespace vc
