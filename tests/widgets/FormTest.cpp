// Forms, their controls by name and in words, and the windows on each other.
#include <gtest/gtest.h>

#include "RowForm.h"
#include "SampleForm.h"
#include "Unheard.h"
#include "text/Convert.h"
#include "widgets/ControlText.h"
#include "widgets/Forms.h"

namespace vc {
namespace {

struct Panel : support::SampleForm {
  std::string Set(const std::string& name, const std::string& value) { return SetControl(Find(name), value); }
  const AnyControl& Find(const std::string& name) { return *FindControl(form, name); }
  // What was raised since the last call.
  std::string Events() { return std::exchange(events, {}); }
};

TEST(Controls, AreFoundByNameInReadingOrder) {
  Panel panel;
  std::string order;
  for (const AnyControl& control : panel.form.controls) order += CoreOf(control).FullName() + " ";
  EXPECT_TRUE(order.starts_with(
      "mnuFile mnuExit mnuRate mnuRateSelect(0) mnuRateSelect(1) fraFilter sldrCutoff txtCutoff sldrBalance "
      "cmbKind fraInner chkPart(1) chkPart(2) optMode(0) optMode(1) optMode(2) fraLevels "))
      << order;
  EXPECT_EQ(FindControl(panel.form, "chkPart"), nullptr);
  EXPECT_EQ(panel.sldrCutoff.core.AccessibleName(), "Filter, Cutoff Frequency");
  EXPECT_EQ(WithoutAccessKey("A && &B&"), "A & B&");
}

TEST(Controls, AreSetAndReadByText) {
  Panel panel;
  struct Case {
    const char *name, *value, *shown;
    bool taken;
    const char* events;
  };
  for (const Case& c :
       {Case{"sldrCutoff", "12.5", "12.5", true, "cutoff "}, Case{"sldrCutoff", "12.5", "12.5", true, ""},
        Case{"sldrCutoff", "101", "12.5", false, ""}, Case{"sldrCutoff", "x", "12.5", false, ""},
        Case{"cmbKind", "Highpass", "Highpass", true, "kind "},
        Case{"cmbKind", "0", "Lowpass", true, "kind "}, Case{"cmbKind", "Notch", "Lowpass", false, ""},
        Case{"optMode(1)", "1", "1", true, "mode "}, Case{"optMode(1)", "0", "1", false, ""},
        Case{"chkPart(2)", "1", "1", true, "part "}, Case{"chkPart(2)", "yes", "1", false, ""},
        Case{"btnActive", "1", "1", true, "active "}, Case{"btnActive", "1", "1", true, ""},
        Case{"btnActive", "2", "1", false, ""}, Case{"btnOK", "1", "", false, ""},
        Case{"fraFilter", "1", "&Filter", false, ""}}) {
    SCOPED_TRACE(std::string(c.name) + " " + c.value);
    EXPECT_EQ(panel.Set(c.name, c.value).empty(), c.taken);
    EXPECT_EQ(ValueOf(panel.Find(c.name)), c.shown);
    EXPECT_EQ(panel.Events(), c.events);
  }
  EXPECT_EQ(ValueOf(panel.Find("optMode(0)")), "0");
  EXPECT_EQ(RangeOf(panel.Find("sldrCutoff")), "0..100");
  EXPECT_EQ(RangeOf(panel.Find("cmbKind")), "Lowpass | Highpass | Comb");
  EXPECT_EQ(KindOf(panel.Find("mnuFile")), "menu");
  EXPECT_EQ(KindOf(panel.Find("mnuExit")), "entry");
}

TEST(Controls, ClicksDoWhatTheMouseWould) {
  Panel panel;
  panel.btnClear.core.SetEnabled(true);
  for (const char* name :
       {"btnOK", "btnClear", "btnActive", "chkPart(2)", "optMode(2)", "mnuRateSelect(1)"}) {
    EXPECT_EQ(ClickControl(panel.Find(name)), "") << name;
  }
  EXPECT_EQ(panel.Events(), "ok clear active part mode ");
  EXPECT_EQ(panel.btnClear.Value(), 0);
  EXPECT_EQ(panel.btnActive.Value(), 1);
  EXPECT_TRUE(panel.mnuRateSelect(1).Checked());
  for (const char* name : {"mnuFile", "sldrCutoff", "fraFilter", "txtCutoff", "cmbKind"})
    EXPECT_NE(ClickControl(panel.Find(name)), "") << name;
}

TEST(Controls, DisabledAndHiddenOnesRefuseWithTheirFrames) {
  Panel panel;
  panel.fraFilter.core.SetEnabled(false);
  EXPECT_EQ(panel.Set("sldrCutoff", "5"), "it is disabled");
  EXPECT_EQ(ClickControl(panel.Find("btnHidden")), "it is hidden");
  EXPECT_EQ(panel.Events(), "");
  EXPECT_TRUE(panel.sldrCutoff.core.Enabled());
}

TEST(Controls, TypingGoesThroughFocusKeyAndLeaving) {
  Panel panel;
  const auto tell = [&panel](const char* what) {
    return [&panel, what] { panel.events += what + panel.txtCutoff.Text() + " "; };
  };
  panel.txtCutoff.gotFocus = tell("got:");
  panel.txtCutoff.lostFocus = tell("left:");
  panel.txtCutoff.SetText("old");
  EXPECT_EQ(TypeInto(panel.Find("txtCutoff"), "new", true), "");
  EXPECT_EQ(panel.Events(), "got:old key13 left:new ");
  EXPECT_EQ(TypeInto(panel.Find("txtState"), "x", false), "it is read-only");
  EXPECT_NE(TypeInto(panel.Find("sldrCutoff"), "x", false), "");
}

TEST(Controls, MutedFormsRaiseNothing) {
  Panel panel;
  {
    const Mute mute(panel.form);
    panel.sldrCutoff.SetPosition(50);
    panel.optMode.Select(1);
    panel.btnOK.Click();
  }
  EXPECT_EQ(panel.Events(), "");
  EXPECT_EQ(panel.sldrCutoff.Position(), 50.0);
  panel.sldrCutoff.SetRange(0, 20);  // a narrower range moves the position and tells of it
  EXPECT_EQ(panel.sldrCutoff.Position(), 20.0);
  EXPECT_EQ(panel.Events(), "cutoff ");
}

TEST(Controls, WhatIsTypedIsPutBackByEscapeAndTakenByEverythingElse) {
  Panel panel;
  auto& box = panel.txtCutoff;
  box.keyPress = nullptr;
  box.lostFocus = [&] { panel.events += "took:" + box.Text() + " "; };
  box.SetText("old");
  panel.form.okButton = &panel.btnOK;
  box.Type("new");
  EXPECT_EQ(panel.form.Press("Escape"), "");
  EXPECT_EQ(box.Text() + panel.Events(), "old");
  panel.form.Press("Escape");
  EXPECT_EQ(panel.Events(), "ok ");
  panel.form.cancelButton = &panel.btnHidden;
  panel.btnHidden.clicked = [&] { panel.events += "cancel "; };
  panel.form.Press("Escape");
  EXPECT_EQ(panel.Events(), "cancel ");

  panel.mnuExit.shortcut = "Ctrl+Q";
  panel.mnuExit.clicked = [&] { panel.events += "exit "; };
  for (const char* keys : {"Alt+A", "Ctrl+Q", "Ctrl+Q"}) {
    box.Type(box.Text() + "1");
    EXPECT_EQ(panel.form.Press(keys), "");
  }
  EXPECT_EQ(panel.Events(), "took:old1 alt-a took:old11 exit took:old111 exit ");
  box.Type("entered");
  box.KeyPress(EnterKey);
  panel.form.Press("Escape");  // it has been taken: nothing to put back
  EXPECT_EQ(box.Text() + panel.Events(), "enteredcancel ");
  panel.mnuExit.core.SetEnabled(false);
  EXPECT_EQ(panel.form.Press("Ctrl+Q"), "it is disabled");
  EXPECT_NE(panel.form.Press("Ctrl+X"), "");
}

TEST(FormStack, AWindowClosesAsItsButtonsSay) {
  Panel panel;
  Forms forms{support::DeadEnd{}};
  panel.txtCutoff.lostFocus = [&] { panel.events += "took:" + panel.txtCutoff.Text() + " "; };
  const auto closed = [&] {
    panel.txtCutoff.Type(panel.txtCutoff.Text() + "5");
    forms.Show(panel.form);
    panel.events.clear();
    forms.Close(panel.form);
    return panel.Events();
  };
  EXPECT_EQ(closed(), "took:5 ");
  panel.form.okButton = &panel.btnOK;
  EXPECT_EQ(closed(), "took:55 ok ");
  forms.TakeTyped();
  panel.form.cancelButton = &panel.btnHidden;
  EXPECT_EQ(closed(), "");
  forms.TakeTyped();  // that could still be left by Cancel
  EXPECT_EQ(panel.Events(), "");
}

TEST(Controls, SlidersTakeKeysAndTheirDefault) {
  Panel panel;
  panel.sldrCutoff.SetRange(0, 1000);
  panel.sldrCutoff.KeyPageStepSize = 50;
  for (const auto& [key, position] : {std::pair{"Right", 1.0},
                                      {"Shift+Up", 11.0},
                                      {"Ctrl+Right", 111.0},
                                      {"Shift+Left", 101.0},
                                      {"PgUp", 151.0},
                                      {"PgDown", 101.0},
                                      {"Ctrl+Down", 1.0},
                                      {"End", 1000.0},
                                      {"Home", 0.0}}) {
    EXPECT_EQ(PressKey(panel.Find("sldrCutoff"), key), "") << key;
    EXPECT_EQ(panel.sldrCutoff.Position(), position) << key;
  }
  EXPECT_NE(PressKey(panel.Find("sldrCutoff"), "Alt+Right"), "");
  EXPECT_NE(PressKey(panel.Find("cmbKind"), "Right"), "");
  PressKey(panel.Find("sldrBalance"), "Shift+Right");  // its scale is reversed
  EXPECT_EQ(panel.sldrBalance.Position(), -1.0);
  EXPECT_NE(SetToDefault(panel.Find("sldrCutoff")), "");
  panel.sldrCutoff.defaultPosition = [] { return 440.0; };
  EXPECT_EQ(SetToDefault(panel.Find("sldrCutoff")), "");
  EXPECT_EQ(panel.sldrCutoff.Position(), 440.0);
}

TEST(Controls, UpDownsStandAtWholeNumbersOfTheirRange) {
  Form form{"Dynamics", ""};
  TextBox text{form, "txtThresh", "Threshold"};
  Label between{form, "lblBetween", ""};
  UpDown upDown{form, "udThresh", "Threshold"};
  text.shows = &upDown.slider;
  std::string events;
  upDown.slider.changed = [&] { events += std::to_string(upDown.Value()) + " "; };
  const auto heard = [&events] { return std::exchange(events, {}); };
  upDown.SetRange(-90, 0);
  upDown.SetRange(-90, -40);  // it is moved into the new range
  upDown.SetValue(-40);
  upDown.SetValue(-2147483647);
  EXPECT_EQ(heard(), "-40 -90 ");
  const AnyControl& control = *FindControl(form, "udThresh");
  for (const auto& [key, value] : {std::pair{"Up", -89},
                                   {"PgUp", -79},
                                   {"Shift+Down", -89},
                                   {"PgDown", -90},
                                   {"End", -40},
                                   {"Up", -40},
                                   {"Home", -90}}) {
    EXPECT_EQ(PressKey(control, key), "") << key;
    EXPECT_EQ(upDown.Value(), value) << key;
  }
  upDown.slider.SetShown(-60.6);  // as a screen reader may want it
  EXPECT_EQ(KindOf(control) + " " + ValueOf(control) + " " + RangeOf(control), "updown -61 -90..-40");
  for (const char* refused : {"-60.5", "-39", "x"}) EXPECT_NE(SetControl(control, refused), "") << refused;
  EXPECT_NE(SetToDefault(control), "");
  upDown.slider.defaultPosition = [] { return -50.0; };
  heard();
  EXPECT_EQ(SetControl(control, "-70"), "");
  EXPECT_EQ(SetToDefault(control), "");
  EXPECT_EQ(heard(), "-70 -50 ");
  std::string order;
  for (const AnyControl& one : ReadingOrder(form)) order += CoreOf(one).name + " ";
  EXPECT_EQ(order, "lblBetween udThresh txtThresh ");
}

TEST(FormStack, ModalFormsBlockWhatLiesBelow) {
  Panel first;
  Form second{"Second", ""};
  Form third{"Third", ""};
  Forms forms{support::DeadEnd{}};
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
  EXPECT_EQ(story, "Third Second SampleForm ");
  EXPECT_EQ(forms.Top(), nullptr);
}

struct Owned : testing::Test {
  Form master{"Master", ""}, panel{"Panel", ""}, other{"Other", ""};
  support::SampleForm question;
  Form detail{"Detail", ""};
  Forms forms{support::DeadEnd{}};
  std::string story;

