#include "desktop/EventHold.h"

#include <utility>

#include <QCoreApplication>

namespace desktop {
namespace {

// Timers are what our handlers hang on; widgets of the toolkit have ids of timers and no objects.
bool IsTick(const QObject& receiver, const QEvent& event) {
  return event.type() == QEvent::Timer &&
         (receiver.inherits("QTimer") || receiver.inherits("QSingleShotTimer"));
}

bool IsFocusChange(const QEvent& event) {
  switch (event.type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
      return true;
    default:
      return false;
  }
}

// What an operator means something by.
bool IsDeed(const QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::Wheel:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

bool GoesWithADeed(const QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::ContextMenu:
      return true;
    default:
      return false;
  }
}

}  // namespace

void EventHold::Paint() { Run(QEventLoop::ExcludeUserInputEvents); }

bool EventHold::Refuse() {
  refusing = true;
  refused = false;
  Run(QEventLoop::AllEvents);
  refusing = false;
  for (const Held& kept : held) refused = refused || IsDeed(*kept.event);
  std::erase_if(held, [](const Held& kept) { return IsDeed(*kept.event) || GoesWithADeed(*kept.event); });
  return refused;
}

void EventHold::Release() {
  for (Held& kept : std::exchange(held, {})) {
    if (kept.receiver != nullptr) QCoreApplication::postEvent(kept.receiver, kept.event.release());
  }
}

void EventHold::Run(QEventLoop::ProcessEventsFlags flags) {
  QCoreApplication* application = QCoreApplication::instance();
  application->installEventFilter(this);
  QCoreApplication::processEvents(flags);
  application->removeEventFilter(this);
}

bool EventHold::eventFilter(QObject* receiver, QEvent* event) {
  if (IsTick(*receiver, *event)) return true;  // it comes again with the next interval
  const bool byOperator = IsDeed(*event) || GoesWithADeed(*event);
  if (!byOperator && !IsFocusChange(*event)) return false;
  if (event->type() == QEvent::Close) event->ignore();
  if (byOperator && refusing) {
    refused = refused || IsDeed(*event);
  } else {
    // Not everything comes through the window system's queue.
    held.push_back({receiver, std::unique_ptr<QEvent>(event->clone())});
  }
  return true;
}

}  // namespace desktop
