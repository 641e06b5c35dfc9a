// A file handed from one program to another, where the other one may be gone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "TempFolder.h"
#include "host/Handover.h"

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Handing : testing::Test {
  support::TempFolder folder;
  std::string pipe = folder.Path() + "/veltrana.open";
  Handover giver{folder.Path()};
};

TEST_F(Handing, WhoListensTakesWhatIsGivenAndTheDeadBlockNobody) {
  EXPECT_FALSE(giver.Give("/one.nrv"));
  {
    Handover taker(folder.Path());
    ASSERT_TRUE(taker.Listen());
    EXPECT_THAT(taker.Take(), IsEmpty());
    EXPECT_TRUE(giver.Give("/one\n\xFF.nrv"));
    EXPECT_TRUE(Handover(folder.Path()).Give("/two.nrv"));
    EXPECT_THAT(taker.Take(), ElementsAre("/one\n\xFF.nrv", "/two.nrv"));
    EXPECT_FALSE(giver.Give("/" + std::string(5000, 'x')));
    EXPECT_TRUE(giver.Give("/left.nrv"));
  }
  EXPECT_FALSE(giver.Give("/three.nrv"));  // the pipe is there still
  Handover next(folder.Path());
  ASSERT_TRUE(next.Listen());
  EXPECT_THAT(next.Take(), IsEmpty());
}

TEST_F(Handing, AFullPipeAndWhatIsNoPipeAreLeftAlone) {
  {
    Handover taker(folder.Path());
    ASSERT_TRUE(taker.Listen());
    int given = 0;
    while (given < 1000000 && giver.Give("/one.nrv")) ++given;
    EXPECT_EQ(taker.Take().size(), static_cast<std::size_t>(given));
  }
  std::filesystem::remove(pipe);
  support::Put(pipe, "mine");
  Handover taker(folder.Path());
  EXPECT_FALSE(taker.Listen());
  EXPECT_FALSE(giver.Give("/one.nrv"));
  EXPECT_EQ(support::Content(pipe), "mine");
}

}  // namespace
}  // namespace host
