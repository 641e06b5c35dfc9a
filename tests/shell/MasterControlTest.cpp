// The master control panel, driven by the names of its controls.
#include <algorithm>

#include <gmock/gmock.h>

#include "PanelRun.h"
#include "model/Kinds.h"
#include "model/Settings.h"

namespace vc {
namespace {

using support::PanelRun;

std::string CaptionsOf(const PanelRun& run, const std::string& frame, int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) {
    const ControlCore& core = CoreOf(run.Find(frame + "(" + std::to_string(i) + ")"));
    text += core.Caption() + (core.Active() ? "" : "-") + "|";
  }
  return text;
}

TEST(MasterPanel, NamesItsBlocksByTheConfiguration) {
  PanelRun run;
  run.Edit("numFilters", "2");
  EXPECT_EQ(CaptionsOf(run, "fraStage", 6), "Filter 1|Filter 2|Filter 3-|Filter 4-|Filter 5-|Filter 6-|");
  EXPECT_EQ(CaptionsOf(run, "fraEq", 2), "Equalizer|Not Available-|");
  EXPECT_FALSE(CoreOf(run.Find("lbOutputRight")).Shown() || CoreOf(run.Find("lblRightOut")).Shown());
  EXPECT_EQ(run.Set("cmbConfig", "Stereo Linked"), "");
  EXPECT_EQ(CaptionsOf(run, "fraStage", 6),
            "Left/Right Filter 1|Left/Right Filter 2|Left/Right Filter 3-|Not Available-|Not Available-|"
            "Not Available-|");
  EXPECT_EQ(CaptionsOf(run, "fraBroadband", 2), "Left/Right Filter|Not Available-|");
  EXPECT_EQ(run.Set("cmbConfig", "2"), "");
  EXPECT_EQ(CaptionsOf(run, "fraStage", 6),
            "Left Filter 1|Left Filter 2|Left Filter 3-|Right Filter 1|Right Filter 2|Right Filter 3-|");
  EXPECT_EQ(CaptionsOf(run, "fraEq", 2) + CaptionsOf(run, "fraBroadband", 2),
            "Left Equalizer|Right Equalizer|Left Filter|Right Filter|");
  EXPECT_TRUE(CoreOf(run.Find("lbOutputRight")).Shown());
  run.Click("btnEqConfig(2)");
  EXPECT_EQ(run.Top().Caption(), "20-Band Graphic (Right Equalizer)");
  run.CloseTop();
  run.record.filterType[5] = FilterKind::Lowpass;
  run.Click("btnFilterConfig(5)");
  EXPECT_EQ(run.Top().Caption(), "Lowpass (Right Filter 2)");
}

TEST(MasterPanel, OffersTheFiltersThatFit) {
  PanelRun run;
  EXPECT_EQ(run.Click("optNumFilters(5)"), "");
  run.Settle();
  EXPECT_EQ(run.record.numFilters, 6);
  run.Set("cmbConfig", "Stereo Independent");
  EXPECT_EQ(run.record.numFilters, 3);
  EXPECT_EQ(run.Get("optNumFilters(2)"), "1");
  EXPECT_EQ(run.Click("optNumFilters(3)"), "it is disabled");
  run.Click("optNumFilters(0)");
  run.Set("cmbConfig", "Stereo Linked");
  run.Set("cmbConfig", "Mono");
  run.Click("mnuUndo");
  EXPECT_EQ(run.Click("optNumFilters(3)"), "it is disabled");
  run.Click("mnuRedo");
  EXPECT_EQ(run.Click("optNumFilters(3)"), "");
}

TEST(MasterPanel, KindsChangeTheirStagesOnce) {
  PanelRun run;
  run.Set("cmbFilter(1)", "Multiple Notch");
  run.Edit("mnotchFreq", "500", 1, 1);
  run.Settle();
  run.Sent();
  EXPECT_EQ(run.Set("cmbFilter(1)", "8"), "");  // the kind that it has
  EXPECT_EQ(run.record.mnotchFreq[1][1], 500);
  EXPECT_EQ(run.record.settingsChanged, 0);
  EXPECT_EQ(run.Click("btnFilterAdapt(1)"), "it is hidden");
  EXPECT_EQ(run.Click("btnFilterClear(1)"), "it is hidden");
  run.Set("cmbFilter(1)", "1-Ch Adaptive");
  run.Set("cmbFilter(1)", "Multiple Notch");
  EXPECT_EQ(run.record.mnotchFreq[1][1], 0);
  run.record.edgeCurve[1][7] = -9;
  run.Set("cmbEq(1)", "Dual Parametric");
  EXPECT_EQ(run.record.edgeCurve[1][7], -9);
  run.Set("cmbEq(1)", "Spectral Graphic");
  EXPECT_EQ(run.record.edgeCurve[1][7], 0);
}

TEST(MasterPanel, LevelsReadInHalfDecibels) {
  PanelRun run;
  for (const auto& [typed, shown, position] : {std::tuple{"40", "+31.5", 255},
                                               {"-100", "-48.0", 96},
                                               {"0", "0", 192},
                                               {"2.25", "+2.0", 196},
                                               {"x", "+2.0", 196},
                                               {"-0.5", "-0.5", 191}}) {
    EXPECT_EQ(run.Type("txtGain(1)", typed), "");
    EXPECT_EQ(run.Get("txtGain(1)"), shown);
    EXPECT_EQ(run.record.levelControl[2], position);
  }
  run.Settle();
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[1], 191);
  run.Click("btnZeroInputLevel(1)");
  EXPECT_EQ(run.Get("txtGain(1)"), "0");
}

