// The setup report from the menus to the paper and into files, worked as the operator does.
#include <cmath>
#include <filesystem>

#include <gmock/gmock.h>

#include "PanelRun.h"
#include "model/Kinds.h"

namespace vc {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

struct PrintedReports : testing::Test, support::PanelRun {
  const std::string folder = test.folder.Path() + "/reports";
  support::RecordingPrinters& printers = test.printers;
  std::vector<support::ShownBox>& boxes = test.desk.boxes;

  PrintedReports() {
    fs::create_directory(folder);
    Edit("workingFolder", folder);
    record.setupDescription = "Room 4\r\nthe door bangs";
    boxes.clear();
  }
  void PrintOn(const std::string& printer) {
    EXPECT_EQ(Click("mnuPrintReport"), "");
    EXPECT_EQ(Top().name, "ChkPrinterForm");
    EXPECT_EQ(Set("cmbPrinters", printer), "");
    EXPECT_EQ(Click("btnOK"), "");
  }
  void Store(const std::string& menu, const std::string& name, Answer single) {
    EXPECT_EQ(Click(menu), "");
    EXPECT_EQ(Type("txtFileName", name), "");
    test.desk.answers.push_back(single);
    EXPECT_EQ(Click("btnOK"), "");
  }
  std::string Read(const std::string& name) const { return support::Content(folder + "/" + name); }
  std::string LastBox() const { return boxes.empty() ? "" : boxes.back().title + ": " + boxes.back().text; }
};

TEST_F(PrintedReports, GoOverThePreviewOntoTheChosenPrinter) {
  printers.names = {"Attic", "Office", SaveAsPdf};
  printers.preferred = "Office";
  EXPECT_EQ(Click("mnuPrintReport"), "");
  EXPECT_EQ(Get("cmbPrinters"), "Office");
  EXPECT_EQ(Get("optSingleSpaced"), "1");
  EXPECT_EQ(Set("optDoubleSpaced", "1"), "");
  EXPECT_EQ(Get("optSingleSpaced"), "0");
  Press("Escape");
  EXPECT_TRUE(printers.previews.empty());
  PrintOn("Attic");
  EXPECT_EQ(Top().name, "MasterControl");
  ASSERT_EQ(printers.printouts.size(), 1U);
  EXPECT_EQ(printers.printouts[0].job.printer, "Attic");
  EXPECT_EQ(printers.printouts[0].job.title, "Setup Report");
  EXPECT_TRUE(printers.printouts[0].ended);
  const std::string text = printers.printouts[0].Text();
  EXPECT_EQ(printers.previews.at(0).Text(), text);
  EXPECT_THAT(text, HasSubstr("\n               the door bangs\n"));
  EXPECT_THAT(text, HasSubstr("Page 2 of " + std::to_string(printers.printouts[0].pages.size()) + "\n"));

  EXPECT_EQ(Click("mnuPrintReport"), "");  // what was chosen stays
  EXPECT_EQ(Get("cmbPrinters") + Get("optDoubleSpaced"), "Attic1");
  EXPECT_EQ(Set("optSingleSpaced", "1"), "");
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_LT(printers.printouts.at(1).pages.size(), printers.printouts[0].pages.size());
  EXPECT_TRUE(boxes.empty());
}

TEST_F(PrintedReports, AskForTheNameOfAPdfFileAndPrintWhatWasSetBefore) {
  PrintOn(SaveAsPdf);
  ASSERT_EQ(Top().name, "PrintFile");
  EXPECT_EQ(Top().Caption() + Get("txtFileName"), "Save as PDFSetup Report 1.pdf");
  EXPECT_EQ(Click("btnCancel"), "");
  EXPECT_TRUE(printers.previews.empty());
  PrintOn(SaveAsPdf);
  record.setupDescription = "Another room";
  EXPECT_EQ(Type("txtFileName", "mine", true), "");
  ASSERT_EQ(printers.printouts.size(), 1U);
  EXPECT_EQ(printers.printouts[0].job.file, folder + "/mine.pdf");
  EXPECT_THAT(printers.printouts[0].Text(), HasSubstr("Room 4"));
  printers.wanted = false;  // whoever has seen enough hears nothing more
  PrintOn("Office");
  EXPECT_EQ(printers.previews.size(), 2U);
  EXPECT_EQ(printers.printouts.size(), 1U);
  EXPECT_TRUE(boxes.empty());
  EXPECT_FALSE(test.desk.hourglass);
}

TEST_F(PrintedReports, TellWhyThereIsNoPaper) {
  const std::string notReady =
      "Unable to Print: Printer not ready.  Please check printer and/or printer driver.";
  printers.endFails = true;
  PrintOn("Office");
  ASSERT_EQ(LastBox(), notReady);
  EXPECT_EQ(boxes.back().code, box::Exclamation);
  EXPECT_EQ(test.desk.beeps, 1);
  EXPECT_TRUE(printers.printouts.empty());  // it does not come as far as that
  printers.endFails = false;
  EXPECT_EQ(Click("mnuPrintReport"), "");
  printers.names = {SaveAsPdf};  // the other one is switched off meanwhile
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_EQ(LastBox(), notReady);
  EXPECT_EQ(boxes.size(), 2U);
  EXPECT_FALSE(test.desk.hourglass);

  printers.names.clear();
  EXPECT_EQ(Click("mnuPrintReport"), "");
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_EQ(LastBox(), "No Printers: No Printers Available!");
  EXPECT_EQ(Top().name, "ChkPrinterForm");
  EXPECT_EQ(Click("btnCancel"), "");
}

TEST_F(PrintedReports, TellThatTheyCouldNotBeMade) {
  const Reports failing({.settings = record,
                         .clock = test.clock,
                         .desk = test.desk,
                         .files = test.files,
                         .windows = session.windows,
                         .printouts = session.printouts,
                         .over = session.master.form,
                         .generate = [](std::string&) { return false; },
                         .pictures = [] { return ReportPictures{}; }});
  failing.Print("Office", false);
  EXPECT_EQ(LastBox(),
            "Error!: Error generating report.  There may not be enough free memory available. Close any open "
            "applications and repeat the operation.  If this problem persists contact NRV.");
  failing.AskForFile(false);
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_EQ(boxes.back().title, "Error!");
  EXPECT_TRUE(fs::is_empty(folder));
  EXPECT_EQ(Top().name, "PrintFile");
}

TEST_F(PrintedReports, GoIntoFiles) {
  EXPECT_EQ(Click("mnuFileReport"), "");
  EXPECT_EQ(Top().Caption() + Get("txtFileName"), "Print Report To FileSetup Report 1.txt");
  EXPECT_EQ(Type("txtFileName", "nowhere/one"), "");
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_THAT(LastBox(), HasSubstr("There is no such folder."));
  EXPECT_EQ(Click("btnCancel"), "");

  Click("mnuDisconnect");  // none of it needs the unit
  boxes.clear();
  Store("mnuFileReport", "one", Answer::Yes);
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].code, 308);
  EXPECT_EQ(LastBox(),
            "File Single/Double Space: Do you wish for your report to be single-spaced (Yes) or "
            "double-spaced (No)?");
  EXPECT_EQ(Top().name, "MasterControl");
  const std::string single = Read("one.txt");
  EXPECT_THAT(single, HasSubstr("Room 4\r\n               the door bangs\r\n\r\n"));
  EXPECT_THAT(single, testing::Not(HasSubstr("%NP")));

  test.desk.answers = {Answer::No};  // it is not to be overwritten
  Store("mnuFileReport", "one.txt", Answer::Yes);
  EXPECT_THAT(LastBox(), HasSubstr("already exists. Do you wish to overwrite?"));
  EXPECT_EQ(Click("btnCancel"), "");
  EXPECT_EQ(Click("mnuAppendFileReport"), "");  // to the one that was written last
  EXPECT_EQ(Top().Caption() + Get("txtFileName"), "Append Report To Fileone.txt");
  test.desk.answers = {Answer::Yes, Answer::No};
  EXPECT_EQ(Click("btnOK"), "");
  EXPECT_EQ(boxes.at(boxes.size() - 2).text, "one.txt already exists. Do you wish to append to it?");
  const std::string both = Read("one.txt");
  EXPECT_EQ(both.substr(0, single.size()), single);
  EXPECT_THAT(both, HasSubstr("Room 4\r\n\r\n               the door bangs\r\n\r\n\r\n\r\n"));
}

