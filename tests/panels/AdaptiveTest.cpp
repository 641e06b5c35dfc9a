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
  // What an edit raises.
  std::string Marks(const std::function<void()>& edit) const {
    record.stageChanged.Fill(0);
    record.filterDirty.Fill(0);
    record.fitPending = record.settingsChanged = 0;
    edit();
    return std::to_string(std::ranges::count(record.stageChanged, -1)) + "/" +
           std::to_string(record.settingsChanged) + (record.filterDirty[2] == 0 ? "" : " dirty") +
           (record.fitPending == 0 ? "" : " fit");
  }
};

// In blocks of sixteen, counted instead of masked: the end of the block that lies in the way's direction.
int Blocks(int asked, int stood) {
  if (asked < 120) return asked;
  int size = 0;
  while (size < asked) size += 16;
  return size == asked || asked > stood ? size : size - 16;
}

// Over the whole range and back, then by leaps.
TEST_F(Adaptive, TheSizeMovesInBlocksAwayFromWhereItWas) {
  run.Edit("numFilters", "1");
  for (const auto& [most, step] : {std::pair{1024, 1}, {6144, 11}}) {
    record.ch1Taps[1] = static_cast<std::int16_t>(most);
    run.session.edits.Fit();
    Open(FilterKind::OneChAdaptive, 1);
    EXPECT_EQ(Core("fraTaps").Caption(), "Filter Size (" + std::to_string(most) + " taps max)");
    std::vector<int> positions;
    for (int position = 4; position <= most; position += step) positions.push_back(position);
    positions.insert(positions.end(), positions.rbegin(), positions.rend());
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) positions.push_back(std::uniform_int_distribution<int>(4, most)(random));
    for (const int asked : positions) {
      const int stood = record.ch1Taps[1];
      run.Set("sldrTaps", std::to_string(asked));
      ASSERT_EQ(record.ch1Taps[1], asked == stood ? stood : Blocks(asked, stood)) << asked << " of " << stood;
      ASSERT_EQ(SliderOf("sldrTaps").Position(), record.ch1Taps[1]);
    }
    run.CloseTop();
  }
}

