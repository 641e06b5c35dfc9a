#include "host/DeviceUsers.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "host/FolderWalk.h"

namespace host {
namespace {

namespace fs = std::filesystem;

bool Holds(const fs::path& process, const fs::path& device) {
  bool holds = false;
  ForEachIn(process / "fd", [&](const fs::directory_entry& entry) {
    std::error_code error;
    holds = fs::read_symlink(entry.path(), error) == device || holds;
  });
  return holds;
}

bool IsNumber(const std::string& name) {
  return !name.empty() && std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

std::string NameOf(const fs::path& process) {
  std::ifstream file(process / "comm");
  std::string name;
  std::getline(file, name);
  return name.empty() ? "a program" : name;
}

}  // namespace

std::string UsersOf(const std::string& path) {
  std::error_code error;
  const fs::path device = fs::canonical(path, error);
  const fs::path self = fs::read_symlink("/proc/self", error);
  std::string users;
  ForEachIn("/proc", [&](const fs::directory_entry& entry) {
    const std::string number = entry.path().filename().string();
    if (!IsNumber(number) || number == self || !Holds(entry.path(), device)) return;
    users += (users.empty() ? " by " : " and ") + NameOf(entry.path()) + " (process " + number + ")";
  });
  return users;
}

}  // namespace host