TEST_F(PrintedReports, LeaveWhatStoodThereOnADiskThatFails) {
  Store("mnuFileReport", "one", Answer::Yes);
  const std::string before = Read("one.txt");
  for (const char* menu : {"mnuFileReport", "mnuAppendFileReport"}) {
    EXPECT_EQ(Click(menu), "");
    EXPECT_EQ(Type("txtFileName", "one"), "");
    test.desk.answers = {Answer::Yes, Answer::Yes};
    test.files.operations = 0;
    test.files.failAt = 3;
    EXPECT_EQ(Click("btnOK"), "");
    test.files.failAt = 0;
    EXPECT_EQ(LastBox(), "File Creation Error: Error writing to settings file, disk may be full.");
    EXPECT_EQ(Read("one.txt"), before);
    EXPECT_EQ(Top().name, "PrintFile");  // for another place
    EXPECT_EQ(Click("btnCancel"), "");
  }
}

TEST_F(PrintedReports, HaveTheGraphsOfTheStagesAndOfTheDisplayThatIsOpen) {
  printers.printable = {10460, 15400};
  Edit("numFilters", "3");
  for (const auto& [stage, kind] : {std::pair{1, FilterKind::HiResGraphic},
                                    {2, FilterKind::SpectralInverse},
                                    {3, FilterKind::OneChAdaptive}}) {
    Edit("filterType", std::to_string(kind), stage);
    Edit("filterActive", "1", stage);
  }
  Edit("eqType", std::to_string(EqKind::SpectralGraphic), 1);
  Edit("eqActive", "1", 1);
  Edit("specDisplayMode", "2");
  Settle();
  // The left edges of the frames, in their order.
  const auto frames = [this] {
    PrintOn("Office");
    std::string edges;
    for (const auto& page : printers.printouts.back().pages) {
      for (const auto& line : page.lines) {
        if (line.points.size() == 5) edges += std::to_string(std::lround(line.points.front().x)) + " ";
      }
    }
    return edges;
  };
  EXPECT_EQ(frames(), "499 499 499 ");
  EXPECT_EQ(Click("btnCoeffDisplay"), "");
  EXPECT_EQ(Set("cmbFilter", "Filter 3"), "");
  Settle();
  session.forms.Show(session.master.form);
  EXPECT_EQ(frames(), "499 499 10 499 ");
  session.displays.Show(display::Spectrum);
  Settle();
  session.forms.Show(session.master.form);
  EXPECT_EQ(frames(), "499 499 499 499 499 ");
  EXPECT_EQ(printers.printouts.back().pages.back().texts.at(4).text, "-10");
}

}  // namespace
}  // namespace vc
