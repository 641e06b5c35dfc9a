// Forms, their controls by name and in words, and the windows on each other.
#include <gtest/gtest.h>

#include "widgets/ControlText.h"
#include "widgets/Controls.h"
#include "widgets/Forms.h"
#include "widgets/GraphicButton.h"

namespace vc {
namespace {

struct Panel {
  Form form{"Panel", "A Panel"};
  Frame fraOuter{form, "fraOuter", "&Outer"};
  Frame fraInner{fraOuter, "fraInner", "Inner"};
  Slider sldr{fraInner, "sldr", "Cutoff"};
  TextBox txt{fraInner, "txt", "Cutoff"};
  ControlArray<ListBox, 1, 2> cmb{fraOuter, "cmb", {"First", "Second"}};
  OptionGroup opt{fraOuter, "opt", 0, {"All", "Odd", "Even"}};
  CheckBox chk{form, "chk", "Grid"};
  GraphicButton latch{form, "latch", "Active", GraphicButton::Style::Latching};
  GraphicButton push{form, "push", "Clear", GraphicButton::Style::Push};
  Button btnOK{form, "btnOK", "OK"};
  MenuEntry mnu{form, "mnu", "&File"};
  MenuEntry mnuExit{mnu, "mnuExit", "E&xit"};

  int events = 0;
  Panel() {
    const auto count = [this] { ++events; };
    sldr.changed = opt.changed = chk.changed = latch.clicked = push.clicked = btnOK.clicked =
        mnuExit.clicked = count;
    cmb(2).changed = count;
    cmb(1).SetItems({"Lowpass", "Highpass"});
    cmb(2).SetItems({"Lowpass", "Highpass"});
  }
  const AnyControl& Find(const std::string& name) { return *FindControl(form, name); }
  std::string Set(const std::string& name, const std::string& value) { return SetControl(Find(name), value); }
};

TEST(Controls, AreFoundByNameInReadingOrder) {
  Panel panel;
  std::string order;
  for (const AnyControl& control : panel.form.controls) order += CoreOf(control).FullName() + " ";
  EXPECT_EQ(
      order,
      "fraOuter fraInner sldr txt cmb(1) cmb(2) opt(0) opt(1) opt(2) chk latch push btnOK mnu mnuExit ");
  EXPECT_EQ(FindControl(panel.form, "cmb"), nullptr);
  EXPECT_EQ(panel.sldr.core.AccessibleName(), "Inner, Cutoff");
  EXPECT_EQ(WithoutAccessKey("A && &B&"), "A & B&");
}

TEST(Controls, AreSetAndReadByText) {
  Panel panel;
  struct Case {
    const char *name, *value, *shown;
    bool taken;
    int events;
  };
  for (const Case& c :
       {Case{"sldr", "12.5", "12.5", true, 1}, Case{"sldr", "12.5", "12.5", true, 0},
        Case{"sldr", "101", "12.5", false, 0}, Case{"sldr", "x", "12.5", false, 0},
        Case{"cmb(2)", "Highpass", "Highpass", true, 1}, Case{"cmb(2)", "0", "Lowpass", true, 1},
        Case{"cmb(2)", "Notch", "Lowpass", false, 0}, Case{"opt(1)", "1", "1", true, 1},
        Case{"opt(1)", "0", "1", false, 0}, Case{"chk", "1", "1", true, 1}, Case{"chk", "yes", "1", false, 0},
        Case{"latch", "1", "1", true, 1}, Case{"latch", "1", "1", true, 0}, Case{"latch", "2", "1", false, 0},
        Case{"btnOK", "1", "", false, 0}, Case{"fraOuter", "1", "&Outer", false, 0}}) {
    SCOPED_TRACE(std::string(c.name) + " " + c.value);
    panel.events = 0;
    EXPECT_EQ(panel.Set(c.name, c.value).empty(), c.taken);
    EXPECT_EQ(ValueOf(panel.Find(c.name)), c.shown);
    EXPECT_EQ(panel.events, c.events);
  }
  EXPECT_EQ(ValueOf(panel.Find("opt(0)")), "0");
  EXPECT_EQ(RangeOf(panel.Find("sldr")), "0..100");
  EXPECT_EQ(RangeOf(panel.Find("cmb(1)")), "Lowpass | Highpass");
  EXPECT_EQ(KindOf(panel.Find("mnu")), "menu");
  EXPECT_EQ(KindOf(panel.Find("mnuExit")), "entry");
}

TEST(Controls, ClicksDoWhatTheMouseWould) {
  Panel panel;
  for (const char* name : {"btnOK", "push", "latch", "chk", "opt(2)", "mnuExit"}) {
    EXPECT_EQ(ClickControl(panel.Find(name)), "") << name;
  }
  EXPECT_EQ(panel.events, 6);
  EXPECT_EQ(panel.push.Value(), 0);
  EXPECT_EQ(panel.latch.Value(), 1);
  EXPECT_EQ(panel.opt.Selected(), 2);
  for (const char* name : {"mnu", "sldr", "fraOuter", "txt"})
    EXPECT_NE(ClickControl(panel.Find(name)), "") << name;
}

TEST(Controls, ATallListIsActivatedOnItsChosenRow) {
  Panel panel;
  ListBox& list = panel.cmb(2);
  list.activated = [&panel] { panel.events += 10; };
  EXPECT_EQ(ClickControl(panel.Find("cmb(2)")), "a list cannot be clicked");
  list.tall = true;
  EXPECT_EQ(ClickControl(panel.Find("cmb(2)")), "no row is chosen");
  list.Activate();
  EXPECT_EQ(panel.events, 0);
  EXPECT_EQ(panel.Set("cmb(2)", "Highpass"), "");
  EXPECT_EQ(ClickControl(panel.Find("cmb(2)")), "");
  EXPECT_EQ(panel.events, 11);
}

TEST(Controls, DisabledAndHiddenOnesRefuseWithTheirFrames) {
  Panel panel;
  panel.fraOuter.core.SetEnabled(false);
  EXPECT_EQ(panel.Set("sldr", "5"), "it is disabled");
  panel.latch.core.SetVisible(false);
  EXPECT_EQ(ClickControl(panel.Find("latch")), "it is hidden");
  EXPECT_EQ(panel.events, 0);
  EXPECT_TRUE(panel.sldr.core.Enabled());
}

TEST(Controls, TypingGoesThroughFocusKeyAndLeaving) {
  Panel panel;
  std::string story;
  panel.txt.gotFocus = [&] { story += "got:" + panel.txt.Text() + " "; };
  panel.txt.keyPress = [&](int code) {
    story += "key" + std::to_string(code) + ":" + panel.txt.Text() + " ";
  };
  panel.txt.lostFocus = [&] { story += "left"; };
  panel.txt.SetText("old");
  EXPECT_EQ(TypeInto(panel.Find("txt"), "new", true), "");
  EXPECT_EQ(story, "got:old key13:new left");
  panel.txt.readOnly = true;
  EXPECT_EQ(TypeInto(panel.Find("txt"), "x", false), "it is read-only");
  EXPECT_NE(TypeInto(panel.Find("sldr"), "x", false), "");
}

TEST(Controls, MutedFormsRaiseNothing) {
  Panel panel;
  {
    const Mute mute(panel.form);
    panel.sldr.SetPosition(50);
    panel.opt.Select(1);
    panel.btnOK.Click();
  }
  EXPECT_EQ(panel.events, 0);
  EXPECT_EQ(panel.sldr.Position(), 50.0);
  panel.sldr.SetRange(0, 20);  // a narrower range moves the position and tells of it
  EXPECT_EQ(panel.sldr.Position(), 20.0);
  EXPECT_EQ(panel.events, 1);
}

TEST(FormStack, ModalFormsBlockWhatLiesBelow) {
  Panel first;
  Form second{"Second", ""};
  Form third{"Third", ""};
  Forms forms;
  std::string story;
  forms.gone = [&](Form& form) { story += form.name + " "; };
  forms.Show(first.form);
  forms.Show(second, Modality::Modal);
  EXPECT_FALSE(forms.Operable(first.form));
  EXPECT_TRUE(forms.Operable(second));
  forms.Show(third);
  EXPECT_TRUE(forms.Operable(third));
  forms.Hide(second);
  EXPECT_TRUE(forms.Operable(first.form));
  EXPECT_EQ(forms.Top(), &third);
  forms.Show(second, Modality::Modal);
  EXPECT_EQ(forms.Top(), &second);
  int asked = 0;
  second.closeRequested = [&] { ++asked; };
  forms.Close(second);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(forms.Find("Second"), &second);
  forms.Close(third);
  EXPECT_EQ(forms.Find("Third"), nullptr);
  forms.Unload(third);  // not open: nothing
  forms.UnloadAll();
  EXPECT_EQ(story, "Third Second Panel ");
  EXPECT_EQ(forms.Top(), nullptr);
}

}  // namespace
}  // namespace vc
