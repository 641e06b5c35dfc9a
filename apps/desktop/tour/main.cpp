// veltrana-tour: drives the real windows and shows what they look like; 0 only if all went as expected.
#include <filesystem>

#include <QTimer>

#include "desktop/Application.h"
#include "desktop/Program.h"
#include "desktop/Theme.h"
#include "desktop/tour/Tour.h"

int main(int argc, char** argv) {
  argc = 1;  // no command line is taken
  desktop::Application application(argc, argv);
  desktop::ApplyTheme(desktop::Theme::Light);
  desktop::Program program;
  tour::Album album(std::filesystem::path(program.folders.executable).parent_path() / "tour");
  tour::Tour walk(program, album);
  QTimer::singleShot(0, &application, [&walk] { walk.Run(); });
  QApplication::exec();
  program.session.Exit();
  return walk.Passed() ? 0 : 1;
}
