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

std::string ChooseWritable(const std::string& preferred, const std::string& fallback) {
  if (access(preferred.c_str(), W_OK | X_OK) == 0) return preferred;
  std::error_code error;  // a folder that cannot be made shows when the first file is written
  fs::create_directories(fallback, error);
  return fallback;
}

Folders FindFolders() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  const std::string folder = error ? fs::current_path(error).string() : program.parent_path().string();
  return {folder, ChooseWritable(folder, UserDataFolder().string())};
}

}  // namespace host
