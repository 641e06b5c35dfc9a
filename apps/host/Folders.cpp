#include "host/Folders.h"

#include <filesystem>

#include <pwd.h>
#include <unistd.h>

namespace host {
namespace {

namespace fs = std::filesystem;

// From the user database: nothing of the configuration lies in the environment.
std::string UserHome() {
  const passwd* user = getpwuid(getuid());
  return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

}  // namespace

PortMap Folders::Ports() const {
  if (!shared.empty()) return {.linkFolder = writable + "/ports"};
  return {.linkFolder = executable + "/ports", .ownFolder = writable + "/ports"};
}

Folders ChooseFolders(const std::string& executable, const std::string& home) {
  std::error_code error;  // a folder that cannot be made shows when the first file is written
  const fs::path data = fs::path(home) / ".local" / "share" / "veltrana";
  const fs::path shared = fs::path(executable).parent_path() / "share" / "veltrana";
  const bool installed = fs::is_directory(shared, error);
  if (!installed && access(executable.c_str(), W_OK | X_OK) == 0) return {executable, executable};
  fs::create_directories(data, error);
  return {executable, data.string(), !installed, installed ? shared.string() : "", home};
}

Folders FindFolders() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  const std::string folder = error ? fs::current_path(error).string() : program.parent_path().string();
  return ChooseFolders(folder, UserHome());
}

}  // namespace host
