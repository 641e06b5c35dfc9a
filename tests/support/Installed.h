// The console program in an install folder of its own, with a port in it.
#pragma once

#include "Program.h"
#include "TempFolder.h"

namespace support {

struct Installed {
  TempFolder folder;
  std::string program = folder.Path() + "/veltrana-console", port = folder.Path() + "/ports/COM1";

  explicit Installed(const std::string& original) {
    std::filesystem::copy_file(original, program);
    std::filesystem::create_directory(folder.Path() + "/ports");
    std::filesystem::copy_file(PROGRAM_FOLDER "/Factory Defaults.nrv",
                               folder.Path() + "/Factory Defaults.nrv");
  }
  // Runs it with its port at a terminal.
  Program RunAt(const std::string& terminal) const {
    std::filesystem::create_symlink(terminal, port);
    return Program(program);
  }
};

}  // namespace support
