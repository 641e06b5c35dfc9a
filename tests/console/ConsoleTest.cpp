// The console, line by line, on a session in virtual time.
#include <cmath>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "ConsoleRun.h"
#include "SampleForm.h"
#include "model/Settings.h"

namespace console {
namespace {

struct Consoles : testing::Test, support::ConsoleRun {};

TEST_F(Consoles, ListsFormsAndControls) {
  EXPECT_EQ(Say("forms"), "MasterControl\tVeltrana Master Control Panel\tmodeless\tshown\n");
  const std::string shown = Say("show");
  EXPECT_NE(shown.find("mnuComSelect(3)\tentry\t0\t\tenabled\tshown\tCOM3\n"), std::string::npos);
  EXPECT_NE(shown.find("lbInputLeft\tlevel\t0 no unit\t0..100\tenabled\tshown\t"), std::string::npos);
  EXPECT_EQ(Say("show MasterControl"), shown);
  EXPECT_EQ(Say("show Nothing"), "error Nothing: no such form is open\n");
}

TEST_F(Consoles, RunsTheClockAndReadsControls) {
  EXPECT_EQ(Say("run 1000"), "");
  EXPECT_EQ(Say("get txtComInfo"), "txtComInfo\tConnected COM 1 115200 Baud\n");
  EXPECT_EQ(Say("get MasterControl.lbInputLeft"), "MasterControl.lbInputLeft\t40 -20.0 dB\n");
  for (const char* bad : {"run", "run -1", "run x", "run 99999999999"})
    EXPECT_EQ(Say(bad).find("error run"), 0U);
}

TEST_F(Consoles, BoxesAreAnsweredFromTheQueue) {
  const std::string text =
      "Changing the Baud Rate will disconnect the current session.  To connect using the new Baud Rate "
      "setting use "
      "the 'Connect to Veltrana' menu option under the 'Settings' menu.";
  EXPECT_EQ(Say("menu mnuBaudSelect(0)"), "box\t1\tBaud Rate Change\t" + text + "\tcancel (default)\n");
  Say("answer yes ok");
  EXPECT_EQ(Say("menu mnuBaudSelect(0)"),
            "box\t1\tBaud Rate Change\t" + text + "\tcancel (default: yes is not offered)\n");
  EXPECT_EQ(Say("menu mnuBaudSelect(0)"), "box\t1\tBaud Rate Change\t" + text + "\tok\n");
  EXPECT_EQ(Say("get mnuBaudSelect(0)"), "mnuBaudSelect(0)\t1\n");
  EXPECT_EQ(Say("answer").find("error answer"), 0U);
  EXPECT_EQ(OneLine("a\tb\r\nc\\"), "a\\tb\\nc\\\\");
  for (const char* sample : {"a\tb\n\n", "\\n", "c\\\n\\", ""})
    EXPECT_EQ(FromOneLine(OneLine(sample)), sample);
  EXPECT_EQ(FromOneLine("a\\x  \\"), "a\\x  \\");
}

TEST_F(Consoles, PrintsTheLineTrace) {
  EXPECT_EQ(Say("menu mnuLineTrace"), "");
  Say("run 100");
  Say("record ihpfCutoff 250");
  Say("run 500");
  const std::string rows = Say("get FrmLineTrace.lstTrace"), before = "FrmLineTrace.lstTrace\t";
  EXPECT_EQ(rows.find(before + "ms\tafter ms\tDirection\tFrame\n"), 0U);
  EXPECT_NE(rows.find("\tto unit\t17 input high-pass = 250: 250 Hz\n" + before), std::string::npos);
  EXPECT_NE(rows.find("\tfrom unit\tacknowledged\n"), std::string::npos);
  const std::string shown = Say("show FrmLineTrace");
  EXPECT_NE(shown.find(" rows\tms | after ms | Direction | Frame\tenabled\tshown\tRows\n"),
            std::string::npos);
  Say("click FrmLineTrace.btnSave");
  Say("type SaveTrace.txtFileName " + folder.Path() + "/mine");
  Say("click SaveTrace.btnOK");
  EXPECT_NE(support::Content(folder.Path() + "/mine.txt").find("250 Hz\t3F 4D 50 11 FA 00 F5\n"),
            std::string::npos);
  EXPECT_EQ(Say("close FrmLineTrace"), "");
  EXPECT_FALSE(session.portLibrary.tap.On());
}

TEST_F(Consoles, DrawsOnAPlot) {
  EXPECT_EQ(Say("record filterType(1) 12"), "filterType(1)\t12\n");
  Say("click btnFilterConfig(1)");
  EXPECT_EQ(Say("click btnNew"), "");
  EXPECT_EQ(Say("point FilterDisplay 700 -5"), "");
  EXPECT_EQ(Say("press FilterDisplay Home"), "");
  EXPECT_EQ(Say("press FilterDisplay End"), "");
  EXPECT_EQ(Say("press FilterDisplay Shift+Down"), "");
  EXPECT_EQ(Say("record hiResCurve(1,459)"), "hiResCurve(1,459)\t0\n");
  EXPECT_EQ(Say("press FilterDisplay Enter"), "");
  EXPECT_EQ(Say("record hiResCurve(1,0)"), "hiResCurve(1,0)\t-5\n");
  EXPECT_EQ(Say("record hiResCurve(1,459)"), "hiResCurve(1,459)\t-15\n");
  EXPECT_EQ(Say("point btnNew 1 2").find("error btnNew: "), 0U);
}

TEST_F(Consoles, ReadsAnInstrumentsScreenLineByLine) {
  support::SampleForm sample;
  vc::Plot& plot = sample.pltCurve;
  session.forms.Show(sample.form);
  EXPECT_EQ(Say("get pltCurve"), "pltCurve\t3 points: 0 Hz 0.0 dB | 800 Hz -6.0 dB | 1600 Hz -12.0 dB\n");
  plot.screen = true;
  plot.told = [] { return "800 Hz, -6.0 dB"; };
  plot.SetTraces(
      {{"Trace 1", {0.0F, -6.125F, NAN}}, {"", {1.0F}}, {"Trace 2", {-70.0F, 1.1920929e-7F}, 0, {400, 800}}});
  EXPECT_EQ(Say("get pltCurve"),
            "pltCurve\tHz\tTrace 1 dB\tTrace 2 dB\npltCurve\t0\t0\t\npltCurve\t400\t-3.0625\t-70\n"
            "pltCurve\t800\t-6.125\t1.1920929e-07\npltCurve\t1600\t\t\n");
  EXPECT_NE(Say("show").find("pltCurve\tplot\t800 Hz, -6.0 dB\t"), std::string::npos);
  EXPECT_EQ(Say("get wtrCurve"), "wtrCurve\t\n");
  sample.wtrCurve.Add(std::vector<float>{-20.0F, -12.25F, -30.0F}, 1);
  EXPECT_EQ(Say("get wtrCurve"), "wtrCurve\t0 s, newest line: highest -12.2 dB at 800 Hz\n");
}

TEST_F(Consoles, ProgressIsToldOnceASecond) {
  for (int done = 0; done <= 50; ++done) {
    desk.ShowProgress("Sending", done, 50);
    clock.Sleep(50000);
  }
  desk.ShowProgress("Sending", 0, 3);  // a new work counts its own time
  EXPECT_EQ(out.str(), "progress\tSending\t20\t50\nprogress\tSending\t40\t50\n");
}

TEST_F(Consoles, ModalFormsStandInFront) {
  EXPECT_EQ(Say("key Alt+D"), "");
  EXPECT_EQ(Say("get txtInfo"), "txtInfo\t-----------------\\nTotal: 0\\nMax IDs: 0\\n\n");
  EXPECT_EQ(Say("menu MasterControl.mnuAbout"),
            "error MasterControl.mnuAbout: MasterControl is behind a modal form\n");
  EXPECT_EQ(Say("close MasterControl"), "error MasterControl: MasterControl is behind a modal form\n");
  EXPECT_NE(Say("get MasterControl.txtComInfo"), "");
  EXPECT_EQ(Say("type txtInfo x"), "error txtInfo: it is read-only\n");
  EXPECT_EQ(Say("click btnOK"), "");
  EXPECT_EQ(Say("get btnOK"), "error btnOK: MasterControl has no such control\n");
}

TEST_F(Consoles, RecordIsReadAndEditedWithinItsRange) {
  session.settings.settingsChanged = 0;
  EXPECT_EQ(Say("record lpfCutoff(2)"), "lpfCutoff(2)\t100\n");
  EXPECT_EQ(session.settings.settingsChanged, 0);
  EXPECT_EQ(Say("record lpfCutoff(2) 1234"), "lpfCutoff(2)\t1234\n");
  EXPECT_EQ(session.settings.lpfCutoff[2], 1234);
  EXPECT_EQ(session.settings.settingsChanged, 5);
  for (int stage = 1; stage <= 6; ++stage) EXPECT_EQ(session.settings.stageChanged[stage], -1);
  EXPECT_EQ(Say("record mnotchFreq(6, 16) 50"), "mnotchFreq(6, 16)\t50\n");
  EXPECT_EQ(Say("record setupDescription a b  c"), "setupDescription\ta b  c\n");
  EXPECT_EQ(Say("record hiResCurve(1,512) -12.5"), "hiResCurve(1,512)\t-12.5\n");

  EXPECT_EQ(Say("record lpfCutoff(2) 5"), "error lpfCutoff(2): 5 is outside 100..3200\n");
  for (const char* bad :
       {"record lpfCutoff", "record lpfCutoff(7)", "record lpfCutoff(1,1)", "record lpfCutoff(2",
        "record comPort(1)", "record nothing 1", "record", "record lpfCutoff(2) abc", "record sampleRate 5",
        "record lpfCutoff(1,2,3)", "record (", "record )( 4"}) {
    EXPECT_EQ(Say(bad).find("error"), 0U) << bad;
  }
  EXPECT_EQ(session.settings.lpfCutoff[2], 1234);
}

TEST_F(Consoles, WhatMustStayOpenSaysWhy) {
  session.master.form.refusal = "It works.";
  loop.endRefused = [] {};
  EXPECT_EQ(Say("close"), "error MasterControl: It works.\n");
  EXPECT_EQ(Say("quit"), "error quit: It works.\n");
  EXPECT_FALSE(loop.Ending());
}

TEST_F(Consoles, AFileIsDroppedAndTheQuestionTakesTheNextAnswer) {
  vc::SystemSettings made;
  vc::InitSettings(made);
  made.ihpfCutoff = 444;
  const std::string file = folder.Path() + "/two  blanks \\n.nrv";
  support::Put(file, vc::WriteSetup(made, 0, {}));
  EXPECT_EQ(Say("drop").find("error"), 0U);
  EXPECT_NE(Say("drop " + folder.Path() + "/none.nrv").find("There is no file"), std::string::npos);
  const std::string drop = "drop " + folder.Path() + "/two  blanks \\\\n.nrv";
  Say("record ihpfCutoff 333");
  EXPECT_NE(Say(drop).find("box\t51\tUnsaved Changes\t"), std::string::npos);
  EXPECT_EQ(session.settings.ihpfCutoff, 333);
  Say("answer no");
  const std::string told = Say(drop);
  EXPECT_TRUE(told.ends_with("\tno\n")) << told;
  EXPECT_EQ(session.settings.ihpfCutoff, 444);
}

TEST_F(Consoles, NonsenseIsOneLineOfError) {
  for (const char* bad :
       {"nonsense", "get", "set", "set txtComInfo", "click mnuAbout.x", "key Ctrl+Alt+Del", "click .",
        "menu txtComInfo", "menu mnuSettings", "set lbInputLeft 5", "\x01\x02\xFF"}) {
    const std::string answer = Say(bad);
    EXPECT_EQ(answer.find("error "), 0U) << bad;
    EXPECT_EQ(std::count(answer.begin(), answer.end(), '\n'), 1) << bad;
  }
  EXPECT_EQ(Say(""), "");
  EXPECT_EQ(Say("  forms\r"), Say("forms"));
  EXPECT_FALSE(loop.Ending());
}

}  // namespace
}  // namespace console
