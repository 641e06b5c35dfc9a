// What a report says, setup by setup: commands of the console (tests/report/setups) against texts that have
// been read by eye (tests/report/expected). With the variable VELTRANA_WRITE_REPORTS set, a run writes the
// texts anew and fails: read what has changed before it is kept.
#include <algorithm>
#include <array>
#include <cstdlib>

#include <gmock/gmock.h>

#include "PanelOpening.h"
#include "ReportSetups.h"

namespace vc {
namespace {

using support::ReportOf;

std::string WithoutReturns(std::string text) {
  std::erase(text, '\r');
  return text;
}

// Each line with the end that it has in a report.
std::string WithReturns(const std::string& lines) {
  std::string text;
  for (const char byte : lines) text += byte == '\n' ? "\r\n" : std::string(1, byte);
  return text;
}

class ReportTexts : public testing::TestWithParam<std::string> {};

TEST_P(ReportTexts, AreAsTheyHaveBeenRead) {
  support::ConsoleRun run;
  const std::string report = support::ReportOfSetup(run, GetParam());
  const std::string expected = REPORT_TEXTS "/expected/" + GetParam() + ".txt";
  if (std::getenv("VELTRANA_WRITE_REPORTS") != nullptr) {
    support::Put(expected, WithoutReturns(report));
    FAIL() << expected << " has been written anew";
  }
  EXPECT_EQ(report, WithReturns(support::Content(expected)));
}

INSTANTIATE_TEST_SUITE_P(Setups, ReportTexts, testing::ValuesIn(support::SetupNames()),
                         [](const auto& setup) {
                           std::string name = setup.param;
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

TEST(Report, KnowsAllEndsOfADescriptionsLines) {
  support::PanelRun run;
  run.record.setupDescription = "one\ntwo\n\nthree";
  const std::string report = ReportOf(run.session);
  for (const char* same : {"one\r\ntwo\r\n\r\nthree", "one\rtwo\r\rthree\r", "one\ntwo\r\n\nthree\r\n"}) {
    run.record.setupDescription = same;
    EXPECT_EQ(ReportOf(run.session), report);
  }
}

// What edits no stage and no block of the chain.
constexpr std::array<std::string_view, 1> SaysNothing{"AuxCtl"};  // the memories of the unit

TEST(Report, HasLinesOfEveryPanel) {
  support::PanelRun run;
  for (const PanelRow& row : PanelHost::Rows()) {
    const bool silent = std::ranges::find(SaysNothing, row.name) != SaysNothing.end();
    EXPECT_EQ(PanelHost::Ask(row.name, support::LoneContext(run, "")).empty(), silent) << row.name;
  }
}

TEST(Report, KnowsNothingOfAKindThatIsNone) {
  support::PanelRun run;
  run.record.filterType[1] = 99;
  run.session.master.ConfigMasterControl();
  EXPECT_THAT(ReportOf(run.session), testing::HasSubstr("                    Mode: \r\n"
                                                        "                    No Data Available.\r\n"));
  EXPECT_EQ(run.record.filterType[1], 99);
}

}  // namespace
}  // namespace vc
