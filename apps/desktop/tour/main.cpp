// veltrana-tour: drives the real windows and shows what they look like; 0 only if all went as expected.
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>

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

// A program folder of the tour's own: what the operator has left beside the program is neither read nor
// changed.
std::string Install(const std::filesystem::path& program, const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::remove_all(folder, error);
  std::filesystem::create_directories(folder, error);
  std::filesystem::create_directory_symlink(program / "ports", folder / "ports", error);
  for (const char* file : {"Factory Defaults.nrv", "vlnamain.fwr", "vlnadaug.fwr", "veltrana-unit"}) {
    std::filesystem::copy_file(program / file, folder / file, error);
  }
  return folder.string();
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(Tell);
  argc = 1;  // no command line is taken
  desktop::Application application(argc, argv);
  desktop::ApplyTheme(desktop::Theme::Light);
  const std::filesystem::path folder = host::FindFolders().executable;
  const auto pictures = folder.parent_path() / Folder(application.devicePixelRatio());
  const std::string installed = Install(folder, pictures / "state");
  desktop::Program program({installed, installed});
  tour::Album album(pictures);
  tour::Tour walk(program, album);
  QTimer::singleShot(0, &application, [&walk] { walk.Run(); });
  QApplication::exec();
  program.session.Exit();
  return walk.Passed() ? 0 : 1;
}
