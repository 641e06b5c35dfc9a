#include "host/PosixFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/FolderWalk.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// Temporary names do not hang on the target's: a long name that fits must not fail for its temporary.
constexpr std::string_view LeftoverStart = ".veltrana-";
constexpr std::string_view LeftoverEnd = ".tmp";
constexpr mode_t EveryoneByUmask = 0666;

// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int opened) : number(opened) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;

  int Number() const { return number; }
  bool Open() const { return number >= 0; }
  bool Close() { return number < 0 || close(std::exchange(number, -1)) == 0; }

 private:
  int number;
};

bool IsLeftover(std::string_view name) {
  return name.starts_with(LeftoverStart) && name.ends_with(LeftoverEnd);
}

std::string FolderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder.string();
}

// Where a chain of links ends, be anything there or not: a new file takes the place of what the operator
// sees, not of the link to it. A chain without an end ends at a link.
std::string Resolved(std::string path) {
  constexpr int longestChain = 40;
  std::error_code error;
  for (int link = 0; link < longestChain && fs::is_symlink(path, error); ++link)
    path = (fs::path(path).parent_path() / fs::read_symlink(path, error)).string();
  return path;
}

class PosixNewFile : public vc::NewFile {
 public:
  PosixNewFile(Descriptor opened, std::string temporaryPath, std::string targetPath,
               std::set<std::string>& unsettledFolders)
      : file(std::move(opened)),
        temporary(std::move(temporaryPath)),
        target(std::move(targetPath)),
        unsettled(unsettledFolders) {}
  ~PosixNewFile() override {
    if (!replaced) unlink(temporary.c_str());
  }
  PosixNewFile(const PosixNewFile&) = delete;
  PosixNewFile& operator=(const PosixNewFile&) = delete;

  bool Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = write(file.Number(), bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  bool Flush() override { return fsync(file.Number()) == 0; }

  bool Replace() override {
    replaced = rename(temporary.c_str(), target.c_str()) == 0;
    if (replaced) unsettled.insert(FolderOf(target));
    return replaced;
  }

 private:
  Descriptor file;  // and the lock on it, by which others see that its process lives
  std::string temporary, target;
  std::set<std::string>& unsettled;
  bool replaced = false;
};

class PosixLock : public vc::FileLock {
 public:
  explicit PosixLock(Descriptor locked) : file(std::move(locked)) {}

 private:
  Descriptor file;
};

bool LiesAt(const Descriptor& file, const std::string& path) {
  struct stat opened {};
  struct stat there {};
  return fstat(file.Number(), &opened) == 0 && lstat(path.c_str(), &there) == 0 &&
         opened.st_dev == there.st_dev && opened.st_ino == there.st_ino;
}

// Locked, and still there: between its making and its locking another program may have taken it for a
// leftover. A file system without locks keeps its leftovers.
bool IsClaimed(const Descriptor& file, const std::string& path) {
  const bool locked = flock(file.Number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
  return locked && LiesAt(file, path);
}

// A new temporary file of this process, locked; not open where the folder takes none.
Descriptor CreateTemporary(const std::string& folder, std::string& path) {
  constexpr int most = 100;
  for (int number = 0; number < most; ++number) {
    path = folder + "/" + std::string(LeftoverStart) + std::to_string(getpid()) + "-" +
           std::to_string(number) + std::string(LeftoverEnd);
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, EveryoneByUmask));
    if (file.Open() && IsClaimed(file, path)) return file;
    if (!file.Open() && errno != EEXIST) break;
  }
  return Descriptor(-1);
}

// The new file belongs to whom the old one did, as far as this user may give it away, and others may do with
// it what they might.
void TakeOver(const Descriptor& file, const struct stat& old) {
  constexpr auto sameUser = static_cast<uid_t>(-1);
  struct stat made {};
  fstat(file.Number(), &made);
  [[maybe_unused]] const bool given = (made.st_uid == old.st_uid && made.st_gid == old.st_gid) ||
                                      fchown(file.Number(), old.st_uid, old.st_gid) == 0 ||
                                      fchown(file.Number(), sameUser, old.st_gid) == 0;
  if (made.st_mode != old.st_mode) fchmod(file.Number(), old.st_mode & 07777);
}

}  // namespace

