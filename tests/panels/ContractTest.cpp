// What holds for every text box beside a slider, on every form that there is: what is shown is accepted when
// it is typed, and shows the same again; nonsense changes nothing.
#include <algorithm>
#include <array>
#include <random>

#include <malloc.h>

#include "PanelOpening.h"
#include "model/Settings.h"

namespace vc {
namespace {

// Every form with text boxes beside sliders: the panels, and the master panel.
std::vector<std::string> AllForms() {
  std::vector<std::string> names = support::PanelNames();
  names.emplace_back("MasterControl");
  return names;
}

void Open(support::PanelRun& run, const std::string& form) {
  if (form != "MasterControl") support::OpenPanel(run, form);
  ASSERT_EQ(run.Top().name, form);
}

// What is shown, typed again, may be stored as another value, by the end of its name and why.
struct Exemption {
  const char* box;  // the end of "CtlLPF.txtTransSlope"
  const char* why;
  bool showsTheSame;
};
constexpr const char* coarse = "shown to a tenth of a decibel, which is coarser than what is stored";
constexpr std::array<Exemption, 11> Exemptions{
    {{"CtlMNotch.txtAtten", coarse, true},
     {"CtlMSlot.txtAtten", coarse, true},
     {"CtlNoiseReducer.txtAtten", coarse, true},
     {"CtlNoiseEq.txtAtten", coarse, true},
     {"txtFilterGain", coarse, true},
     {"CtlNoiseEq.txtGain", coarse, true},
     {"CtlSIF.txtRange", "shown in whole percents, which are coarser than what is stored", true},
     {"TransSlope", "shown to a tenth, which is coarser than the parameter where the edge is low", true},
     {"txtWidth", "what is typed is half a parameter away from what is shown", false},
     {"txtAdapt", "what is typed is graded otherwise than what is shown", false},
     {"txtPredSpan", "the largest span cannot be typed", false}}};

const Exemption* ExemptionOf(const ControlCore& box) {
  const std::string name = box.form.name + "." + box.name;
  const auto* found =
      std::ranges::find_if(Exemptions, [&name](const Exemption& one) { return name.ends_with(one.box); });
  return found == Exemptions.end() ? nullptr : found;
}

// Also those of up-down controls.
std::vector<Slider*> SlidersOf(const Form& form) {
  std::vector<Slider*> found;
  for (const AnyControl& control : form.controls) found.push_back(SliderIn(control));
  std::erase(found, nullptr);
  return found;
}

std::vector<TextBox*> EntriesOf(const Form& form) {
  std::vector<TextBox*> entries;
  for (const AnyControl& control : form.controls) {
    auto* const* box = std::get_if<TextBox*>(&control);
    if (box != nullptr && !(*box)->readOnly && !(*box)->multiLine) entries.push_back(*box);
  }
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
  const Exemption* exempt = ExemptionOf(box.core);
  const SystemSettings before = record;
  // The blank makes it a text that has been typed; without it nobody has touched the box.
  Type(box, (exempt != nullptr && !exempt->showsTheSame ? "" : " ") + shown);
  EXPECT_EQ(box.Text(), shown) << box.core.FullName();
  if (exempt != nullptr && exempt->showsTheSame) return;
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
  for (const std::string& form : AllForms()) {
    for (const char* bandwidth : {"0", "5"}) {
      support::PanelRun run;
      run.Edit("bandwidthIndex", bandwidth);
      Open(run, form);
      SCOPED_TRACE(form);
      for (int round = 0; round < 40; ++round) {
        for (Slider* slider : SlidersOf(run.Top())) {
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
  for (const std::string& form : AllForms()) {
    support::PanelRun run;
    Open(run, form);
    for (const char* number : {"-30000", "30000"}) {
      for (TextBox* box : EntriesOf(run.Top())) Type(*box, number);
      for (const Slider* slider : SlidersOf(run.Top())) {
        EXPECT_GE(slider->Position(), slider->PositionMin());
        EXPECT_LE(slider->Position(), slider->PositionMax());
      }
      SystemSettings taken = run.record;
      taken.sifGain.Fill(0);  // gains of the analyzer are in force until the next load
      taken.yellowGain = taken.blueGain = 0;
      SystemSettings valid = taken;
      ValidateSettings(valid);
      EXPECT_TRUE(valid == taken) << form;
    }
  }
}

TEST(EveryPanel, OpensAndClosesWithoutChangingTheSetup) {
  for (const std::string& form : AllForms()) {
    support::PanelRun run;
    Open(run, form);
    EXPECT_FALSE(run.session.history.CanUndo()) << form << ": " << run.session.history.UndoTitle();
    for (std::size_t left = run.session.forms.open.size(); left > 1; --left) {
      run.Press("Escape");
      EXPECT_EQ(run.session.forms.open.size(), left - 1);
    }
    EXPECT_EQ(run.Top().name, "MasterControl");
  }
}

// All of them, ten thousand times.
TEST(EveryPanel, LeavesNothingBehindWhenItCloses) {
  support::PanelRun run;
  constexpr int rounds = 4000 / TIME_ALLOWANCE, warm = 100;
  std::size_t before = 0;
  for (int round = 0; round < rounds; ++round) {
    if (round == warm) before = mallinfo2().uordblks;
    for (const std::string& form : AllForms()) {
      Open(run, form);
      support::ClosePanels(run);
    }
  }
  EXPECT_NEAR(static_cast<double>(mallinfo2().uordblks), static_cast<double>(before), 10000.0);
  EXPECT_EQ(run.session.forms.open.size(), 1U);
}

}  // namespace
}  // namespace vc
