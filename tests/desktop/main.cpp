// The desktop's tests run with real widgets, on a platform without a screen.
#include <gtest/gtest.h>

#include <QByteArray>

#include "desktop/Application.h"
#include "desktop/Theme.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  int programNameOnly = 1;
  const desktop::Application application(programNameOnly, argv);
  desktop::ApplyTheme(desktop::Theme::Light);
  return RUN_ALL_TESTS();
}
