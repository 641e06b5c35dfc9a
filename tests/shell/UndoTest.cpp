// Undo and redo of the operator's work, seen in the record, on the panels and in the unit.
#include "PanelRun.h"
#include "model/Kinds.h"
#include "model/Settings.h"

namespace vc {
namespace {

using support::PanelRun;

TEST(Undo, TakesBackOneStepAfterTheOther) {
  PanelRun run;
  run.Edit("numFilters", "2");
  run.OpenFilter(2, FilterKind::Highpass);
  run.Type("txtCutoff", "1500");
  run.Type("txtCutoff", "700");
  run.Type("txtAtten", "33");
  EXPECT_EQ(run.record.hpfAtten[2], 33);
  run.Settle();
  EXPECT_EQ(run.session.history.UndoTitle(), "Stopband Attenuation");
  run.Press("Ctrl+Z");
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.Get("txtCutoff"), "1500");
  EXPECT_EQ(run.record.hpfCutoff[2], 1500);
  EXPECT_EQ(run.session.history.RedoTitle(), "Cutoff Frequency");
  run.Settle();
  EXPECT_EQ((*run.Stage(2).block)[0] + 256 * (*run.Stage(2).block)[1], 1500);
  run.Press("Ctrl+Shift+Z");
  EXPECT_EQ(run.Get("txtCutoff"), "700");
  run.Type("txtCutoff", "900");  // what was undone beyond it is gone
  EXPECT_FALSE(run.session.history.CanRedo());
  for (const char* cutoff : {"700", "1500"}) {
    run.Press("Ctrl+Z");
    EXPECT_EQ(run.Get("txtCutoff"), cutoff);
  }
  for (int step = 0; step < 2; ++step) run.Press("Ctrl+Shift+Z");
  run.CloseTop();
  EXPECT_EQ(CoreOf(run.Find("mnuUndo")).Caption(), "&Undo Cutoff Frequency");
  EXPECT_EQ(run.Click("mnuRedo"), "it is disabled");
}

TEST(Undo, CountsADragAsOneStep) {
  PanelRun run;
  run.OpenFilter(1, FilterKind::Lowpass);
  Slider& cutoff = *std::get<Slider*>(run.Find("sldrCutoff"));
  const std::int16_t before = run.record.lpfCutoff[1];
  cutoff.Hold();
  for (int hertz = 500; hertz < 1500; hertz += 100) {
    cutoff.SetPosition(hertz);
    run.test.loop.RunFor(hertz == 1000 ? 5000 : 20);  // the hand rests, the drag goes on
    run.record.specRun = 0;                           // not by the operator
  }
  cutoff.Release();
  // The hand is off, and a pause parts other edits again.
  for (const std::int16_t slope : std::array<std::int16_t, 2>{40, 50}) {
    run.session.edits.Apply({{FindField("lpfTransSlope"), 1, 0, static_cast<double>(slope)}},
                            {"Slope", "typed"});
    run.test.loop.RunFor(1500);
  }
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfTransSlope[1], 40);
  run.Press("Ctrl+Z");
  cutoff.SetPosition(2000);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], 1400);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], before);
  EXPECT_EQ(run.record.specRun, 0);
  for (int hertz = 500; hertz < 1500; hertz += 100) cutoff.SetPosition(hertz);  // a run of key presses
  run.test.loop.RunFor(1500);
  cutoff.SetPosition(1600);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], 1400);
  cutoff.SetPosition(700);
  run.CloseTop();  // the next panel begins a step of its own
  run.session.panels.OpenFilter(1);
  std::get<Slider*>(run.Find("sldrCutoff"))->SetPosition(900);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfCutoff[1], 700);
}

TEST(Undo, GivesBackWhatAChangeOfConfigurationTook) {
  PanelRun run;
  run.Edit("numFilters", "6");
  run.Settle();
  run.Edit("filterType", "8", 2);
  run.Edit("mnotchFreq", "1000", 2, 1);
  run.Settle();
  const SystemSettings before = run.record;
  std::string held = run.unit.Dump();
  held.resize(held.find("image 1 "));  // behind which stands nothing that a host has set
  run.Set("cmbBandwidth", "16 kHz");   // empties the tables
  run.Set("cmbConfig", "Stereo Linked");
  run.Settle();
  EXPECT_EQ(run.record.numFilters * 10000 + run.record.mnotchFreq[2][1], 10000);
  run.Click("mnuUndo");
  run.Click("mnuUndo");
  run.Settle();
  EXPECT_EQ(run.record.numFilters, 6);
  EXPECT_EQ(run.record.mnotchFreq[2][1], 1000);
  EXPECT_EQ(run.record.sampleRate, before.sampleRate);
  EXPECT_EQ(run.Get("cmbBandwidth") + run.Get("cmbConfig"), "3.2 kHzMono");
  // But for the second broadband stage, which a unit may remember.
  const std::string holds = run.unit.Dump();
  EXPECT_TRUE(holds.substr(0, holds.find("broadband 2 0")) == held);
}

