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

// The table of a filter goes with its setup, finished or not.
TEST(SetupPair, TablesAndDraftsStayWithTheirSetup) {
  Pair run;
  run.Edit("filterType", std::to_string(FilterKind::MultipleNotch), 1);
  run.Edit("mnotchFreq", "1000", 1, 1);
  run.Settle();
  run.session.edits.Apply({{FindField("mnotchFreq"), 1, 1, 1500.0}}, {"Draft", "", EditState::Draft});
  run.Press("Ctrl+B");
  run.session.edits.Apply({{FindField("mnotchFreq"), 1, 1, 1700.0}}, {"Rows", "", EditState::Finished});
  run.Settle();
  const auto rows = [&run] {
    return std::to_string(run.record.mnotchFreq[1][1]) + " " + std::to_string(run.record.builtFreq[1][1]);
  };
  const std::string heldOfB = run.Holds();
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(rows(), "1500 1000");
  const std::string heldOfA = run.Holds();
  EXPECT_NE(heldOfA, heldOfB);
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(rows(), "1700 1700");
  EXPECT_TRUE(run.Holds() == heldOfB);
}

TEST(SetupPair, ATableThatIsNotFinishedIsNoneInTheUnit) {
  Pair run;
  run.Edit("filterType", std::to_string(FilterKind::MultipleNotch), 1);
  run.Settle();
  const std::string heldOfA = run.Holds();
  run.Press("Ctrl+B");
  run.Edit("mnotchFreq", "1000", 1, 1);
  run.Settle();
  EXPECT_FALSE(run.Holds() == heldOfA);
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_TRUE(run.Holds() == heldOfA);
}

TEST(SetupPair, AnotherConfigurationIsLaidOutAnew) {
  Pair run;
  run.Edit("numFilters", "5");
  run.Edit("ch1Taps", "2048", 1);
  run.Edit("hpfCutoff", "3000", 2);
  run.Settle();
  run.Press("Ctrl+B");
  run.Set("cmbBandwidth", "16 kHz");
  run.Set("cmbConfig", "Stereo Independent");
  run.Edit("hpfCutoff", "12000", 2);
  run.Settle();
  const std::string heldOfB = run.Holds();
  const SystemSettings ofB = run.record;
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(run.Get("cmbBandwidth") + run.Get("cmbConfig"), "3.2 kHzMono");
  EXPECT_EQ(run.record.numFilters * 10000 + run.record.ch1Taps[1], 52048);
  EXPECT_EQ(run.record.hpfCutoff[2], 3000);
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(run.record.hpfCutoff[2], 12000);
  EXPECT_EQ(run.record.sampleRate, ofB.sampleRate);
  EXPECT_EQ(run.record.numFilters, ofB.numFilters);
  EXPECT_TRUE(run.Holds() == heldOfB);
}

// What a fit takes is taken from the setup whose edit has asked for it, so that undo gives it back.
TEST(SetupPair, AFitThatWaitsBelongsToTheSetupThatIsLeft) {
  Pair run;
  run.Edit("numFilters", "5");
  run.Settle();
  run.Edit("ch1Taps", "2048", 1);
  run.Settle();
  run.Edit("ch1PredSpan", "8191", 1);
  run.Edit("ch1Taps", "1024", 1);
  run.Press("Ctrl+B");  // before the tick that fits it
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(run.record.ch1PredSpan[1], 4095);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.ch1Taps[1], 2048);
  EXPECT_EQ(run.record.ch1PredSpan[1], 8191);
}

TEST(SetupPair, AnOpenPanelShowsTheOtherOrGoes) {
  Pair run;
  run.OpenFilter(1, FilterKind::Highpass);
  run.Type("txtCutoff", "700");
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Top().Caption(), "Highpass (Filter 1) (Setup B)");
  std::get<TextBox*>(run.Find("txtCutoff"))->Type("900");  // and is not left
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Top().Caption() + run.Get("txtCutoff"), "Highpass (Filter 1)700");
  EXPECT_EQ(run.session.pair.OtherRecord()->hpfCutoff[1], 900);
  run.CloseTop();
  run.Set("cmbFilter(1)", "Lowpass");
  run.session.panels.OpenFilter(1);
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Top().name + std::to_string(run.record.hpfCutoff[1]), "MasterControl900");
}

TEST(SetupPair, WhatIsTypedOnTheMasterPanelIsTakenBefore) {
  Pair run;
  std::get<TextBox*>(run.Find("txtGain(0)"))->Type("-6");
  run.Press("Ctrl+B");
  EXPECT_EQ(run.session.pair.OtherRecord()->levelControl[1], 180);
}

TEST(SetupPair, WaitsForTheHandOnASlider) {
  Pair run;
  run.OpenFilter(1, FilterKind::Highpass);
  Slider& cutoff = *std::get<Slider*>(run.Find("sldrCutoff"));
  cutoff.Hold();
  cutoff.SetPosition(600);
  run.Press("Ctrl+B");
  run.test.loop.RunFor(500);
  EXPECT_EQ(run.Heard(), "A");
  cutoff.SetPosition(800);
  cutoff.Release();
  run.test.loop.RunFor(500);
  EXPECT_EQ(run.Heard(), "B");
  EXPECT_EQ(run.session.pair.OtherRecord()->hpfCutoff[1], 800);
  cutoff.Hold();
  run.Press("Ctrl+B");
  run.Press("Ctrl+B");  // once too often
  cutoff.Release();
  run.test.loop.RunFor(500);
  EXPECT_EQ(run.Heard(), "B");
}

