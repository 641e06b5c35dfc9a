// Files that are read and written as a whole.
#include "unit/WholeFile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace unit {

std::variant<std::string, int> ReadWhole(const std::string& path) {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::string text;
  std::array<char, 65536> chunk{};
  while (file) {
    file.read(chunk.data(), chunk.size());
    text.append(chunk.data(), static_cast<std::size_t>(file.gcount()));
  }
  if (file.eof()) return text;
  return errno != 0 ? errno : EIO;
}

std::string WriteWhole(const std::string& path, const std::string& text) {
  const std::string part = path + ".part";
  std::ofstream file(part, std::ios::binary);
  file << text;
  file.close();
  if (file && std::rename(part.c_str(), path.c_str()) == 0) return {};
  std::string failure = path + ": can't be written: " + std::strerror(errno);
  std::remove(part.c_str());
  return failure;
}

}  // namespace unit
