#include "desktop/EndRequests.h"

#include <utility>

#include <QGuiApplication>

namespace desktop {

EndRequests::EndRequests(host::EndSignals& endSignals, std::function<void()> end, std::function<void()> save)
    : notifier(endSignals.Descriptor(), QSocketNotifier::Read) {
  QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&endSignals, tell = std::move(end)] {
    if (endSignals.Take()) tell();
  });
  QObject::connect(
      qGuiApp, &QGuiApplication::commitDataRequest, &notifier, [keep = std::move(save)] { keep(); },
      Qt::DirectConnection);
}

}  // namespace desktop
