// Files read and written whole or not at all.
#pragma once

#include <string>
#include <string_view>

#include "platform/Files.h"

namespace vc {

// Beside the target, flushed to the disk, put in its place. False where any step fails; the target is then as
// it was.
bool WriteWholeFile(Files& files, const std::string& path, std::string_view text);

// All of a file; false where it cannot be read, and for one that is longer than any of ours can be.
bool ReadWholeFile(Files& files, const std::string& path, std::string& text);

}  // namespace vc