TEST(SetupPair, WhatIsPutAsideOrLentStaysWithItsSetup) {
  Pair run;
  run.Edit("levelControl", "180", 1);
  run.Click("mnuLevelControls");
  run.Press("Ctrl+B");
  run.Click("mnuLevelControls");
  run.Edit("levelControl", "150", 1);
  run.Click("mnuLevelControls");
  run.Edit("levelControl", "200", 2);
  run.Edit("yellowSignal", "3");
  run.Edit("workingFolder", "/tapes");  // no setup's
  run.Press("Ctrl+B");
  run.Click("mnuLevelControls");
  EXPECT_EQ(std::to_string(run.record.levelControl[1]) + run.record.workingFolder, "180/tapes");
  run.OpenFilter(1, FilterKind::SpectralInverse);  // has the analyzer to itself
  EXPECT_FALSE(run.record.loans.empty());
  const SystemSettings own = OperatorsRecord(run.record);
  run.Press("Ctrl+B");
  EXPECT_EQ(run.session.pair.OtherRecord()->yellowSignal, own.yellowSignal);
  EXPECT_TRUE(run.session.pair.OtherRecord()->loans.empty());
  if (run.Top().name != "MasterControl") run.CloseTop();
  EXPECT_EQ(run.record.yellowSignal, 3);
  EXPECT_EQ(run.record.levelControl[2], 200);
  EXPECT_TRUE(run.record.loans.empty());
}

TEST(SetupPair, EachHasItsFileAndItsMark) {
  Pair run;
  const auto store = [&run](const char* name) {
    run.Click("mnuSave");
    run.Type("txtFileName", name);
    run.test.desk.answers = {Answer::Yes};
    EXPECT_EQ(run.Click("btnOK"), "");
  };
  run.Edit("hiResCurve", "-20", 1, 100);
  run.Set("cmbFilter(1)", "Hi-Res Graphic");
  run.Settle();
  store("Hall");
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Title(), "Veltrana (Setup B) Master Control Panel");  // Hall.nrv is the other one's
  run.Edit("hiResCurve", "-30", 1, 100);
  run.Settle();
  store("Street");
  EXPECT_EQ(run.Title(), "Street.nrv (Setup B) Master Control Panel - Veltrana");
  run.Edit("ihpfCutoff", "440");
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(run.Title(), "Hall.nrv Master Control Panel - Veltrana");
  EXPECT_TRUE(run.session.pair.OtherChanged());
  run.Edit("ihpfCutoff", "330");
  run.test.desk.answers = {Answer::Yes};
  run.Press("Ctrl+S");
  EXPECT_EQ(run.Title(), "Hall.nrv Master Control Panel - Veltrana");
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Title(), "*Street.nrv (Setup B) Master Control Panel - Veltrana");
  run.Press("Ctrl+B");
  run.test.desk.answers = {Answer::Yes};
  run.Click("btnCopySetup");
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Title(), "Veltrana (Setup B) Master Control Panel");
  run.Press("Ctrl+Z");
  run.Press("Ctrl+Z");
  run.Press("Ctrl+B");
  EXPECT_EQ(run.Title(), "*Street.nrv (Setup B) Master Control Panel - Veltrana");
}

TEST(SetupPair, AStoreUnderWayIsNotDisturbed) {
  Pair run;
  run.Press("Ctrl+B");
  run.Edit("ihpfCutoff", "440");
  run.Click("mnuSave");
  run.Type("txtFileName", "Street");
  int asked = 0;
  run.session.setups.hooks.progress = [&](int /*done*/, int /*total*/) {
    ++asked;
    run.session.pair.Switch();
    run.session.pair.Copy();
  };
  EXPECT_EQ(run.Click("btnOK"), "");
  EXPECT_GT(asked, 0);
  EXPECT_EQ(run.Heard() + run.Title(), "BStreet.nrv (Setup B) Master Control Panel - Veltrana");
}

TEST(SetupPair, WorksWithoutAUnitAndWithALostOne) {
  Pair run;
  run.Edit("ihpfCutoff", "330");
  run.Press("Ctrl+B");
  run.Edit("ihpfCutoff", "440");
  run.Settle();
  constexpr std::size_t never = 1000000;
  run.unit.FailAt(never, support::WatchedUnit::Failure::FrameLost, run.test.ports.state);
  run.unit.FallSilent();
  run.Press("Ctrl+B");
  run.test.loop.RunFor(60000);
  EXPECT_FALSE(run.session.device.comm.CommPortOpen);
  EXPECT_EQ(run.record.ihpfCutoff, 330);
  run.Press("Ctrl+B");
  run.Press("Ctrl+B");
  run.unit.Recover();
  run.session.master.menus.mnuConnect.Click();
  run.Settle();
  EXPECT_EQ(run.Unit(17), 330);
  run.Press("Ctrl+B");
  run.Settle();
  EXPECT_EQ(run.Unit(17), 440);
}

}  // namespace
}  // namespace vc
