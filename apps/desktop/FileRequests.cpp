#include "desktop/FileRequests.h"

#include <QApplication>

#include "desktop/Application.h"

namespace desktop {

FileRequests::FileRequests(Program& desktopProgram, host::Handover& handover)
    : program(desktopProgram), incoming(handover) {
  constexpr int lookMilliseconds = 100;
  look.setInterval(lookMilliseconds);
  QObject::connect(&look, &QTimer::timeout, &look, [this] { Application::Guard([this] { Look(); }); });
  look.start();
}

void FileRequests::Add(const std::string& path) {
  waiting.push_back(path);
  look.start();
}

void FileRequests::Listen() {
  if (!program.session.lastState.Claimed() || !incoming.Listen()) return;
  notifier = std::make_unique<QSocketNotifier>(incoming.Descriptor(), QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, &look, [this] { TakeOver(); });
}

void FileRequests::TakeOver() {
  for (const std::string& path : incoming.Take()) Add(path);
  ComeForward();
}

// To the window that has to be answered first, where there is one.
void FileRequests::ComeForward() {
  QWidget* window = QApplication::activeModalWidget();
  if (window == nullptr) window = program.windows.WindowOf(program.session.master.form);
  if (window == nullptr) return;
  window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
  window->raise();
  window->activateWindow();
}

void FileRequests::Look() {
  vc::Session& session = program.session;
  if (notifier == nullptr) Listen();
  if (waiting.empty()) {
    if (notifier != nullptr) look.stop();
    return;
  }
  const bool ready = session.forms.Find(session.master.form.name) != nullptr &&
                     !session.settings.loadingSetup && !session.atHand.Occupied();
  QWidget* modal = QApplication::activeModalWidget();
  const bool box = modal != nullptr && dynamic_cast<FormWindow*>(modal) == nullptr;
  if (!ready || box) return;
  const std::string path = waiting.front();
  waiting.pop_front();
  session.atHand.Open(path);
}

}  // namespace desktop
