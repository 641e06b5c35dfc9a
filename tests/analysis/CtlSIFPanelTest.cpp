// The panel of the spectral inverse filter, worked as the operator does over the simulated unit: what it
// borrows of the analyzer and gives back, its limits, and what a build does.
#include <array>
#include <cmath>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Outing.h"
#include "PanelRun.h"
#include "analysis/SpectralInverse.h"
#include "model/Kinds.h"
#include "model/SignalCode.h"
#include "widgets/Plot.h"

namespace vc {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int Second = 2;

// As bytes of the analyzer.
unit::SpectrumLines Hilly() {
  unit::SpectrumLines lines{};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    lines[i] = static_cast<std::uint8_t>(120 + 40 * std::sin(0.05 * static_cast<double>(i)) +
                                         static_cast<double>(i % 7));
  }
  return lines;
}

struct SifRun : support::PanelRun {
  explicit SifRun(std::int16_t configMode = 0) : PanelRun(configMode) {
    unit.Now().sound.spectrum = [](unsigned trace) { return trace == 0 ? Hilly() : unit::SpectrumLines{}; };
    for (const char* name : {"numFilters", "specAverages", "yellowSignal"}) Edit(name, "3");
    Edit("filterType", std::to_string(FilterKind::SpectralInverse), Second);
    Edit("sifHiAttack", "300", Second);
    Edit("sifLoAttack", "100", Second);
    Settle();
    Sent();
  }
  void Open(int stage = Second) {
    session.panels.OpenFilter(stage);
    EXPECT_EQ(Top().name, "CtlSIF");
  }
  std::array<int, 6> Analyzer() const {
    return {record.specAverages, record.averagerMode, record.specRun,
            record.yellowGain,   record.yellowSignal, record.specDisplayMode};
  }
  Plot& Spectrum() const { return *std::get<Plot*>(Find("pbxSpec")); }
  void Point(PointerAction action, double line) const {
    Spectrum().pointer({action, record.sampleRate / 1024.0 * (line + 1), -30});
  }
  std::array<int, 2> Limits() const { return {record.sifLoAttack[Second], record.sifHiAttack[Second]}; }
};

struct Way {
  const char* name;
  void (*go)(SifRun& run);
};
const Way Ways[] = {{"OK", [](SifRun& run) { run.Click("btnOK"); }},
                    {"its frame", [](SifRun& run) { run.CloseTop(); }},
                    {"a kind that is taken back",
                     [](SifRun& run) {
                       while (run.record.filterType[Second] == FilterKind::SpectralInverse)
                         run.session.history.Undo();
                       while (run.session.history.CanRedo()) run.session.history.Redo();
                     }},
                    {"another kind by name",
                     [](SifRun& run) {
                       run.Edit("filterType", "2", Second);
                       run.session.history.Undo();
                     }},
                    {"a new setup",
                     [](SifRun& run) {
                       run.session.NewSetup();
                       run.session.history.Undo();
                     }},
                    {"a lost link",
                     [](SifRun& run) {
                       run.test.ports.state.gone = true;
                       run.Settle();
                       EXPECT_FALSE(run.session.device.comm.CommPortOpen);
                       run.CloseTop();
                     }},
                    {"the exit", [](SifRun& run) { run.session.Exit(); }}};

TEST(CtlSIF, BorrowsTheAnalyzerForAsLongAsItIsOpenInWhateverWayItGoes) {
  for (const Way& way : Ways) {
    for (const std::int16_t shown : {display::None, display::Spectrum}) {
      SCOPED_TRACE(std::string(way.name) + ", display " + std::to_string(shown));
      SifRun run;
      run.session.master.ShowDisplay(shown);
      run.Settle();
      const auto own = run.Analyzer();
      const std::string setup = support::SetupOf(run.session);
      const std::int16_t polled = run.session.periodic.pollMode;
      run.Open();
      const std::array<int, 6> borrowed{0, 1, 1, 0, vc::signal::FirstFilter, 1};
      EXPECT_EQ(run.Analyzer(), borrowed);
      EXPECT_EQ(run.session.periodic.pollMode, poll::Sif);
      run.unit.frames.clear();
      run.Settle();
      EXPECT_THAT(run.Sent(), HasSubstr("150/" + std::to_string(0x4040) + " "));
      EXPECT_EQ(support::SetupOf(run.session), setup);
      way.go(run);
      EXPECT_TRUE(run.record.loans.empty());
      EXPECT_EQ(run.Analyzer(), own);
      EXPECT_EQ(support::SetupOf(run.session), setup);
      const bool gone = run.session.displays.Shown() == display::None;  // with the program
      EXPECT_EQ(run.session.periodic.pollMode, gone ? poll::MainLevels : polled);
      if (!run.session.device.comm.CommPortOpen) continue;
      run.Settle();
      const std::string sent = run.Sent();
      EXPECT_THAT(sent, HasSubstr("151/" + std::to_string(3 * 257)));
      EXPECT_THAT(sent, HasSubstr("150/" + std::to_string(0x4040)));
    }
  }
}

