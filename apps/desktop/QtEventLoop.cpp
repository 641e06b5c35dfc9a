#include "desktop/QtEventLoop.h"

#include <utility>

#include <QCoreApplication>

namespace desktop {
namespace {

class QtTimer : public vc::Timer {
 public:
  QtTimer(int intervalMilliseconds, std::function<void()> tick) {
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(intervalMilliseconds);
    QObject::connect(&timer, &QTimer::timeout, &timer, std::move(tick));
  }

  // Starting a timer that runs must not push its next tick back.
  void SetEnabled(bool enabled) override {
    if (enabled == timer.isActive()) return;
    if (enabled) {
      timer.start();
    } else {
      timer.stop();
    }
  }
  bool Enabled() const override { return timer.isActive(); }
  int IntervalMilliseconds() const override { return timer.interval(); }

 private:
  QTimer timer;
};

}  // namespace

QtEventLoop::QtEventLoop() {
  unblocked.setSingleShot(true);
  QObject::connect(&unblocked, &QTimer::timeout, &unblocked, [this] {
    blocked = false;
    hold.Release();
  });
  end.setSingleShot(true);
  // Not quit(): that one asks every window first, and a window may keep itself open.
  QObject::connect(&end, &QTimer::timeout, &end, [] { QCoreApplication::exit(0); });
}

std::unique_ptr<vc::Timer> QtEventLoop::CreateTimer(int intervalMilliseconds, std::function<void()> tick) {
  return std::make_unique<QtTimer>(intervalMilliseconds, std::move(tick));
}

void QtEventLoop::RunEvents(int waitMilliseconds) {
  if (Ending()) return;
  if (waitMilliseconds > 0) {
    QTimer limit;  // its own event ends the wait
    limit.setTimerType(Qt::PreciseTimer);
    limit.setSingleShot(true);
    limit.start(waitMilliseconds);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  QCoreApplication::processEvents();
}

void QtEventLoop::KeepShown() {
  blocked = true;
  unblocked.start();
  hold.Paint();
}

// Again, too: a box that has come up since then must not keep the program.
void QtEventLoop::RequestEnd() {
  if (endRefused) {
    forgetAsked();
    endRefused();
    return;
  }
  ending = true;
  end.start();
}

}  // namespace desktop
