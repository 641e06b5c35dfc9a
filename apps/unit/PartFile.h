// A file that appears under its name only when it is whole.
#pragma once

#include <string>
#include <variant>

namespace unit {

// What is written stands in FILE.part, beside the file that the path names through any links, until it is put
// in that one's place at one stroke. What is no file (a device, a pipe) is written as it is.
class PartFile {
 public:
  // Where what is to be written to the path stands until it is whole.
  static std::string PartOf(const std::string& path);

  // Else the system's number of the error: EACCES also where the old file is protected, EBUSY where somebody
  // else writes to the same place.
  static std::variant<PartFile, int> Begin(const std::string& path);

  PartFile(PartFile&& other) noexcept;
  PartFile& operator=(PartFile&& other) noexcept;
  // Nothing is left of what was neither put in place nor kept.
  ~PartFile();

  // To write to; -1 once it is put in place or kept.
  int Descriptor() const { return descriptor; }
  // Where it stands until then; empty for what is no file.
  const std::string& Part() const { return part; }

  // Flushes it to the disk and puts it in place. 0, or the system's number of the error.
  int Commit();
  // Leaves what there is under the name of the part.
  void Keep();

 private:
  PartFile(int opened, std::string partPath, std::string targetPath);

  static std::variant<PartFile, int> Opened(const std::string& path, int flags, const std::string& part,
                                            const std::string& target);

  int descriptor;
  std::string part, target;
};

// Which of the names that are written on the way to the path leads to the file: itself or its part. Empty
// where neither does.
std::string WrittenOver(const std::string& path, const std::string& file);

}  // namespace unit
