// A folder of a test's own, gone with it, and what is in its files.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

namespace support {

class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "veltrana-test-XXXXXX").string();
    path = mkdtemp(pattern.data());
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::string& Path() const { return path; }

 private:
  std::string path;
};

inline std::string Content(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

inline void Put(const std::string& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace support
