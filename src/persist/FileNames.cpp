#include "persist/FileNames.h"

#include <algorithm>
#include <filesystem>

namespace vc {
namespace {

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

bool HasExtension(std::string_view name, std::string_view extension) {
  if (name.size() <= extension.size()) return false;
  return std::ranges::equal(name.substr(name.size() - extension.size()), extension, {}, Lower, Lower);
}

std::string WithExtension(std::string name, std::string_view extension) {
  name.erase(name.find_last_not_of(' ') + 1);
  if (!HasExtension(name, extension)) name += extension;
  return name;
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t") == std::string_view::npos; }

std::string LastPart(const std::string& path) {
  const std::string part = std::filesystem::path(path).filename().string();
  return part == "." || part == ".." ? std::string{} : part;
}

std::string FolderOf(const std::string& path) { return std::filesystem::path(path).parent_path().string(); }

std::string PathFrom(const std::string& folder, const std::string& name) {
  return (std::filesystem::path(folder) / name).string();
}

}  // namespace vc
