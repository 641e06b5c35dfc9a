// Reports as PDF files of the toolkit, without a printer.
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestSession.h"
#include "desktop/QtPrinters.h"
#include "host/PdfPrinters.h"
#include "host/PosixFiles.h"
#include "report/ReportPages.h"

namespace desktop {
namespace {

using testing::HasSubstr;

int CountOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

struct PdfFiles : testing::Test {
  support::TempFolder folder;
  host::PosixFiles files;
  support::TestDesk desk{folder.Path()};
  std::string path = folder.Path() + "/report.pdf";
  vc::ReportPictures pictures{
      .shown = [](const vc::ReportPicture&) { return true; },
      .draw =
          [](vc::PrintDocument& document, const vc::ReportPicture&, int top) {
            const double y = top;
            const std::array<vc::Point, 3> frame{{{499, y}, {6901, y}, {6901, y + 2380}}};
            document.DrawPolyline(frame, vc::LineStyle::Solid);
            document.DrawPolyline(frame, vc::LineStyle::Dotted);
            return true;
          }};
  vc::ReportJob job{.text = "", .description = "Room 4 (left) \xC3\xA9", .printed = {2028, 2, 29, 12, 0, 0}};

  PdfFiles() {
    for (int line = 1; line <= 100; ++line) job.text += "line " + std::to_string(line) + "\r\n";
    job.text += "%SI1\r\nthe end\r\n";
  }
  bool Print(vc::Printers& printers) {
    const auto document = printers.Begin({vc::SaveAsPdf, "Setup Report", path});
    return document && vc::PrintReportText(*document, job, pictures, desk);
  }
  std::string Written() const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // Ninety letters of the head's rule fit across, and a page has the lines that the layout says.
  void ExpectRoom(vc::Printers& printers) {
    const auto document = printers.Begin({vc::SaveAsPdf, "", path});
    ASSERT_TRUE(document);
    document->SetFont({document->Fonts().front(), 9});
    EXPECT_LE(document->TextSize(std::string(90, '_')).width, document->Printable().width);
    EXPECT_EQ(document->TextSize("iiii").width, document->TextSize("WWWW").width);
    EXPECT_NEAR(document->TextSize("A").height, 205, 15);
    EXPECT_NEAR(document->Printable().height, 15400, 20);
  }
};

TEST_F(PdfFiles, OfTheToolkitAreWholeOrNotThere) {
  QtPrinters printers(files);
  EXPECT_EQ(printers.Names().back(), vc::SaveAsPdf);
  EXPECT_THAT(printers.Names(), testing::Contains(printers.Preferred()));
  EXPECT_FALSE(printers.Begin({"No such printer", "", path}));
  EXPECT_FALSE(printers.Begin({vc::SaveAsPdf, "", folder.Path() + "/none/report.pdf"}));
  ExpectRoom(printers);  // given up
  EXPECT_EQ(Written(), "");
  ASSERT_TRUE(Print(printers));
  const std::string pdf = Written();
  EXPECT_THAT(pdf, testing::StartsWith("%PDF-1."));
  EXPECT_EQ(CountOf(pdf, "/Type /Page\n"), 2);
}

TEST_F(PdfFiles, OfTheConsoleSayTheSame) {
  host::PdfPrinters printers(files, [](const vc::PrintJob&, int) {});
  EXPECT_FALSE(printers.Begin({"Office", "", path}));
  ExpectRoom(printers);
  EXPECT_EQ(Written(), "");
  ASSERT_TRUE(Print(printers));
  const std::string pdf = Written();
  EXPECT_EQ(CountOf(pdf, "/Type /Page "), 2);
  EXPECT_THAT(pdf, HasSubstr("(Room 4 \\(left\\) \xE9 "));
  EXPECT_THAT(pdf, HasSubstr("Page 2 of 2)"));
  EXPECT_THAT(pdf, HasSubstr("60.95 "));  // 499 twips from the margin of 36 points
  // Every place in the table is that of its object.
  const auto table = static_cast<std::size_t>(std::stoul(pdf.substr(pdf.find("startxref\n") + 10)));
  ASSERT_EQ(pdf.compare(table, 5, "xref\n"), 0);
  for (std::size_t number = 1, row = pdf.find("65535 f \n") + 9; pdf.compare(row + 10, 3, " 00") == 0;
       ++number, row += 20) {
    const std::string head = std::to_string(number) + " 0 obj";
    EXPECT_EQ(pdf.substr(std::stoul(pdf.substr(row, 10)), head.size()), head);
  }
}

}  // namespace
}  // namespace desktop
