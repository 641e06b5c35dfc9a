// The recent files and the open one over runs, in a file that may be hurt in any way.
#include "SetupFixture.h"
#include "persist/SetupTrail.h"

namespace vc {
namespace {

struct Trails : support::SetupFixture {
  std::string file = folder.Path() + "/veltrana.recent";
  SetupTrail trail{files, file};

  SetupTrail Again() {
    SetupTrail other(files, file);
    other.Load();
    return other;
  }
};

TEST_F(Trails, TheLastEightStayWithTheLatestInFront) {
  for (int n = 1; n <= 10; ++n) EXPECT_TRUE(trail.Used("/tapes/" + std::to_string(n)));
  EXPECT_TRUE(trail.Used("/tapes/5"));
  EXPECT_TRUE(trail.KeepOpen("/tapes/5"));
  const std::vector<std::string> expected{"/tapes/5", "/tapes/10", "/tapes/9", "/tapes/8",
                                          "/tapes/7", "/tapes/6",  "/tapes/4", "/tapes/3"};
  EXPECT_EQ(Again().Recent(), expected);
  EXPECT_EQ(Again().Open(), "/tapes/5");
  EXPECT_TRUE(trail.Drop("/tapes/10"));
  EXPECT_EQ(Again().Recent().size(), 7U);
  EXPECT_EQ(Again().Recent()[1], "/tapes/9");
}

TEST_F(Trails, NamesAreBytesAndTwoProgramsShareTheList) {
  const std::string odd = "/a\\n\nb\\\\\r\t\xFF & \"c\".nrv";
  EXPECT_TRUE(trail.Used(odd));
  EXPECT_TRUE(trail.KeepOpen(odd));
  SetupTrail other = Again();
  EXPECT_EQ(other.Recent(), std::vector{odd});
  EXPECT_TRUE(trail.Used("/one"));
  EXPECT_TRUE(other.Used("/two"));
  EXPECT_EQ(Again().Recent(), (std::vector<std::string>{"/two", "/one", odd}));
  EXPECT_EQ(Again().Open(), odd);
}

TEST_F(Trails, ADamagedFileIsAnEmptyList) {
  trail.Used("/one");
  trail.Used("/two");
  const std::string good = support::Content(file);
  for (const std::string& bad :
       {std::string(), std::string("nonsense"), good.substr(0, good.size() - 1), "x" + good,
        good + "relative\n", good + "/bad\\escape\n", good + "\n", good + std::string("/zero\0\n", 7),
        good + "/end\\\n", std::string(1000, '\xFF'), std::string(5 << 20, '\n')}) {
    support::Put(file, bad);
    SetupTrail read = Again();
    EXPECT_TRUE(read.Recent().empty() && read.Open().empty()) << bad.substr(0, 100);
  }
  std::filesystem::remove(file);
  EXPECT_TRUE(Again().Recent().empty());
  std::filesystem::create_directory(file);
  SetupTrail blocked = Again();
  EXPECT_FALSE(blocked.Used("/three"));
  EXPECT_EQ(blocked.Recent(), std::vector<std::string>{"/three"});  // for this run
}

TEST_F(Trails, AWriteThatFailsLeavesTheOldFile) {
  trail.Used("/one");
  const std::string before = support::Content(file);
  files.full = true;
  EXPECT_FALSE(trail.Used("/two"));
  EXPECT_EQ(support::Content(file), before);
  files.full = false;
  files.failAt = files.operations + 1;  // what cannot be read for once is not forgotten
  EXPECT_TRUE(trail.Used("/three"));
  EXPECT_EQ(Again().Recent(), (std::vector<std::string>{"/three", "/two", "/one"}));
}

}  // namespace
}  // namespace vc
