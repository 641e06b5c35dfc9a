// Timers and events of the toolkit behind the platform's interface.
#pragma once

#include <QTimer>

#include "desktop/EventHold.h"
#include "platform/EventLoop.h"

namespace desktop {

class QtEventLoop : public vc::EventLoop {
 public:
  QtEventLoop();
  std::unique_ptr<vc::Timer> CreateTimer(int intervalMilliseconds, std::function<void()> tick) override;
  void RunEvents(int waitMilliseconds) override;
  void KeepShown() override;
  // Takes away what the operator has done while a handler blocked that is still running; true where there was
  // something. A box that this handler shows now must not be answered by a key that was not meant for it.
  bool RefuseHeld() { return blocked && hold.Refuse(); }
  void RequestEnd() override;
  bool Ending() const override { return ending || (!endRefused && endAsked()); }

  // Asked whenever it matters; where it is true the end has been asked for from outside, and RequestEnd
  // follows with the next event. It is forgotten where that is refused.
  void SetEndAsked(std::function<bool()> asked, std::function<void()> forget) {
    endAsked = std::move(asked);
    forgetAsked = std::move(forget);
  }

 private:
  std::function<bool()> endAsked = [] { return false; };
  std::function<void()> forgetAsked = [] {};
  EventHold hold;
  bool blocked = false;  // the running handler has called KeepShown
  QTimer unblocked;      // fires once it has returned
  bool ending = false;
  QTimer end;  // fires once the running handler has returned
};

}  // namespace desktop
