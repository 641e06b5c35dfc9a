// veltrana: the session in windows.
#include <iostream>

#include <QTimer>

#include "desktop/Application.h"
#include "desktop/EndSignals.h"
#include "desktop/Program.h"
#include "desktop/Theme.h"

int main(int argc, char** argv) {
  if (argc > 1) {
    std::cerr << "veltrana takes no arguments: its configuration lies in the setup files\n";
    return 2;
  }
  desktop::EndSignals::Block();
  desktop::Application application(argc, argv);
  desktop::ApplyTheme(desktop::SystemTheme());
  desktop::Program program;
  const desktop::EndSignals signals([&program] { program.events.RequestEnd(); });
  // From within the running loop, so that the message boxes of the start work.
  QTimer::singleShot(0, &application, [&program] { program.session.Start(); });
  const int result = QApplication::exec();
  program.session.Exit();
  return result;
}