TEST(CtlSIF, BorrowsNothingUnlessItIsShown) {
  SifRun run;
  const SystemSettings before = run.record;
  run.session.panels.ConfigGeneralFilters([] {});
  EXPECT_EQ(run.session.periodic.pollMode, poll::MainLevels);
  run.Settle();
  EXPECT_EQ(run.Sent(), "");
  EXPECT_TRUE(run.record == before);
}

struct SifStates : support::States {};

TEST_F(SifStates, NoStateKeepsWhatIsBorrowed) {
  support::Outing first(*this);
  Session& session = first.Started();
  first.Edit("filterType", std::to_string(FilterKind::SpectralInverse), 1);
  session.panels.OpenFilter(1);
  EXPECT_EQ(first.Do("txtAverages", "128"), "");
  first.loop.RunFor(20000);
  EXPECT_EQ(session.settings.specAverages, 7);
  EXPECT_EQ(support::Content(last), support::SetupOf(session));
  session.Exit();
  support::Outing second(*this);
  EXPECT_EQ(second.Started().settings.specAverages, 1);
  EXPECT_EQ(second.session.settings.sifAverages[1], 7);
}

TEST(CtlSIF, ListensWhereTheSignalEntersTheFilter) {
  struct Case {
    int mode, stage, broadband, off, on;
  };
  for (const auto& [mode, stage, broadband, off, on] :
       {Case{0, 1, 1, 0, 12}, Case{0, 3, 1, 7, 7}, Case{2, 4, 2, 1, 13}, Case{2, 1, 1, 0, 12}}) {
    SifRun run(static_cast<std::int16_t>(mode));
    run.Edit("filterType", std::to_string(FilterKind::SpectralInverse), stage);
    run.Open(stage);
    EXPECT_EQ(run.record.yellowSignal, off) << stage;
    run.Edit("broadbandActive", "1", broadband);
    EXPECT_EQ(run.record.yellowSignal, on) << stage;
    run.session.history.Undo();
    EXPECT_EQ(run.record.yellowSignal, off) << stage;
  }
}

TEST(CtlSIF, AveragesAndGainAreTheStagesAndTheUnitFollows) {
  SifRun run;
  run.Open();
  run.Settle();
  run.Sent();
  run.Click("btnPlus");
  EXPECT_EQ(run.record.sifAverages[Second], 1);
  EXPECT_EQ(run.Type("txtAverages", "1000"), "");
  EXPECT_EQ(run.Get("txtAverages"), "128");
  run.Set("sldrGain", "20");
  EXPECT_EQ(run.record.yellowGain, 20);
  run.Settle();
  std::string sent = run.Sent();
  EXPECT_THAT(sent, HasSubstr("151/" + std::to_string(7 * 257 + 0x1010)));
  EXPECT_THAT(sent, HasSubstr("157/1280 "));
  run.Click("btnRun");
  run.Click("btnClear");
  run.Settle();
  EXPECT_THAT(run.Sent(), HasSubstr("150/" + std::to_string(0xC0C0)));
  for (const char* title : {"Input Gain", "Number of Averages"}) {
    EXPECT_EQ(run.session.history.UndoTitle(), title);
    run.session.history.Undo();
  }
  EXPECT_EQ(run.record.yellowGain, 0);
  EXPECT_EQ(run.record.specAverages, run.record.sifAverages[Second]);
  EXPECT_EQ(run.record.specRun, 0);  // no step
}

