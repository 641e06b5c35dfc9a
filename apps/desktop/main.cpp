// veltrana: the session in windows.
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include <QTimer>

#include "desktop/Application.h"
#include "desktop/EndRequests.h"
#include "desktop/FileRequests.h"
#include "desktop/Program.h"
#include "desktop/Theme.h"
#include "host/StandardStreams.h"
#include "text/modFile.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + std::max(argc, 1));
  if (arguments.size() > 1 || (!arguments.empty() && arguments.front().starts_with('-'))) {
    std::cerr << "veltrana takes a setup file and nothing else: its configuration lies in the setup files\n";
    return 2;
  }
  host::FillStandardStreams();
  const std::string file = arguments.empty() ? "" : vc::WholePath(arguments.front());
  host::Handover handover(host::FindFolders().writable);
  if (!file.empty() && handover.Give(file)) return 0;  // the running program opens it
  argc = 1;
  host::EndSignals signals;
  desktop::Application application(argc, argv);
  desktop::ApplyTheme(desktop::SystemTheme());
  desktop::Program program;
  program.events.SetEndAsked([&signals] { return signals.Come(); }, [&signals] { signals.Forget(); });
  const desktop::EndRequests requests(
      signals, [&program] { program.events.RequestEnd(); },
      [&program] { program.session.lastState.KeepNow(); },
      [&program] { return static_cast<bool>(program.events.endRefused); });
  desktop::FileRequests files(program, handover);
  if (!file.empty()) files.Add(file);
  // From within the running loop, so that the message boxes of the start work.
  QTimer start;
  start.setSingleShot(true);
  QObject::connect(&start, &QTimer::timeout, &start, [&program] { program.session.Start(); });
  start.start(0);
  const int result = QApplication::exec();
  program.session.Exit();
  return result;
}
