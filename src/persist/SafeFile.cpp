#include "persist/SafeFile.h"

namespace vc {
namespace {

// A setup with six stages of the longest filters takes less than half of it.
constexpr std::size_t LongestFile = std::size_t{4} << 20U;

}  // namespace

bool WriteWholeFile(Files& files, const std::string& path, std::string_view text) {
  const auto file = files.CreateBeside(path);
  return file && file->Write(text) && file->Flush() && file->Replace();
}

bool ReadWholeFile(Files& files, const std::string& path, std::string& text) {
  return files.ReadStart(path, LongestFile + 1, text) && text.size() <= LongestFile;
}

}  // namespace vc
