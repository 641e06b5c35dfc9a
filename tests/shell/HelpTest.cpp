// F1 in any window, and the entries of the Help menu, lead to a page of the manual beside the program.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "PanelOpening.h"
#include "shell/Help.h"

namespace vc {
namespace {

// A program folder whose manual has these pages.
struct ManualBeside {
  ManualBeside(support::PanelRun& run, const std::vector<std::string>& pages) {
    run.test.desk.programFolder = folder.Path();
    for (const std::string& page : pages) {
      const std::filesystem::path path = std::filesystem::path(folder.Path()) / page;
      std::filesystem::create_directories(path.parent_path());
      std::ofstream(path) << "a page";
    }
  }
  support::TempFolder folder;
};

TEST(Help, F1OpensThePageOfTheWindowOnTop) {
  support::PanelRun run;
  const ManualBeside manual(
      run, {"manual/MasterControl.html", "manual/CtlHPF.html", "manual/SpecDisp.html", "manual/StoSet.html"});
  const auto expectPage = [&](const char* form) {
    ASSERT_EQ(run.Top().name, form);
    run.test.desk.opened.clear();
    run.Press("F1");
    EXPECT_THAT(run.test.desk.opened,
                testing::ElementsAre(manual.folder.Path() + "/manual/" + form + ".html"));
    EXPECT_EQ(run.Top().name, form) << "it stays as it is";
  };
  expectPage("MasterControl");
  support::OpenPanel(run, "CtlHPF");
  expectPage("CtlHPF");
  support::ClosePanels(run);
  run.Press("Alt+S");
  expectPage("SpecDisp");
  run.CloseTop();
  run.Click("mnuSave");
  expectPage("StoSet");
  EXPECT_TRUE(run.test.desk.boxes.empty());
}

TEST(Help, TheMenuOpensTheFrontPageAndTheFastStart) {
  support::PanelRun run;
  const ManualBeside manual(run, {"Veltrana Help.html", "manual/first-steps.html"});
  run.Click("mnuHelpContents");
  run.Click("mnuFastStart");
  EXPECT_THAT(run.test.desk.opened, testing::ElementsAre(manual.folder.Path() + "/Veltrana Help.html",
                                                         manual.folder.Path() + "/manual/first-steps.html"));
}

TEST(Help, SaysWhatIsMissing) {
  support::PanelRun run;
  const ManualBeside manual(run, {"Veltrana Help.html"});
  run.Press("F1");
  EXPECT_TRUE(run.test.desk.opened.empty());
  ASSERT_EQ(run.test.desk.boxes.size(), 1U);
  EXPECT_THAT(run.test.desk.boxes.back().text, testing::HasSubstr("not installed"));
  run.test.desk.canOpen = false;
  run.Click("mnuHelpContents");
  EXPECT_THAT(run.test.desk.boxes.back().text, testing::HasSubstr("no browser that could open"));
}

}  // namespace
}  // namespace vc
