// The coefficient display over a unit that holds known tables, worked by control name.
#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PanelRun.h"
#include "analysis/FrmCoeffDisp.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using Table = std::vector<std::int32_t>;

// The stages adapt, but learn nothing: what a test gives them stays.
struct Display : testing::Test, support::PanelRun {
  Display() {
    record.filterType.Fill(FilterKind::OneChAdaptive);
    record.filterActive.Fill(1);
    Edit("numFilters", "4");
    for (int stage = 1; stage <= 4; ++stage) Edit("ch1Taps", "600", stage);
    Settle();
    for (unsigned page = 0; page < 6; ++page) unit.Now().Learn(page, Content(page));
    session.master.top.btnCoeffDisplay.Click();
    Run(1500);
  }
  static Table Content(unsigned page) {
    Table table;
    for (int i = 0; i < 600; ++i)
      table.push_back((i % 2 == 0 ? 1 : -1) * static_cast<int>(page * 100000) + i);
    return table;
  }
  void Run(int milliseconds) { test.loop.RunFor(milliseconds); }
  Form& Shown() const { return *session.forms.Find("FrmCoeffDisp"); }
  const AnyControl& Of(const std::string& name) const { return *FindControl(Shown(), name); }
  std::string Got(const std::string& name) const { return ValueOf(Of(name)); }
  Plot& Picture() const { return *std::get<Plot*>(Of("pbxCoef")); }
  std::vector<float> Drawn() const { return Picture().Traces().front().values; }
  double Milliseconds(double coefficient) const { return coefficient / record.sampleRate * 1000; }
  // The pointer on a coefficient, or beyond the edges.
  void Point(PointerAction action, double coefficient) const {
    Picture().pointer({action, Milliseconds(coefficient), 0});
  }
  void ExpectWindow(int first, int count, int marked) const {
    EXPECT_EQ(Drawn().size(), static_cast<std::size_t>(count));
    EXPECT_EQ(Got("lblTimeSpan(0)"), FixedText(Milliseconds(first), 3) + " msec");
    EXPECT_EQ(Got("lblTimeSpan(1)"), FixedText(Milliseconds(first + count - 1), 3) + " msec");
    EXPECT_EQ(Got("txtMarkerCoef"), std::to_string(marked));
    EXPECT_EQ(Got("txtMarkerTime"), FixedText(Milliseconds(marked), 3));
    EXPECT_NEAR(*Picture().Cursor(), Milliseconds(marked), 1e-9);
  }
};

TEST_F(Display, OffersWhatTheFilterHasAndNoMore) {
  EXPECT_EQ(RangeOf(Of("cmbFilter")), "Filter 1 | Filter 2 | Filter 3 | Filter 4");
  EXPECT_EQ(RangeOf(Of("cmbNumCoeffs")), "32 | 64 | 128 | 256 | 512 | 600");
  for (const auto& [taps, rows] :
       {std::pair{"3000", "2048 | 3000"}, {"128", "64 | 128"}, {"129", "128 | 129"}}) {
    Edit("ch1Taps", taps, 1);
    Settle();
    const std::string all = RangeOf(Of("cmbNumCoeffs"));
    EXPECT_EQ(all.substr(all.size() - std::string(rows).size()), rows);
    EXPECT_EQ(Got("cmbNumCoeffs"), "32");
  }
  EXPECT_EQ(Got("lblAxis(0)") + Got("lblAxis(1)"), "+1.000-1.000");
  EXPECT_EQ(Set("cmbZoom", "200x"), "");
  EXPECT_EQ(Got("lblAxis(0)") + Got("lblAxis(1)"), "+0.005-0.005");
  EXPECT_EQ(Picture().YAxis().to, 0.005);
}

TEST_F(Display, ListsFollowTheChainAndKeepTheirRow) {
  Point(PointerAction::Press, 31);
  Point(PointerAction::Release, 31);
  EXPECT_EQ(Set("cmbFilter", "Filter 4"), "");
  ExpectWindow(0, 32, 31);
  EXPECT_EQ(Got("lblMarkerValue"), "") << "nothing has been read yet";
  EXPECT_TRUE(std::isnan(Drawn()[31]));
  EXPECT_EQ(Set("cmbNumCoeffs", "512"), "");
  Run(1500);
  EXPECT_EQ(Drawn()[5], static_cast<float>(Content(3)[5]) / 8388608.0F);
  Edit("numFilters", "3");
  EXPECT_EQ(Got("cmbFilter") + Got("cmbNumCoeffs"), "Filter 3512");
  Edit("configMode", "2");
  EXPECT_EQ(Got("cmbFilter"), "Left Filter 3");
  Edit("numFilters", "2");
  EXPECT_EQ(RangeOf(Of("cmbFilter")), "Left Filter 1 | Left Filter 2 | Right Filter 1 | Right Filter 2");
  EXPECT_EQ(Got("cmbFilter"), "Left Filter 2");
  for (const auto& [row, page] :
       {std::pair{"Left Filter 2", 2}, {"Right Filter 1", 1}, {"Right Filter 2", 3}}) {
    EXPECT_EQ(Set("cmbFilter", row), "");
    Settle();
    unit.frames.clear();
    Run(300);
    EXPECT_EQ(unit.frames.front().argument / 4096, page) << row;
  }
  session.panels.OpenFilter(4);  // of the right side
  session.forms.Find("Ctl1CH")->activated();
  EXPECT_EQ(Got("cmbFilter"), "Right Filter 1");
}

