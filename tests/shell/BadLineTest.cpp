// Lines on which bytes get lost, doubled, changed or late: every link that can be kept is kept, and where one
// is given up the operator is told and a reconnect finds everything in order.
#include <gtest/gtest.h>

#include "DownloadFixture.h"
#include "unit/Options.h"

namespace vc {
namespace {

TEST(BadLine, BytesThatComeTwiceLoseNoLink) {
  constexpr int sessions = 200;
  int lost = 0;
  for (int seed = 1; seed <= sessions; ++seed) {
    unit::Options options;
    options.seed = static_cast<std::uint64_t>(seed);
    options.pace = true;
    options.faults.twice = 0.002;
    support::DownloadRun run{options};
    for (const char* mode : {"1", "2", "0"}) {
      run.Edit("configMode", mode);
      run.Settle();
    }
    if (!run.Connected() || !run.test.desk.boxes.empty()) ++lost;
  }
  EXPECT_EQ(lost, 0);
}

}  // namespace
}  // namespace vc
