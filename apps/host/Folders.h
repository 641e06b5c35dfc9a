// Where the program lies and where it may write.
#pragma once

#include <string>

namespace host {

struct Folders {
  std::string executable;  // the folder that holds the program
  std::string writable;    // the same, or the user's data folder where that one cannot be written
  bool readOnly = false;   // the executable's cannot
};

Folders FindFolders();

// The executable's folder alone where it can be written, else with the fallback, which is made if it is
// missing.
Folders ChooseFolders(const std::string& executable, const std::string& fallback);

}  // namespace host
