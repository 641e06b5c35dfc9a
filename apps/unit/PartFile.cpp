#include "unit/PartFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace unit {
namespace {

namespace fs = std::filesystem;

constexpr mode_t ForAll = 0666;  // less what the user's mask takes away

// Where a link leads to, even if nothing is there.
std::string TargetOf(fs::path path) {
  constexpr int mostLinks = 40;
  std::error_code error;
  for (int i = 0; i < mostLinks && fs::is_symlink(path, error); ++i) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;
  }
  return path.string();
}

// Locked by nobody else, and still the one of that name: another program may just have put it in place.
bool IsOurs(int descriptor, const std::string& part) {
  struct stat open {};
  struct stat named {};
  return flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &open) == 0 &&
         lstat(part.c_str(), &named) == 0 && open.st_ino == named.st_ino && open.st_dev == named.st_dev;
}

}  // namespace

std::string PartFile::PartOf(const std::string& path) { return TargetOf(path) + ".part"; }

std::variant<PartFile, int> PartFile::Begin(const std::string& path) {
  struct stat old {};
  const bool there = stat(path.c_str(), &old) == 0;
  if (there && !S_ISREG(old.st_mode)) return Opened(path, O_WRONLY, "", path);
  if (there && access(path.c_str(), W_OK) != 0) return errno;
  const std::string target = TargetOf(path), part = PartOf(path);
  auto opened = Opened(part, O_RDWR | O_CREAT | O_NOFOLLOW, part, target);
  auto* const file = std::get_if<PartFile>(&opened);
  if (file == nullptr) return opened;
  if (!IsOurs(file->Descriptor(), part)) {
    file->Keep();
    return EBUSY;
  }
  if (ftruncate(file->Descriptor(), 0) != 0) return errno;
  if (there && fchmod(file->Descriptor(), old.st_mode & ALLPERMS) != 0) return errno;
  return opened;
}

std::variant<PartFile, int> PartFile::Opened(const std::string& path, int flags, const std::string& part,
                                             const std::string& target) {
  const int descriptor = open(path.c_str(), flags | O_CLOEXEC, ForAll);
  if (descriptor < 0) return errno;
  return PartFile(descriptor, part, target);
}

PartFile::PartFile(int opened, std::string partPath, std::string targetPath)
    : descriptor(opened), part(std::move(partPath)), target(std::move(targetPath)) {}

PartFile::PartFile(PartFile&& other) noexcept
    : descriptor(std::exchange(other.descriptor, -1)),
      part(std::move(other.part)),
      target(std::move(other.target)) {}

PartFile& PartFile::operator=(PartFile&& other) noexcept {
  std::swap(descriptor, other.descriptor);
  std::swap(part, other.part);
  std::swap(target, other.target);
  return *this;
}

PartFile::~PartFile() {
  if (descriptor >= 0 && !part.empty()) unlink(part.c_str());
  Keep();
}

int PartFile::Commit() {
  const bool moves = !part.empty();
  if (moves && (fsync(descriptor) != 0 || std::rename(part.c_str(), target.c_str()) != 0)) return errno;
  Keep();
  return 0;
}

void PartFile::Keep() {
  if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

std::string WrittenOver(const std::string& path, const std::string& file) {
  for (const std::string& written : {path, PartFile::PartOf(path)}) {
    std::error_code error;
    if (fs::equivalent(written, file, error)) return written;
  }
  return {};
}

}  // namespace unit
