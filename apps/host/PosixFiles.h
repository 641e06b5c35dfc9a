// Files of a POSIX system.
#pragma once

#include <set>
#include <string>

#include "platform/Files.h"

namespace host {

class PosixFiles : public vc::Files {
 public:
  vc::FileKind KindOf(const std::string& path) override;
  std::int64_t WrittenAt(const std::string& path) override;
  bool ReadStart(const std::string& path, std::size_t count, std::string& bytes) override;
  std::unique_ptr<vc::NewFile> CreateBeside(const std::string& target) override;
  void Settle() override;
  void RemoveLeftovers(const std::string& folder) override;
  bool Rename(const std::string& from, const std::string& to) override;
  std::optional<std::vector<vc::FolderEntry>> List(const std::string& folder) override;
  std::unique_ptr<vc::FileLock> Lock(const std::string& path, bool& heldElsewhere) override;

 private:
  std::set<std::string> unsettled;  // folders with files in new places
};

}  // namespace host