TEST(CtlSIF, LimitsStayTenLinesApartBySliderTextAndMouse) {
  SifRun run;
  run.Edit("bandwidthIndex", "3");  // 18 kHz: a line is 17.58 Hz wide
  run.Open();
  using Pair = std::array<int, 2>;
  run.Edit("sifHiAttack", "300", Second);
  run.Set("sldrLoAttack", "400");
  EXPECT_EQ(run.Limits(), (Pair{290, 300}));
  EXPECT_EQ(run.Get("sldrLoAttack"), "290");
  EXPECT_EQ(run.Get("txtLoAttack"), "5115");
  run.Type("txtLoAttack", "300");
  EXPECT_EQ(run.Limits(), (Pair{16, 300}));
  run.Type("txtHiAttack", "1");
  EXPECT_EQ(run.Limits(), (Pair{16, 26}));
  run.Type("txtHiAttack", "99999");
  EXPECT_EQ(run.Limits(), (Pair{16, 459}));
  run.Type("txtHiAttack", "457");
  EXPECT_EQ(run.Limits(), (Pair{16, 26}));

  const auto drag = [&](double from, double to) {
    run.Point(PointerAction::Press, from);
    run.Point(PointerAction::Move, (from + to) / 2);
    run.Point(PointerAction::Move, to);
    run.Point(PointerAction::Release, to);
    run.Point(PointerAction::Move, 200);
    return run.Limits();
  };
  EXPECT_EQ(drag(21, 15), (Pair{16, 26}));  // 5 lines away from both
  EXPECT_EQ(drag(21.1, 90), (Pair{16, 90}));
  EXPECT_EQ(drag(90, 18), (Pair{16, 26}));
  run.Edit("sifHiAttack", "100", Second);
  EXPECT_EQ(drag(20.9, 500), (Pair{90, 100}));
  EXPECT_EQ(run.session.history.UndoTitle(), "Lower Limit");
  run.session.history.Undo();
  EXPECT_EQ(run.Limits(), (Pair{16, 100}));
  run.Edit("sifHiAttack", "26", Second);
  run.record.sifHiAttack[Second] = 20;  // both in reach
  EXPECT_EQ(drag(18.5, 3), (Pair{3, 20}));
}

TEST(CtlSIF, ModeAndShapeSayWhatTheyMean) {
  SifRun run;
  run.Open();
  const auto caption = [&](const char* name) { return CoreOf(run.Find(name)).Caption(); };
  EXPECT_EQ(caption("fraLoAttack"), "Lower Voice Limit");
  run.Set("ModeSelect(1)", "1");
  EXPECT_EQ(caption("fraHiAttack"), "Upper Noise Limit");
  EXPECT_EQ(run.Click("btnEdit"), "it is disabled");
  run.Set("ROSSelect(3)", "1");
  EXPECT_EQ(run.Click("btnEdit"), "");
  EXPECT_EQ(run.Top().name, "CtlCustomCurve");
  run.Edit("customCurve", "-20", Second, 5);
  EXPECT_THAT(run.Get("FilterDisplay"), Not(HasSubstr("0 Hz 0.0 dB | 0 Hz")));
  run.Click("btnOK");
  EXPECT_EQ(run.Top().name, "CtlSIF");
  EXPECT_EQ(run.session.periodic.pollMode, poll::Sif);
  run.Type("txtRange", "40");
  EXPECT_EQ(run.record.filterAtten[Second], 13107);
  EXPECT_EQ(run.Get("txtRange"), "40");
  run.Type("txtFilterGain", "99");
  EXPECT_EQ(run.record.filterGain[Second], 506);
}

