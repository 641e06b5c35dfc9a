// Files written whole or not at all.
#pragma once

#include <string>
#include <string_view>

#include "platform/Files.h"

namespace vc {

// Beside the target, flushed to the disk, put in its place. False where any step fails; the target is then as
// it was.
bool WriteWholeFile(Files& files, const std::string& path, std::string_view text);

}  // namespace vc
