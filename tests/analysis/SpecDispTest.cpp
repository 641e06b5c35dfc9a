// The spectrum analyzer as the operator works it, against the simulated unit.
#include <array>

#include <gmock/gmock.h>

#include "PanelRun.h"
#include "analysis/SpecDisp.h"
#include "shell/Displays.h"

namespace vc {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct SpecDispRun : testing::Test, support::PanelRun {
  SpecDispRun() : support::PanelRun(0) {
    unit.Now().sound.status = [this] {
      unit::Status status;
      status.unitMode = unitMode;
      return status;
    };
    unit.Now().sound.spectrum = [this](unsigned trace) { return bodies.at(trace); };
    bodies[0].fill(7);
    bodies[1].fill(100);
  }
  void Open() {
    Click("btnSpecAnalyzer");
    Settle();
    ASSERT_EQ(Top().name, "SpecDisp");
  }
  // What is asked for, as the number of the trace.
  std::string AskedIn(int milliseconds) {
    unit.frames.clear();
    test.loop.RunFor(milliseconds);
    std::string asked;
    for (const unit::Frame& frame : unit.frames) asked += std::to_string(int{frame.number} - 0xA0);
    return asked;
  }
  bool Enabled(const std::string& name) const { return CoreOf(Find(name)).Active(); }
  Plot& Screen() const { return *std::get<Plot*>(Find("pbxSpec")); }
  // The codes that the setup stores: signals, gains, run.
  std::array<int, 5> Choices() const {
    return {record.yellowSignal, record.blueSignal, record.yellowGain, record.blueGain, record.specRun};
  }

