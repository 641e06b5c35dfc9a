// Setups of which reports are made, as commands of the console (tests/report/setups), and what is expected of
// each (tests/report/expected).
#pragma once

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "ConsoleRun.h"
#include "TempFolder.h"

namespace support {

inline std::vector<std::string> SetupNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(REPORT_TEXTS "/setups")) {
    names.push_back(entry.path().stem().string());
  }
  std::ranges::sort(names);
  return names;
}

inline std::string ReportOf(const vc::Session& session) {
  std::string report = "what stood there before";
  EXPECT_EQ(session.report.GenerateReport(report), vc::modReport::Built);
  return report;
}

// The report of the setup of that name, which the session then has.
inline std::string ReportOfSetup(ConsoleRun& run, const std::string& name) {
  std::istringstream commands(Content(REPORT_TEXTS "/setups/" + name + ".txt"));
  for (std::string line; std::getline(commands, line);) {
    EXPECT_THAT(run.Say(line), testing::Not(testing::HasSubstr("error"))) << line;
  }
  return ReportOf(run.session);
}

}  // namespace support
