// One door: whichever way an edit comes in, it raises the same marks, waits as long and sends the same.
#include <algorithm>
#include <cmath>

#include "PanelOpening.h"
#include "RecordDifference.h"

namespace vc {
namespace {

struct Outcome {
  SystemSettings record;  // right after the edit, with its marks
  std::string sent;       // until all has settled

  bool operator==(const Outcome&) const = default;
};

// Where two outcomes part, for the message.
std::string Difference(const Outcome& one, const Outcome& other) {
  return (one.sent == other.sent ? "" : "sent " + one.sent + "against " + other.sent) +
         support::Difference(one.record, other.record);
}

// A run with every kind of panel behind it, at rest.
struct Rested : support::PanelRun {
  explicit Rested(std::string_view panel = {}) {
    Edit("levelControlsShown", "1");
    if (!panel.empty()) support::OpenPanel(*this, panel);
    Settle();
    unit.frames.clear();
  }
  template <typename Action>
  Outcome After(Action action) {
    action();
    const SystemSettings now = record;
    Settle();
    return {now, Sent()};
  }
  Outcome ByName(const FieldRow& row, int i, int j, const std::string& text) {
    return After([&] { Edit(std::string(row.name), text, i, j); });
  }
  Outcome ByPanel(const FieldRow& row, int i, int j, const std::string& text) {
    return After([&] {
      if (std::holds_alternative<std::string>(row.value(record, i, j))) {
        session.edits.Apply({{&row, i, j, text}}, {"Text"});
      } else {
        session.edits.Apply({{&row, i, j, *ParseNumber(text)}}, {"Number"});
      }
    });
  }
};

// Another value than the element has; none where only one is allowed.
std::string AnotherValue(const SystemSettings& record, const FieldRow& row, int i, int j) {
  const auto range = FieldRange(record, row, i, j);
  if (!range) return "another text";
  const double now = NumberOf(record, row, i, j);
  const double other = now == range->lower ? std::min(range->lower + 1, range->upper) : range->lower;
  return other == now ? "" : FixedText(other, std::trunc(other) == other ? 0 : 2);
}

TEST(EditDoor, EveryFieldEntailsTheSameByNameAndFromAPanel) {
  for (const FieldRow& row : Fields()) {
    if (IsDerived(row) || row.name == "comPort" || row.name == "baudIndex") continue;  // the line would go
    SCOPED_TRACE(std::string(row.name));
    Rested named, worked;
    const int i = row.extent[0].last, j = row.extent[1].last;
    const std::string text = AnotherValue(named.record, row, i, j);
    if (text.empty()) continue;
    const Outcome byName = named.ByName(row, i, j, text), byPanel = worked.ByPanel(row, i, j, text);
    EXPECT_TRUE(byName == byPanel) << Difference(byName, byPanel);
    named.session.history.Undo();
    worked.session.history.Undo();
    EXPECT_EQ(named.record.settingsChanged, worked.record.settingsChanged);
  }
}

// What an operator does to a control; false where that changes nothing.
bool Work(const AnyControl& control) {
  if (Slider* slider = SliderIn(control)) {
    const double before = slider->Position();
    const bool atEnd = before == slider->PositionMax();
    slider->SetPosition(before + (atEnd ? -1 : 1) * slider->KeyArrowStepSize);
    return slider->Position() != before;
  }
  if (auto* const* option = std::get_if<OptionButton*>(&control)) {
    return !(*option)->Value() && ClickControl(control).empty();
  }
  if (auto* const* list = std::get_if<ListBox*>(&control)) {
    (*list)->SetListIndex((*list)->ListIndex() == 1 ? 0 : 1);
    return true;
  }
  auto* const* button = std::get_if<GraphicButton*>(&control);
  if (button == nullptr || (*button)->style != GraphicButton::Style::Latching) return false;
  const std::string& name = (*button)->core.name;
  return name != "btnSpecAnalyzer" && name != "btnCoeffDisplay" && ClickControl(control).empty();  // displays
}

// The one element that differs; none where it is none or several.
struct Edited {
  const FieldRow* row = nullptr;
  int i = 0, j = 0;
};
Edited OnlyDifference(const SystemSettings& before, const SystemSettings& after) {
  const FieldChanges changes = ChangesBetween(before, after);
  if (changes.numbers.size() != 1) return {};
  const auto& place = changes.numbers.front().place;
  return {&Fields()[static_cast<std::size_t>(place.row)], place.i, place.j};
}

// On their panel they wait for a button; by name they are built at once.
bool WaitsToBeBuilt(const FieldRow& row) {
  return row.name.starts_with("mnotch") || row.name.starts_with("mslot");
}

TEST(EditDoor, EveryControlEntailsWhatItsFieldEntailsByName) {
  std::vector<std::string> forms = support::PanelNames();
  forms.emplace_back();  // the master panel
  int compared = 0;
  for (const std::string& form : forms) {
    const std::size_t controls = Rested(form).Top().controls.size();
    for (std::size_t index = 0; index < controls; ++index) {
      Rested worked(form);
      const AnyControl& control = worked.Top().controls[index];
      if (!CoreOf(control).Usable()) continue;
      SCOPED_TRACE(form + "." + CoreOf(control).FullName());
      const SystemSettings before = worked.record;
      bool moved = false;
      const Outcome byControl = worked.After([&] { moved = Work(control); });
      const auto [row, i, j] = OnlyDifference(before, byControl.record);
      if (!moved || row == nullptr || WaitsToBeBuilt(*row)) continue;
      Rested named(form);
      const Outcome byName = named.ByName(*row, i, j, FieldText(byControl.record, *row, i, j));
      EXPECT_TRUE(byName == byControl) << Difference(byName, byControl);
      ++compared;
    }
  }
  EXPECT_GT(compared, 55);  // there is something to compare on every form
}

struct Case {
  const char* field;
  int i;
  const char* marks;  // S for the stages, E and B with the numbers that are marked
  int ticks;
};

std::string MarksOf(const SystemSettings& record) {
  std::string marks;
  if (std::ranges::all_of(record.stageChanged, [](std::int16_t mark) { return mark == -1; })) marks += "S";
  for (const int side : {1, 2}) {
    if (record.eqChanged[side] != 0) marks += "E" + std::to_string(side);
    if (record.broadbandChanged[side] != 0) marks += "B" + std::to_string(side);
  }
  return marks;
}

TEST(EditDoor, FieldsRaiseTheirMarksAndWaitAsLongAsTheyNeed) {
  for (const auto& [field, i, marks, ticks] : {Case{"lpfCutoff", 3, "S", 5},
                                               {"ch1Taps", 1, "S", 7},
                                               {"ihpfCutoff", 0, "", 5},
                                               {"filterAtten", 2, "S", 5},
                                               {"filterAtten", 8, "B2", 5},
                                               {"eqBandGain", 10, "E2", 5},
                                               {"edgeCurve", 1, "E1", 5},
                                               {"eqLceAttack", 9, "SE1", 5},
                                               {"eqActive", 2, "SE2", 5},
                                               {"noiseEqVals", 2, "B2", 5},
                                               {"workingFolder", 0, "", 0}}) {
    SCOPED_TRACE(field);
    Rested run;
    const FieldRow& row = *FindField(field);
    const Outcome outcome = run.ByName(row, i, 0, AnotherValue(run.record, row, i, 0));
    EXPECT_EQ(MarksOf(outcome.record), marks);
    EXPECT_EQ(outcome.record.settingsChanged, ticks);
  }
}

// Linked bands, a preset, a drawn curve.
TEST(EditDoor, SeveralEditsAreOneStepAndMayWaitLonger) {
  Rested run;
  const SystemSettings before = run.record;
  std::vector<FieldEdit> bands;
  for (int band = 0; band < 20; ++band) bands.push_back({FindField("noiseEqVals"), 1, band, 0.25});
  run.session.edits.Apply(bands, {"Bands"});
  EXPECT_EQ(run.record.settingsChanged, 10);
  EXPECT_EQ(run.record.noiseEqVals[1][19], 0.25F);
  run.session.history.Undo();
  EXPECT_EQ(ChangesBetween(before, run.record).numbers.size(), 0U);
}

TEST(EditDoor, ADraftStaysHereAndAFinishedCurveGoesOutAtOnce) {
  Rested run;
  run.session.panels.OpenFilter(1);
  run.Edit("filterType", "8", 1);
  run.Settle();
  run.Sent();
  const FieldEdit notch{FindField("mnotchFreq"), 1, 4, 700.0};
  run.session.edits.Apply({notch}, {"Notch 4", "row", EditState::Draft});
  run.Settle();
  EXPECT_EQ(run.Sent(), "");
  EXPECT_EQ(run.record.mnotchFreq[1][4], 700);
  EXPECT_EQ(run.record.filterBuilt[1], 0);
  run.session.edits.Apply({{FindField("filterBuilt"), 1, 0, -1.0}}, {"Build", "", EditState::Finished});
  EXPECT_EQ(run.record.settingsChanged, 0);
  EXPECT_NE(run.Sent(), "");
}

// What is built stands until something else is built, whatever is undone or sent anew in between.
TEST(EditDoor, ADraftStaysHereWhateverElseHappens) {
  Rested run;
  run.Edit("filterType", "10", 1);
  run.Edit("mslotFreq", "700", 1, 4);
  run.Settle();
  const auto built = run.Stage(1).coefficients;
  ASSERT_EQ(built.size(), 1024U);
  run.Sent();
  for (const double hertz : {900.0, 1100.0}) {
    run.session.edits.Apply({{FindField("mslotFreq"), 1, 4, hertz}}, {"Slot 4", "", EditState::Draft});
  }
  EXPECT_EQ(run.record.settingsChanged, 5);
  run.session.history.Undo();
  run.Settle();
  EXPECT_EQ(run.Sent(), "");
  EXPECT_EQ(run.record.mslotFreq[1][4], 900);
  run.Reconnect();
  run.Settle();
  EXPECT_TRUE(run.Stage(1).coefficients == built);
}

// What a fit can give may be asked for by name, and no more.
TEST(EditDoor, TapsAreAskedForAsFarAsTheFitCanGiveThem) {
  Rested run;
  run.Edit("numFilters", "5");
  std::string error;
  const FieldRow& taps = *FindField("ch1Taps");
  EXPECT_FALSE(run.session.edits.ByText(taps, 1, 0, "2049", {"Taps"}, error));
  EXPECT_EQ(error, "2049 is outside 4..2048");
  run.Edit("ch1Taps", "2048", 1);
  EXPECT_EQ(run.record.maxTaps[1], 2048);
  EXPECT_FALSE(run.session.edits.ByText(taps, 2, 0, "1025", {"Taps"}, error));  // nothing is left
  EXPECT_TRUE(run.test.desk.boxes.empty());
}

}  // namespace
}  // namespace vc
