// The files of the host where it is hard: programs that are killed, that meet at one file, that may not
// write.
#include <csignal>
#include <random>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "RandomRecord.h"
#include "SetupFixture.h"
#include "persist/IndivFiles.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using support::Content;
using support::Put;

constexpr uid_t Nobody = 65534;

// A copy of this program that does something else; killed with the object.
class Child {
 public:
  template <typename Work>
  explicit Child(Work work) : id(fork()) {
    if (id == 0) _exit(work() ? 0 : 1);
  }
  ~Child() { Kill(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Whether the work came to its end and was good.
  bool Await() {
    int status = 1;
    return waitpid(std::exchange(id, -1), &status, 0) > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  bool Running() const {
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(id), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
  }
  void Kill() {
    if (id <= 0) return;
    kill(id, SIGKILL);
    Await();
  }

 private:
  pid_t id;
};

// Two setups that are told apart by every byte count, and what a program saves them with.
struct FilesTest : testing::Test {
  support::TempFolder folder;
  PosixFiles files;
  std::string path = folder.Path() + "/One.nrv";
  std::array<vc::SystemSettings, 2> records;
  std::array<std::string, 2> texts;

  FilesTest() {
    std::mt19937 random{3};
    for (std::size_t n : {0U, 1U}) {
      fuzz::RandomizeRecord(records[n], random);
      texts[n] = vc::WriteSetup(records[n], 0, {});
    }
    EXPECT_TRUE(Save(0));
  }
  bool SaveAt(const std::string& target, std::size_t which) {
    const support::TestDesk desk(folder.Path());
    vc::SystemSettings record = records[which];
    return vc::modSettings(record, files, desk, support::Unheard<vc::SetupHooks>()).SaveSetupFile(target, 0);
  }
  bool Save(std::size_t which) { return SaveAt(path, which); }
  bool IsWhole() const {
    const std::string now = Content(path);
    return now == texts[0] || now == texts[1];
  }
  bool Loads() {
    const support::TestDesk desk(folder.Path());
    vc::SystemSettings record;
    std::int16_t flag = vc::TakeConnection;
    return vc::modSettings(record, files, desk, support::Unheard<vc::SetupHooks>()).LoadSetupFile(path, flag);
  }
  std::size_t Count() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.Path()), {}));
  }
};

// Kills a saver at random moments, so many times, and more often where the machine is so busy that few of
// them hit a save; nothing but one of the two files may ever stand.
template <typename Saves>
void KillOften(FilesTest& test, std::size_t rounds, Saves save) {
  std::mt19937 random{5};
  std::size_t leftovers = 0;
  std::array<std::size_t, 2> seen{};
  const std::size_t wanted = rounds / 25, most = 10 * rounds;
  for (std::size_t round = 0; round < rounds || (leftovers <= wanted && round < most); ++round) {
    {
      Child saver([&save, round] {
        for (std::size_t which = round % 2; save(which); which = 1 - which) {
        }
        return false;
      });
      usleep(static_cast<useconds_t>(random() % 4000));
      EXPECT_TRUE(saver.Running());
    }
    ASSERT_TRUE(test.IsWhole()) << round;
    ++seen[Content(test.path) == test.texts[0] ? 0 : 1];
    leftovers += test.Count() - 1;
    test.files.RemoveLeftovers(test.folder.Path());
    ASSERT_EQ(test.Count(), 1U) << round;
  }
  EXPECT_GT(leftovers, wanted);  // it was killed within the save
  EXPECT_GT(std::min(seen[0], seen[1]), rounds / 100);
}

TEST_F(FilesTest, KilledWhileItSavesFiveHundredTimesItLeavesTheOldOrTheNewFile) {
  KillOften(*this, 500, [this](std::size_t which) { return Save(which); });
  EXPECT_TRUE(Loads());
}

TEST_F(FilesTest, KilledWhileItStoresAFilterItLeavesTheOldOrTheNewFile) {
  const auto store = [this](std::size_t which) {
    return vc::WriteIndivFile(files, path, vc::IndivFileType::SpectralInverse, 1, records[which], {});
  };
  for (const std::size_t which : {1U, 0U}) {
    ASSERT_TRUE(store(which));
    texts[which] = Content(path);
  }
  KillOften(*this, 200, store);
}

TEST_F(FilesTest, SaversReadersAndCleanersMeetAndEachSaveIsWhole) {
  const auto saveOften = [this](std::size_t which) {
    for (int n = 0; n < 200; ++n) {
      if (!Save(which)) return false;
    }
    return true;
  };
  std::array<Child, 2> savers{Child([&] { return saveOften(0); }), Child([&] { return saveOften(1); })};
  Child cleaner([this] {
    for (;;) files.RemoveLeftovers(folder.Path());
    return false;
  });
  while (savers[0].Running() || savers[1].Running()) ASSERT_TRUE(IsWhole());
  for (Child& saver : savers) EXPECT_TRUE(saver.Await());
  cleaner.Kill();
  EXPECT_EQ(Count(), 1U);
}

