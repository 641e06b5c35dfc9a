// The file in which the stand-alone memories outlive the program.
#pragma once

#include <string>

#include "unit/Memories.h"

namespace unit {

// The text of the memories and their checksum.
std::string MemoryFileText(const Memories& memories);

struct LoadedMemories {
  Memories memories;
  std::string trouble;   // one line that says what was wrong with the file, empty where nothing was
  bool writable = true;  // false where a bad file still stands there, which nothing may overwrite
};

// A file that is not there holds no memories. One that can't be read, or is not just as MemoryFileText makes
// it, gives none either, and is renamed to PATH.damaged.
LoadedMemories LoadMemories(const std::string& path);

}  // namespace unit