  Owned() {
    forms.shown = [this](const Forms::Entry& entry) { story += "+" + entry.form->name; };
    forms.hidden = [this](Form& form) { story += "~" + form.name; };
    forms.gone = [this](Form& form) { story += "-" + form.name; };
    question.txtCutoff.lostFocus = [this] { story += "took" + question.txtCutoff.Text(); };
    question.form.unloaded = [this] { story += "!"; };
    for (Form* form : {&master, &other, &panel}) forms.Show(*form);
    forms.Show(question.form, Modality::OverOwner, &panel);
    forms.Show(detail, Modality::Modeless, &question.form);
  }
  std::string Story() { return std::exchange(story, {}); }
  std::string Operable() const {
    std::string names;
    for (const Forms::Entry& entry : forms.open)
      names += forms.Operable(*entry.form) ? entry.form->name[0] : '.';
    return names;
  }
};

TEST_F(Owned, AWindowBlocksItsOwnerAloneAndStaysAboveIt) {
  EXPECT_EQ(Operable(), "MO.SD");
  Story();
  forms.Show(panel);
  EXPECT_EQ(Story(), "+Panel+SampleForm+Detail");
  EXPECT_EQ(Operable(), "MO.SD");
  forms.Show(detail, Modality::OverOwner);  // it blocks the owners of its owner too
  EXPECT_EQ(Operable(), "MO..D");
  forms.Show(detail, Modality::Modal);
  EXPECT_EQ(Operable(), "....D");
  Story();
  forms.Hide(panel);
  EXPECT_EQ(Story(), "~Detail~SampleForm~Panel");
  EXPECT_EQ(forms.Top(), &other);
  EXPECT_TRUE(forms.Operable(master));
}

TEST_F(Owned, AWindowGoesBeforeItsOwner) {
  Story();
  question.txtCutoff.Type("5");
  forms.Unload(panel);
  EXPECT_EQ(Story(), "took5-Detail-SampleForm!-Panel");
  // What is taken may itself lead to the owner's end.
  forms.Show(panel);
  forms.Show(question.form, Modality::OverOwner, &panel);
  question.txtCutoff.lostFocus = [this] { forms.Unload(panel); };
  question.txtCutoff.Type("6");
  Story();
  forms.Unload(panel);
  EXPECT_EQ(Story(), "-SampleForm!-Panel");
  forms.Show(question.form, Modality::OverOwner, &panel);  // whose owner is not there
  EXPECT_FALSE(forms.Operable(master));
}

TEST(Forms, AreReadRowByRow) {
  support::RowForm rows;
  const AnyControl& freq = *FindControl(rows.form, "sldrFreq(2)");
  EXPECT_EQ(CoreOf(freq).AccessibleName(), "Notch 3, Freq.");
  EXPECT_EQ(PressKey(freq, "Right"), "");
}

TEST(Sliders, PutBackWhatAHoldHasMovedBeforeTheDefault) {
  Form form{"Form", "Form"};
  Slider slider{form, "sldrGain", "Gain"};
  slider.SetRange(0, 40);
  slider.SetPosition(30);
  std::string events;
  slider.changed = [&] { events += ShortestText(slider.Position()) + " "; };
  slider.released = [&] { events += "released "; };
  slider.SetDefault();  // it has none
  slider.defaultPosition = [] { return 40.0; };
  slider.Hold();
  slider.MoveBy(-5);
  slider.SetDefault();
  EXPECT_EQ(events, "25 30 40 released ");
  EXPECT_FALSE(slider.Held());
}
}  // namespace
}  // namespace vc
