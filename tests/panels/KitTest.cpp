// What the panels to come need of the kit, on a panel that has all of it: rows of controls over fractions and
// wide integers, several texts at a slider, a work copy, levels by a timer, a question of its own.
#include <cmath>

#include "PanelOpening.h"
#include "Unheard.h"
#include "model/FieldAccess.h"
#include "model/StageReadings.h"
#include "panels/SliderText.h"

namespace vc {
namespace {

// Thousandths of a fraction.
DisplayLaw Thousandths() {
  constexpr double thousand = 1000;
  return {.unit = "",
          .show = [](double position) { return FixedText(position, 0); },
          .parse = TypedNumber,
          .stored = [](double position) { return position / thousand; },
          .position = [](double value) { return value * thousand; }};
}

DisplayLaw Whole(const std::string& unit) {
  DisplayLaw law = WholeNumber(unit);
  law.stored = [](double position) -> double { return Nearest32(position); };
  return law;
}

struct Substage {
  Substage(Panel& panel, Place place, int number)
      : center(panel, place, "Center", "sldrCenter", "txtCenter", Thousandths(), Fixed(0, 450),
               InRecord(panel, OfFilter(RowOf<&SystemSettings::parCenter>(), number)), number),
        promille(place, "", "txtPart", Whole("permille"), center.field.slider, number) {
    center.field.texts.emplace_back([this] { promille.Redisplay(); });
  }
  SliderText center;
  SliderEntry promille;
};

struct Everything {
  explicit Everything(const PanelContext& context)
      : panel(context, "Everything", "Everything"),
        span(panel, panel.form, "Span", "sldrSpan", "txtSpan", Whole("points"), Fixed(0, 100),
             InRecord(panel, OfBroadband(*FindField("broadbandParms.span")))),
        ratio(panel, panel.form, "Ratio", "sldrRatio", "txtRatio", Whole(""), Fixed(1, 100),
              InCopy(workRatio, 1.0F, [this] { ++copied; })),
        timer(context.events.CreateTimer(100, [this] { ReadLevel(); })) {
    for (int i = 0; i < 2; ++i) panel.shown.emplace_back([this] { ++shown; });
    panel.form.activated = [this] { timer->SetEnabled(true); };
  }
  void ReadLevel() {
    const int entry = EntriesOfFilter(panel.settings.configMode, panel.settings.curFilter).left;
    level = StageLevel(panel.context.status, entry);
  }

  float workRatio = 3.0F;
  int copied = 0, shown = 0;
  std::int32_t level = 0;
  Panel panel;
  std::array<Substage, 2> substages{Substage{panel, panel.form, 0}, Substage{panel, panel.form, 1}};
  SliderText span, ratio;
  Form question{"Question", "Question"};
  std::unique_ptr<Timer> timer;
};

struct Kit : testing::Test {
  support::PanelRun run;
  PanelContext context{.settings = run.record,
                       .edits = run.session.edits,
                       .desk = run.test.desk,
                       .forms = run.session.forms,
                       .events = run.test.loop,
                       .status = run.session.device.status,
                       .blockSwitch = nullptr,
                       .suffix = " (Filter 2)",
                       .ofStage = true,
                       .activated = support::DeadEnd{},
                       .unloaded = support::DeadEnd{},
                       .frequencyAxis = support::DeadEnd{},
                       .turnFrequencyAxis = support::DeadEnd{},
                       .storeOpenSetup = support::DeadEnd{},
                       .storeInMemory = support::DeadEnd{},
                       .exchangeTable = support::DeadEnd{}};
  Everything all{context};
  Kit() {
    run.record.curFilter = 2;
    all.panel.Fill();
    run.session.forms.Show(all.panel.form);
  }
};

TEST_F(Kit, RowsOfControlsEditTheirOwnElementsOfAnyType) {
  EXPECT_EQ(run.Get("txtCenter(1)") + run.Get("txtPart(1)"), "250250");
  EXPECT_EQ(run.Type("txtCenter(1)", "125"), "");
  EXPECT_EQ(run.record.parCenter[2][1], 0.125F);
  EXPECT_EQ(run.record.parCenter[2][0], 0.25F);
  EXPECT_EQ(run.Get("txtPart(1)"), "125");
  EXPECT_EQ(run.Type("txtPart(0)", "100"), "");  // a fraction that is none in binary comes to rest
  EXPECT_EQ(run.record.parCenter[2][0], 0.1F);
  EXPECT_EQ(run.session.history.UndoTitle(), "Center");
  EXPECT_EQ(run.Type("txtSpan", "77"), "");
  EXPECT_EQ(run.record.broadbandParms[1].span, 77);
  EXPECT_NE(run.record.broadbandChanged[1], 0);
  run.session.history.Undo();
  EXPECT_EQ(run.Get("txtPart(0)"), "100");
}

TEST_F(Kit, AWorkCopyIsNobodyElsesBeforeItIsTaken) {
  const SystemSettings before = run.record;
  run.Type("txtRatio", "42");
  EXPECT_EQ(all.workRatio, 42.0F);
  EXPECT_EQ(all.copied, 1);
  EXPECT_TRUE(run.record == before);
  all.ratio.field.slider.SetDefault();
  EXPECT_EQ(all.workRatio, 1.0F);
}

TEST_F(Kit, SeveralThingsHangOnWhatIsShown) {
  const int before = all.shown;
  all.panel.Fill();
  EXPECT_EQ(all.shown, before + 2);
}

TEST_F(Kit, LevelsComeByTheTimerFromTheStagesOwnEntry) {
  run.session.device.status.stageStatus = {11, 0x8000 + 22, 33, 44, 55, 66, 0, 0, 77, 88};
  all.ReadLevel();
  EXPECT_EQ(all.level, 22);
  run.record.configMode = ConfigMode::StereoIndependent;
  run.record.curFilter = 4;
  all.ReadLevel();
  EXPECT_EQ(all.level, 22);  // the right partner of the first
  const StageEntries linked = EntriesOfFilter(ConfigMode::StereoLinked, 2);
  EXPECT_EQ(linked.left * 10 + linked.right, 23);
  EXPECT_EQ(EntriesOfEqualizer(ConfigMode::StereoIndependent, 2).left, 9);
  EXPECT_EQ(StageLevel(run.session.device.status, 6), 1);
  all.level = 0;
  run.test.loop.RunFor(150);  // the unit's own by now
  EXPECT_GT(all.level, 0);
}

TEST_F(Kit, AQuestionGoesWithItsPanel) {
  run.session.forms.Show(all.question, Modality::OverOwner, &all.panel.form);
  EXPECT_FALSE(run.session.forms.Operable(all.panel.form));
  run.session.forms.Unload(all.panel.form);
  EXPECT_EQ(run.session.forms.Find("Question"), nullptr);
}

}  // namespace
}  // namespace vc
