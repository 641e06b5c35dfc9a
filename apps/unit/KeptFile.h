// Text files in which the unit keeps something over its restarts, each sealed by its own checksum.
#pragma once

#include <string>

namespace unit {

// The text and a last line "checksum" with its 64-bit FNV-1a hash (Fowler, Noll and Vo) in hexadecimal.
std::string WithChecksum(const std::string& text);

struct PutAside {
  std::string trouble;    // one line that says what was wrong, where the file is now and what that means
  bool writable = false;  // false where the bad file still stands there, which nothing may overwrite
};

// Renames a bad file to PATH.damaged. `loss` says what the unit is left with: "all memories are empty".
PutAside PutFileAside(const std::string& path, const std::string& wrong, const std::string& loss);

}  // namespace unit
