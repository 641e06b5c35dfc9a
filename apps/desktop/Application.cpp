#include "desktop/Application.h"

#include <string>

#include "desktop/MessageBox.h"
#include "text/Convert.h"
#include "text/ProgramInfo.h"

namespace desktop {

Application::Application(int& argumentCount, char** arguments) : QApplication(argumentCount, arguments) {
  setApplicationName(QString::fromStdString(vc::ApplicationTitle));
  setQuitOnLastWindowClosed(false);
}

bool Application::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (const vc::Fault& fault) {
    if (faultShown) return false;  // one that returns with every tick must not pile up boxes
    faultShown = true;
    const std::string source = fault.source.empty() ? "" : " (" + fault.source + ")";
    ShowBox(vc::box::Critical, vc::ApplicationTitle, "Unexpected error: " + fault.description + source);
    faultShown = false;
    return false;
  }
}

}  // namespace desktop
