// The panels one by one, driven by the names of their controls, with the unit on the other end of the line.
#include <algorithm>
#include <cmath>

#include "PanelRun.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "widgets/PlotHandle.h"

namespace vc {
namespace {

using support::PanelRun;

TEST(CutoffPanels, SlopesFollowTheirEdges) {
  PanelRun run;
  run.record.lpfTransSlope[1] = 100;
  run.record.lpfAtten[1] = 40;
  run.OpenFilter(1, FilterKind::Lowpass);
  EXPECT_EQ(run.Top().Caption(), "Lowpass (Filter 1)");
  EXPECT_EQ(run.Type("txtCutoff", "1000"), "");
  EXPECT_EQ(run.record.lpfCutoff[1], 1000);
  EXPECT_EQ(run.Get("txtTransSlope"), "341.4");  // 199 * 37 * 1000 / (3 * 7200) + 0.5
  EXPECT_EQ(run.Type("txtCutoff", "500", true), "");
  EXPECT_EQ(run.Get("txtTransSlope"), "170.9");
  EXPECT_EQ(run.record.lpfTransSlope[1], 100);
  EXPECT_EQ(run.Type("txtTransSlope", "99.9"), "");  // shown as typed, though only a whole n is stored
  EXPECT_EQ(run.Get("txtTransSlope"), "99.9");
  EXPECT_EQ(run.record.lpfTransSlope[1], 59);
  EXPECT_EQ(run.Type("txtTransSlope", "9999"), "");
  EXPECT_EQ(run.record.lpfTransSlope[1], 463);
  EXPECT_EQ(run.Type("txtCutoff", "0"), "");
  EXPECT_EQ(run.Get("txtTransSlope"), "0.5");
  EXPECT_EQ(run.Type("txtTransSlope", "50"), "");  // no slope leads there
  EXPECT_EQ(run.Get("txtTransSlope"), "0.5");
  EXPECT_EQ(run.record.lpfTransSlope[1], 463);
  run.Type("txtCutoff", "4");  // where a slope of one decimal stands for several parameters
  run.Type("txtTransSlope", run.Get("txtTransSlope"));
  EXPECT_EQ(run.record.lpfTransSlope[1], 463);
  EXPECT_EQ(run.Type("txtCutoff", "30000"), "");
  EXPECT_EQ(run.Get("txtCutoff"), "3200");
}

TEST(CutoffPanels, HighpassKeepsBelowTheBandwidth) {
  PanelRun run;
  run.record.hpfTransSlope[4] = 50;
  run.OpenFilter(4, FilterKind::Highpass);
  run.Type("txtCutoff", "3200");
  EXPECT_EQ(run.record.hpfCutoff[4], 3100);
  run.Type("txtCutoff", "2000");
  EXPECT_EQ(run.Get("txtTransSlope"), "170.1");  // half the edge: 99 * 37 * 1000 / 21600 + 0.5
  for (int stage = 1; stage <= FilterStages; ++stage) EXPECT_EQ(run.record.stageChanged[stage], -1);
  EXPECT_EQ(run.record.settingsChanged, 5);
}

TEST(CutoffPanels, BandEdgesKeepTheirDistance) {
  PanelRun run;
  run.record.bpfLoCutoff[1] = 500;
  run.record.bpfHiCutoff[1] = 1000;
  run.OpenFilter(1, FilterKind::Bandpass);
  EXPECT_EQ(run.Set("sldrLoCutoff", "995"), "");
  EXPECT_EQ(run.record.bpfLoCutoff[1], 990);
  EXPECT_EQ(run.Get("sldrLoCutoff") + run.Get("txtLoCutoff"), "990990");
  EXPECT_EQ(run.test.desk.beeps, 1);
  run.Set("sldrLoCutoff", "100");
  EXPECT_EQ(run.Type("txtLoCutoff", "995"), "");  // typed numbers never beep
  EXPECT_EQ(run.record.bpfLoCutoff[1], 990);
  EXPECT_EQ(run.test.desk.beeps, 1);
  EXPECT_EQ(run.Set("sldrHiCutoff", "3"), "");
  EXPECT_EQ(run.record.bpfHiCutoff[1], 1000);
  EXPECT_EQ(run.test.desk.beeps, 2);
  EXPECT_EQ(run.Type("txtHiCutoff", "20"), "");
  EXPECT_EQ(run.record.bpfHiCutoff[1], 1000);
}

TEST(CutoffPanels, AnEdgeThatIsOutSaysSoUntilItsBoxIsLeft) {
  PanelRun run;
  run.record.bsfLoCutoff[1] = 0;
  run.record.bsfHiCutoff[1] = 2000;
  run.record.bsfTransSlope[1] = 100;
  run.OpenFilter(1, FilterKind::Bandstop);
  EXPECT_EQ(run.Get("txtLoCutoff"), "Out");
  run.Settle();
  run.Type("txtLoCutoff", "Out");
  EXPECT_EQ(run.Get("txtLoCutoff"), "0");
  EXPECT_EQ(run.record.settingsChanged, 0);
  run.Set("sldrLoCutoff", "1000");
  EXPECT_EQ(run.Get("txtLoTransSlope"), "341.4");  // the lower edge counts whole, the upper one half
  EXPECT_EQ(run.Get("txtHiTransSlope"), "341.4");
  run.Set("sldrHiCutoff", "3000");
  EXPECT_EQ(run.Get("txtHiTransSlope"), "511.8");
  run.Set("sldrLoCutoff", "0");
  EXPECT_EQ(run.Get("txtLoCutoff"), "Out");
  run.record.bsfHiCutoff[1] = 4;  // as only a damaged record has it
  run.Set("sldrLoCutoff", "700");
  EXPECT_EQ(run.record.bsfLoCutoff[1], 0);
}

// Sixty moves a second from end to end, with the time that the line takes.
TEST(CutoffPanels, ADragNeverRunsAheadOfTheUnit) {
  PanelRun run;
  run.OpenFilter(1, FilterKind::Lowpass);
  run.Settle();
  run.Sent();
  std::size_t passes = 0;
  for (int hertz = 0; hertz <= 3200; hertz += 20) {
    run.Set("sldrCutoff", std::to_string(hertz));
    run.test.loop.RunFor(17);
    const std::string sent = run.Sent();
    if (sent.empty()) continue;
    ++passes;
    EXPECT_EQ(sent, "#0 #1 192/1 ");
    ASSERT_TRUE(run.Stage(1).block);
    const auto& block = *run.Stage(1).block;
    EXPECT_EQ(block[0] + 256 * block[1], run.record.lpfCutoff[1]);
  }
  EXPECT_GT(passes, 40U);  // of 160 moves in 2.7 seconds
  EXPECT_EQ(run.session.device.ReplyTicksLeft, 0);
  run.Settle();
  EXPECT_TRUE(run.Connected());
}

TEST(CutoffPanels, HandlesMoveWhatTheirSlidersMove) {
  PanelRun run;
  run.OpenFilter(1, FilterKind::Bandpass);
  run.Type("txtHiCutoff", "2000");
  run.Type("txtLoCutoff", "800");
  Plot& plot = *std::get<Plot*>(run.Find("pltResponse"));
  ASSERT_EQ(plot.handles.size(), 3U);
  PlotHandle &lower = *plot.handles[0], &stopband = *plot.handles[2];
  const int beeps = run.test.desk.beeps;
  lower.Hold();
  for (const double hz : {900.0, 1500.0, 1995.0}) lower.MoveTo(hz, 0);
  EXPECT_EQ(run.record.bpfLoCutoff[1], 1990);  // stopped by the upper edge
  EXPECT_EQ(run.Get("txtLoCutoff"), "1990");
  EXPECT_EQ(plot.VerticalMarkers().at(0).at, 1990);
  EXPECT_EQ(plot.HorizontalMarkers().at(0).at, -run.record.bpfAtten[1]);
  EXPECT_NE(plot.Note().find("omputed"), std::string::npos);
  EXPECT_EQ(run.test.desk.beeps, beeps + 1);
  lower.Release();
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.bpfLoCutoff[1], 800);  // the drag was one step
  const double bottom = plot.YAxis().from;
  stopband.Hold();
  stopband.MoveTo(0, -12.4);
  EXPECT_EQ(run.record.bpfAtten[1], 12);
  EXPECT_EQ(plot.YAxis().from, bottom);  // not while it is held
  stopband.Release();
  EXPECT_EQ(plot.YAxis().from, -20);
  run.Set("sldrAtten", "16");
  EXPECT_EQ(plot.YAxis().from, -40);
}

TEST(CutoffPanels, SayWhatPassesAndShareOneFrequencyAxis) {
  PanelRun run;
  run.OpenFilter(1, FilterKind::Highpass);
  run.Type("txtCutoff", "500");
  const Plot& plot = *std::get<Plot*>(run.Find("pltResponse"));
  const double top = plot.XAxis().to;
  EXPECT_EQ(plot.Bands(),
            (std::vector<PlotBand>{{0, 500, BandMeaning::Stop}, {500, top, BandMeaning::Pass}}));
  run.Press("Ctrl+L");
  EXPECT_EQ(plot.XAxis(), (PlotAxis{20, top, "Hz", AxisLaw::Logarithmic}));
  const PlotTrace& curve = plot.Traces().at(0);
  const std::size_t middle = curve.places.size() / 2;
  EXPECT_NEAR(curve.places.at(middle), std::sqrt(20 * top), 1);
  const auto expected = [&run, &curve] {
    return FilterResponse(run.record, {BlockFamily::Filter, 1, FilterKind::Highpass}, curve.places);
  };
  EXPECT_EQ(curve.values, expected());
  run.Press("Ctrl+Z");
  EXPECT_EQ(plot.Traces().at(0).values, expected());
  run.CloseTop();
  EXPECT_EQ(run.session.master.chain.Filter(1).response.XAxis().law, AxisLaw::Logarithmic);
  EXPECT_EQ(run.Get("mnuFrequencyAxis"), "1");
}

TEST(ProcessorPanels, CutoffsGoInWholeTens) {
  PanelRun run;
  run.record.ohpfCutoff = 333;  // as a file may have it
  run.Click("btnOhpfConfig");
  EXPECT_EQ(run.Get("txtCutoff") + std::to_string(run.record.ohpfCutoff), "330330");
  run.CloseTop();
  run.Click("btnIhpfConfig");
  EXPECT_EQ(run.Top().Caption(), "Input HPF Config");
  for (const auto& [position, shown] :
       {std::pair{"153", "150"}, {"155", "160"}, {"165", "160"}, {"100", "100"}}) {
    run.Set("sldrCutoff", position);
    EXPECT_EQ(run.Get("txtCutoff"), shown);
    EXPECT_EQ(std::to_string(run.record.ihpfCutoff), shown);
  }
  for (const auto& [key, shown] :
       {std::pair{"Right", "110"}, {"PgUp", "120"}, {"Left", "110"}, {"Shift+Right", "210"}}) {
    EXPECT_EQ(PressKey(run.Find("sldrCutoff"), key), "");
    EXPECT_EQ(run.Get("txtCutoff"), shown);
  }
  run.Type("txtCutoff", "1000");
  EXPECT_EQ(run.record.ihpfCutoff, 500);
  run.Settle();
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[17], 500);
}

