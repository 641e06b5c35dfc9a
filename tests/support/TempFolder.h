// A folder of a test's own, gone with it.
#pragma once

#include <filesystem>
#include <string>

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

}  // namespace support
