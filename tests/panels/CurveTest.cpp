// The panels on which a curve is drawn by hand, worked as the operator does: buttons by name, the hand on the
// picture, and what of it the unit gets.
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <ostream>

#include "PanelOpening.h"
#include "model/FieldAccess.h"
#include "panels/CurvePanels.h"
#include "text/Convert.h"
#include "widgets/Plot.h"

namespace vc {
namespace {

struct Case {
  const char *panel, *title;
  const FieldRow& row;
  int packets;        // of its coefficients; none where the curve is no matter of the unit
  const char* inOut;  // its switch, if it has one
  bool spectral = false;

  int entry = spectral ? support::PanelSide : support::PanelStage;
  int lines = spectral ? 115 : 460;
  double ratePerLine = spectral ? 256 : 1024;
};
void PrintTo(const Case& one, std::ostream* out) { *out << one.panel; }
const Case HiRes{"CtlHiRes", "Hi-Res Graphic Edit", RowOf<&SystemSettings::hiResCurve>(), 64,
                 "btnFilterActive"};
const Case Custom{"CtlCustomCurve", "SIF Custom Curve Edit", RowOf<&SystemSettings::customCurve>(), 0,
                  nullptr};
const Case Spectral{"CtlEDGE", "Spectral Graphic Edit", RowOf<&SystemSettings::edgeCurve>(),
                    16,        "btnEqActive",           true};

using Script = std::vector<std::pair<double, double>>;  // clicks: part of the width, dB

struct Curves : testing::TestWithParam<Case> {
  support::PanelRun run;
  const Case& kind = GetParam();

  Curves() {
    run.Edit("numFilters", "2");
    support::OpenPanel(run, kind.panel);
    std::vector<FieldEdit> edits;
    edits.reserve(513);
    for (int line = 0; line < kind.row.extent[1].last + 1; ++line) {
      edits.emplace_back(&kind.row, kind.entry, line, -10.0 - line % 17);
    }
    run.session.edits.Apply(edits, {"Curve", "", EditState::Finished});
    run.Settle();
    run.Sent();
  }