TEST(Panels, TakeADecimalCommaAndGoBackToTheDefault) {
  PanelRun run;
  run.record.lpfTransSlope[2] = 100;
  run.record.lpfAtten[2] = 40;
  run.OpenFilter(2, FilterKind::Lowpass);
  run.Type("txtCutoff", "1000,4");
  EXPECT_EQ(run.record.lpfCutoff[2], 1000);
  run.Type("txtTransSlope", "99,9");
  EXPECT_EQ(run.Get("txtTransSlope"), "99.9");
  for (const char* wrong : {"1,000.5", "1.000,5", "1,0,0"}) run.Type("txtCutoff", wrong);
  EXPECT_EQ(run.record.lpfCutoff[2], 1000);
  SystemSettings factory;
  InitSettings(factory);
  EXPECT_EQ(SetToDefault(run.Find("sldrAtten")), "");
  EXPECT_EQ(run.record.lpfAtten[2], factory.lpfAtten[2]);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.record.lpfAtten[2], 40);
  run.CloseTop();
  run.Edit("levelControlsShown", "1");
  run.Type("txtGain(0)", "-3,5");
  EXPECT_EQ(run.record.levelControl[1], 185);
  EXPECT_EQ(SetToDefault(run.Find("sldrLevel(0)")), "");
  EXPECT_EQ(run.record.levelControl[1], 192);
}

