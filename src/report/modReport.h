// The whole setup as a text: what the master panel and the panels of all stages in use show.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "panels/ReportLines.h"
#include "platform/Clock.h"
#include "text/Wire.h"

namespace vc {

// A block at the ends of the chain, as a report has it.
struct ReportBlock {
  std::string title;  // the caption of its frame
  bool in;
  std::vector<ReportText> lines;
};

// A stage of the chain that is in use.
struct ReportStage {
  std::string title;   // the caption of its frame
  std::string family;  // "Filter", in its status line
  bool active;
  std::string kind;
  std::vector<ReportText> lines;  // of one that is not active, none are asked for
};

// Where a report gets what it says. None of these may change anything.
struct ReportWires {
  Wire<void(bool shown)> hourglass;
  Wire<std::string()> description;
  Wire<std::vector<ReportText>()> systemSettings, inputLevels;
  Wire<ReportBlock(std::string_view panel)> block;  // by the form that sets it up
  Wire<std::vector<ReportStage>()> stages;          // those in use, as the signal goes through them
  Wire<bool()> analyzerShown;
};

struct modReport {
  static constexpr int Built = -1, Failed = 5, OutOfMemory = 7;

  modReport(Clock& timeSource, ReportWires wired);

  // Lines of text and of tokens (see ReportToken), each with CR and LF at its end. Built, or what has gone
  // wrong; report is then empty.
  int GenerateReport(std::string& report) const;

 private:
  std::string Whole() const;

  Clock& clock;
  const ReportWires wires;
};

// A line behind the others, so many spaces in.
void AddReportLine(std::string_view text, std::string& report, int indent);

}  // namespace vc
