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
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;

  int Number() const { return number_; }
  bool Open() const { return number_ >= 0; }
  bool Close() { return number_ < 0 || close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

bool IsLeftover(std::string_view name) {
  return name.starts_with(LeftoverStart) && name.ends_with(LeftoverEnd);
}

std::string FolderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  return folder.empty() ? "." : folder.string();
}

// False where the folder cannot be read to its end.
template <typename Visit>
bool ForEachIn(const std::string& folder, Visit visit) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    visit(*entry);
  }
  return !error;
}

// Where a chain of links ends: a new file takes the place of what the operator sees, not of the link to it.
std::string Resolved(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) return path;
  const fs::path end = fs::weakly_canonical(path, error);
  return error ? path : end.string();
}

class PosixNewFile : public vc::NewFile {
 public:
  PosixNewFile(Descriptor opened, std::string temporaryPath, std::string targetPath)
      : file(std::move(opened)), temporary(std::move(temporaryPath)), target(std::move(targetPath)) {}
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
    if (!replaced) return false;
    // The old file or the new one is there already; this settles that after a power cut it is the new one.
    const Descriptor folder(open(FolderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.Open()) fsync(folder.Number());
    return true;
  }

 private:
  Descriptor file;  // and the lock on it, by which others see that its process lives
  std::string temporary, target;
  bool replaced = false;
};

class PosixLock : public vc::FileLock {
 public:
  explicit PosixLock(Descriptor locked) : file(std::move(locked)) {}

 private:
  Descriptor file;
};

// A new temporary file of this process, locked; not open where the folder takes none.
Descriptor CreateTemporary(const std::string& folder, std::string& path) {
  constexpr int most = 100;
  for (int number = 0; number < most; ++number) {
    path = folder + "/" + std::string(LeftoverStart) + std::to_string(getpid()) + "-" +
           std::to_string(number) + std::string(LeftoverEnd);
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, EveryoneByUmask));
    if (file.Open()) {
      flock(file.Number(), LOCK_EX | LOCK_NB);
      return file;
    }
    if (errno != EEXIST) break;
  }
  return Descriptor(-1);
}

}  // namespace

bool PosixFiles::ReadStart(const std::string& path, std::size_t count, std::string& bytes) {
  bytes.clear();
  // Without O_NONBLOCK a pipe would wait here for its writer.
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
  const bool there = access(end.c_str(), F_OK) == 0;
  struct stat facts {};
  if (there && (access(end.c_str(), W_OK) != 0 || stat(end.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)))
    return nullptr;
  std::string temporary;
  Descriptor file = CreateTemporary(FolderOf(end), temporary);
  if (!file.Open()) return nullptr;
  if (there) static_cast<void>(fchmod(file.Number(), facts.st_mode & 07777));
  return std::make_unique<PosixNewFile>(std::move(file), temporary, end);
}

void PosixFiles::RemoveLeftovers(const std::string& folder) {
  ForEachIn(folder, [](const fs::directory_entry& entry) {
    if (!IsLeftover(entry.path().filename().string())) return;
    const Descriptor file(open(entry.path().c_str(), O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    if (file.Open() && flock(file.Number(), LOCK_EX | LOCK_NB) == 0) unlink(entry.path().c_str());
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
