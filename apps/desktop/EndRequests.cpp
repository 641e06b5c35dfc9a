#include "desktop/EndRequests.h"

#include <utility>

#include <QGuiApplication>
#include <QSessionManager>

namespace desktop {

EndRequests::EndRequests(host::EndSignals& endSignals, std::function<void()> end, std::function<void()> save,
                         std::function<bool()> refused)
    : notifier(endSignals.Descriptor(), QSocketNotifier::Read) {
  QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&endSignals, tell = end] {
    if (endSignals.Take()) tell();
  });
  QObject::connect(
      qGuiApp, &QGuiApplication::commitDataRequest, &notifier,
      [keep = std::move(save), tell = std::move(end), stay = std::move(refused)](QSessionManager& manager) {
        keep();
        if (!stay()) return;
        tell();
        manager.cancel();
      },
      Qt::DirectConnection);
}

}  // namespace desktop
