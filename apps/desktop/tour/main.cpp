// veltrana-tour: drives the real windows and shows what they look like; 0 only if all went as expected.
#include <filesystem>
#include <iostream>

#include <QTimer>

#include "desktop/Application.h"
#include "desktop/Program.h"
#include "desktop/Theme.h"
#include "desktop/tour/Tour.h"

namespace {

// The offscreen platform tells at every window that it cannot bring it to the front, which nobody expects of
// it.
void Tell(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (!text.startsWith(QLatin1String("This plugin does not support"))) {
    std::cerr << qFormatLogMessage(type, context, text).toStdString() << '\n';
  }
}

// Pictures of another scale lie beside those of scale 1.
std::string Folder(double scale) {
  return scale == 1.0 ? "tour" : "tour-" + QString::number(scale).toStdString();
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(Tell);
  argc = 1;  // no command line is taken
  desktop::Application application(argc, argv);
  desktop::ApplyTheme(desktop::Theme::Light);
  const std::string folder = host::FindFolders().executable;
  const auto pictures = std::filesystem::path(folder).parent_path() / Folder(application.devicePixelRatio());
  const auto state = pictures / "state";  // the operator's own stays as it is
  std::error_code error;
  std::filesystem::remove_all(state, error);
  std::filesystem::create_directories(state, error);
  desktop::Program program({folder, state.string()});
  tour::Album album(pictures);
  tour::Tour walk(program, album);
  QTimer::singleShot(0, &application, [&walk] { walk.Run(); });
  QApplication::exec();
  program.session.Exit();
  return walk.Passed() ? 0 : 1;
}