TEST(MasterPanel, LevelControlsComeBackWhereTheyWere) {
  PanelRun run;
  run.Set("sldrLevel(0)", "200");
  run.Click("mnuLevelControls");
  EXPECT_EQ(run.record.levelControl[1], 192);
  EXPECT_EQ(run.Set("sldrLevel(0)", "100"), "it is disabled");
  EXPECT_FALSE(CoreOf(run.Find("lblGain")).Enabled());
  run.Settle();
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[129], 96);
  run.Click("mnuLevelControls");
  EXPECT_EQ(run.Get("txtGain(0)"), "+4.0");
  run.Click("mnuChannelSwap");
  EXPECT_TRUE(CoreOf(run.Find("lblSwap")).Shown());
  EXPECT_EQ(run.record.channelSwap, 1);
}

// Levels that were parked belong to the setup that they were parked under.
TEST(MasterPanel, ParkedLevelsStayWithTheirSetup) {
  PanelRun run;
  run.Set("sldrLevel(0)", "200");
  run.Click("mnuLevelControls");
  EXPECT_TRUE(run.session.setups.SaveSetupFile(run.test.desk.InstallFolder() + "/plain.nrv", 0));
  run.Click("mnuOpen");
  run.Type("txtFileName", "plain");
  run.test.desk.answers = {Answer::No};
  run.Click("btnOK");
  run.Click("mnuLevelControls");
  EXPECT_EQ(run.Get("txtGain(0)"), "0");

  run.Click("mnuLevelControls");
  run.test.desk.answers = {Answer::Yes, Answer::No};
  run.Click("mnuNew");
  run.Set("sldrLevel(0)", "220");
  run.Click("mnuLevelControls");
  while (run.session.history.UndoTitle() != "New Filter Configuration") run.Click("mnuUndo");
  run.Click("mnuUndo");
  run.Click("mnuLevelControls");
  EXPECT_EQ(run.Get("txtGain(0)"), "0");
}

TEST(MasterPanel, DragsOfALevelAreStepsOfTheirOwn) {
  PanelRun run;
  Slider& level = *std::get<Slider*>(run.Find("sldrLevel(0)"));
  for (const int position : {150, 180}) {
    level.Hold();
    level.SetPosition(position);
    level.Release();
  }
  run.Click("mnuUndo");
  EXPECT_EQ(run.record.levelControl[1], 150);
}

