// Lets windows paint while a handler blocks, and nothing else: what the operator does meanwhile waits.
#pragma once

#include <memory>
#include <vector>

#include <QEvent>
#include <QEventLoop>
#include <QObject>
#include <QPointer>

namespace desktop {

class EventHold : public QObject {
 public:
  // Paints what is to be painted and returns. Keys, clicks and closings stay in the window system's queue,
  // our timers miss their ticks, and what comes by another way, or a change of focus, is kept for Release: no
  // handler of a form runs.
  void Paint();
  void Release();
  // Takes all keys, clicks and closings that wait out of the queue. True where there were any.
  bool Refuse();

  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  struct Held {
    QPointer<QObject> receiver;
    std::unique_ptr<QEvent> event;
  };
  void Run(QEventLoop::ProcessEventsFlags flags);

  std::vector<Held> held;
  bool refusing = false;
  bool refused = false;
};

}  // namespace desktop
