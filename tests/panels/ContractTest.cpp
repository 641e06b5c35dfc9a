// What holds for every text box beside a slider, on every form that there is: what is shown is accepted when
// it is typed, and shows the same again; nonsense changes nothing.
#include <random>

#include <malloc.h>

#include "PanelRun.h"
#include "model/Kinds.h"
#include "model/Settings.h"

namespace vc {
namespace {

struct Opening {
  const char* name;
  std::function<void(support::PanelRun& run)> open;
};

std::vector<Opening> AllForms() {
  const auto filter = [](std::int16_t kind) {
    return [kind](support::PanelRun& run) { run.OpenFilter(2, kind); };
  };
  const auto click = [](const char* button) {
    return [button](support::PanelRun& run) { run.Click(button); };
  };
  return {{"CtlLPF", filter(FilterKind::Lowpass)},  {"CtlHPF", filter(FilterKind::Highpass)},
          {"CtlBPF", filter(FilterKind::Bandpass)}, {"CtlBSF", filter(FilterKind::Bandstop)},
          {"IHPFSetup", click("btnIhpfConfig")},    {"OHPFSetup", click("btnOhpfConfig")},
          {"AGCSetup", click("btnAgcConfig")},      {"LimiterSetup", click("btnLimiterConfig")},
          {"AuxCtl", click("mnuMemorySelect(3)")},  {"MasterControl", [](support::PanelRun&) {}}};
}

// A slope is shown to a tenth, which is coarser than the parameter where the edge is low: what is stored may
// then be another parameter that shows the same.
bool ShowsCoarser(const std::string& box) { return box.ends_with("TransSlope"); }

template <typename Kind>
std::vector<Kind*> Of(const Form& form) {
  std::vector<Kind*> found;
  for (const AnyControl& control : form.controls) {
    if (auto* const* one = std::get_if<Kind*>(&control)) found.push_back(*one);
  }
  return found;
}

std::vector<TextBox*> EntriesOf(const Form& form) {
  std::vector<TextBox*> entries = Of<TextBox>(form);
  std::erase_if(entries, [](const TextBox* box) { return box->readOnly || box->multiLine; });
  return entries;
}

void Type(TextBox& box, const std::string& text) {
  box.GotFocus();
  box.SetText(text);
  box.LostFocus();
}

void ExpectTheSameAgain(TextBox& box, const SystemSettings& record) {
  const std::string shown = box.Text();
  if (shown == "Out") return;  // words in place of a number: their own tests tell of them
  const SystemSettings before = record;
  Type(box, " " + shown);  // the blank makes it a text that has been typed
  EXPECT_EQ(box.Text(), shown) << box.core.FullName();
  if (ShowsCoarser(box.core.FullName())) return;
  for (const FieldRow& row : Fields()) {
    if (IsDerived(row)) continue;
    ForEachElement(row, [&](int i, int j) {
      ASSERT_EQ(row.value(before, i, j), row.value(record, i, j)) << box.core.FullName() << ' ' << row.name;
    });
  }
}

void ExpectNonsenseIgnored(TextBox& box, SystemSettings& record) {
  const std::string shown = box.Text();
  for (const char* nonsense : {"abc", "", " ", "1e999", "--1", "12 Hz", "nan", "0x10"}) {
    const SystemSettings before = record;
    Type(box, nonsense);
    EXPECT_EQ(box.Text(), shown == "Out" ? "0" : shown) << nonsense;
    ASSERT_TRUE(record == before) << box.core.FullName() << " took " << nonsense;
  }
}

TEST(EveryTextBox, AcceptsWhatItShowsAndNothingElse) {
  std::mt19937 random(1);
  for (const Opening& form : AllForms()) {
    for (const char* bandwidth : {"0", "5"}) {
      support::PanelRun run;
      run.Edit("bandwidthIndex", bandwidth);
      form.open(run);
      ASSERT_EQ(run.Top().name, form.name);
      SCOPED_TRACE(form.name);
      for (int round = 0; round < 40; ++round) {
        for (Slider* slider : Of<Slider>(run.Top())) {
          std::uniform_real_distribution<double> anywhere(slider->PositionMin(), slider->PositionMax());
          slider->SetPosition(round == 0   ? slider->PositionMin()
                              : round == 1 ? slider->PositionMax()
                                           : anywhere(random));
        }
        for (TextBox* box : EntriesOf(run.Top())) ExpectTheSameAgain(*box, run.record);
      }
      run.Settle();
      for (TextBox* box : EntriesOf(run.Top())) ExpectNonsenseIgnored(*box, run.record);
      EXPECT_TRUE(run.test.desk.boxes.empty());
    }
  }
}

TEST(EveryPanel, HoldsTypedNumbersInsideItsSlidersRange) {
  for (const Opening& form : AllForms()) {
    support::PanelRun run;
    form.open(run);
    for (const char* number : {"-30000", "30000"}) {
      for (TextBox* box : EntriesOf(run.Top())) Type(*box, number);
      for (const Slider* slider : Of<Slider>(run.Top())) {
        EXPECT_GE(slider->Position(), slider->PositionMin());
        EXPECT_LE(slider->Position(), slider->PositionMax());
      }
      const SystemSettings taken = run.record;
      SystemSettings valid = taken;
      ValidateSettings(valid);
      EXPECT_TRUE(valid == taken) << form.name;
    }
  }
}

TEST(EveryPanel, OpensAndClosesWithoutChangingTheSetup) {
  for (const Opening& form : AllForms()) {
    support::PanelRun run;
    run.record.filterType[2] = FilterKind::Lowpass;
    form.open(run);
    const bool master = run.Top().name == "MasterControl";
    EXPECT_FALSE(run.session.history.CanUndo()) << form.name << ": " << run.session.history.UndoTitle();
    if (!master) run.Press("Escape");
    EXPECT_EQ(run.Top().name, "MasterControl");
    EXPECT_EQ(run.session.forms.open.size(), 1U);
  }
}

// All nine, ten thousand times.
TEST(EveryPanel, LeavesNothingBehindWhenItCloses) {
  support::PanelRun run;
  run.record.filterType[2] = FilterKind::Lowpass;
  constexpr int rounds = 10000 / TIME_ALLOWANCE, warm = 100;
  std::size_t before = 0;
  for (int round = 0; round < rounds; ++round) {
    if (round == warm) before = mallinfo2().uordblks;
    for (const Opening& form : AllForms()) {
      form.open(run);
      if (run.Top().name != "MasterControl") run.CloseTop();
    }
  }
  EXPECT_NEAR(static_cast<double>(mallinfo2().uordblks), static_cast<double>(before), 10000.0);
  EXPECT_EQ(run.session.forms.open.size(), 1U);
}

}  // namespace
}  // namespace vc
