// What we ask of the host's file system beyond the standard library: files that are written whole or not at
// all, locks between programs, and reading that nothing can hang. No call throws; the result tells.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vc {

// A file in the making. It lies beside its target under a temporary name until it takes the target's place;
// destroyed before, it is removed and the target stays as it was.
class NewFile {
 public:
  virtual ~NewFile() = default;
  // All of the bytes, or false.
  virtual bool Write(std::string_view bytes) = 0;
  // Down to the disk itself.
  virtual bool Flush() = 0;
  // Takes the target's place at one stroke: whoever opens the target sees the old file or the new one. Which
  // of the two a power cut leaves is settled by Files::Settle.
  virtual bool Replace() = 0;
};

// Held until destruction, or until its process dies in whatever way.
class FileLock {
 public:
  virtual ~FileLock() = default;
};

struct FolderEntry {
  std::string name;
  bool folder = false;
  bool operator==(const FolderEntry&) const = default;
};

// What lies under a name. A link is what it leads to, and something else where it leads nowhere.
enum class FileKind { Nothing, File, Folder, SomethingElse };

class Files {
 public:
  virtual ~Files() = default;
  // Nothing, too, where the way to the name may not be gone.
  virtual FileKind KindOf(const std::string& path) = 0;
  // When a file was written last, in microseconds since some fixed moment; 0 where there is none.
  virtual std::int64_t WrittenAt(const std::string& path) = 0;
  // The first count bytes, or all of a shorter file. False, at once, for what is no regular file (a folder, a
  // device, a pipe), what is not there and what may not be read.
  virtual bool ReadStart(const std::string& path, std::size_t count, std::string& bytes) = 0;
  // Null where the folder cannot be written, or the target is there and may not be.
  virtual std::unique_ptr<NewFile> CreateBeside(const std::string& target) = 0;
  // Brings down to the disk that the files since the last call have taken their places.
  virtual void Settle() = 0;
  // Temporary files in the folder whose process has died.
  virtual void RemoveLeftovers(const std::string& folder) = 0;
  // Replaces what has the new name.
  virtual bool Rename(const std::string& from, const std::string& to) = 0;
  // Files and folders in the order of their names, hidden ones left out; nothing where it cannot be read.
  virtual std::optional<std::vector<FolderEntry>> List(const std::string& folder) = 0;
  // Null where another program holds it, and then heldElsewhere is true, or the file cannot be made.
  virtual std::unique_ptr<FileLock> Lock(const std::string& path, bool& heldElsewhere) = 0;
};

}  // namespace vc
