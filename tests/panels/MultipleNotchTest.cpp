// The panels of multiple notches and slots: rows that wait for their button, what the unit holds meanwhile,
// and what is seen of both.
#include <algorithm>

#include "PanelRun.h"
#include "model/Kinds.h"
#include "widgets/PlotHandle.h"

namespace vc {
namespace {

using support::PanelRun;

using Rows = Grid<std::int16_t, 1, FilterStages, 1, 16> SystemSettings::*;

struct NotchKind {
  std::int16_t kind;
  Rows frequency, width;
  const char* last;
};
const NotchKind Notches{FilterKind::MultipleNotch, &SystemSettings::mnotchFreq, &SystemSettings::mnotchWidth,
                        "Notch 16"};
const NotchKind Slots{FilterKind::MultipleSlot, &SystemSettings::mslotFreq, &SystemSettings::mslotWidth,
                      "Slot 17"};

struct Multiples : testing::TestWithParam<NotchKind> {
  PanelRun run;
  Multiples() {
    run.Edit("numFilters", "2");
    run.Edit("filterType", std::to_string(GetParam().kind), 2);
    run.session.panels.OpenFilter(2);
    run.Settle();
    run.Sent();
  }
  std::int16_t Hertz(int row) { return (run.record.*GetParam().frequency)[2][row]; }
  const Plot& Curve() const { return *std::get<Plot*>(run.Find("pltResponse")); }
  std::string Said() const { return std::get<Label*>(run.Find("lblBuilt"))->core.Caption(); }
  const std::vector<std::int32_t>& Held() const { return run.Stage(2).coefficients; }
  // As the unit has it: through or gone.
  double LevelBuilt(double hertz) const { return *Curve().LevelAt(Curve().Traces().front(), hertz); }
  int Packets() {
    const std::string sent = run.Sent();
    return static_cast<int>(std::ranges::count(sent, '#'));
  }
};

TEST_P(Multiples, RowsShowAndTakeHertz) {
  EXPECT_EQ(std::get<Frame*>(run.Find("fraControl(15)"))->core.Caption(), GetParam().last);
  EXPECT_EQ(run.Get("txtFreq(15)") + run.Get("txtWidth(15)"), "(Out)21.6");
  for (const auto& [typed, shown] :
       {std::pair{"1200", "1200"}, {"30000", "3200"}, {"(Out)", "3200"}, {"0", "(Out)"}, {"-5", "(Out)"}}) {
    run.Type("txtFreq(15)", typed);
    EXPECT_EQ(run.Get("txtFreq(15)"), shown) << typed;
  }
  run.Type("txtFreq(4)", "777");
  EXPECT_EQ(Hertz(5) * 10 + Hertz(4), 7770);
  for (const auto& [typed, bins] : {std::pair{"100", 7}, {"-3", 1}, {"9999", 200}}) {
    run.Type("txtWidth(4)", typed);
    EXPECT_EQ((run.record.*GetParam().width)[2][5], bins) << typed;
  }
  EXPECT_EQ(run.Get("txtWidth(4)"), "2820.0");  // 401 of 1024 parts of 7200 Hz, and a half
  EXPECT_EQ(run.session.history.UndoTitle(),
            std::string(GetParam().last).substr(0, 4) == "Slot" ? "Slot 5, Width" : "Notch 5, Width");
}

TEST_P(Multiples, AttenuationIsShownInDecibels) {
  run.Type("txtAtten", "6");
  EXPECT_EQ(run.Get("txtAtten") + "/" + std::to_string(run.record.filterAtten[2]), "-6.0/16345");
  run.Set("sldrAtten", "0.5");
  EXPECT_EQ(run.Get("txtAtten") + "/" + std::to_string(run.record.filterAtten[2]), "-6.0/16384");
  PlotHandle& level = *Curve().handles.back();
  level.Hold();
  level.MoveTo(0, -20);
  level.Release();
  EXPECT_EQ(run.Get("txtAtten"), "-20.0");
  level.MoveTo(0, 3);
  EXPECT_EQ(run.record.filterAtten[2], 0);
}

TEST_P(Multiples, WaitForBuildAndAreTakenBackStepByStep) {
  const bool notch = GetParam().kind == FilterKind::MultipleNotch;
  run.Type("txtFreq(0)", "1000");
  run.Type("txtWidth(0)", "150");
  EXPECT_EQ(run.record.settingsChanged, 5);
  EXPECT_EQ(Said(), "Not built yet: the filter stays as it is.");
  EXPECT_EQ(Curve().Traces().size(), 2U);
  EXPECT_EQ(LevelBuilt(1000) + LevelBuilt(2000), 0);
  run.Settle();
  EXPECT_EQ(run.Sent(), "");
  run.Click("btnBuild");
  EXPECT_EQ(Packets(), 64);  // at once
  EXPECT_EQ(run.record.filterBuilt[2], 0);
  EXPECT_EQ(Said(), "Built as set.");
  EXPECT_EQ(Curve().Traces().size(), 1U);
  EXPECT_LT(LevelBuilt(notch ? 2000 : 1000), 1);
  EXPECT_GT(LevelBuilt(notch ? 2000 : 1000), -1);
  EXPECT_LT(LevelBuilt(notch ? 1000 : 2000), -15);
  EXPECT_EQ(run.session.master.chain.Filter(2).keys.core.Caption(),
            notch ? "1 notch, -90.3 dB" : "1 slot, -90.3 dB");
  const auto first = Held();
  run.Type("txtFreq(0)", "2000");
  EXPECT_EQ(Curve().Traces().back().name, "Not Built Yet");
  run.Click("btnBuild");
  const auto second = Held();
  EXPECT_FALSE(second == first);
  run.Press("Ctrl+Z");  // the second table
  run.Settle();
  EXPECT_TRUE(Held() == first);
  EXPECT_EQ(Hertz(1), 2000);
  run.Sent();
  run.Press("Ctrl+Z");  // its row
  run.Settle();
  EXPECT_EQ(run.Sent(), "");
  EXPECT_EQ(Said(), "Built as set.");
  run.Press("Ctrl+Y");
  run.Press("Ctrl+Y");
  run.Settle();
  EXPECT_TRUE(Held() == second);
}

TEST_P(Multiples, AreDestroyedOnlyWhenTheOperatorSaysSo) {
  run.Type("txtFreq(0)", "1000");
  run.Type("txtFreq(15)", "1500");
  run.Type("txtWidth(15)", "300");
  run.Click("btnBuild");
  const auto built = Held();
  run.Sent();
  run.test.desk.answers = {Answer::No, Answer::Yes};
  run.Click("btnDestroy");
  EXPECT_EQ(run.test.desk.boxes.back().title, "Multiple Notch Destroy");
  EXPECT_EQ(run.test.desk.boxes.back().code, box::ExclamationYesNo);
  EXPECT_EQ(run.Get("txtFreq(15)"), "1500");
  run.Click("btnDestroy");
  EXPECT_EQ(Packets(), 64);
  EXPECT_EQ(Held(), std::vector<std::int32_t>(1024, 0));
  EXPECT_EQ(run.record.filterBuilt[2], 0);
  EXPECT_EQ(run.Get("txtFreq(15)") + run.Get("txtWidth(15)"), "(Out)21.6");
  EXPECT_EQ(Said(), "Nothing is built.");
  run.Press("Ctrl+Z");
  run.Settle();
  EXPECT_TRUE(Held() == built);
  EXPECT_EQ(run.Get("txtFreq(15)"), "1500");
}

TEST_P(Multiples, StandAsBuiltWithoutAUnitToo) {
  run.session.master.menus.mnuDisconnect.Click();
  run.Type("txtFreq(0)", "1000");
  run.Click("btnBuild");
  run.Type("txtFreq(0)", "2000");
  EXPECT_EQ(Said(), "Not built yet: the filter stays as it is.");
  run.session.master.menus.mnuConnect.Click();
  run.Settle();
  const auto sent = Held();
  EXPECT_EQ(run.record.builtFreq[2][1], 1000);
  run.Type("txtFreq(0)", "1000");
  run.Click("btnBuild");
  EXPECT_TRUE(Held() == sent);
  run.session.master.menus.mnuDisconnect.Click();
  run.test.desk.answers = {Answer::Yes};
  run.Click("btnDestroy");
  EXPECT_EQ(run.record.filterBuilt[2], 0);
  EXPECT_EQ(Said(), "Nothing is built.");
  run.session.master.menus.mnuConnect.Click();
  run.Settle();
  EXPECT_EQ(Held(), std::vector<std::int32_t>(1024, 0));
}

TEST_P(Multiples, OfferAHandleForEachRowAndOneToDragIn) {
  run.Type("txtFreq(1)", "1000");
  const auto& handles = Curve().handles;
  const auto offered = [&handles] {
    std::string names;
    for (std::size_t i = 0; i < 16; ++i) names += handles[i]->Usable() ? std::to_string(i + 1) + " " : "";
    return names;
  };
  EXPECT_EQ(offered(), "1 2 ");
  PlotHandle &waiting = *handles[0], &second = *handles[1];
  waiting.Hold();
  for (const double hertz : {10.0, 500.0}) waiting.MoveTo(hertz, 0);
  EXPECT_EQ(offered(), "1 2 3 ");
  waiting.Release();
  EXPECT_EQ(Hertz(1), 500);
  run.Type("txtFreq(0)", "0");
  second.Hold();
  second.MoveTo(0, 0);  // what is in the hand stays there
  EXPECT_EQ(offered(), "1 2 ");
  second.MoveTo(700, 0);
  second.Release();
  EXPECT_TRUE(second.Turn(3, false));
  EXPECT_EQ((run.record.*GetParam().width)[2][2], 7);  // two bins a notch of the wheel
  run.Press("Ctrl+Z");
  run.Press("Ctrl+Z");
  EXPECT_EQ(Hertz(2), 1000);
  second.SetDefault();
  EXPECT_EQ(Hertz(2), 0);
}

TEST_P(Multiples, AreNotBuiltWhereTheUnitHasClearedTheirStage) {
  run.Type("txtFreq(0)", "1000");
  run.Click("btnBuild");
  run.session.edits.Apply({{FindField("filterDirty"), 2, 0, -1.0}}, {"Clear"});
  run.Settle();
  EXPECT_TRUE(std::ranges::all_of(Held(), [](std::int32_t tap) { return tap == 0; }));
  EXPECT_EQ(run.record.builtFreq[2][1], 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Multiples, testing::Values(Notches, Slots), [](const auto& tested) {
  return tested.param.kind == FilterKind::MultipleNotch ? "Notches" : "Slots";
});

}  // namespace
}  // namespace vc
