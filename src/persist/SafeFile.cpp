#include "persist/SafeFile.h"

namespace vc {

bool WriteWholeFile(Files& files, const std::string& path, std::string_view text) {
  const auto file = files.CreateBeside(path);
  return file && file->Write(text) && file->Flush() && file->Replace();
}

}  // namespace vc
