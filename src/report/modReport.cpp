#include "report/modReport.h"

#include <new>
#include <span>
#include <utility>

#include "report/ReportPages.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr int HeadIndent = 10, PartIndent = 15, DetailIndent = 20;
constexpr int Margin = 0;

class Hourglass {
 public:
  explicit Hourglass(const Wire<void(bool shown)>& wire) : show(wire) { show(true); }
  ~Hourglass() { show(false); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  const Wire<void(bool shown)>& show;
};

void AddLines(std::span<const ReportText> lines, std::string& report, int indent) {
  for (const ReportText& line : lines) {
    AddReportLine(line.text, report, line.margin ? Margin : indent + line.indent);
  }
}

void AddEmpty(std::string& report) { AddReportLine("", report, Margin); }

// A line ends with CR, LF or both; what stands behind the last end is a line if it is not empty.
void AddDescription(std::string_view description, std::string& report) {
  while (!description.empty()) {
    const std::size_t end = description.find_first_of("\r\n");
    AddReportLine(description.substr(0, end), report, PartIndent);
    if (end == std::string_view::npos) return;
    description.remove_prefix(description.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
  }
}

void AddBlock(const ReportBlock& block, std::string& report) {
  AddReportLine(block.title + ": " + (block.in ? "In" : "Out"), report, PartIndent);
  AddLines(block.lines, report, DetailIndent);
}

void AddStage(const ReportStage& stage, std::string& report) {
  AddEmpty(report);
  AddReportLine(stage.title + " Status: " + stage.family + (stage.active ? " Active" : " Inactive"), report,
                PartIndent);
  if (!stage.active) return;
  AddReportLine(stage.title + " Settings:", report, PartIndent);
  AddReportLine("Mode: " + stage.kind, report, DetailIndent);
  if (stage.lines.empty()) AddReportLine("No Data Available.", report, DetailIndent);
  AddLines(stage.lines, report, DetailIndent);
}

}  // namespace

void AddReportLine(std::string_view text, std::string& report, int indent) {
  report.append(static_cast<std::size_t>(indent), ' ').append(text).append("\r\n");
}

modReport::modReport(Clock& timeSource, ReportWires wired) : clock(timeSource), wires(std::move(wired)) {}

int modReport::GenerateReport(std::string& report) const {
  report.clear();
  try {
    const Hourglass hourglass(wires.hourglass);
    report = Whole();
    return Built;
  } catch (const Fault& fault) {
    return fault.number != 0 ? fault.number : Failed;
  } catch (const std::bad_alloc&) {
    return OutOfMemory;
  }
}

std::string modReport::Whole() const {
  std::string report;
  AddEmpty(report);
  for (const std::string& line : TitleLines(clock.Wall())) AddReportLine(line, report, HeadIndent);
  AddReportLine("Description:", report, HeadIndent);
  AddDescription(wires.description(), report);
  AddEmpty(report);
  AddReportLine("System Settings:", report, HeadIndent);
  AddLines(wires.systemSettings(), report, PartIndent);
  AddEmpty(report);
  AddReportLine("Input Processor:", report, HeadIndent);
  AddReportLine("Input Levels: ", report, PartIndent);
  AddLines(wires.inputLevels(), report, DetailIndent);
  AddBlock(wires.block("IHPFSetup"), report);
  AddBlock(wires.block("LimiterSetup"), report);
  AddEmpty(report);
  AddReportLine("DSP Processor: (follows below)", report, HeadIndent);
  AddEmpty(report);
  AddReportLine("Output Processor:", report, HeadIndent);
  AddEmpty(report);
  AddBlock(wires.block("OHPFSetup"), report);
  AddEmpty(report);
  AddBlock(wires.block("AGCSetup"), report);
  AddReportLine("%NP", report, Margin);
  for (const ReportStage& stage : wires.stages()) AddStage(stage, report);
  if (wires.analyzerShown()) AddReportLine("%SA", report, Margin);
  return report;
}

}  // namespace vc