TEST(MasterPanel, ClearsWhatAdapts) {
  PanelRun run;
  run.Edit("numFilters", "2");
  run.Settle();
  run.Sent();
  run.Click("btnFilterClear(1)");
  run.Settle();
  EXPECT_THAT(run.Sent(), testing::StartsWith("85/32767 86/32767 89/128 "));
  run.Press("Alt+C");
  run.Settle();
  EXPECT_THAT(run.Sent(), testing::StartsWith("85/32767 86/32767 89/252 113/1 "));
  run.Edit("ihpfCutoff", "300");
  run.Settle();
  EXPECT_EQ(run.Sent(), "17/300 ");  // a request is met once
  run.Set("cmbConfig", "Stereo Linked");
  run.Settle();
  run.Sent();
  run.Press("Alt+C");
  run.Settle();
  EXPECT_THAT(run.Sent(), testing::HasSubstr(" 113/3 "));
}

TEST(MasterPanel, SwitchesOfTheWholeChainRuleTheOthers) {
  PanelRun run;
  run.Press("Alt+I");
  EXPECT_EQ(run.record.ihpfEnabled * 10 + run.record.ohpfEnabled, 1);
  run.Press("Alt+O");
  EXPECT_EQ(run.record.ihpfEnabled + run.record.ohpfEnabled, 0);
  run.Press("Alt+I");
  run.Press("Alt+A");
  EXPECT_EQ(run.record.adaptEnabled, 0);
  EXPECT_EQ(run.Click("btnFilterAdapt(1)"), "it is disabled");
  const auto standing = [&run](const char* frame) { return std::get<Frame*>(run.Find(frame))->InTheWay(); };
  EXPECT_EQ(standing("fraIhpf"), Standing::In);
  run.Press("Alt+P");
  for (const char* button : {"btnFilterActive(1)", "btnEqActive(1)", "btnIhpf", "btnOhpf", "btnAgc"}) {
    EXPECT_EQ(run.Click(button), "it is disabled") << button;
  }
  const std::int16_t limiter = run.record.limiterEnabled;
  run.Press("Alt+L");
  EXPECT_EQ(run.record.limiterEnabled, 1 - limiter);
  EXPECT_EQ(standing("fraLimiter"), limiter == 0 ? Standing::In : Standing::Out);
  for (const char* frame : {"fraStage(1)", "fraEq(1)", "fraBroadband(1)", "fraIhpf", "fraOhpf", "fraAgc"}) {
    EXPECT_EQ(standing(frame), Standing::Out) << frame;
  }
  run.Press("Alt+G");
  EXPECT_EQ(run.record.agcEnabled, 0);
  run.Settle();
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[5], 4095);
}

TEST(MasterPanel, DisplaysTakeThePollAndHideThePanelBehindThem) {
  PanelRun run;
  run.record.filterType[1] = FilterKind::Lowpass;
  run.record.specRun = 0;
  const auto master = [&run]() -> MasterControl& { return run.session.master; };
  run.Press("Alt+S");
  EXPECT_EQ(run.session.periodic.pollMode, poll::Spectrum);
  EXPECT_EQ(run.record.specRun, 1);
  master().top.btnCoeffDisplay.Click();
  EXPECT_EQ(master().top.btnSpecAnalyzer.Value(), 0);
  EXPECT_EQ(master().top.btnCoeffDisplay.Value(), 1);
  EXPECT_EQ(run.session.periodic.pollMode, poll::Coefficients);
  master().chain.Filter(1).config.Click();
  const auto shown = std::ranges::find(run.session.forms.open, &master().form, &Forms::Entry::form);
  EXPECT_TRUE(shown->hidden);
  EXPECT_EQ(run.session.forms.open.back().modality, Modality::Modeless);
  run.session.panels.OpenFilter(1);  // takes the place of the one that is open
  EXPECT_EQ(run.session.forms.open.size(), 3U);
  run.Click("btnOK");
  EXPECT_EQ(run.Top().name, "MasterControl");
  run.Press("Alt+E");
  EXPECT_EQ(run.session.forms.open.size(), 1U);
  EXPECT_EQ(run.session.periodic.pollMode, poll::MainLevels);
  run.Click("btnFilterConfig(1)");
  EXPECT_EQ(run.session.forms.open.back().modality, Modality::Modal);
  EXPECT_FALSE(run.session.forms.open.front().hidden);
}