TEST(Panels, TakeWhatWasTypedHoweverTheyEnd) {
  PanelRun run;
  const auto typed = [&run](const char* text) {
    run.OpenFilter(1, FilterKind::Lowpass);
    std::get<TextBox*>(run.Find("txtCutoff"))->Type(text);
  };
  typed("700");
  run.CloseTop();
  EXPECT_EQ(run.record.lpfCutoff[1], 700);
  typed("800");
  run.Press("Escape");
  EXPECT_EQ(run.Get("txtCutoff"), "700");
  run.Press("Escape");
  EXPECT_EQ(run.Top().name, "MasterControl");
  EXPECT_EQ(run.record.lpfCutoff[1], 700);
  typed("900");
  run.session.Exit();
  EXPECT_EQ(run.record.lpfCutoff[1], 900);
}

TEST(ProcessorPanels, SwitchesAreTheMasters) {
  PanelRun run;
  const std::int16_t before = run.record.ohpfEnabled;
  run.Click("btnOhpfConfig");
  EXPECT_EQ(run.Get("btnActive"), std::to_string(before));
  run.Click("btnActive");
  EXPECT_EQ(run.record.ohpfEnabled, 1 - before);
  EXPECT_EQ(run.session.master.chain.ohpf.active.Value(), 1 - before);
  run.Press("Ctrl+Z");
  EXPECT_EQ(run.Get("btnActive"), std::to_string(before));
  run.CloseTop();
  run.Click("btnProcEnabled");  // nothing is processed: the switch cannot be used
  run.Click("btnOhpfConfig");
  EXPECT_EQ(run.Click("btnActive"), "it is disabled");
}

