// Two setups, of which one is heard: switches and copies, seen in the record, on the panels and in the unit.
#include "PanelRun.h"
#include "model/Kinds.h"
#include "model/Settings.h"

namespace vc {
namespace {

using support::PanelRun;

struct Pair : PanelRun {
  explicit Pair(std::int16_t configMode = 0) : PanelRun(configMode) {}
  std::string Heard() const { return SetupPair::NameOf(session.pair.Heard()); }
  std::string Title() const { return session.master.form.Caption(); }
  std::int16_t Unit(int number) const {
    return static_cast<std::int16_t>(
        unit.Now().HeldRegisters().values[static_cast<std::size_t>(number)].value_or(-1));
  }
  // What the unit is set to, without what it remembers of a stage that is no more.
  std::string Holds() const {
    std::string dump = unit.Dump();
    return dump.substr(0, dump.find("image 1 "));
  }
};

TEST(SetupPair, SwitchesToAndFroWithAllThatShowsIt) {
  Pair run;
  run.Edit("ihpfCutoff", "330");
  run.Press("Ctrl+B");  // B begins as A is
  EXPECT_EQ(run.Heard() + std::to_string(run.record.ihpfCutoff), "B330");
  EXPECT_EQ(run.Title(), "*Veltrana (Setup B) Master Control Panel");
  EXPECT_EQ(run.Get("lblSetupHeard") + run.Get("optSetup(0)") + run.Get("optSetup(1)"), "Setup B is heard01");
  EXPECT_EQ(CoreOf(run.Find("mnuSwitchSetup")).Caption(), "&Switch to Setup A");
  EXPECT_EQ(CoreOf(run.Find("btnCopySetup")).Caption(), "Copy to A");
  run.Edit("ihpfCutoff", "440");
  run.Settle();
  EXPECT_EQ(run.Unit(17), 440);
  EXPECT_EQ(run.Click("optSetup(0)"), "");
  run.Settle();
  EXPECT_EQ(run.Heard() + std::to_string(run.record.ihpfCutoff), "A330");
  EXPECT_EQ(run.Title(), "*Veltrana Master Control Panel");
  EXPECT_EQ(run.Unit(17), 330);
  EXPECT_EQ(run.Click("optSetup(0)"), "");  // it is heard
  EXPECT_EQ(run.Heard(), "A");
  EXPECT_EQ(run.Click("mnuSwitchSetup"), "");
  EXPECT_EQ(run.Heard() + std::to_string(run.record.ihpfCutoff), "B440");
}

TEST(SetupPair, UndoGoesBackOverASwitchIntoTheOther) {
  Pair run;
  run.Edit("ihpfCutoff", "330");
  run.Press("Ctrl+B");
  run.Edit("ihpfCutoff", "440");
  run.Press("Ctrl+B");
  run.Edit("ihpfCutoff", "500");
  const auto now = [&run] {
    const SystemSettings* other = run.session.pair.OtherRecord();
    return run.Heard() + std::to_string(run.record.ihpfCutoff) + " " +
           (other == nullptr ? "none" : std::to_string(other->ihpfCutoff));
  };
  const std::vector<std::string> way{"A500 440", "A330 440",  "B440 330",
                                     "B330 330", "A330 none", "A200 none"};
  for (std::size_t step = 0; step < way.size(); ++step) {
    if (step > 0) run.Press("Ctrl+Z");
    EXPECT_EQ(now(), way[step]);
  }
  for (std::size_t step = way.size() - 1; step-- > 0;) {
    run.Press("Ctrl+Y");
    EXPECT_EQ(now(), way[step]);
  }
  run.Settle();
  EXPECT_EQ(run.Unit(17), 500);
}

// However often the operator goes to and fro, the edits before stay within reach.
TEST(SetupPair, GoingToAndFroIsOneStep) {
  Pair run;
  run.Edit("ihpfCutoff", "330");
  run.Press("Ctrl+B");
  run.Edit("ohpfCutoff", "440");
  for (int n = 0; n < 250; ++n) run.Press("Ctrl+B");
  EXPECT_EQ(run.Heard(), "B");
  EXPECT_EQ(run.session.history.UndoTitle(), "ohpfCutoff");
  EXPECT_EQ(run.session.history.RedoTitle(), "Switch to A");
  for (int n = 0; n < 3; ++n) run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.ihpfCutoff, 200);
}

TEST(SetupPair, ACopyIsTakenBackWhole) {
  Pair run;
  run.Press("Ctrl+B");
  run.Edit("ihpfCutoff", "440");
  run.Press("Ctrl+B");
  run.Edit("ihpfCutoff", "330");
  EXPECT_EQ(run.Click("btnCopySetup"), "");  // the desk says No
  EXPECT_EQ(run.test.desk.boxes.back().title, "Copy Setup");
  EXPECT_EQ(run.session.pair.OtherRecord()->ihpfCutoff, 440);
  run.test.desk.answers = {Answer::Yes};
  EXPECT_EQ(run.Click("mnuCopySetup"), "");
  EXPECT_EQ(run.session.pair.OtherRecord()->ihpfCutoff, 330);
  EXPECT_EQ(run.session.history.UndoTitle(), "Copy A to B");
  const auto boxes = run.test.desk.boxes.size();
  EXPECT_EQ(run.Click("mnuCopySetup"), "");  // they are alike
  EXPECT_EQ(run.session.history.UndoTitle(), "Copy A to B");
  EXPECT_EQ(run.test.desk.boxes.size(), boxes);
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Heard() + std::to_string(run.record.ihpfCutoff), "B330");
  run.Press("Ctrl+Z");
  run.Press("Ctrl+Z");
  run.Press("Ctrl+B");
  EXPECT_EQ(run.record.ihpfCutoff, 440);
}

TEST(SetupPair, TheUnitGetsTheDifference) {
  Pair run;
  run.Edit("numFilters", "3");
  run.Edit("filterType", std::to_string(FilterKind::HiResGraphic), 2);
  run.Edit("hiResCurve", "-20", 2, 100);
  run.Settle();
  run.Press("Ctrl+B");
  run.Settle();
  run.Edit("ihpfCutoff", "440");
  run.Settle();
  run.Sent();
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(run.Sent(), "17/200 ");
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(run.Sent(), "17/440 ");
  run.Edit("hiResCurve", "-30", 2, 100);
  run.Settle();
  run.Sent();
  run.Press("Ctrl+B");
  run.Settle();
  const std::string there = run.Sent();
  EXPECT_NE(there.find("#"), std::string::npos);
  EXPECT_EQ(there.find("85/"), std::string::npos);
}

}  // namespace
}  // namespace vc