TEST(MasterPanel, EveryEntryDoesSomething) {
  PanelRun run;
  for (const auto& [entry, title] : {std::pair{"mnuPrintScreen", "How To Print Screens"},
                                     {"mnuHelpPrintScreen", "How To Print Screens"},
                                     {"mnuHelpContents", "Help"},
                                     {"mnuFastStart", "Help"}}) {
    run.test.desk.boxes.clear();
    EXPECT_EQ(run.Click(entry), "");
    ASSERT_EQ(run.test.desk.boxes.size(), 1U) << entry;
    EXPECT_EQ(run.test.desk.boxes.back().title, title);
    if (std::string_view(title) == "Help") continue;
    EXPECT_THAT(run.test.desk.boxes.back().text,
                testing::StartsWith("Screens cannot be printed from this program by using the PrintScreen "
                                    "button.  Instead"));
  }
  run.session.master.top.btnClearAll.Refresh(9);
  EXPECT_EQ(run.test.desk.boxes.back().text, "Invalid picture state in GraphicButton:Refresh()");
  for (const char* place : {"mnuWebPage", "imgLogo(0)", "imgLogo(1)"}) EXPECT_EQ(run.Click(place), "");
  EXPECT_EQ(run.test.desk.opened, std::vector<std::string>(3, MakerSite));
  run.Click("mnuTheme(2)");
  EXPECT_EQ(run.test.desk.theme, Theme::Dark);
  run.Press("Ctrl+L");
  support::WatchedUnit another;
  support::TestSession next(another.End(), run.test.desk.InstallFolder());
  next.session.Start();
  EXPECT_EQ(next.desk.theme, Theme::Dark);
  EXPECT_TRUE(next.session.master.menus.mnuFrequencyAxis.Checked());
}

TEST(ConfigurationOfStages, LoadsEveryPanelUnseen) {
  PanelRun run;
  for (int stage = 1; stage <= FilterStages; ++stage) run.record.filterType[stage] = FilterKind::Lowpass;
  run.record.curFilter = 4;
  int events = 0;
  run.session.panels.ConfigGeneralFilters([&events] { ++events; });
  EXPECT_EQ(events, 6);
  EXPECT_EQ(run.record.curFilter, 4);
  EXPECT_EQ(run.record.stageChanged[6], -1);
  EXPECT_EQ(run.session.forms.open.size(), 1U);
  run.record.eqType[2] = 77;
  run.session.panels.ConfigEqualizers([] {});
  EXPECT_EQ(run.record.eqType[2], EqKind::Compressor);
}

TEST(MasterPanel, OpensBesideTheCoefficientsAndPutsItsFilterThere) {
  support::PanelRun run;
  run.Edit("numFilters", "3");
  CoefReader& reader = run.session.coefReader;
  run.OpenFilter(3, FilterKind::Lowpass);
  EXPECT_EQ(reader.coefFilterIndex, 0);  // no display is up
  run.CloseTop();
  run.session.master.ShowDisplay(display::Coefficients);
  reader.CoefReadback[0] = 7;
  run.session.panels.OpenFilter(3);
  EXPECT_EQ(reader.coefFilterIndex, 2);
  EXPECT_EQ(reader.CoefReadback[0], 0);  // of the filter that was there before
}

}  // namespace
}  // namespace vc
