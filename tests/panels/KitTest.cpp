// What the panels to come need of the kit, on a panel that has all of it: rows of controls over fractions and
// wide integers, several texts at a slider, a work copy, levels by a timer.
#include <cmath>

#include "PanelOpening.h"
#include "model/FieldAccess.h"
#include "panels/SliderText.h"
#include "panels/StageLevels.h"

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
        thresh(panel, panel.form, "Threshold", "udThresh", "txtThresh", WholeNumber("dB"), Fixed(-90, 0),
               InRecord(panel, OfFilter(RowOf<&SystemSettings::lceCompThresh>()))),
        expansion(panel, panel.form, "Expansion", "udExp", "txtExp", Tenths(""), Fixed(10, 1000),
                  InRecord(panel, OfFilter(RowOf<&SystemSettings::lceExpRatio>()))) {
    thresh.field.within = [this](double value) {
      return std::min<double>(value, panel.settings.lceLimitThresh[panel.settings.curFilter]);
    };
    for (int i = 0; i < 2; ++i) panel.shown.emplace_back([this] { ++shown; });
    levels.told = [this](const StageReading& reading) {
      ++told;
      last = reading;
    };
  }

  float workRatio = 3.0F;
  int copied = 0, shown = 0, told = 0;
  StageReading last;
  Panel panel;
  std::array<Substage, 2> substages{Substage{panel, panel.form, 0}, Substage{panel, panel.form, 1}};
  SliderText span, ratio;
  UpDownText thresh, expansion;
  LevelBar lbInput{panel.form, "lbInput", "Level"};
  StageLevels levels{panel, EntriesOfCurFilter, lbInput};
};

struct Kit : testing::Test {
  support::PanelRun run;
  PanelContext context = support::LoneContext(run, " (Filter 2)");
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

TEST_F(Kit, UpDownsEditAsSlidersDo) {
  auto& stored = run.record.lceExpRatio[2];
  stored = 1.73F;
  all.panel.Fill();
  EXPECT_EQ(run.Get("udExp") + " " + run.Get("txtExp"), "17 1.7");
  EXPECT_EQ(run.Type("txtExp", " 1.7"), "");
  EXPECT_EQ(stored, 1.73F);  // nobody has stepped it
  for (const auto& [typed, shown] :
       {std::pair{"2,25", "2.2"}, {"5000", "100.0"}, {"1e99", "100.0"}, {"x", "100.0"}, {"-3", "1.0"}}) {
    EXPECT_EQ(run.Type("txtExp", typed), "");
    EXPECT_EQ(run.Get("txtExp"), shown) << typed;
    EXPECT_EQ(stored, static_cast<float>(ParseNumber(shown).value()));
  }
  for (const char* key : {"PgUp", "Up", "Shift+Up"}) EXPECT_EQ(PressKey(run.Find("udExp"), key), "");
  EXPECT_EQ(stored, 3.1F);
  run.session.history.Undo();
  EXPECT_EQ(stored, 1.0F);
  stored = 0.5F;
  all.panel.Fill();
  EXPECT_EQ(stored, 1.0F);

  run.record.lceLimitThresh[2] = -20;
  const int beeps = run.test.desk.beeps;
  EXPECT_EQ(run.Set("udThresh", "-10"), "");
  EXPECT_EQ(run.Get("udThresh") + run.Get("txtThresh"), "-20-20");
  EXPECT_EQ(run.record.lceCompThresh[2], -20);
  EXPECT_EQ(run.test.desk.beeps, beeps + 1);
}

TEST_F(Kit, SeveralThingsHangOnWhatIsShown) {
  const int before = all.shown;
  all.panel.Fill();
  EXPECT_EQ(all.shown, before + 2);
}

TEST_F(Kit, LevelsComeFromTheStagesOwnEntries) {
  UnitStatus status;
  status.stageStatus = {11, 0x8000 + 22, 33, 44, 55, 66, 0, 1000, 77, 0xFFFF};
  status.stageNibble = {1, 2, 4, 8, 0, 0, 0, 15, 0, 0};
  status.unitMode = 0x4000 | 1 << 6 | 1 << 2;  // the second and the sixth place adapt
  using Mode = ConfigMode;
  const std::tuple<std::int16_t, std::int16_t, StageEntries (*)(const SystemSettings&), const char*> rows[] =
      {{Mode::Mono, 2, EntriesOfCurFilter, "22/2A"},
       {Mode::StereoLinked, 1, EntriesOfCurFilter, "22/3"},  // the left one's lamp
       {Mode::StereoIndependent, 6, EntriesOfCurFilter, "66/0A"},
       {Mode::Mono, 1, EntriesOfCurBroadband, "1/0"},
       {Mode::StereoLinked, 1, EntriesOfCurBroadband, "1000/15"},
       {Mode::StereoIndependent, 2, EntriesOfCurBroadband, "1000/15"},
       {Mode::Mono, 1, EntriesOfCurEq, "77/0"},
       {Mode::StereoLinked, 1, EntriesOfCurEq, "77/0"}};
  for (const auto& [configMode, number, entriesOf, told] : rows) {
    run.record.configMode = configMode;
    run.record.curFilter = run.record.curEq = run.record.curBroadband = number;
    const StageReading reading = ReadStage(status, entriesOf(run.record));
    EXPECT_EQ(std::to_string(reading.level) + "/" + std::to_string(reading.overload) +
                  (reading.adapting ? "A" : ""),
              told);
  }
}

TEST_F(Kit, LevelsComeTenTimesASecondWhileThePanelIsOnShow) {
  UnitStatus& status = run.session.device.status;
  run.session.periodic.EnableMainTimer(false);
  status.stageStatus[1] = 2068;  // of filter 2: -20 dB
  const int told = all.told;
  run.test.loop.RunFor(1050);
  EXPECT_EQ(all.told, told + 10);
  EXPECT_EQ(all.lbInput.Value(), DbToBarPosition(-20));
  EXPECT_EQ(all.lbInput.Reading(), "-20.0 dB");
  run.session.device.comm.CommPortOpen = false;
  run.test.loop.RunFor(100);
  EXPECT_EQ(all.lbInput.Value(), 0);
  EXPECT_EQ(all.lbInput.Reading(), "no unit");
  EXPECT_EQ(all.last.level, 1);
  run.session.device.comm.CommPortOpen = true;
  const int before = all.told;
  run.session.forms.Hide(all.panel.form);
  run.test.loop.RunFor(1000);
  run.session.forms.Show(all.panel.form);
  run.test.loop.RunFor(150);
  EXPECT_EQ(all.told, before + 2);  // not while it was hidden, but at once and then by the timer
}

}  // namespace
}  // namespace vc
