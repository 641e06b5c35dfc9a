#include "shell/Reports.h"

#include "persist/PrintFile.h"
#include "shell/Printouts.h"
#include "shell/Windows.h"

namespace vc {
namespace {

constexpr const char* ReportName = "Setup Report";

}  // namespace

void Reports::AskForPrinter() const { around.windows.Open("ChkPrinterForm"); }

void Reports::AskForFile(bool append) const {
  around.windows.Get<PrintFile>("PrintFile")
      .Take({.title = append ? "Append Report To File" : "Print Report To File",
             .name = ReportName,
             .type = {"Text", ".txt"},
             .append = append,
             .take = [this, append](const std::string& path) { return Write(path, append); }});
  around.windows.OpenOver("PrintFile", around.over);
}

bool Reports::Generate(std::string& report) const {
  const bool made = around.generate(report);
  if (!made) {
    around.desk.Box(box::Exclamation, "Error!",
                    "Error generating report.  There may not be enough free memory available. Close any open "
                    "applications and repeat the operation.  If this problem persists contact NRV.");
  }
  return made;
}

void Reports::Print(const std::string& printer, bool DoubleSpaced) const {
  ReportJob report{.text = "",
                   .description = around.settings.setupDescription,
                   .printed = around.clock.Wall(),
                   .DoubleSpaced = DoubleSpaced};
  if (!Generate(report.text)) return;
  const PrintDrawing drawing = [report, pictures = around.pictures(),
                                &desk = around.desk](PrintDocument& document) {
    return PrintReportText(document, report, pictures, desk);
  };
  const auto failed = [&desk = around.desk] {
    desk.Beep();
    desk.Box(box::Exclamation, "Unable to Print",
             "Printer not ready.  Please check printer and/or printer driver.");
  };
  around.printouts.Print({ReportName, drawing, failed}, {.printer = printer, .title = ReportName},
                         around.over);
}

bool Reports::Write(const std::string& path, bool append) const {
  const Answer single =
      around.desk.Box(box::ExclamationYesNoLast, "File Single/Double Space",
                      "Do you wish for your report to be single-spaced (Yes) or double-spaced (No)?");
  std::string report;
  if (!Generate(report)) return false;
  around.desk.SetHourglass(true);
  const bool written = WriteReportFile(around.files, report, path, single != Answer::Yes, append);
  around.desk.SetHourglass(false);
  if (!written) {
    around.desk.Box(box::Exclamation, "File Creation Error",
                    "Error writing to settings file, disk may be full.");
  }
  return written;
}

}  // namespace vc