vc::FileKind PosixFiles::KindOf(const std::string& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) {
    return lstat(path.c_str(), &facts) == 0 ? vc::FileKind::SomethingElse : vc::FileKind::Nothing;
  }
  if (S_ISREG(facts.st_mode)) return vc::FileKind::File;
  return S_ISDIR(facts.st_mode) ? vc::FileKind::Folder : vc::FileKind::SomethingElse;
}

std::int64_t PosixFiles::WrittenAt(const std::string& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) return 0;
  return std::int64_t{facts.st_mtim.tv_sec} * 1000000 + facts.st_mtim.tv_nsec / 1000;
}

bool PosixFiles::ReadStart(const std::string& path, std::size_t count, std::string& bytes) {
  bytes.clear();
  // Opening alone can do harm: a serial line would raise its signals, a pipe wait for its writer.
  if (KindOf(path) != vc::FileKind::File) return false;
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat facts {};
  if (!file.Open() || fstat(file.Number(), &facts) != 0 || !S_ISREG(facts.st_mode)) return false;
  bytes.resize(std::min(count, static_cast<std::size_t>(facts.st_size)));
  std::size_t got = 0;
  while (got < bytes.size()) {
    const ssize_t now = read(file.Number(), bytes.data() + got, bytes.size() - got);
    if (now < 0 && errno == EINTR) continue;
    if (now < 0) return bytes.clear(), false;
    if (now == 0) break;
    got += static_cast<std::size_t>(now);
  }
  bytes.resize(got);
  return true;
}

std::unique_ptr<vc::NewFile> PosixFiles::CreateBeside(const std::string& target) {
  const std::string end = Resolved(target);
  struct stat old {};
  const bool there = lstat(end.c_str(), &old) == 0;
  if (!there && errno != ENOENT) return nullptr;
  if (there && (!S_ISREG(old.st_mode) || access(end.c_str(), W_OK) != 0)) return nullptr;
  std::string temporary;
  Descriptor file = CreateTemporary(FolderOf(end), temporary);
  if (!file.Open()) return nullptr;
  if (there) TakeOver(file, old);
  return std::make_unique<PosixNewFile>(std::move(file), temporary, end, unsettled);
}

void PosixFiles::Settle() {
  for (const std::string& path : unsettled) {
    const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Open()) fsync(folder.Number());
  }
  unsettled.clear();
}

void PosixFiles::RemoveLeftovers(const std::string& folder) {
  ForEachIn(folder, [](const fs::directory_entry& entry) {
    if (!IsLeftover(entry.path().filename().string())) return;
    const Descriptor file(open(entry.path().c_str(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    // The name may by now be that of another file, which its process is writing.
    const bool dead = file.Open() && flock(file.Number(), LOCK_EX | LOCK_NB) == 0;
    if (dead && LiesAt(file, entry.path())) unlink(entry.path().c_str());
  });
}

bool PosixFiles::Rename(const std::string& from, const std::string& to) {
  return rename(from.c_str(), to.c_str()) == 0;
}

std::optional<std::vector<vc::FolderEntry>> PosixFiles::List(const std::string& folder) {
  std::vector<vc::FolderEntry> list;
  const bool whole = ForEachIn(folder, [&list](const fs::directory_entry& entry) {
    const std::string name = entry.path().filename().string();
    std::error_code ignored;  // a link that leads nowhere is no folder
    if (!name.starts_with('.')) list.push_back({name, entry.is_directory(ignored)});
  });
  if (!whole) return std::nullopt;
  std::ranges::sort(list, {}, &vc::FolderEntry::name);
  return list;
}

std::unique_ptr<vc::FileLock> PosixFiles::Lock(const std::string& path, bool& heldElsewhere) {
  heldElsewhere = false;
  Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, EveryoneByUmask));
  if (!file.Open()) return nullptr;
  if (flock(file.Number(), LOCK_EX | LOCK_NB) != 0) {
    heldElsewhere = errno == EWOULDBLOCK;
    return nullptr;
  }
  return std::make_unique<PosixLock>(std::move(file));
}

}  // namespace host
