// Where the program lies and where it may write.
#pragma once

#include <string>

namespace host {

struct Folders {
  std::string executable;  // the folder that holds the program
  std::string writable;    // the same, or the user's data folder where that one cannot be written
};

Folders FindFolders();

// The writable one of two: the first where it can be written, else the second, which is made if it is
// missing.
std::string ChooseWritable(const std::string& preferred, const std::string& fallback);

}  // namespace host
