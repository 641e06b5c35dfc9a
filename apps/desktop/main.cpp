// veltrana: the session in windows.
#include <iostream>

#include <QTimer>

#include "desktop/Application.h"
#include "desktop/EndRequests.h"
#include "desktop/Program.h"
#include "desktop/Theme.h"
#include "host/StandardStreams.h"

int main(int argc, char** argv) {
  if (argc > 1) {
    std::cerr << "veltrana takes no arguments: its configuration lies in the setup files\n";
    return 2;
  }
  host::FillStandardStreams();
  host::EndSignals signals;
  desktop::Application application(argc, argv);
  desktop::ApplyTheme(desktop::SystemTheme());
  desktop::Program program;
  program.events.SetEndAsked([&signals] { return signals.Come(); }, [&signals] { signals.Forget(); });
  const desktop::EndRequests requests(
      signals, [&program] { program.events.RequestEnd(); },
      [&program] { program.session.lastState.KeepNow(); },
      [&program] { return static_cast<bool>(program.events.endRefused); });
  // From within the running loop, so that the message boxes of the start work.
  QTimer start;
  start.setSingleShot(true);
  QObject::connect(&start, &QTimer::timeout, &start, [&program] { program.session.Start(); });
  start.start(0);
  const int result = QApplication::exec();
  program.session.Exit();
  return result;
}