TEST(ProcessorPanels, ChoicesAreTheirStoredNumbers) {
  PanelRun run(ConfigMode::StereoIndependent);
  run.record.agcGain = 7;
  run.Click("btnAgcConfig");
  EXPECT_EQ(run.record.agcGain, 0);
  EXPECT_EQ(run.Get("optGain(0)"), "1");
  for (const char* choice : {"optGain(6)", "optRelease(2)", "optLinked(0)"}) EXPECT_EQ(run.Click(choice), "");
  EXPECT_EQ(run.record.agcGain * 100 + run.record.agcRelease * 10 + run.record.agcLinked, 620);
  EXPECT_EQ(run.session.history.UndoTitle(), "Link");
  run.CloseTop();
  run.Click("btnLimiterConfig");
  for (const char* choice : {"optThreshold(3)", "optRelease(1)"}) EXPECT_EQ(run.Click(choice), "");
  EXPECT_EQ(run.record.limiterThreshold * 100 + run.record.limiterRelease * 10 + run.record.agcRelease, 312);
  run.Settle();
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[8], 3677);
  EXPECT_EQ(run.unit.Now().HeldRegisters().values[20], 73);
  run.CloseTop();
  run.Edit("configMode", "0");
  for (const char* panel : {"btnLimiterConfig", "btnAgcConfig"}) {
    run.Click(panel);
    EXPECT_EQ(run.Click("optLinked(0)"), "it is hidden");
    run.CloseTop();
  }
}