TEST_F(Adaptive, SizeAndSpanAreToldInSamplesAndInTime) {
  record.ch2Taps[2] = 100;
  record.ch2Delay[2] = 0;
  Open(FilterKind::RefCanceller);
  const std::string size = "6/7 dirty fit", span = "6/5", none = "0/0";
  const std::tuple<std::string, const char*, std::string, int, const char*> rows[] = {
      {"txtTaps", "127", size, 128, "128 17.778"},
      {"txtTaps", "128 ", none, 128, "128 17.778"},
      {"txtTapsTime", "17.78", none, 128, "128 17.778"},  // 128.02 taps
      {"txtTapsTime", "25", size, 192, "192 26.667"},     // 180 and up
      {"txtTaps", "2", size, 4, "4 0.556"},
      {"txtTapsTime", "9000", size, 1024, "1024 142.222"},
      {"txtPredSpan", "72", span, 71, "72 10.000"},
      {"txtPredSpan", "1", span, 0, "1 0.139"},
      {"txtPredSpan", "0", none, 0, "1 0.139"},
      {"txtPredSpan", "4096", span, 4094, "4095 568.750"},  // the largest cannot be typed
      {"txtPredSpanTime", "10", span, 71, "72 10.000"},
      {"txtPredSpanTime", "900", span, 4095, "4096 568.889"},
      {"txtPredSpan", "40000", none, 4095, "4096 568.889"}};
  for (const auto& [box, text, marks, stored, shown] : rows) {
    SCOPED_TRACE(box + " " + text);
    const bool taps = box.starts_with("txtTaps");
    EXPECT_EQ(Marks([&] { run.Type(box, text); }), marks);
    EXPECT_EQ(taps ? record.ch2Taps[2] : record.ch2Delay[2], stored);
    const std::string first = taps ? "txtTaps" : "txtPredSpan";
    EXPECT_EQ(run.Get(first) + " " + run.Get(first + "Time"), shown);
  }
  EXPECT_EQ(run.session.history.UndoTitle(), "Delay");
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
  const auto& bar = *std::get<LevelBar*>(run.Find("lbInput"));
  for (const auto& [typed, stored] : {std::pair{"-30", -30}, {"5", -1}, {"-99", -50}, {"-18", -18}}) {
    run.Type("txtThresh", typed);
    EXPECT_EQ(record.ch1Thresh[2], stored);
    EXPECT_EQ(bar.MarkerValue(1), DbToBarPosition(stored));
    EXPECT_EQ(Core("lblThreshVal").Caption(), std::to_string(stored) + " dB");
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
  struct Case {
    std::int16_t configMode;
    int stage, lampBit;
    std::int32_t level;
  };
  for (const auto& [configMode, stage, lampBit, level] :
       {Case{ConfigMode::Mono, 2, 6, 200}, Case{ConfigMode::StereoLinked, 2, 5, 400},
        Case{ConfigMode::StereoIndependent, 2, 5, 300}, Case{ConfigMode::StereoIndependent, 5, 4, 400}}) {
    run.Edit("configMode", std::to_string(configMode));
    Open(FilterKind::OneChAdaptive, stage);
    run.session.periodic.EnableMainTimer(false);
    UnitStatus& status = run.session.device.status;
    status.stageStatus = {100, 200, 300, 400, 500, 600, 0, 0, 0, 0};
    for (const bool lit : {true, false}) {
      status.unitMode = lit ? 1 << lampBit : 0xFFFF & ~(1 << lampBit);
      run.test.loop.RunFor(110);
      EXPECT_EQ(Core("imgLedOn").Visible(), lit) << configMode << stage;
      EXPECT_EQ(Core("imgLedOff").Visible(), !lit);
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
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.Get("btnAdapt"), std::to_string(adapted));
  run.CloseTop();
  run.Edit("configMode", "0");
  run.Edit("numFilters", "5");
  run.Click("btnAdaptEnabled");  // nothing adapts: the switch cannot be used
  Open(FilterKind::RefCanceller, 5);
  EXPECT_EQ(record.ch2RightChannel[5], 0);
  EXPECT_EQ(run.Click("btnAdapt"), "it is disabled");
}

TEST_F(Adaptive, CoefficientsAreExchangedByTheirKind) {
  std::string asked;
  PanelContext context = support::LoneContext(run, "");
  context.exchangeTable = Wire<void(const TableExchange&)>([&asked](const TableExchange& exchange) {
    asked += (exchange.direction == TableExchange::Store ? "store " : "recall ") +
             std::to_string(exchange.fileType) + " ";
  });
  for (const AdaptiveFilter* kind : {&Ctl1CH, &Ctl2CH}) {
    AdaptivePanel panel(context, *kind);
    panel.panel.Fill();
    run.session.forms.Show(panel.panel.form);
    for (const char* button : {"btnStore", "btnRecall", "btnOK"}) run.Click(button);
  }
  EXPECT_EQ(asked, "store 8 recall 8 store 7 recall 7 ");
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
  // The rows on show by the first letter of what they do and their size, the chosen one with a star.
  std::string Rows() {
    run.Click("btnAdjustMaximum");
    std::string rows;
    for (int k = 0; k < 8; ++k) {
      const std::string name = "AdjustChoice(" + std::to_string(k) + ")";
      if (!Core(name).Shown()) continue;
      const std::string& words = Core(name).Caption();
      const auto size = words.find_first_of("0123456789");
      rows += words.substr(0, 1) + words.substr(size, words.find(' ', size) - size) +
              (run.Get(name) == "1" ? "* " : " ");
    }
    run.Press("Escape");
    return rows;
  }
};

TEST_F(AdjustMaximum, OffersWhatTheFreeStagesAllow) {
  Open(FilterKind::OneChAdaptive);
  EXPECT_EQ(Rows(), "K1024* I2048 I3072 I4096 I5120 ");
  run.Edit("ch1Taps", "3000", 2);
  EXPECT_EQ(Rows(), "R1024 R2048 K3072* I4096 I5120 ");
  run.Edit("numFilters", "4");
  EXPECT_EQ(Rows(), "R1024 R2048 K3072* ");
  run.Edit("numFilters", "1");
  run.CloseTop();
  Open(FilterKind::OneChAdaptive, 1);
  EXPECT_EQ(Rows(), "K1024* I2048 I3072 I4096 I5120 I6144 ");
  run.CloseTop();
  run.Edit("configMode", "2");
  run.Edit("numFilters", "2");
  for (const int stage : {2, 5}) {
    Open(FilterKind::RefCanceller, stage);
    EXPECT_EQ(Rows(), "K1024* I2048 ");
    run.CloseTop();
  }
  run.Edit("ch2Taps", "2000", 5);
  Open(FilterKind::RefCanceller, 2);  // its partner has borrowed for both
  EXPECT_EQ(Rows(), "R1024 K2048* ");
}

TEST_F(AdjustMaximum, TheKeptSizeNeedsNoFitAndAnotherIsOneStep) {
  Open(FilterKind::OneChAdaptive);
  const auto take = [this](int choice) {
    run.Click("btnAdjustMaximum");
    run.Click("AdjustChoice(" + std::to_string(choice) + ")");
    run.Sent();
    return Marks([this] { run.Click("btnOK"); });
  };
  EXPECT_TRUE(take(0).starts_with("6/7 dirty"));
  EXPECT_EQ(run.Sent(), "");
  EXPECT_EQ(record.ch1Taps[2], 1024);
  run.Settle();
  EXPECT_LT(run.Sent().size(), 100U);  // the difference, and no more
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

TEST_F(AdjustMaximum, GoesWithItsPanelAndLetsTheLevelGoOn) {
  Open(FilterKind::OneChAdaptive);
  const auto& bar = *std::get<LevelBar*>(run.Find("lbInput"));
  run.Click("btnAdjustMaximum");
  run.session.periodic.EnableMainTimer(false);
  run.session.device.status.stageStatus[1] = FullScaleLevel;
  run.test.loop.RunFor(500);
  EXPECT_LT(bar.Value(), DbToBarPosition(0));
  run.Press("Escape");
  EXPECT_EQ(bar.Value(), DbToBarPosition(0));
  run.Click("btnAdjustMaximum");
  run.Edit("filterType", "3", 2);
  EXPECT_EQ(run.Top().name, "MasterControl");
}

}  // namespace
}  // namespace vc
