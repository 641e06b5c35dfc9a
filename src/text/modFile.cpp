#include "text/modFile.h"

#include <array>
#include <filesystem>
#include <fstream>

namespace vc {
namespace {

// A folder opens like a file on some systems, and fails only when it is read.
bool IsFolder(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(path, ignored);
}

}  // namespace

bool FileChecksum(const std::string& path, std::int32_t& sum) {
  std::ifstream file(path, std::ios::binary);
  if (!file || IsFolder(path)) return false;
  std::array<char, 4096> block{};
  auto total = static_cast<std::uint32_t>(sum);
  do {
    file.read(block.data(), block.size());
    for (std::streamsize i = 0; i < file.gcount(); ++i) {
      total += static_cast<std::uint8_t>(block[static_cast<std::size_t>(i)]);
    }
  } while (file);
  sum = static_cast<std::int32_t>(total);
  return !file.bad();
}

bool FileExists(const std::string& path) {
  return !IsFolder(path) && std::ifstream(path, std::ios::binary).is_open();
}

bool WriteLogFile(const std::string& path, std::string_view text, std::int16_t append) {
  const auto mode = append == -1 ? std::ios::app : std::ios::trunc;
  std::ofstream file(path, std::ios::binary | mode);
  file << text << "\r\n";
  file.close();
  return !file.fail();
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  if (!name.empty() && (name.front() == '\\' || name.front() == '/')) name.remove_prefix(1);
  return (std::filesystem::path(folder) / std::filesystem::path(name)).string();
}

std::string WholePath(const std::string& name) {
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(name, error);
  return error ? name : whole.lexically_normal().string();
}

}  // namespace vc