TEST(AuxiliarySwitch, OffersWhatTheConfigurationHas) {
  PanelRun run;
  run.Click("mnuMemorySelect(4)");
  EXPECT_EQ(run.Top().Caption(), "Memory 4 Auxiliary Switch Function");
  EXPECT_EQ(run.Click("AuxOption(5)"), "it is disabled");
  EXPECT_EQ(run.Click("AuxOption(6)"), run.record.numFilters < 2 ? "it is hidden" : "");
  run.CloseTop();
  run.Edit("configMode", "2");
  run.Settle();
  run.Click("mnuMemorySelect(10)");
  EXPECT_EQ(run.Click("AuxOption(5)"), "");
  EXPECT_EQ(run.Click("AuxOption(6)"), "");
  EXPECT_EQ(run.record.auxFunction, 6);
  run.CloseTop();
  run.Edit("configMode", "0");
  run.Edit("numFilters", "1");
  run.Settle();
  run.Click("mnuMemorySelect(10)");
  EXPECT_EQ(run.record.auxFunction, 0);  // it is no longer offered
}

TEST(AuxiliarySwitch, StoresInTheUnitWhatHasJustBeenEdited) {
  PanelRun run;
  run.Click("mnuMemorySelect(10)");
  run.Click("AuxOption(3)");
  run.test.desk.answers = {Answer::No};
  run.Click("btnOK");
  EXPECT_EQ(run.Top().name, "AuxCtl");
  EXPECT_EQ(run.test.desk.boxes.back().title, "Memory 10 Storage");
  run.record.ihpfCutoff = 320;
  support::MarkEdited(run.record);
  run.Sent();
  run.test.desk.answers = {Answer::Yes};
  run.Click("btnOK");
  EXPECT_EQ(run.Sent(), "17/320 127/78 ");  // 3 * 4 + (10 & 12) * 8 + (10 & 3)
  EXPECT_EQ(run.Top().name, "MasterControl");
  EXPECT_NE(run.unit.Dump().find("memory 10 "), std::string::npos);
  EXPECT_EQ(run.session.master.lblStatus.core.Caption(), "The settings are stored in memory 10 of the unit.");
  run.session.master.menus.mnuDisconnect.Click();
  run.Click("mnuMemorySelect(1)");
  run.test.desk.answers = {Answer::Yes};
  run.Click("btnOK");
  EXPECT_EQ(run.Top().name, "AuxCtl");  // nothing was stored, and the operator has been told
  EXPECT_NE(run.test.desk.boxes.back().text.find("no connection"), std::string::npos);
  EXPECT_EQ(run.session.master.lblStatus.core.Caption().find("memory 1 "), std::string::npos);
}

TEST(Panels, WhatTakesAPanelAwayTakesItsQuestion) {
  support::PanelRun run;
  run.Set("cmbFilter(1)", "Lowpass");
  for (const bool undone : {true, false}) {
    run.session.panels.OpenFilter(1);
    Form question{"Question", ""};
    std::string told;
    question.unloaded = [&told, &run] {
      told = run.session.forms.Find("CtlLPF") != nullptr ? "first" : "late";
    };
    run.session.forms.Show(question, Modality::OverOwner, &run.Top());
    EXPECT_FALSE(run.session.forms.Operable(*run.session.forms.Find("CtlLPF")));
    if (undone) run.session.history.Undo();
    if (!undone) run.Edit("filterType", "3", 1);
    EXPECT_EQ(told, "first") << undone;
    EXPECT_EQ(run.Top().name, "MasterControl");
    run.session.history.Redo();
  }
}

}  // namespace
}  // namespace vc