TEST(CtlSIF, ABuildIsSentAtOnceAndHeard) {
  SifRun run;
  run.Open();
  run.Settle();
  run.Sent();
  run.Click("btnBuild");
  const std::string sent = run.Sent();
  EXPECT_EQ(std::ranges::count(sent, '#'), 64);  // 1024 taps
  SpectrumTrace yellow{};
  for (std::size_t i = 0; i < yellow.size(); ++i) yellow[i] = ScaledLine(Hilly()[i], DisplayBottomTenths);
  const SpectrumTrace built = BuildSpectralInverse(yellow, SifBuildOf(run.record, Second));
  EXPECT_NE(built[200], built[210]);
  for (int line = 0; line < TraceLines; ++line) {
    ASSERT_EQ(run.record.sifCurve[Second][line], built[static_cast<std::size_t>(line)]);
  }
  const PlotTrace& shape = run.Spectrum().Traces().back();
  EXPECT_NEAR(static_cast<double>(shape.values[200]), static_cast<double>(built[200]), 1e-3);
  EXPECT_EQ(run.record.filterActive[Second], 1);
  EXPECT_EQ(run.Get("btnFilterActive"), "1");
  EXPECT_EQ(run.Click("btnOK"), "");
  run.session.history.Undo();
  EXPECT_EQ(run.session.history.UndoTitle(), "Build");
  run.session.history.Undo();
  EXPECT_EQ(run.record.sifCurve[Second][200], 0);
}

TEST(CtlSIF, AFailedBuildSaysSoAndLeavesTheFrameAsTheWayOut) {
  SifRun run;
  run.Open();
  run.Settle();
  run.record.sampleRate = 1e6F;  // no bandwidth has it: the lower ramp has no line
  run.Click("btnBuild");
  ASSERT_EQ(run.test.desk.boxes.size(), 1U);
  EXPECT_EQ(run.test.desk.boxes.back().title, "Error!");
  EXPECT_EQ(run.test.desk.boxes.back().text, "SIF Calculation Error");
  EXPECT_FALSE(run.test.desk.hourglass);
  EXPECT_EQ(run.record.sifCurve[Second][200], 0);
  EXPECT_EQ(run.record.filterActive[Second], 0);
  run.session.panels.Refresh();
  for (const char* button : {"btnOK", "btnBuild", "btnStore", "btnRecall", "btnFilterActive"}) {
    EXPECT_EQ(run.Click(button), "it is disabled") << button;
  }
  run.CloseTop();
  EXPECT_EQ(run.Top().name, "MasterControl");
  EXPECT_TRUE(run.record.loans.empty());
}

TEST(CtlSIF, IsStoredAndRecalled) {
  SifRun run;
  run.Open();
  run.Settle();
  run.Click("btnBuild");
  const SystemSettings stored = run.record;
  run.Click("btnStore");
  run.Type("txtFileName", "levelled");
  run.Click("btnOK");
  run.Set("ModeSelect(1)", "1");
  run.Type("txtLoAttack", "60");
  run.Click("btnBuild");
  run.Settle();
  run.Sent();
  EXPECT_NE(run.record.sifCurve[Second], stored.sifCurve[Second]);
  run.Click("btnRecall");
  run.Type("txtFileName", "levelled");
  run.Click("btnOK");
  EXPECT_THAT(run.Sent(), HasSubstr("#0"));
  EXPECT_EQ(run.Top().name, "CtlSIF");
  EXPECT_EQ(run.Get("ModeSelect(0)"), "1");
  EXPECT_EQ(run.Limits(), (std::array<int, 2>{100, 300}));
  EXPECT_EQ(run.record.sifCurve[Second], stored.sifCurve[Second]);
}

TEST(CtlSIF, TellsAnOverloadedAnalyzer) {
  SifRun run;
  std::uint16_t mode = 0x7FFF;
  run.unit.Now().sound.status = [&mode] { return unit::Status{.unitMode = mode}; };
  run.Open();
  const auto colour = [&](const char* name) { return std::get<Label*>(run.Find(name))->OwnColour(); };
  run.Settle();
  EXPECT_EQ(run.Get("YellowTraceOVLDisplay"), "Gain");
  EXPECT_EQ(colour("YellowTraceOVLDisplay"), 0xC00000U);
  mode = 0x8000;
  run.Settle();
  EXPECT_EQ(run.Get("YellowTraceOVLDisplay"), "OVL");
  for (const char* name : {"YellowTraceOVLDisplay", "YellowMarkerLabel", "BlueMarkerLabel"}) {
    EXPECT_EQ(colour(name), 0x0000FFU);
  }
  mode = 0;
  run.Settle();
  EXPECT_EQ(colour("YellowMarkerLabel"), 0x00FFFFU);
  EXPECT_EQ(colour("BlueMarkerLabel"), 0xFF8080U);
}

}  // namespace
}  // namespace vc