  Plot& Display() const { return *std::get<Plot*>(run.Find("FilterDisplay")); }
  double FrequencyOf(double line) const { return line * run.record.sampleRate / kind.ratePerLine; }
  void Point(PointerAction action, double part, double level) const {
    Display().pointer({action, part * Display().XAxis().to, level});
  }
  void Release(double part, double level) const { Point(PointerAction::Release, part, level); }
  void Keys(const std::vector<const char*>& keys) const {
    for (const char* key : keys) EXPECT_TRUE(Display().keyPressed(key)) << key;
  }
  void Drop(int choice) const {
    EXPECT_EQ(run.Click("btnEdit"), "");
    run.Set("optDropSelect(" + std::to_string(choice) + ")", "1");
    EXPECT_EQ(run.Click("btnProceed"), "");
  }
  // A click in the middle of a line's place.
  void At(int line, double level) const { Release((line + 0.4) / (kind.lines - 1), level); }
  std::string ClickSwitch() const { return kind.inOut == nullptr ? "" : run.Click(kind.inOut); }
  bool Editing() const { return run.Click("btnAbort").empty(); }
  double Level(int line) const { return NumberOf(run.record, kind.row, kind.entry, line); }
  std::vector<double> Curve() const {
    std::vector<double> levels;
    for (int line = 0; line <= kind.row.extent[1].last; ++line) levels.push_back(Level(line));
    return levels;
  }
  int Packets() {
    const std::string sent = run.Sent();
    return static_cast<int>(std::ranges::count(sent, '#'));
  }
  const std::vector<std::int32_t>& Held() const { return run.Stage(kind.spectral ? 9 : 2).coefficients; }
  void DrawNew(double level) const {
    run.Click("btnNew");
    At(0, level);
    Release(1, level - 20);
  }
};

// Of the straight line through the points; what lies outside is what stood there.
double OnLine(const std::map<int, double>& points, int line) {
  const auto next = points.lower_bound(line);
  if (next->first == line) return next->second;
  const auto [toLine, to] = *next;
  const auto [fromLine, from] = *std::prev(next);
  return from + (to - from) * (line - fromLine) / (toLine - fromLine);
}

TEST_P(Curves, FortyClicksAreJoinedByStraightLines) {
  const auto before = Curve();
  const int step = kind.lines / 46, left = 5, right = kind.lines - 7;
  for (const bool whole : {true, false}) {
    SCOPED_TRACE(whole);
    const auto stood = Curve();
    std::map<int, double> points;
    if (whole) {
      EXPECT_EQ(run.Click("btnNew"), "");
      Release(0.7, -7.5);
      points = {{0, -7.5}, {kind.lines - 1, -40}};
    } else {
      Drop(2);
      At(left, 0);
      At(right, 0);
      points = {{left, std::max(stood[static_cast<std::size_t>(left)] - 10, -60.0)}, {right, -40}};
    }
    for (int click = 1; click < 40; ++click) {
      const int line = left + click * step;
      const double level = -30 + 35 * std::sin(click);
      points[line] = std::clamp(level, -60.0, 0.0);
      At(line, level);
      At(line - 3, -1);  // not to the right of it
    }
    EXPECT_EQ(Curve(), stood);
    Release(1.5, -40);
    for (int line = 0; line < kind.lines; ++line) {
      const bool drawn = line >= points.begin()->first && line <= points.rbegin()->first;
      const double expected =
          drawn ? OnLine(points, line) : std::max(stood[static_cast<std::size_t>(line)] - 10, -60.0);
      ASSERT_NEAR(Level(line), expected, 1e-5) << line;
    }
    EXPECT_EQ(Packets(), kind.packets);  // at once
    EXPECT_FALSE(Editing());
  }
  const int behind = kind.lines;  // what is not edited; of a custom curve the end of it
  EXPECT_EQ(Level(behind), kind.packets == 0 ? Level(behind - 1) : before[static_cast<std::size_t>(behind)]);
  run.Settle();
  EXPECT_EQ(run.Sent(), "");
}

const Script NewClicks{{0.5, -3}, {0.2, -20}, {0.1, -1}, {0.6, -5}};
const Script RegionClicks{{0.2, 0}, {0.1, 0}, {0.8, 0}, {0.7, 3}};

struct Way {
  const char* name;
  std::function<void(Curves& test)> leave;
  bool closes;
};
const std::vector<Way> Ways{
    {"Abort", [](Curves& test) { EXPECT_EQ(test.run.Click("btnAbort"), ""); }, false},
    {"Escape", [](Curves& test) { test.run.Press("Escape"); }, false},
    {"Close", [](Curves& test) { test.run.CloseTop(); }, true},
    {"Unload", [](Curves& test) { test.run.session.forms.Unload(test.run.Top()); }, true},
    {"LostLink",
     [](Curves& test) {
       test.run.session.master.menus.mnuDisconnect.Click();
       test.run.session.master.menus.mnuConnect.Click();
       test.run.Settle();
       test.run.Sent();
       EXPECT_EQ(test.run.Click("btnAbort"), "");
     },
     false}};

TEST_P(Curves, AreAsTheyWereHoweverAnEditIsLeft) {
  const SystemSettings before = run.record;
  const auto leave = [&](const Way& way, bool whole, std::size_t count) {
    if (whole) run.Click("btnNew");
    if (!whole) Drop(7);
    const Script& clicks = whole ? NewClicks : RegionClicks;
    for (std::size_t i = 0; i < count; ++i) Release(clicks[i].first, clicks[i].second);
    for (const char* button : {"btnEdit", "btnNew", "btnNormalize", "btnStore", "btnRecall", "btnOK"}) {
      EXPECT_EQ(run.Click(button), "it is disabled");
    }
    EXPECT_EQ(ClickSwitch(), kind.inOut == nullptr ? "" : "it is disabled");
    way.leave(*this);
    ASSERT_EQ(run.Top().name == kind.panel, !way.closes);
    run.Settle();
    EXPECT_EQ(run.Sent(), "");
    ASSERT_TRUE(run.record == before);
    if (way.closes) support::OpenPanel(run, kind.panel);
    EXPECT_EQ(ClickSwitch() + ClickSwitch(), "");
    run.Settle();
    run.Sent();
  };
  for (const Way& way : Ways) {
    for (std::size_t count = 0; count <= NewClicks.size(); ++count) {
      SCOPED_TRACE(way.name + std::to_string(count));
      leave(way, true, count);
      leave(way, false, count);
    }
  }
}

TEST_P(Curves, AreNoLongerEditedWhereAnotherOneStands) {
  const auto begin = [this] {
    run.Click("btnNew");
    At(0, -9);
  };
  begin();
  run.Edit("setupDescription", "another");
  EXPECT_EQ(run.Get("lblNext"), "Click the next point, or the right edge to finish.");
  run.Edit(std::string(kind.row.name), "-33", kind.entry, 4);
  EXPECT_FALSE(Editing());
  EXPECT_EQ(Display().Traces().front().values[4], -33.0F);
  begin();
  run.Press("Ctrl+Z");
  EXPECT_FALSE(Editing());
  EXPECT_EQ(Display().Traces().front().values[4], -14.0F);
  begin();
  run.Edit(kind.spectral ? "eqType" : "filterType", "0", kind.entry);  // its panel goes
  EXPECT_EQ(run.Top().name, "MasterControl");
  run.session.history.Undo();
  support::OpenPanel(run, kind.panel);
  begin();
  run.test.desk.answers = {Answer::Yes, Answer::No};
  run.session.master.menus.mnuNew.Click();
  EXPECT_EQ(run.Top().name, "MasterControl");
  run.session.history.Undo();
  support::OpenPanel(run, kind.panel);
  begin();
  run.session.Exit();
  EXPECT_EQ(Level(0), -10);
}

TEST_P(Curves, TellWhatIsPointedAt) {
  EXPECT_EQ(run.Get("Bandwidth"), FixedText(FrequencyOf(kind.lines), 1));
  EXPECT_EQ(run.Get("MarkerXLabel") + run.Get("MarkerYLabel"), "---------");
  Point(PointerAction::Move, (20 + 0.99) / (kind.lines - 1), -1);
  EXPECT_EQ(run.Get("MarkerXLabel"), FixedText(FrequencyOf(20), 1));
  EXPECT_EQ(run.Get("MarkerYLabel"), FixedText(Level(20), 1));
  for (const auto& [part, line] : {std::pair{1.0, kind.lines - 1}, {7.0, kind.lines - 1}, {-1.0, 0}}) {
    Point(PointerAction::Move, part, 5);
    EXPECT_EQ(run.Get("MarkerXLabel"), FixedText(FrequencyOf(line), 1));
    EXPECT_NEAR(*Display().Cursor(), FrequencyOf(line), 1e-9);
  }
  Point(PointerAction::Leave, 0, 0);
  EXPECT_EQ(run.Get("MarkerXLabel") + run.Get("MarkerYLabel"), "---------");
  EXPECT_FALSE(Display().Cursor());
  Keys({"Home", "Shift+Right", "Right", "Left"});
  EXPECT_EQ(run.Get("MarkerXLabel") + " " + run.Get("MarkerYLabel"),
            FixedText(FrequencyOf(10), 1) + " " + FixedText(Level(10), 1));
  EXPECT_FALSE(Display().keyPressed("Up") || Display().keyPressed("Enter"));
  Keys({"End"});
  EXPECT_EQ(run.Get("MarkerXLabel"), FixedText(FrequencyOf(kind.lines - 1), 1));
}

TEST_P(Curves, AreDrawnByKeysToo) {
  Drop(0);
  EXPECT_EQ(run.Get("lblNext"), "Click the left edge of the region.");
  Keys({"Home", "Shift+Right", "Enter"});
  EXPECT_EQ(run.Get("lblNext"), "Click the right edge of the region.");
  Keys({"Enter", "Left", "Enter", "Shift+Right", "Left", "Enter"});  // the second one lies to the left
  EXPECT_EQ(Display().Bands().front().to, FrequencyOf(18));
  Keys({"Shift+Right", "Left", "Left", "Left", "Down", "Shift+Down", "Ctrl+Down", "PgDown", "Up", "Enter"});
  const double pointed = Level(10) - 20.1;
  EXPECT_EQ(run.Get("MarkerYLabel"), FixedText(pointed, 1));
  Keys({"Shift+Right", "Shift+Up", "Shift+Up", "PgUp", "PgUp", "PgUp", "Enter"});
  EXPECT_NEAR(Level(17), pointed, 1e-5);
  EXPECT_EQ(Level(18), 0);
  EXPECT_EQ(Level(19), -12);
  EXPECT_FALSE(Editing());
}

TEST_P(Curves, AreDroppedNoDeeperThanTheirRange) {
  run.Click("btnEdit");
  EXPECT_EQ(run.Top().name + ": " + run.Top().Caption(), std::string("EDGEDrop: ") + kind.title);
  EXPECT_EQ(run.Get("optDropSelect(0)"), "1");
  EXPECT_EQ(run.Click("btnCancel"), "");
  EXPECT_FALSE(Editing());
  run.Edit(std::string(kind.row.name), "-30", kind.entry, 40);
  Drop(7);
  At(50, 0);
  At(52, 0);
  At(52, -20);
  EXPECT_EQ(Level(40), -60);
  EXPECT_EQ(Level(0), -45);
  EXPECT_EQ(Level(50), -60 + std::max(0.0, 60 - 45.0 - 50 % 17));
  EXPECT_EQ(Level(52), -20);
}

TEST_P(Curves, GoOutWithTheNextConnectionAndBackByOneStep) {
  DrawNew(-5);
  const auto first = Held();
  DrawNew(-30);
  EXPECT_EQ(Packets(), 2 * kind.packets);
  const auto second = Held();
  EXPECT_EQ(run.session.history.UndoTitle(), kind.title);
  run.Press("Ctrl+Z");
  run.Settle();
  EXPECT_EQ(Packets(), kind.packets);
  EXPECT_TRUE(Held() == first);
  EXPECT_EQ(Level(0), -5);
  run.session.master.menus.mnuDisconnect.Click();
  DrawNew(-30);
  run.session.master.menus.mnuConnect.Click();
  run.Settle();
  EXPECT_TRUE(Held() == second);
}

TEST_P(Curves, AreNormalizedStoredAndRecalled) {
  run.Click("btnNormalize");
  EXPECT_EQ(Level(0), 0);
  EXPECT_EQ(Level(kind.lines - 1), -((kind.lines - 1) % 17));
  EXPECT_EQ(Packets(), kind.packets);
  const auto stored = Curve();
  run.Click("btnStore");
  run.Type("txtFileName", "drawn");
  run.Click("btnOK");
  DrawNew(-5);
  if (kind.inOut != nullptr && run.Get(kind.inOut) == "1") ClickSwitch();
  run.Settle();
  run.Sent();
  run.Click("btnRecall");
  run.Type("txtFileName", "drawn");
  run.Click("btnOK");
  EXPECT_EQ(Packets(), kind.packets);
  for (int line = 0; line < kind.lines; ++line)
    ASSERT_EQ(Level(line), stored[static_cast<std::size_t>(line)]);
  EXPECT_EQ(run.Top().name, kind.panel);
  EXPECT_EQ(kind.inOut == nullptr ? "1" : run.Get(kind.inOut), "1");
  EXPECT_TRUE(kind.packets != 0 || run.record.settingsChanged == 0);
}

// As its question does, it lies over a panel and goes with it.
TEST(CustomCurve, IsDrawnOverAnotherPanelToo) {
  support::PanelRun run;
  support::OpenPanel(run, "CtlHiRes");
  Form &below = run.Top(), *asked = nullptr;
  PanelContext context = support::LoneContext(run, " (Filter 2)");
  context.exchangeTable =
      Wire<void(const TableExchange&)>([&asked](const TableExchange& exchange) { asked = exchange.over; });
  CurvePanel curve(context, CtlCustomCurve);
  curve.panel.Fill();
  run.session.forms.Show(curve.panel.form, Modality::OverOwner, &below);
  run.Click("btnStore");
  EXPECT_EQ(asked, &curve.panel.form);
  const SystemSettings before = run.record;
  run.Click("btnNew");
  curve.FilterDisplay.pointer({PointerAction::Release, 0, -30});
  run.session.forms.Unload(below);
  EXPECT_EQ(run.Top().name, "MasterControl");
  EXPECT_TRUE(run.record == before);
}

INSTANTIATE_TEST_SUITE_P(Panels, Curves, testing::Values(HiRes, Custom, Spectral),
                         [](const auto& test) { return test.param.panel; });

}  // namespace
}  // namespace vc