TEST_F(FilesTest, AFullDiskLeavesTheOldFileAndNothingElse) {
  Child limited([this] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit most{texts[1].size() / 2, texts[1].size() / 2};
    return setrlimit(RLIMIT_FSIZE, &most) == 0 && !Save(1);
  });
  EXPECT_TRUE(limited.Await());
  EXPECT_EQ(Content(path), texts[0]);
  EXPECT_EQ(Count(), 1U);
}

TEST_F(FilesTest, ALinkStaysOneAndItsEndIsReplaced) {
  const std::string away = folder.Path() + "/away", link = folder.Path() + "/link",
                    two = folder.Path() + "/two";
  fs::create_directory(away);
  fs::create_symlink("away/Real.nrv", link);  // leads to nothing yet
  fs::create_symlink(link, two);
  for (const std::size_t which : {0U, 1U}) {
    ASSERT_TRUE(SaveAt(two, which));
    EXPECT_TRUE(fs::is_symlink(two) && fs::is_symlink(link));
    EXPECT_EQ(Content(away + "/Real.nrv"), texts[which]);
  }
  fs::create_symlink("ring", folder.Path() + "/ring");
  EXPECT_FALSE(SaveAt(folder.Path() + "/ring", 0));
  EXPECT_TRUE(fs::is_symlink(folder.Path() + "/ring"));
}

TEST_F(FilesTest, KeepsPermissionsAndOwnerOfTheOldFile) {
  const bool root = geteuid() == 0;
  ASSERT_EQ(chmod(path.c_str(), 0660), 0);
  ASSERT_TRUE(!root || chown(path.c_str(), Nobody, Nobody) == 0);
  ASSERT_TRUE(Save(1));
  struct stat facts {};
  ASSERT_EQ(stat(path.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0660U);
  EXPECT_EQ(facts.st_uid, root ? Nobody : geteuid());
}

TEST_F(FilesTest, WhatMayNotBeWrittenIsLeftAlone) {
  const std::string shut = folder.Path() + "/shut";
  fs::create_directory(shut);
  Put(shut + "/Mine.nrv", "mine");
  ASSERT_EQ(chmod(path.c_str(), 0444) + chmod(shut.c_str(), 0555) + chmod(folder.Path().c_str(), 0777), 0);
  Child user([&] {
    if (geteuid() == 0 && setuid(Nobody) != 0) return false;
    bool held = true;
    return SaveAt(folder.Path() + "/free.nrv", 1) && !Save(1) && !SaveAt(shut + "/Mine.nrv", 1) &&
           !SaveAt(shut + "/New.nrv", 1) && !files.Lock(shut + "/lock", held) && !held;
  });
  EXPECT_TRUE(user.Await());
  EXPECT_EQ(Content(path), texts[0]);
  EXPECT_EQ(Content(shut + "/Mine.nrv"), "mine");
  EXPECT_EQ(Count(), 3U);
  chmod(shut.c_str(), 0755);
}

TEST_F(FilesTest, ALockHoldsUntilItsProcessIsDead) {
  const std::string lock = folder.Path() + "/lock", ready = folder.Path() + "/ready";
  bool held = false;
  Child holder([&] {
    bool before = true;
    const auto mine = files.Lock(lock, before);
    if (mine && !before) Put(ready, "");
    return pause() == 0;
  });
  for (int n = 0; n < 1000 && !fs::exists(ready); ++n) usleep(1000);
  EXPECT_FALSE(files.Lock(lock, held));
  EXPECT_TRUE(held);
  holder.Kill();
  EXPECT_TRUE(files.Lock(lock, held));
  EXPECT_FALSE(held);
  EXPECT_TRUE(files.Lock(lock, held)) << "given back with its object";
}

// A terminal's far end hears when somebody opens and closes the near one.
TEST_F(FilesTest, LooksAtNoDeviceToSayThatItIsNoFile) {
  const int farEnd = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_TRUE(grantpt(farEnd) == 0 && unlockpt(farEnd) == 0);
  const std::string pipe = folder.Path() + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::string bytes;
  for (const std::string& bad : {std::string(ptsname(farEnd)), pipe, std::string("/dev/zero"), folder.Path()})
    EXPECT_FALSE(files.ReadStart(bad, 100, bytes)) << bad;
  pollfd heard{farEnd, POLLIN, 0};
  EXPECT_EQ(poll(&heard, 1, 0), 0);
  close(farEnd);
  EXPECT_TRUE(files.ReadStart(path, 8, bytes));
  EXPECT_EQ(bytes, "\"VELTRA\"");
  EXPECT_TRUE(files.ReadStart(path, texts[0].size() + 1, bytes));
  EXPECT_EQ(bytes, texts[0]);
}

TEST_F(FilesTest, ListsWhatIsSeenInOrderAndFollowsLinksToFolders) {
  fs::create_directory(folder.Path() + "/b");
  fs::create_symlink("b", folder.Path() + "/a");
  fs::create_symlink("nowhere", folder.Path() + "/c");
  Put(folder.Path() + "/.hidden", "");
  const std::vector<vc::FolderEntry> expected{{"One.nrv", false}, {"a", true}, {"b", true}, {"c", false}};
  EXPECT_EQ(files.List(folder.Path()), expected);
  EXPECT_EQ(files.List(folder.Path() + "/c"), std::nullopt);
  EXPECT_EQ(files.List(path), std::nullopt);
}

}  // namespace
}  // namespace host
