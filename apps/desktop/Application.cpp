#include "desktop/Application.h"

#include <string>

#include <QPixmapCache>

#include "desktop/Accessibility.h"
#include "desktop/MarkIcon.h"
#include "desktop/MessageBox.h"
#include "text/ProgramInfo.h"

namespace desktop {
namespace {

// What the toolkit keeps of pictures of list boxes and sliders: those of the largest window.
constexpr int PictureKilobytes = 768;

}  // namespace

Application::Application(int& argumentCount, char** arguments) : QApplication(argumentCount, arguments) {
  setApplicationName(QString::fromStdString(vc::ApplicationTitle));
  setDesktopFileName(QStringLiteral("veltrana"));  // by which a desktop knows whose window it is
  setWindowIcon(MarkIcon());
  setQuitOnLastWindowClosed(false);
  QPixmapCache::setCacheLimit(PictureKilobytes);
  InstallAccessibility();
}

bool Application::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (const vc::Fault& fault) {
    Tell(fault);
    return false;
  }
}

void Application::Guard(const std::function<void()>& handler) {
  try {
    handler();
  } catch (const vc::Fault& fault) {
    static_cast<Application*>(QCoreApplication::instance())->Tell(fault);
  }
}

void Application::Tell(const vc::Fault& fault) {
  if (faultShown) return;  // one that returns with every tick must not pile up boxes
  faultShown = true;
  const std::string source = fault.source.empty() ? "" : " (" + fault.source + ")";
  ShowBox(vc::box::Critical, vc::ApplicationTitle, "Unexpected error: " + fault.description + source);
  faultShown = false;
}

}  // namespace desktop
