// What is kept of setup files from one run to the next: those used last, and which one was open at the end.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/Files.h"

namespace vc {

struct SetupTrail {
  static constexpr const char* FileName = "veltrana.recent";
  static constexpr std::size_t MostFiles = 8;

  // In a file of the program's own folder; another program may use it, too, so every change begins with what
  // stands there. One that is missing or damaged counts as empty. False where the file cannot be written: the
  // trail then lasts for this run.
  SetupTrail(Files& hostFiles, std::string ownFile) : files(hostFiles), file(std::move(ownFile)) {}

  // Whole paths, the one used last in front.
  const std::vector<std::string>& Recent() const { return recent; }
  // The setup file that was open; empty where none was.
  const std::string& Open() const { return open; }

  void Load();
  bool Used(const std::string& path);
  bool Drop(const std::string& path);
  bool KeepOpen(const std::string& path);

 private:
  void Follow();
  bool Save();

  Files& files;
  std::string file;
  std::vector<std::string> recent;
  std::string open;
};

}  // namespace vc
