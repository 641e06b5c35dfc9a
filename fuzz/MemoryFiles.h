// Files that live in memory, so that a fuzzer tries thousands of them a second and sees all that was written.
#pragma once

#include <map>
#include <string>

#include "platform/Files.h"

namespace fuzz {

class MemoryFiles : public vc::Files {
 public:
  std::map<std::string, std::string> content;  // by path
  std::string onlyFolder;                      // where not empty, no file can be made outside it

  vc::FileKind KindOf(const std::string& path) override {
    return content.contains(path) ? vc::FileKind::File : vc::FileKind::Nothing;
  }
  std::int64_t WrittenAt(const std::string& /*path*/) override { return 0; }
  bool ReadStart(const std::string& path, std::size_t count, std::string& bytes) override {
    const auto found = content.find(path);
    if (found != content.end()) bytes = found->second.substr(0, count);
    return found != content.end();
  }
  std::unique_ptr<vc::NewFile> CreateBeside(const std::string& target) override {
    if (!target.starts_with(onlyFolder)) return nullptr;
    return std::make_unique<MemoryFile>(content, target);
  }
  void Settle() override {}
  void RemoveLeftovers(const std::string& /*folder*/) override {}
  bool Rename(const std::string& /*from*/, const std::string& /*to*/) override { return false; }
  std::optional<std::vector<vc::FolderEntry>> List(const std::string& /*folder*/) override { return {}; }
  std::unique_ptr<vc::FileLock> Lock(const std::string& /*path*/, bool& heldElsewhere) override {
    heldElsewhere = false;
    return nullptr;
  }

 private:
  struct MemoryFile : vc::NewFile {
    MemoryFile(std::map<std::string, std::string>& files, std::string path)
        : content(files), target(std::move(path)) {}
    bool Write(std::string_view bytes) override { return text += bytes, true; }
    bool Flush() override { return true; }
    bool Replace() override { return content[target] = std::move(text), true; }
    std::map<std::string, std::string>& content;
    std::string target, text;
  };
};

}  // namespace fuzz
