// ReportPages on pages of 20 lines, of which a graph takes 17, and in files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestSession.h"
#include "report/ReportPages.h"

namespace vc {
namespace {

struct ReportPages : testing::Test {
  support::RecordingPrinters printers;
  support::TempFolder folder;
  support::TestDesk desk{folder.Path()};
  support::FaultyFiles files;
  std::vector<std::string> drawn;  // "token stage@top" by page
  ReportPictures pictures{.shown = [](const ReportPicture& one) { return one.stage != 6; },
                          .draw =
                              [this](PrintDocument& document, const ReportPicture& one, int top) {
                                drawn.push_back(std::to_string(static_cast<int>(one.token)) + " " +
                                                std::to_string(one.stage) + "@" + std::to_string(top) +
                                                " on " + std::to_string(document.PageNumber()));
                                return one.stage != 5;
                              }};
  ReportJob job{.text = "", .description = "Room 4\r\nsecond line", .printed = {2028, 2, 9, 7, 5, 0}};

  ReportPages() { printers.printable.height = 22 * support::RecordingPrinters::LetterHeight; }

  bool Print(const std::string& text) {
    job.text = text;
    printers.printouts.clear();
    drawn.clear();
    const auto document = printers.Begin({.printer = "Office", .title = "Report"});
    const bool printed = PrintReportText(*document, job, pictures, desk);
    EXPECT_TRUE(!printed || Text(1).find(" of " + std::to_string(Pages())) != std::string::npos) << Text(1);
    return printed;
  }
  int Pages() const { return static_cast<int>(printers.printouts.back().pages.size()); }
  // Line by line, "3:text" with the number of the line.
  std::string Text(int page) const {
    std::string text;
    for (const auto& one : printers.printouts.back().pages.at(static_cast<std::size_t>(page) - 1).texts) {
      EXPECT_EQ(one.left, 0);
      text += std::to_string(one.top / support::RecordingPrinters::LetterHeight) + ":" + one.text + "\n";
    }
    return text;
  }
  static std::string Lines(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) text += "line " + std::to_string(i) + "\r\n";
    return text;
  }
};

TEST_F(ReportPages, StandUnderAHead) {
  ASSERT_TRUE(Print("one\r\n\r\n  two\r\n100 %NP\r\n%XY\r\n"));
  EXPECT_EQ(Text(1), "0:Room 4" + std::string(59, ' ') + "   Page 1 of 1\n1:Date Printed: 2028-02-09" +
                         std::string(41, ' ') + "   Initials:\n2:" + std::string(90, '_') +
                         "\n4:one\n6:  two\n7:100 %NP\n8:%XY\n");
  EXPECT_EQ(printers.printouts.back().fonts, (std::vector<PrintFont>{{.name = "Courier New", .points = 9}}));
  EXPECT_TRUE(printers.printouts.back().ended);

  printers.fonts = {"Plain", "Serif"};
  job.description = "\xC3\xA9" + std::string(69, 'x');
  job.DoubleSpaced = true;
  ASSERT_TRUE(Print("one\r\n\r\ntwo"));
  EXPECT_EQ(Text(1).substr(0, 82), "0:\xC3\xA9" + std::string(64, 'x') + "   Page 1 of 1");
  EXPECT_THAT(Text(1), testing::EndsWith("\n4:one\n8:two\n"));
  EXPECT_EQ(printers.printouts.back().fonts.front().name, "Plain");
}

TEST_F(ReportPages, BreakBehindTheLastLineThatFits) {
  ASSERT_TRUE(Print(Lines(16) + "%NP\r\nbehind\r\n"));
  EXPECT_EQ(Pages(), 2);
  EXPECT_THAT(Text(1), testing::HasSubstr("19:line 16\n"));
  EXPECT_THAT(Text(2), testing::HasSubstr("Page 2 of 2"));
  EXPECT_THAT(Text(2), testing::EndsWith("\n4:behind\n"));
  ASSERT_TRUE(Print(Lines(17)));  // one more than is counted on a page, and no empty page behind it
  EXPECT_THAT(Text(1), testing::EndsWith("\n20:line 17\n"));
  EXPECT_EQ(Pages(), 1);
  ASSERT_TRUE(Print(Lines(17) + "%NP\r\nbehind"));  // the page that is due has its header, and ends
  EXPECT_EQ(Pages(), 3);
  EXPECT_THAT(Text(2), testing::EndsWith("_\n"));
  ASSERT_TRUE(Print(Lines(18)));
  EXPECT_THAT(Text(2), testing::EndsWith("\n4:line 18\n"));
  job.DoubleSpaced = true;
  ASSERT_TRUE(Print(Lines(10)));
  EXPECT_THAT(Text(1), testing::EndsWith("\n20:line 9\n"));
  EXPECT_THAT(Text(2), testing::EndsWith("\n4:line 10\n"));
}

TEST_F(ReportPages, BreakWhatIsWiderThanThePage) {
  printers.printable.width = 12 * support::RecordingPrinters::LetterWidth + 50;
  ASSERT_TRUE(Print("twelve \xC3\xA9 so.\r\n  and a longer one here\r\n"));
  EXPECT_THAT(Text(1), testing::EndsWith("\n4:twelve \xC3\xA9 so.\n5:  and a long\n6:  er one her\n7:  e\n"));
}

TEST_F(ReportPages, PutPicturesWhereThereIsRoom) {
  printers.printable.height = 30 * support::RecordingPrinters::LetterHeight;  // 28 lines
  ASSERT_TRUE(Print("%SI1\r\none\r\n%SG2\r\n%CO6\r\n%SA\r\ntwo\r\n"));
  EXPECT_THAT(drawn, testing::ElementsAre("3 1@800 on 1", "4 2@800 on 2", "1 0@800 on 3"));
  EXPECT_THAT(Text(1), testing::EndsWith("\n21:one\n"));
  EXPECT_THAT(Text(4), testing::EndsWith("\n4:two\n"));
  EXPECT_EQ(Pages(), 4);
  ASSERT_TRUE(Print("%SA\r\n%CO6\r\n"));  // nothing stands above it, nothing follows
  EXPECT_THAT(drawn, testing::ElementsAre("1 0@800 on 1"));
  EXPECT_EQ(Pages(), 1);
  ASSERT_TRUE(Print(Lines(7) + "%EG1\r\n"));  // 11 lines and the graph's are all that a page has
  EXPECT_THAT(drawn, testing::ElementsAre("5 1@2200 on 1"));
  ASSERT_TRUE(Print(Lines(8) + "%EG1\r\n"));
  EXPECT_THAT(drawn, testing::ElementsAre("5 1@800 on 2"));
  printers.printable.height = 21 * support::RecordingPrinters::LetterHeight;  // too small a sheet for a graph
  ASSERT_TRUE(Print("%EG1\r\nbelow\r\n"));
  EXPECT_THAT(Text(2), testing::EndsWith("\n4:below\n"));
}

TEST_F(ReportPages, TellWhatFails) {
  EXPECT_FALSE(Print("%EG5\r\nmore\r\n"));
  EXPECT_THAT(Text(1), testing::Not(testing::HasSubstr("more")));
  EXPECT_FALSE(printers.printouts.back().ended);
  printers.failingPage = 2;
  EXPECT_FALSE(Print(Lines(18)));
  printers.failingPage = 0;
  printers.endFails = true;
  EXPECT_FALSE(Print("one\r\n"));
}

TEST_F(ReportPages, TellOfPaperThatCannotBeMeasured) {
  printers.letterHeight = 0;
  EXPECT_FALSE(Print("one\r\n"));
  ASSERT_EQ(desk.boxes.size(), 2U);
  EXPECT_EQ(desk.boxes[0].title + desk.boxes[0].text, "Error!CalculateLinesPerPage Error");
  EXPECT_EQ(desk.boxes[1].title + desk.boxes[1].text, "Error!CalculateLinesPerGraph Error");
}

TEST_F(ReportPages, GoIntoFilesWithoutPages) {
  const std::string path = folder.Path() + "/report.txt";
  const auto written = [&path] { return support::Content(path); };
  const std::string text = "one\r\n\r\n%NP\r\n%CO1\r\n%SA\r\n  %NP\r\n%SI\r\n%EG2";
  const std::string remark =
      "     (Graphics Display only available when printing\r\n"
      "      report directly from the Master Control Panel.)\r\n";
  ASSERT_TRUE(WriteReportFile(files, text, path, false, false));
  const std::string single = "one\r\n\r\n" + remark + "  %NP\r\n%SI\r\n" + remark;
  EXPECT_EQ(written(), single);
  ASSERT_TRUE(WriteReportFile(files, "two\r\n\r\nthree\r\n", path, true, true));
  const std::string both = single + "two\r\n\r\n\r\n\r\nthree\r\n\r\n";
  EXPECT_EQ(written(), both);
  for (const int failing : {1, 2, 3, 4, 5}) {  // reading what stands there, and each step of writing
    files.operations = 0;
    files.failAt = failing;
    EXPECT_FALSE(WriteReportFile(files, text, path, false, true)) << failing;
    EXPECT_EQ(written(), both) << failing;
  }
  files.failAt = 0;
  EXPECT_FALSE(WriteReportFile(files, text, folder.Path() + "/none/report.txt", false, true));
  ASSERT_TRUE(WriteReportFile(files, text, path, false, false));
  EXPECT_EQ(written(), single);
}

}  // namespace
}  // namespace vc
