// Lines on which bytes get lost, doubled, changed or late: every link that can be kept is kept, and where one
// is given up the operator is told and a reconnect finds everything in order.
#include <gtest/gtest.h>

#include "FaultyLine.h"
#include "TestSession.h"
#include "unit/Dump.h"

namespace vc {
namespace {

// One session; each connect with its full download meets another fault, and a unit that knows nothing yet.
struct FaultyDownload {
  support::FaultyLine line;
  support::TestSession test{line.End()};
  MasterMenus& menus = test.session.master.menus;
  std::string model;      // what the unit holds after a download without a fault
  std::size_t bytes = 0;  // of the connect and the download, in both directions
  int lost = 0, damaged = 0;

  FaultyDownload() {
    test.session.Start();
    test.session.periodic.EnableMainTimer(false);
    Connect();
    model = unit::DumpText(line.Now());
    bytes = line.passed;
  }

  void Connect(const std::optional<support::ByteFault>& fault = {}) {
    menus.mnuDisconnect.Click();
    line.PlugInAnother();
    line.fault = fault;
    menus.mnuConnect.Click();
    test.session.periodic.EnableMainTimer(false);
  }

  void Meet(const support::ByteFault& fault) {
    SCOPED_TRACE(testing::Message() << "kind " << static_cast<int>(fault.kind) << " at byte " << fault.place);
    test.desk.boxes.clear();
    const double start = test.clock.Seconds();
    Connect(fault);
    EXPECT_LT(test.clock.Seconds() - start, 60.0);
    const bool kept = test.session.device.comm.CommPortOpen;
    EXPECT_EQ(test.desk.boxes.size(), kept ? 0U : 1U);
    const bool whole = kept && unit::DumpText(line.Now()) == model;
    lost += kept ? 0 : 1;
    damaged += kept && !whole ? 1 : 0;
    if (whole) return;
    line.fault.reset();
    menus.mnuDisconnect.Click();
    menus.mnuConnect.Click();
    test.session.periodic.EnableMainTimer(false);
    EXPECT_EQ(unit::DumpText(line.Now()), model);
  }
};

TEST(BadLine, AnyFaultOfOneByteInAFullDownloadIsMadeGoodOrReported) {
  using Kind = support::ByteFault::Kind;
  FaultyDownload download;
  ASSERT_GT(download.bytes, 1500U);
  // Within a time-out, and beyond it.
  for (const auto& [kind, delay] : {std::pair{Kind::Lost, 0},
                                    {Kind::Doubled, 0},
                                    {Kind::Changed, 0},
                                    {Kind::Late, 300'000},
                                    {Kind::Late, 3'000'000}}) {
    for (std::size_t place = 0; place < download.bytes; ++place) {
      download.Meet({kind, place, delay});
      ASSERT_FALSE(testing::Test::HasFailure()) << static_cast<int>(kind) << " " << place;
    }
  }
  // For one byte no link needs to be given up, and nothing wrong stands unnoticed.
  EXPECT_EQ(download.lost, 0);
  EXPECT_EQ(download.damaged, 0);
}

}  // namespace
}  // namespace vc
