// Files that are read and written as a whole.
#include "unit/WholeFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string_view>

#include <unistd.h>

#include "unit/PartFile.h"

namespace unit {
namespace {

int Fill(PartFile& file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file.Descriptor(), text.data(), text.size());
    if (written < 0 && errno != EINTR) return errno;
    text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
  }
  return file.Commit();
}

}  // namespace

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
  auto begun = PartFile::Begin(path);
  const int* const refused = std::get_if<int>(&begun);
  const int error = refused != nullptr ? *refused : Fill(std::get<PartFile>(begun), text);
  return error == 0 ? "" : path + ": can't be written: " + std::strerror(error);
}

}  // namespace unit