TEST(Undo, GivesBackWhatALaterFitTook) {
  PanelRun run;
  const auto ask = [&run](std::int16_t taps) {
    run.Edit("ch1Taps", std::to_string(taps), 1);
    run.Settle();  // the next tick fits it
  };
  run.Edit("numFilters", "5");
  run.Settle();
  ask(2048);
  EXPECT_EQ(run.record.maxDspStages, 5);
  run.Edit("ch1PredSpan", "8191", 1);
  ask(1024);
  EXPECT_EQ(run.record.ch1PredSpan[1], 4095);
  run.Click("mnuUndo");
  EXPECT_EQ(run.record.ch1Taps[1], 2048);
  EXPECT_EQ(run.record.ch1PredSpan[1], 8191);
  run.Click("mnuUndo");
  run.Click("mnuUndo");
  run.Settle();
  EXPECT_EQ(run.record.maxDspStages, 6);
  while (run.session.history.CanRedo()) run.session.history.Redo();
  EXPECT_EQ(run.record.ch1PredSpan[1], 4095);
}

// A step holds what the unit can be told, so that the way back and forth ends where it began.
TEST(Undo, HoldsNumbersAsTheyAreSent) {
  PanelRun run;
  run.Edit("averagerMode", "3");
  EXPECT_EQ(run.record.averagerMode, 0);
  run.Edit("averagerMode", "4");
  run.Edit("averagerMode", "2");
  run.Settle();
  const SystemSettings before = run.record;
  while (run.session.history.CanUndo()) run.session.history.Undo();
  while (run.session.history.CanRedo()) run.session.history.Redo();
  EXPECT_TRUE(run.record.averagerMode == before.averagerMode);
}

TEST(Undo, KnowsNoStepThatChangesNothing) {
  PanelRun run;
  run.Set("cmbFilter(1)", "Multiple Notch");
  run.Edit("mnotchFreq", "1000", 1, 1);
  run.Edit("numFilters", "2");
  run.record.filterType[2] = FilterKind::OneChAdaptive;
  run.record.ch1Taps[2] = 2048;
  run.session.config.ConfigureStages(true);
  run.Settle();
  run.session.edits.Apply({{FindField("ohpfCutoff"), 0, 0, 300.0}}, {"Last"});
  run.Edit("ihpfCutoff", "200");
  run.Edit("mnotchFreq", "1000", 1, 1);
  run.Edit("bandwidthIndex", "0");  // no new layout either
  run.Edit("configMode", "0");
  run.Settle();
  EXPECT_EQ(run.record.ch1Taps[2], 2048);
  EXPECT_EQ(run.session.history.UndoTitle(), "Last");
}

TEST(Undo, ReachesBehindANewSetup) {
  PanelRun run;
  run.Edit("ihpfCutoff", "330");
  run.Edit("setupDescription", "Hall, hum");
  run.test.desk.answers = {Answer::Yes, Answer::No};
  run.Click("mnuNew");
  EXPECT_NE(run.record.ihpfCutoff, 330);
  EXPECT_EQ(run.session.history.UndoTitle(), "New Filter Configuration");
  run.session.master.form.SetCaption("as after a recall");
  run.Click("mnuUndo");
  EXPECT_EQ(run.Top().Caption(), "*Veltrana Master Control Panel");
  run.Settle();
  EXPECT_EQ(run.record.ihpfCutoff, 330);
  EXPECT_EQ(run.record.setupDescription, "Hall, hum");
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[17], 330);
}

TEST(Undo, ReachesBehindARecall) {
  PanelRun run;
  EXPECT_TRUE(run.session.setups.SaveSetupFile(run.test.desk.InstallFolder() + "/hall.nrv", 0));
  run.Edit("ihpfCutoff", "330");
  run.Click("mnuOpen");
  run.Type("txtFileName", "hall");
  run.test.desk.answers = {Answer::No};
  run.Click("btnOK");
  EXPECT_EQ(run.record.ihpfCutoff, 200);
  EXPECT_EQ(run.session.history.UndoTitle(), "Setup Recall");
  run.Click("mnuUndo");
  run.Settle();
  EXPECT_EQ(run.record.ihpfCutoff, 330);
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[17], 330);
}

TEST(Undo, KeepsAHundredSteps) {
  PanelRun run;
  for (int n = 0; n < 150; ++n) run.Edit("ihpfCutoff", std::to_string(100 + n));
  int steps = 0;
  for (; run.session.history.CanUndo(); ++steps) run.session.history.Undo();
  EXPECT_EQ(steps, 100);
  EXPECT_EQ(run.record.ihpfCutoff, 149);
}

}  // namespace
}  // namespace vc