TEST_F(Display, MarkerCentresAndScrollsUnderThePointer) {
  EXPECT_EQ(Set("cmbNumCoeffs", "64"), "");
  ExpectWindow(0, 64, 0);
  const std::pair<const char*, std::pair<int, int>> typed[] = {
      {"300", {268, 300}}, {"20", {0, 20}}, {"599", {536, 599}}, {"9999", {536, 599}}, {"-5", {0, 0}}};
  for (const auto& [text, window] : typed) {
    Type("txtMarkerCoef", text, true);
    ExpectWindow(window.first, 64, window.second);
  }
  EXPECT_EQ(Type("txtMarkerCoef", "x"), "");
  ExpectWindow(0, 64, 0);
  EXPECT_EQ(Type("txtMarkerTime", FixedText(Milliseconds(300), 3)), "");
  ExpectWindow(268, 64, 300);
  EXPECT_EQ(Set("cmbNumCoeffs", "128"), "");
  ExpectWindow(236, 128, 300);

  Point(PointerAction::Move, 240);  // nobody has pressed
  ExpectWindow(236, 128, 300);
  Point(PointerAction::Press, 240.4);
  ExpectWindow(236, 128, 240);
  Point(PointerAction::Move, 230);  // six beyond the edge
  ExpectWindow(230, 128, 230);
  Point(PointerAction::Move, 230 + 127 + 9);
  ExpectWindow(239, 128, 239 + 127);
  Point(PointerAction::Move, 1e6);
  ExpectWindow(600 - 128, 128, 599);
  Point(PointerAction::Move, -1e6);
  ExpectWindow(0, 128, 0);
  Point(PointerAction::Release, -1e6);
  Point(PointerAction::Move, 100);
  ExpectWindow(0, 128, 0);
  EXPECT_EQ(Set("cmbNumCoeffs", "600"), "");
  Point(PointerAction::Press, 700);  // all are on show: nothing scrolls
  ExpectWindow(0, 600, 599);
}

TEST_F(Display, KeysMoveTheMarker) {
  for (const auto& [keys, first, marked] : {std::tuple{"Right", 0, 1},
                                            {"Ctrl+Right", 0, 11},
                                            {"Left", 0, 10},
                                            {"End", 568, 599},
                                            {"Right", 568, 599},
                                            {"Ctrl+Left", 568, 589},
                                            {"Home", 0, 0},
                                            {"Left", 0, 0}}) {
    EXPECT_TRUE(Picture().keyPressed(keys));
    ExpectWindow(first, 32, marked);
  }
  EXPECT_FALSE(Picture().keyPressed("F5"));
  Click("btnMarker");
  EXPECT_FALSE(Picture().Cursor());
  for (const char* name :
       {"txtMarkerCoef", "txtMarkerTime", "lblMarkerValue", "btnFindPeak", "optFindPeak(1)"}) {
    EXPECT_FALSE(CoreOf(Of(name)).Usable()) << name;
  }
}

TEST_F(Display, PeakIsTheFirstOfTheGreatest) {
  Table table(600, 5);
  table[40] = table[420] = -7000000;
  table[50] = 7000000;
  table[10] = 1000000;
  unit.Now().Learn(0, table);
  Run(1500);
  Set("optFindPeak(0)", "1");
  Click("btnFindPeak");
  ExpectWindow(0, 32, 10);
  EXPECT_EQ(Got("lblMarkerValue"), "0.1192");
  Set("optFindPeak(1)", "1");
  EXPECT_THAT(Got("pbxCoef"), testing::HasSubstr("peak at coefficient 40, "));
  Click("btnFindPeak");
  ExpectWindow(24, 32, 40);
  EXPECT_EQ(Got("lblMarkerValue"), "-0.8345");
  Type("txtMarkerCoef", "430");
  Set("optFindPeak(0)", "1");
  Click("btnFindPeak");
  ExpectWindow(404, 32, 420);
}

TEST_F(Display, DrawsOnlyWhatHasChangedAndKeepsWhatIsTyped) {
  int changes = 0;
  Shown().controlChanged = [&](const ControlCore&, std::string_view) { ++changes; };
  std::get<TextBox*>(Of("txtMarkerCoef"))->Type("12");
  changes = 0;
  Run(3000);
  EXPECT_EQ(changes, 0);
  Table table = Content(0);
  table[0] = 4194304;
  unit.Now().Learn(0, table);
  Run(1500);
  EXPECT_GT(changes, 0);
  EXPECT_EQ(Got("lblMarkerValue") + Got("txtMarkerCoef"), "0.500012");
  Shown().controlChanged = {};
}

TEST_F(Display, StandsWithoutTheLinkAndGoesOnWithIt) {
  const auto before = Drawn();
  session.master.menus.mnuDisconnect.Click();
  Run(500);
  EXPECT_EQ(Drawn(), before);
  EXPECT_THAT(Picture().Note(), testing::HasSubstr("no connection"));
  unit.PlugInAnother();
  session.master.menus.mnuConnect.Click();
  Run(3000);
  EXPECT_THAT(Picture().Note(), testing::Not(testing::HasSubstr("no connection")));
  EXPECT_EQ(std::ranges::count(Drawn(), 0.0F), 32);  // a new unit has learned nothing
  unit.Now().Learn(0, Content(0));
  Run(1500);
  EXPECT_EQ(Drawn(), before);
}

TEST_F(Display, AReadForAFileHoldsThePollOff) {
  std::vector<std::int32_t> read(CoefCapacity);
  for (int ticks = 0; ticks < 7; ++ticks) {
    Run(50);
    ASSERT_TRUE(session.coefReader.ReadFilterCoefficients(3, CoefSpan(read)));
    ASSERT_TRUE(std::ranges::equal(std::span(read).first(600), Content(2)));
  }
  unit.Now().Learn(0, Content(5));
  Run(1500);
  EXPECT_EQ(session.coefReader.CoefReadback[599], Content(5)[599]);
  EXPECT_TRUE(test.desk.boxes.empty());
}

}  // namespace
}  // namespace vc