  std::uint16_t unitMode = 0;
  std::array<unit::SpectrumLines, 2> bodies{};
};

TEST_F(SpecDispRun, AsksForWhatIsOnShow) {
  Edit("specDisplayMode", "1");
  Open();
  EXPECT_THAT(AskedIn(2000), AllOf(HasSubstr("111"), Not(HasSubstr("2"))));
  Click("chkBlueTrace");
  Settle();
  EXPECT_THAT(AskedIn(2000), AllOf(HasSubstr("1212"), Not(HasSubstr("11")), Not(HasSubstr("22"))));
  Click("chkYellowTrace");
  Settle();
  EXPECT_THAT(AskedIn(2000), AllOf(HasSubstr("222"), Not(HasSubstr("1"))));
  EXPECT_EQ(record.specDisplayMode, 0);
  Click("chkBlueTrace");  // one of them stays
  EXPECT_EQ(Get("chkBlueTrace") + Get("chkYellowTrace"), "10");
  EXPECT_EQ(record.specDisplayMode, 0);
  Edit("specDisplayMode", "2");
  EXPECT_EQ(Get("chkBlueTrace") + Get("chkYellowTrace"), "11");
}

TEST_F(SpecDispRun, DrawsWhatTheUnitSendsAndNothingBefore) {
  Edit("specDisplayMode", "2");
  bodies[0][99] = 255;
  Click("btnSpecAnalyzer");
  EXPECT_EQ(session.spectrumReader.RawTrace1[459], 192);
  test.loop.RunFor(150);  // nothing is asked for yet
  EXPECT_TRUE(Screen().Traces().empty());
  test.loop.RunFor(2000);
  ASSERT_EQ(Screen().Traces().size(), 2U);
  EXPECT_EQ(Screen().Traces()[0].values.size(), 460U);
  EXPECT_EQ(Screen().Traces()[0].values[99], 0.0F);
  EXPECT_EQ(Screen().Traces()[0].values[100], -70.0F);
  EXPECT_EQ(Screen().Traces()[1].values[0], static_cast<float>(-(92.0F / 185.0F * 100.0F) * 70.0 / 100));
  const unsigned drawn = Screen().CurveRevision();
  test.loop.RunFor(2000);  // the same again
  EXPECT_EQ(Screen().CurveRevision(), drawn);
}

TEST_F(SpecDispRun, ASignalIsMeasuredAnewAtZeroGainAndRuns) {
  Open();
  EXPECT_EQ(record.specRun, 1);
  Click("btnRun");
  Set("sldrYellowGain", "25");
  Set("sldrBlueGain", "7");
  EXPECT_EQ(session.history.UndoTitle(), "Trace 2 Gain");
  Settle();
  Sent();
  EXPECT_EQ(Choices(), (std::array<int, 5>{0, 2, 25, 7, 0}));
  Set("cmbYellowSignalSelect", "Broadband Output");
  EXPECT_EQ(Choices(), (std::array<int, 5>{12, 2, 0, 7, 1}));
  EXPECT_EQ(Get("sldrYellowGain") + Get("txtYellowGain") + Get("btnRun"), "001");
  Settle();
  EXPECT_THAT(Sent(), HasSubstr("150/16448 157/128"));
  session.history.Undo();
  EXPECT_EQ(Choices(), (std::array<int, 5>{0, 2, 25, 7, 0}));
  EXPECT_EQ(Get("cmbYellowSignalSelect"), "Left In");
}

TEST_F(SpecDispRun, WhatTheSetupBroughtStaysAndOnlyWhatIsNoneIsCorrected) {
  record.yellowGain = -20;
  record.averagerMode = 4;
  record.specAverages = 6;
  record.blueSignal = 12;
  record.yellowSignal = 9;  // the fourth filter of one
  Click("btnSpecAnalyzer");
  EXPECT_EQ(Choices(), (std::array<int, 5>{0, 12, -20, 0, 1}));
  EXPECT_EQ(Get("txtYellowGain") + "|" + Get("cmbAveragerMode") + "|" + Get("txtAverages"),
            "-20|Peak Hold|64");
  EXPECT_FALSE(Enabled("txtAverages"));
  Set("sldrYellowGain", "-10");  // and from there it has the range of edits
  EXPECT_EQ(RangeOf(Find("sldrYellowGain")), "0..40");
  EXPECT_EQ(Get("txtYellowGain"), "0");
  Set("cmbAveragerMode", "Exponential");
  EXPECT_EQ(record.averagerMode, 1);
  EXPECT_TRUE(Enabled("txtAverages") && Enabled("btnPlus") && Enabled("lblNumAverages"));
  record.averagerMode = 2;
  session.displays.Refresh();
  EXPECT_EQ(Get("cmbAveragerMode") + std::to_string(record.averagerMode), "Exponential1");
}

TEST_F(SpecDispRun, AConfigurationHasItsOwnSignals) {
  Open();
  Edit("numFilters", "3");
  EXPECT_THAT(RangeOf(Find("cmbBlueSignalSelect")),
              HasSubstr("Reference In | Filter 1 Output | Filter 2 Output"));
  Set("cmbYellowSignalSelect", "Filter 3 Output");
  Set("cmbBlueSignalSelect", "Equalizer Output");
  Edit("numFilters", "2");
  EXPECT_EQ(Get("cmbYellowSignalSelect") + std::to_string(record.yellowSignal), "Left In0");
  session.history.Undo();  // with the filters the signal comes back
  EXPECT_EQ(Get("cmbYellowSignalSelect"), "Filter 3 Output");
  Edit("configMode", "2");
  EXPECT_EQ(Get("cmbYellowSignalSelect") + " " + Get("cmbBlueSignalSelect"), "Left In Right Line Output");
  session.history.Undo();
  EXPECT_EQ(Get("cmbYellowSignalSelect") + " " + Get("cmbBlueSignalSelect"),
            "Filter 3 Output Equalizer Output");
  CloseTop();
  Edit("configMode", "1");
  Edit("configMode", "0");
  EXPECT_EQ(record.yellowSignal, 0);
  EXPECT_EQ(record.blueSignal, 4);
}

TEST_F(SpecDispRun, AveragesAreAPowerOfTwo) {
  Edit("averagerMode", "1");
  Open();
  for (const auto& [typed, shown] : {std::pair{"3", "4"},
                                     {"2", "2"},
                                     {"5", "4"},
                                     {"6", "8"},
                                     {"0", "1"},
                                     {"100000", "32768"},
                                     {"12.5", "16"},
                                     {"abc", "16"},
                                     {"9999999999", "16"},
                                     {"24576", "32768"}}) {
    Type("txtAverages", typed);
    EXPECT_EQ(Get("txtAverages"), shown) << typed;
  }
  Click("btnPlus");
  EXPECT_EQ(record.specAverages, 15);
  Settle();
  Sent();
  Click("btnMinus");
  EXPECT_EQ(Get("txtAverages"), "16384");
  Settle();
  EXPECT_EQ(Sent().substr(0, 9), "151/" + std::to_string(14 * 257 + 4112).append(" ").substr(0, 5));
  Type("txtAverages", "1");
  Click("btnMinus");
  EXPECT_EQ(record.specAverages, 0);
}

TEST_F(SpecDispRun, TellsAnOverloadOfEachTrace) {
  Edit("specDisplayMode", "2");
  Open();
  Click("btnMarker");
  for (const auto& [word, labels, first, second] : {std::tuple{0x0000, "Gain Gain", ScreenYellow, ScreenBlue},
                                                    {0x4000, "Gain OVL", ScreenYellow, ScreenRed},
                                                    {0x8000, "OVL Gain", ScreenRed, ScreenBlue},
                                                    {0xFFFF, "OVL OVL", ScreenRed, ScreenRed}}) {
    unitMode = static_cast<std::uint16_t>(word);
    test.loop.RunFor(1000);
    EXPECT_EQ(Get("lblYellowOvl") + " " + Get("lblBlueOvl"), labels);
    EXPECT_EQ(std::get<Label*>(Find("lblTrace1Mag"))->OwnColour(), first);
    EXPECT_EQ(std::get<Label*>(Find("lblTrace2Mag"))->OwnColour(), second);
  }
  Click("chkHideControls");  // and where the labels are hidden
  test.loop.RunFor(100);
  EXPECT_EQ(Screen().Note(), "OVL: Trace 1, Trace 2");
}

TEST_F(SpecDispRun, TheMarkerReadsItsLineHoweverItGetsThere) {
  Edit("specDisplayMode", "2");
  bodies[0][200] = bodies[0][300] = 192 - 37;
  Open();
  EXPECT_FALSE(Enabled("txtMarkerFreq") || Enabled("btnFindPeak"));
  const double line = static_cast<double>(record.sampleRate) / 1024;
  const auto frequency = [line](int at) {
    return std::to_string(static_cast<int>(std::nearbyint(line * (at + 1))));
  };
  Click("btnMarker");
  EXPECT_EQ(Get("txtMarkerFreq") + " " + Get("lblTrace1Mag"), frequency(0) + " -70.0");
  Click("btnFindPeak");  // of those alike the lower one
  EXPECT_EQ(Get("txtMarkerFreq") + " " + Get("lblTrace1Mag") + " " + Get("lblTrace2Mag"),
            frequency(200) + " -14.0 -34.8");
  EXPECT_THAT(Screen().Reading(),
              HasSubstr("Trace 1 -14.0 dB, Trace 2 -34.8 dB. Peak at " + frequency(200) + " Hz"));
  for (const auto& [keys, at] : {std::pair{"Right", 201},
                                 {"Ctrl+Right", 211},
                                 {"Left", 210},
                                 {"Ctrl+Left", 200},
                                 {"End", 459},
                                 {"Right", 459},
                                 {"Home", 0}}) {
    EXPECT_EQ(PressKey(Find("pbxSpec"), keys), "");
    EXPECT_EQ(Get("txtMarkerFreq"), frequency(at)) << keys;
  }
  PointAt(Find("pbxSpec"), std::to_string(line * 51.4) + " -30");
  EXPECT_EQ(Get("txtMarkerFreq"), frequency(50));
  for (const auto& [typed, at] : {std::pair{"1e9", 50}, {"x", 50}, {"0", 0}}) {
    Type("txtMarkerFreq", typed);
    EXPECT_EQ(Get("txtMarkerFreq"), frequency(at)) << typed;
  }
  Type("txtMarkerFreq", std::to_string(line * 101 + 1.5));
  EXPECT_EQ(Get("txtMarkerFreq"), frequency(101));
  Click("chkBlueTrace");
  EXPECT_FALSE(CoreOf(Find("lblTrace2Mag")).Shown());
  Click("btnMarker");
  EXPECT_FALSE(Screen().Cursor() || CoreOf(Find("lblTrace1Mag")).Shown());
}

TEST_F(SpecDispRun, AReferenceStaysUnderTheLiveTraces) {
  Edit("specDisplayMode", "2");
  bodies[0].fill(155);
  Open();
  EXPECT_FALSE(Enabled("cmbReference") || Enabled("btnRemoveReference"));
  Click("btnMarker");
  Click("btnKeepTrace1");
  bodies[0].fill(118);
  test.loop.RunFor(1000);
  EXPECT_EQ(Get("lblDifference"), "Trace 1: -14.0 dB");
  Type("txtReferenceName", "Room");
  Type("txtReferenceName", "");
  for (int i = 0; i < 3; ++i) Click("btnKeepTrace2");
  EXPECT_FALSE(Enabled("btnKeepTrace1"));
  ASSERT_EQ(Screen().Traces().size(), 6U);
  EXPECT_EQ(Screen().Traces()[2].name, "Room");
  EXPECT_EQ(Screen().Traces()[2].values[459], -14.0F);
  EXPECT_EQ(Get("lblDifference"), "Trace 2: 0.0 dB");
  Set("cmbReference", "Room");
  Click("btnRemoveReference");
  EXPECT_EQ(Screen().Traces().size(), 5U);
  CloseTop();
  Open();
  EXPECT_EQ(Screen().Traces().size(), 2U);
}

TEST_F(SpecDispRun, HidesItsControlsAndComesBack) {
  Open();
  Click("chkHideControls");
  for (const char* name : {"btnMarker", "cmbYellowSignalSelect", "btnKeepTrace1", "chkGrid"})
    EXPECT_FALSE(CoreOf(Find(name)).Shown()) << name;
  EXPECT_TRUE(CoreOf(Find("pbxSpec")).Shown() && CoreOf(Find("btnClose")).Shown());
  Click("chkHideControls");
  EXPECT_TRUE(CoreOf(Find("btnMarker")).Shown());
  EXPECT_EQ(Screen().Grid(), (PlotGrid{8, 7}));
  Click("chkGrid");
  EXPECT_EQ(Screen().Grid(), NoGrid);
}

TEST_F(SpecDispRun, AsksWhatToDoAfterAFaultWhileItDraws) {
  Open();
  Top().controlChanged = [](const ControlCore&, std::string_view) { throw Fault{"no picture"}; };
  test.desk.answers = {Answer::No, Answer::Yes};
  for (const bool ends : {false, true}) {
    test.desk.boxes.clear();
    while (test.desk.boxes.empty()) {
      bodies[1][3] ^= 1U;
      test.loop.RunFor(50);
    }
    EXPECT_EQ(test.desk.boxes.back().title, "tmrSpecDisp_Timer_Err");
    EXPECT_EQ(test.desk.boxes.back().text, "Error, do you wish to stop?");
    EXPECT_EQ(test.loop.Ending(), ends);
  }
}

TEST_F(SpecDispRun, PoursTheLinesOfATraceThatRuns) {
  Edit("specDisplayMode", "2");
  Open();
  const auto& poured = *std::get<Waterfall*>(Find("wtfSpectrum"));
  EXPECT_FALSE(poured.core.Shown());
  Click("chkWaterfall");
  EXPECT_TRUE(poured.core.Shown());
  test.loop.RunFor(5000);
  EXPECT_EQ(poured.Line(0)[0], -70.0F);
  EXPECT_GT(poured.Added(), 10U);
  EXPECT_LE(poured.Begun(), 14U);  // some lines a second
  Set("cmbWaterfallTrace", "Trace 2");
  EXPECT_EQ(poured.Lines(), 0);
  test.loop.RunFor(3000);
  EXPECT_NEAR(poured.Line(0)[0], -34.8, 0.05);
  Set("cmbBlueSignalSelect", "Line Output");
  EXPECT_EQ(poured.Lines(), 0);  // another signal is no continuation
  EXPECT_EQ(Screen().Traces().size(), 1U);
  Settle();
  Click("btnRun");
  Settle();
  const auto held = poured.Added();
  test.loop.RunFor(3000);
  EXPECT_EQ(poured.Added(), held);
  Click("chkBlueTrace");
  EXPECT_EQ(Get("cmbWaterfallTrace"), "Trace 1");
}

}  // namespace
}  // namespace vc
