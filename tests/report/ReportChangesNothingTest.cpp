// Making a report changes nothing, whatever the operator is in the midst of: not the record with its marks,
// not what is open and typed, not the steps, not what is polled and sent.
#include <algorithm>
#include <new>

#include "PanelOpening.h"
#include "RecordDifference.h"

namespace vc {
namespace {

using support::PanelRun;

// All that could be changed but for the record itself, in words.
std::string Standing(const PanelRun& run) {
  const Session& session = run.session;
  std::string text = "polled " + std::to_string(session.periodic.pollMode) + " levels " +
                     std::to_string(session.periodic.eqLevelsWanted) + " timer " +
                     std::to_string(session.periodic.tmrBargraph->Enabled()) + " clear " +
                     std::to_string(session.download.AnalyzerClearRequest) + " undo " +
                     session.history.UndoTitle() + " redo " + session.history.RedoTitle() + " boxes " +
                     std::to_string(run.test.desk.boxes.size()) + " beeps " +
                     std::to_string(run.test.desk.beeps) + " frames " +
                     std::to_string(run.unit.frames.size()) + '\n';
  for (const Forms::Entry& entry : session.forms.open) {
    text += entry.form->name + (entry.hidden ? " hidden\n" : "\n");
    for (const AnyControl& control : entry.form->controls) {
      const ControlCore& core = CoreOf(control);
      text +=
          core.FullName() + '|' + core.Caption() + '|' + ValueOf(control) + (core.Usable() ? "|\n" : "\n");
    }
  }
  return text;
}

std::string ExpectNothingChanged(PanelRun& run) {
  int told = 0;
  run.session.forms.shown = [&told](const Forms::Entry&) { ++told; };
  const SystemSettings before = run.record;
  const std::string standing = Standing(run);
  std::string report;
  EXPECT_EQ(run.session.report.GenerateReport(report), modReport::Built);
  EXPECT_TRUE(run.record == before) << support::Difference(before, run.record);
  EXPECT_EQ(Standing(run), standing);
  EXPECT_EQ(told, 0);
  EXPECT_FALSE(run.test.desk.hourglass);
  run.session.forms.shown = nullptr;
  return report;
}

// Six stages in, of these kinds, with both sides where there are two.
void FillChain(PanelRun& run, int firstKind) {
  run.Edit("numFilters", run.record.configMode == ConfigMode::Mono ? "6" : "3");
  for (int stage = 1; stage <= FilterStages; ++stage) {
    run.Edit("filterType", std::to_string((firstKind + stage) % 17), stage);
    run.Edit("filterActive", "1", stage);
  }
  for (const int side : {1, 2}) {
    run.Edit("eqType", std::to_string((firstKind + side) % 4), side);
    run.Edit("broadbandType", std::to_string((firstKind + side) % 2), side);
    for (const char* active : {"eqActive", "broadbandActive"}) run.Edit(active, "1", side);
  }
  run.Settle();
}

// What a file or another bandwidth may leave: beyond the ranges of the panels, and of each other.
void StoreBeyondAllRanges(SystemSettings& record, double lower, double upper) {
  for (const FieldRow& row : Fields()) {
    if (IsDerived(row) || row.name == "comPort" || row.name == "baudIndex") continue;
    const bool number =
        !std::holds_alternative<std::string>(row.value(record, row.extent[0].first, row.extent[1].first));
    const bool chain = row.name == "configMode" || row.name == "numFilters" || row.name == "bandwidthIndex" ||
                       row.name.ends_with("Active") || row.name.ends_with("Type");
    if (!number || chain) continue;
    ForEachElement(row,
                   [&](int i, int j) { StoreNumber(record, row, i, j, (i + j) % 2 == 0 ? lower : upper); });
  }
}

TEST(ReportChangesNothing, OverEveryPanelWithATextHalfTyped) {
  for (const int mode : {ConfigMode::Mono, ConfigMode::StereoIndependent}) {
    PanelRun run(static_cast<std::int16_t>(mode));
    FillChain(run, 3 * mode);
    support::ForEachPanel(run, [&run] {
      for (const AnyControl& control : run.Top().controls) {
        auto* const* box = std::get_if<TextBox*>(&control);
        if (box == nullptr || (*box)->readOnly || !(*box)->core.Usable()) continue;
        (*box)->GotFocus();
        (*box)->Type("1");
        break;
      }
      ExpectNothingChanged(run);
    });
  }
}

TEST(ReportChangesNothing, OfValuesBeyondTheRangesOfTheirPanels) {
  for (const int mode : {ConfigMode::Mono, ConfigMode::StereoLinked, ConfigMode::StereoIndependent}) {
    for (int kind = 0; kind < 17; kind += 3) {
      PanelRun run(static_cast<std::int16_t>(mode));
      FillChain(run, kind);
      StoreBeyondAllRanges(run.record, -1e4, 3e4);
      run.record.settingsChanged = 3;
      run.unit.frames.clear();
      EXPECT_NE(ExpectNothingChanged(run), "");
    }
  }
}

TEST(ReportChangesNothing, InTheMidstOfADrawnCurveANumberAndADrag) {
  PanelRun run;
  FillChain(run, FilterKind::HiResGraphic - 2);
  support::OpenPanel(run, "CtlHiRes");
  Plot& plot = *std::get<Plot*>(run.Find("FilterDisplay"));
  EXPECT_EQ(run.Click("btnNew"), "");
  plot.pointer({PointerAction::Release, 0, -10});
  plot.pointer({PointerAction::Release, 1000, -20});
  const std::string drawn = ValueOf(run.Find("lblNext"));
  ExpectNothingChanged(run);
  EXPECT_EQ(ValueOf(run.Find("lblNext")), drawn);
  plot.pointer({PointerAction::Release, plot.XAxis().to, -30});
  EXPECT_FLOAT_EQ(run.record.hiResCurve[support::PanelStage][0], -10.0F);
  support::ClosePanels(run);

  TextBox& gain = run.session.master.chain.inputs[0].gain.text;
  const std::string before = ExpectNothingChanged(run);
  gain.Type("7");
  EXPECT_EQ(ExpectNothingChanged(run), before);
  gain.PutBack();
  Slider& level = run.session.master.chain.inputs[0].sldrLevel;
  level.Hold();
  level.SetPosition(180);
  ExpectNothingChanged(run);
  level.SetPosition(170);
  level.Release();
  run.session.history.Undo();
  EXPECT_EQ(run.record.levelControl[1], 192);
}

// What waits goes out as it would have.
TEST(ReportChangesNothing, OfWhatIsSent) {
  std::string sent[2];
  for (const bool reported : {false, true}) {
    PanelRun run;
    FillChain(run, FilterKind::Compressor - 1);
    run.session.panels.OpenFilter(FilterStages);
    run.session.master.ShowDisplay(display::Spectrum);
    run.Settle();
    run.unit.frames.clear();
    run.Edit("lceAttack", "99", 1);
    if (reported) ExpectNothingChanged(run);
    run.Settle();
    sent[reported ? 1 : 0] = run.Sent();
  }
  EXPECT_NE(sent[0], "");
  EXPECT_EQ(sent[1], sent[0]);
}

TEST(ReportChangesNothing, WithoutAUnit) {
  PanelRun run;
  FillChain(run, 0);
  const std::string connected = ExpectNothingChanged(run);
  run.session.master.menus.mnuDisconnect.Click();
  run.unit.frames.clear();
  EXPECT_EQ(ExpectNothingChanged(run), connected);
}

ReportWires Wires(std::vector<std::string>& told, std::function<std::string()> description) {
  const auto hourglass = [&told](bool shown) { told.emplace_back(shown ? "on" : "off"); };
  return {.hourglass = hourglass,
          .description = std::move(description),
          .systemSettings = support::DeadEnd{},
          .inputLevels = support::DeadEnd{},
          .block = support::DeadEnd{},
          .stages = support::DeadEnd{},
          .analyzerShown = support::DeadEnd{}};
}

TEST(Report, ShowsTheHourglassMeanwhileAndTellsWhatHasFailed) {
  support::VirtualClock clock;
  std::vector<std::string> told;
  const auto made = [&](const std::function<std::string()>& description) {
    std::string report = "before";
    const int result = modReport(clock, Wires(told, description)).GenerateReport(report);
    EXPECT_EQ(report.empty(), result != modReport::Built);
    return result;
  };
  EXPECT_EQ(made([&told] {
              told.emplace_back("asked");
              return "";
            }),
            modReport::Built);
  EXPECT_EQ(told, (std::vector<std::string>{"on", "asked", "off"}));
  EXPECT_EQ(made([]() -> std::string { throw std::bad_alloc(); }), modReport::OutOfMemory);
  EXPECT_EQ(made([]() -> std::string { throw Fault{"", 11}; }), 11);
  EXPECT_EQ(made([]() -> std::string { throw Fault{""}; }), modReport::Failed);
  EXPECT_EQ(told.back(), "off");
}

}  // namespace
}  // namespace vc
