// Where the program lies with its files, and where it may write.
#pragma once

#include <string>

#include "host/PortMap.h"

namespace host {

struct Folders {
  std::string executable;  // the folder that holds the programs
  std::string writable;    // the same, or the user's data folder where nothing is to be written there
  bool readOnly = false;   // the executable's is where settings would be, but cannot be written
  std::string shared{};    // where an installed program's files lie; none where they are beside it
  std::string home{};      // the user's

  // What comes with the program: factory setup, firmware, manual. Nothing is written there.
  const std::string& Files() const { return shared.empty() ? executable : shared; }
  // Where the user's files are looked for at first: not among those of the program, if it can be helped.
  const std::string& Documents() const { return shared.empty() ? writable : home; }
  // Links to ports lie beside the program, and where it may write.
  PortMap Ports() const;
};

Folders FindFolders();

// The folders of a program that lies in a folder. Where that is one of the system's, with the program's files
// in ../share/veltrana, all that is written goes to the data folder in the home, whoever starts the program.
// Else everything is in the executable's folder, or written to the data folder where that cannot be. The data
// folder is made if it is missing.
Folders ChooseFolders(const std::string& executable, const std::string& home);

}  // namespace host
