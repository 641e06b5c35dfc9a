// The panels of comb and inverse comb, and of single notch and slot, worked by the names of their controls.
#include "PanelRun.h"
#include "model/Kinds.h"
#include "widgets/PlotHandle.h"

namespace vc {
namespace {

struct Combs : testing::Test {
  support::PanelRun run;
  Combs() { run.Edit("numFilters", "2"); }
  void Open(std::int16_t kind, std::int16_t period, std::int16_t limit) {
    run.record.combFreq[2] = period;
    run.record.combLimit[2] = limit;
    run.record.combDepth[2] = 30;
    run.OpenFilter(2, kind);
  }
  // Frequency, limit and what is stored for them.
  std::string Shown() const {
    return run.Get("txtFreq") + " " + run.Get("txtLimit") + " " + std::to_string(run.record.combFreq[2]) +
           " " + std::to_string(run.record.combLimit[2]);
  }
};

TEST_F(Combs, TheSliderRunsAgainstThePeriod) {
  Open(FilterKind::Comb, 72, 1500);
  EXPECT_EQ(run.Top().Caption(), "Comb (Filter 2)");
  EXPECT_EQ(Shown(), "100.000 1500 72 1500");
  for (const auto& [typed, shown] : {std::pair{"150", "150.000 1500 48 1500"},
                                     {"151", "150.000 1500 48 1500"},
                                     {"0", "150.000 1500 48 1500"},  // no period leads there
                                     {"1", "9.000 1500 800 1500"},
                                     {"30000", "1440.000 1500 5 1500"}}) {
    run.Type("txtFreq", typed);
    EXPECT_EQ(Shown(), shown) << typed;
  }
  run.Type("txtLimit", "1513");
  EXPECT_EQ(run.record.combLimit[2], 1525);  // in whole parts of 25 Hz
  run.Settle();
  EXPECT_EQ((*run.Stage(2).block)[2] + 256 * (*run.Stage(2).block)[3], 1525);
}

TEST_F(Combs, FundamentalAndLimitHoldEachOther) {
  Open(FilterKind::Comb, 72, 1000);
  const auto& frequency = *std::get<Slider*>(run.Find("sldrFreq"));
  run.Set("sldrFreq", "794");                  // 1200 Hz
  EXPECT_EQ(Shown(), "1028.571 1000 7 1000");  // 7200 / 1000 in whole numbers
  EXPECT_EQ(frequency.Position(), 793);
  EXPECT_EQ(run.test.desk.beeps, 1);
  run.Set("sldrFreq", "792");
  EXPECT_EQ(Shown(), "900.000 1000 8 1000");
  run.Set("sldrLimit", "2");
  EXPECT_EQ(Shown(), "900.000 900 8 900");
  run.Set("sldrFreq", "789");  // 654.5 Hz
  run.Set("sldrLimit", "2");
  EXPECT_EQ(run.record.combLimit[2], 675);  // the first part of 25 Hz above 654
  run.Press("Ctrl+Z");
  run.Press("Ctrl+Z");
  EXPECT_EQ(Shown(), "900.000 900 8 900");
}

TEST_F(Combs, TheInverseCombShowsALowLimitAtItsLeastOneAndLeavesItThere) {
  Open(FilterKind::InverseComb, 72, 1000);
  EXPECT_EQ(Shown(), "100.000 2500 72 1000");
  run.Set("sldrFreq", "795");
  EXPECT_EQ(Shown(), "1440.000 2500 5 1000");  // whatever the limit is
  EXPECT_EQ(run.test.desk.beeps, 0);
  run.CloseTop();
  run.session.panels.OpenFilter(2);
  EXPECT_EQ(run.record.combLimit[2], 1000);
  run.Set("sldrLimit", "101");
  EXPECT_EQ(run.record.combLimit[2], 2525);
  EXPECT_EQ(run.Click("optHarmonic(2)"), "");
  run.CloseTop();
  run.OpenFilter(2, FilterKind::Comb);  // the other kind of comb has the same values
  EXPECT_EQ(Shown(), "1440.000 2525 5 2525");
  EXPECT_EQ(run.Get("optHarmonic(2)"), "1");
}

TEST_F(Combs, HandlesMoveFundamentalDepthAndLimit) {
  Open(FilterKind::Comb, 72, 1500);
  const Plot& plot = *std::get<Plot*>(run.Find("pltResponse"));
  ASSERT_EQ(plot.handles.size(), 2U);
  PlotHandle &tooth = *plot.handles[0], &limit = *plot.handles[1];
  tooth.Hold();
  for (const double hertz : {120.0, 0.0, 301.0}) tooth.MoveTo(hertz, -44.6);
  tooth.Release();
  EXPECT_EQ(run.record.combFreq[2], 24);
  EXPECT_EQ(run.record.combDepth[2], 45);
  EXPECT_EQ(tooth.Reading(), "300.000 Hz, 45 dB");
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.combFreq[2] * 100 + run.record.combDepth[2], 7230);  // one step
  limit.Hold();
  limit.MoveTo(2010, 0);
  limit.Release();
  EXPECT_EQ(run.record.combLimit[2], 2000);
}

TEST(SingleBands, AreDraggedAndWidenedByTheWheel) {
  for (const bool notch : {true, false}) {
    support::PanelRun run;
    auto& frequency = notch ? run.record.notchFreq[1] : run.record.slotFreq[1];
    auto& width = notch ? run.record.notchWidth[1] : run.record.slotWidth[1];
    auto& atten = notch ? run.record.notchAtten[1] : run.record.slotAtten[1];
    run.OpenFilter(1, notch ? FilterKind::Notch : FilterKind::Slot);
    run.Type("txtWidth", "400");
    const Plot& plot = *std::get<Plot*>(run.Find("pltResponse"));
    PlotHandle &band = *plot.handles.front(), &level = *plot.handles.back();
    EXPECT_EQ(&band == &level, notch);  // what a notch stops lies where the notch is
    const std::int16_t before = width;
    band.Hold();
    band.MoveTo(1234.4, -20);
    band.Release();
    EXPECT_EQ(frequency, 1234);
    EXPECT_TRUE(band.Turn(1, true));
    EXPECT_EQ(width, before - 1);
    level.Hold();
    level.MoveTo(1234.4, -25);
    level.Release();
    EXPECT_EQ(atten, 25);
    const PlotTrace& curve = plot.Traces().front();
    EXPECT_NEAR(*plot.LevelAt(curve, 1234), notch ? -25 : 0, 0.5);
    EXPECT_NEAR(*plot.LevelAt(curve, 3000), notch ? 0 : -25, 0.5);
  }
}

}  // namespace
}  // namespace vc
