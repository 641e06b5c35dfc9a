// The panels of the adaptive filters, with the unit on the other end of the line.
#include <algorithm>
#include <cmath>
#include <random>

#include "PanelOpening.h"
#include "link/Status.h"
#include "panels/AdaptivePanels.h"

namespace vc {
namespace {

struct Adaptive : testing::Test {
  support::PanelRun run;
  SystemSettings& record = run.record;

  Adaptive() { run.Edit("numFilters", "2"); }
  void Open(std::int16_t kind, int stage = 2) {
    run.OpenFilter(stage, kind);
    run.Settle();
  }
  const Slider& SliderOf(const std::string& name) const { return *std::get<Slider*>(run.Find(name)); }
  const ControlCore& Core(const std::string& name) const { return CoreOf(run.Find(name)); }
};

// In blocks of sixteen, the end of the block that lies in the way's direction.
int Blocks(int asked, int stood) {
  if (asked < 120 || asked == stood) return asked;
  return (asked > stood ? (asked + 15) / 16 : asked / 16) * 16;
}

// Over the whole range and back, then by leaps.
TEST_F(Adaptive, TheSizeMovesInBlocksAwayFromWhereItWas) {
  run.Edit("numFilters", "1");
  for (const auto& [most, step] : {std::pair{1024, 1}, {6144, 11}}) {
    record.ch1Taps[1] = static_cast<std::int16_t>(most);
    run.session.edits.Fit();
    Open(FilterKind::OneChAdaptive, 1);
    std::mt19937 random(3);
    std::uniform_int_distribution<int> anywhere(4, most);
    for (int round = 0; round < 3 * most / step; ++round) {
      const int way = std::max(4, round * step);
      const int asked = way < most ? way : way < 2 * most - 4 ? 2 * most - way : anywhere(random);
      const int stood = record.ch1Taps[1];
      run.Set("sldrTaps", std::to_string(asked));
      ASSERT_EQ(record.ch1Taps[1], Blocks(asked, stood)) << asked << " of " << stood;
      ASSERT_EQ(SliderOf("sldrTaps").Position(), record.ch1Taps[1]);
    }
    run.CloseTop();
  }
}

TEST_F(Adaptive, SizeAndSpanAreToldInSamplesAndInTime) {
  record.ch2Taps[2] = 500;  // as a file may have it
  Open(FilterKind::RefCanceller);
  EXPECT_EQ(run.Get("txtTaps") + " " + run.Get("txtTapsTime"), "500 69.444");
  const std::tuple<std::string, const char*, int, const char*> rows[] = {
      {"txtTaps", "127", 112, "112 15.556"},
      {"txtTapsTime", "25", 192, "192 26.667"},  // 180 and up
      {"txtTapsTime", "9000", 1024, "1024 142.222"},
      {"txtPredSpan", "72", 71, "72 10.000"},
      {"txtPredSpan", "0", 0, "1 0.139"},
      {"txtPredSpan", "4096", 4094, "4095 568.750"},  // the largest cannot be typed
      {"txtPredSpanTime", "10", 71, "72 10.000"},
      {"txtPredSpanTime", "900", 4095, "4096 568.889"}};
  for (const auto& [box, text, stored, shown] : rows) {
    SCOPED_TRACE(box + " " + text);
    const std::string first = box.substr(0, box.find("Time"));
    run.Type(box, text);
    EXPECT_EQ(first == "txtTaps" ? record.ch2Taps[2] : record.ch2Delay[2], stored);
    EXPECT_EQ(run.Get(first) + " " + run.Get(first + "Time"), shown);
  }
  EXPECT_EQ(run.session.history.UndoTitle(), "Delay");
  run.Type("txtTaps", "512");
  run.Settle();
  run.Type("txtTapsTime", "71.112");  // 512.01 taps are what there is: nothing is stored
  EXPECT_EQ(record.settingsChanged, 0);
}

// The grading counted up step by step; a typed number goes to the nearest position, halves to the even one.
TEST_F(Adaptive, TheRateHasOneGradingToShowAndOneToType) {
  record.ch1Mu[2] = 0;  // as a file may have it
  Open(FilterKind::OneChAdaptive);
  EXPECT_EQ(record.ch1Mu[2], 1);
  int shown = 0;
  for (int position = 1; position <= 2047; ++position) {
    shown += position <= 256 ? 1 : position <= 1024 ? 2 : 4;
    run.Set("sldrAdapt", std::to_string(position));
    ASSERT_EQ(record.ch1Mu[2], position);
    ASSERT_EQ(run.Get("txtAdapt"), std::to_string(shown));
  }
  for (int typed = -1; typed <= 6000; ++typed) {
    run.Type("txtAdapt", std::to_string(typed) + " ");
    const double exact = typed <= 256 ? typed : typed <= 1024 ? (typed + 256) / 2.0 : (typed + 2304) / 4.0;
    ASSERT_EQ(record.ch1Mu[2], std::clamp(std::nearbyint(exact), 1.0, 2047.0)) << typed;
  }
  run.Type("txtAdapt", "1100");
  run.Type("txtAdapt", "32768");  // not a number of 16 bits
  EXPECT_EQ(std::to_string(record.ch1Mu[2]) + " " + run.Get("txtAdapt"), "851 1446");
}

TEST_F(Adaptive, ConditionsOpenTheThresholdAndNameTheirSignal) {
  record.ch1AdaptSelect[2] = 6;
  record.ch2AdaptSelect[2] = -3;
  Open(FilterKind::OneChAdaptive);
  EXPECT_EQ(record.ch1AdaptSelect[2], 4);
  for (const auto& [typed, stored] : {std::pair{"5", -1}, {"-99", -50}, {"-18", -18}}) {
    run.Type("txtThresh", typed);
    EXPECT_EQ(record.ch1Thresh[2], stored);
    EXPECT_EQ(std::get<LevelBar*>(run.Find("lbInput"))->MarkerValue(1), DbToBarPosition(stored));
  }
  EXPECT_EQ(PressKey(run.Find("sldrThresh"), "Up"), "");
  EXPECT_EQ(run.Get("txtThresh"), "-17");
  run.CloseTop();
  Open(FilterKind::RefCanceller);
  EXPECT_EQ(record.ch2AdaptSelect[2], 0);
  const char* const signals[] = {"Input", "Input", "Input", "Rejected", "Rejected", "Reference", "Reference"};
  for (int choice = 6; choice >= 0; --choice) {
    EXPECT_EQ(run.Click("AdaptSelect(" + std::to_string(choice) + ")"), "");
    EXPECT_EQ(record.ch2AdaptSelect[2], choice);
    EXPECT_EQ(Core("lblInput").Caption(), signals[choice]);
    for (const char* name :
         {"txtThresh", "lblThreshVal", "lblThreshold", "sldrThresh", "lblInput", "lbInput"}) {
      EXPECT_EQ(Core(name).Active(), choice != 0) << name << choice;
    }
  }
}

TEST_F(Adaptive, LampAndLevelAreTheirStages) {
  // Configuration, stage, the lamp's bit, the level.
  for (const auto& [configMode, stage, bit, level] :
       {std::tuple{0, 2, 6, 200}, {1, 2, 5, 400}, {2, 2, 5, 300}, {2, 5, 4, 400}}) {
    run.Edit("configMode", std::to_string(configMode));
    Open(FilterKind::OneChAdaptive, stage);
    run.session.periodic.EnableMainTimer(false);
    UnitStatus& status = run.session.device.status;
    status.stageStatus = {100, 200, 300, 400, 500, 600, 0, 0, 0, 0};
    for (const bool lit : {true, false}) {
      status.unitMode = lit ? 1 << bit : 0xFFFF & ~(1 << bit);
      run.test.loop.RunFor(110);
      EXPECT_TRUE(Core("imgLedOn").Visible() == lit && Core("imgLedOff").Visible() != lit);
    }
    EXPECT_EQ(std::get<LevelBar*>(run.Find("lbInput"))->Value(), DbToBarPosition(LevelToDb(level, true)));
    EXPECT_EQ(Core("btnStore").Active(), configMode != ConfigMode::StereoLinked);
    run.session.periodic.EnableMainTimer(true);
    run.CloseTop();
  }
}

TEST_F(Adaptive, SwitchesAreTheMastersAndTheChannelItsStages) {
  run.Edit("configMode", "2");
  const std::string step = run.session.history.UndoTitle();
  Open(FilterKind::RefCanceller, 5);
  EXPECT_EQ(record.ch2RightChannel[5], 1);
  EXPECT_EQ(run.session.history.UndoTitle(), step);
  const std::int16_t adapted = record.filterAdapt[5];
  for (const char* choice :
       {"ProcessOutput(1)", "DelayChan(1)", "btnAutoNormalize", "btnAdapt", "btnClear"}) {
    EXPECT_EQ(run.Click(choice), "");
  }
  EXPECT_EQ(record.ch2ProcessOutput[5] * 100 + record.ch2DelayChan[5] * 10 + record.ch2AutoNormalize[5], 111);
  EXPECT_EQ(record.filterAdapt[5], 1 - adapted);
  EXPECT_NE(record.filterDirty[5], 0);
  run.Edit("adaptEnabled", "0");
  EXPECT_EQ(run.Click("btnAdapt"), "it is disabled");
  run.Edit("configMode", "0");
  Open(FilterKind::RefCanceller, 5);
  EXPECT_EQ(record.ch2RightChannel[5], 0);
}

TEST_F(Adaptive, CoefficientsAreExchangedByTheirKind) {
  std::string asked;
  PanelContext context = support::LoneContext(run, "");
  context.exchangeTable = Wire<void(const TableExchange&)>([&asked](const TableExchange& exchange) {
    asked += std::to_string(exchange.direction) + std::to_string(exchange.fileType) + " ";
  });
  for (const AdaptiveFilter* kind : {&Ctl1CH, &Ctl2CH}) {
    AdaptivePanel panel(context, *kind);
    panel.panel.Fill();
    run.session.forms.Show(panel.panel.form);
    for (const char* button : {"btnStore", "btnRecall", "btnOK"}) run.Click(button);
  }
  EXPECT_EQ(asked, "08 18 07 17 ");
}

TEST_F(Adaptive, ShowsItsLimitsAnewAfterAFit) {
  Open(FilterKind::OneChAdaptive);
  run.Edit("ch1Taps", "2000", 2);
  EXPECT_EQ(Core("fraTaps").Caption(), "Filter Size (2048 taps max)");
  EXPECT_EQ(SliderOf("sldrTaps").PositionMax() + SliderOf("sldrPredSpan").PositionMax(), 2048 + 8191);
  run.Type("txtTaps", "900");
  EXPECT_EQ(Core("fraTaps").Caption(), "Filter Size (2048 taps max)");
  run.Settle();  // the fit comes with the tick
  EXPECT_EQ(Core("fraTaps").Caption(), "Filter Size (1024 taps max)");
  EXPECT_EQ(run.Get("txtTaps"), "896");
}

struct AdjustMaximum : Adaptive {
  // The chosen row, how many are on show, and what the last of them says.
  std::string Rows() {
    run.Click("btnAdjustMaximum");
    std::string chosen, last;
    int shown = 0;
    for (; shown < 8 && Core("AdjustChoice(" + std::to_string(shown) + ")").Shown(); ++shown) {
      last = "AdjustChoice(" + std::to_string(shown) + ")";
      if (run.Get(last) == "1") chosen = std::to_string(shown);
    }
    std::string told = chosen + "/" + std::to_string(shown) + " " + Core(last).Caption();
    run.Press("Escape");
    return told;
  }
};

TEST_F(AdjustMaximum, OffersWhatTheFreeStagesAllow) {
  Open(FilterKind::OneChAdaptive);
  EXPECT_EQ(Rows(), "0/5 Increase Maximum Size to 5120 taps");
  run.Edit("ch1Taps", "3000", 2);
  EXPECT_EQ(Rows(), "2/5 Increase Maximum Size to 5120 taps");
  run.Edit("numFilters", "4");
  EXPECT_EQ(Rows(), "2/3 Keep Maximum Size at 3072 taps");
  run.CloseTop();
  run.Edit("numFilters", "1");
  Open(FilterKind::OneChAdaptive, 1);
  EXPECT_EQ(Rows(), "0/6 Increase Maximum Size to 6144 taps");
  run.CloseTop();
  run.Edit("configMode", "2");
  run.Edit("numFilters", "2");
  Open(FilterKind::RefCanceller, 2);
  EXPECT_EQ(Rows(), "0/2 Increase Maximum Size to 2048 taps");
  run.Edit("filterType", "0", 5);
  run.Edit("ch2Taps", "2000", 5);  // its partner borrows for both
  EXPECT_EQ(Rows(), "1/2 Keep Maximum Size at 2048 taps");
  run.Click("btnAdjustMaximum");
  EXPECT_EQ(Core("AdjustChoice(0)").Caption(), "Reduce Maximum Size to 1024 taps");
}

TEST_F(AdjustMaximum, TheKeptSizeNeedsNoFitAndAnotherIsOneStep) {
  Open(FilterKind::OneChAdaptive);
  const auto take = [this](int choice) {
    run.Click("btnAdjustMaximum");
    run.Click("AdjustChoice(" + std::to_string(choice) + ")");
    run.Sent();
    run.Click("btnOK");
  };
  take(0);
  EXPECT_EQ(record.ch1Taps[2], 1024);
  EXPECT_EQ(record.settingsChanged, 7);
  EXPECT_NE(record.filterDirty[2], 0);
  run.Settle();
  EXPECT_LT(run.Sent().size(), 100U);  // the difference, at its time
  for (const int choice : {2, 1}) {
    take(choice);
    EXPECT_GT(run.Sent().size(), 500U) << choice;  // a whole download, at once
    EXPECT_EQ(record.ch1Taps[2], 1024 * (choice + 1));
    EXPECT_EQ(SliderOf("sldrTaps").PositionMax(), 1024 * (choice + 1));
  }
  for (const int size : {3072, 1024}) {
    run.Press("Ctrl+Z");
    EXPECT_EQ(record.ch1Taps[2] * 10000 + record.maxTaps[2], size * 10001);
  }
  EXPECT_TRUE(run.test.desk.boxes.empty());
}

TEST_F(AdjustMaximum, LetsTheLevelStandUntilItIsAnswered) {
  Open(FilterKind::OneChAdaptive);
  const auto& bar = *std::get<LevelBar*>(run.Find("lbInput"));
  run.session.periodic.EnableMainTimer(false);
  run.Click("btnAdjustMaximum");
  run.session.device.status.stageStatus[1] = FullScaleLevel;
  run.test.loop.RunFor(500);
  EXPECT_LT(bar.Value(), DbToBarPosition(0));
  run.Press("Escape");
  EXPECT_EQ(bar.Value(), DbToBarPosition(0));
}

}  // namespace
}  // namespace vc
