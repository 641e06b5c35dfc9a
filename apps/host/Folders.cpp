#include "host/Folders.h"

#include <filesystem>

#include <pwd.h>
#include <unistd.h>

namespace host {
namespace {

namespace fs = std::filesystem;

// From the user database: nothing of the configuration lies in the environment.
fs::path UserDataFolder() {
  const passwd* user = getpwuid(getuid());
  const fs::path home = user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
  return home / ".local" / "share" / "veltrana";
}

}  // namespace

Folders ChooseFolders(const std::string& executable, const std::string& fallback) {
  if (access(executable.c_str(), W_OK | X_OK) == 0) return {executable, executable};
  std::error_code error;  // a folder that cannot be made shows when the first file is written
  fs::create_directories(fallback, error);
  return {executable, fallback, true};
}

Folders FindFolders() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  const std::string folder = error ? fs::current_path(error).string() : program.parent_path().string();
  return ChooseFolders(folder, UserDataFolder().string());
}

}  // namespace host
