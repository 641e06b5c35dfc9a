
#include <gtest/gtest.h>

#include "PanelRun.h"

namespace {

using support::PanelRun;

TEST(ReportText, BeginsWithTheProgramAndTheDate) {
  const PanelRun run;
  std::string report = "what stood there before";
  EXPECT_EQ(run.session.report.GenerateReport(report), vc::modReport::Built);
  EXPECT_TRUE(report.starts_with(
      "\r\n          Veltrana Master Control Version 1.0\r\n          Setup Report for 2028-02-29 12:00:0"))
      << report;
  EXPECT_FALSE(run.test.desk.hourglass);
}

}  // namespace
