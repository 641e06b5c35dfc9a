// Real paper, as far as there is any: print queues of a server that the tests start themselves.
#include <iostream>

#include <gtest/gtest.h>

#include <QByteArray>

#include "PrintServer.h"
#include "Queues.h"
#include "desktop/Application.h"
#include "desktop/Theme.h"
#include "text/Convert.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  try {
    support::PrintServer server;  // before the toolkit asks for printers for the first time
    support::queues = &server;
    int programNameOnly = 1;
    const desktop::Application application(programNameOnly, argv);
    desktop::ApplyTheme(desktop::Theme::Light);
    return RUN_ALL_TESTS();
  } catch (const vc::Fault& fault) {
    std::cerr << "There is nothing to print on: " << fault.description << "\n";
    return 1;
  }
}
