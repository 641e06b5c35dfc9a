// The real files, of which one operation fails: each call counts, and the n-th says no.
#pragma once

#include "host/PosixFiles.h"

namespace support {

class FaultyFiles : public vc::Files {
 public:
  int failAt = 0;   // counted from 1; 0 for never
  int failFor = 1;  // operations in a row
  int operations = 0;
  bool full = false;  // nothing can be written, all else works

  vc::FileKind KindOf(const std::string& path) override { return real.KindOf(path); }
  std::int64_t WrittenAt(const std::string& path) override { return real.WrittenAt(path); }
  bool ReadStart(const std::string& path, std::size_t count, std::string& bytes) override {
    return Works() && real.ReadStart(path, count, bytes);
  }
  std::unique_ptr<vc::NewFile> CreateBeside(const std::string& target) override {
    if (!Works()) return nullptr;
    auto file = real.CreateBeside(target);
    return file ? std::make_unique<FaultyFile>(*this, std::move(file)) : nullptr;
  }
  void Settle() override { real.Settle(); }
  void RemoveLeftovers(const std::string& folder) override { real.RemoveLeftovers(folder); }
  bool Rename(const std::string& from, const std::string& to) override {
    return Works() && real.Rename(from, to);
  }
  std::optional<std::vector<vc::FolderEntry>> List(const std::string& folder) override {
    return Works() ? real.List(folder) : std::nullopt;
  }
  std::unique_ptr<vc::FileLock> Lock(const std::string& path, bool& heldElsewhere) override {
    return real.Lock(path, heldElsewhere);
  }

 private:
  struct FaultyFile : vc::NewFile {
    FaultyFile(FaultyFiles& owner, std::unique_ptr<vc::NewFile> opened)
        : files(owner), file(std::move(opened)) {}
    // A disk that is full takes what still fits.
    bool Write(std::string_view bytes) override {
      if (files.Works() && !files.full) return file->Write(bytes);
      static_cast<void>(file->Write(bytes.substr(0, bytes.size() / 2)));
      return false;
    }
    bool Flush() override { return files.Works() && file->Flush(); }
    bool Replace() override { return files.Works() && file->Replace(); }
    FaultyFiles& files;
    std::unique_ptr<vc::NewFile> file;
  };
  bool Works() {
    ++operations;
    return operations < failAt || operations >= failAt + failFor || failAt == 0;
  }

  host::PosixFiles real;
};

}  // namespace support
