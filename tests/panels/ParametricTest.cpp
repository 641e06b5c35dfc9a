// The panels of the parametric equalizers, with the unit on the other end of the line.
#include <cmath>

#include "PanelOpening.h"
#include "link/Status.h"
#include "model/Bandwidth.h"
#include "model/FilterResponse.h"
#include "widgets/PlotHandle.h"

namespace vc {
namespace {

struct Parametric : testing::Test, support::PanelRun {
  void Open(std::int16_t bandwidthIndex = 0) {
    Edit("bandwidthIndex", std::to_string(bandwidthIndex));
    OpenFilter(2, FilterKind::TriParametric);
    Settle();
  }
  void OpenEqualizer(int number = 1) {
    record.eqType[number] = EqKind::DualParametric;
    session.master.ConfigMasterControl();
    session.panels.OpenEqualizer(number);
  }
  Slider& SliderAt(const char* name) const { return *std::get<Slider*>(Find(name)); }
  PlotHandle& Handle(std::size_t number) const {
    return *std::get<Plot*>(Find("pltResponse"))->handles.at(number);
  }
};

TEST_F(Parametric, CentersAndWidthsFollowTheBandwidth) {
  struct Row {
    std::int16_t index;
    const char *least, *most;
  };
  for (const auto& [index, least, most] : {Row{0, "20", "3240"},
                                           {1, "20", "5400"},
                                           {2, "20", "6480"},
                                           {3, "20", "8100"},
                                           {4, "30", "10800"},
                                           {5, "40", "16200"}}) {
    Open(index);
    const double rate = Bandwidths()[static_cast<std::size_t>(index)].sampleRate;
    EXPECT_EQ(Get("CenterText(1)"), FixedText(rate / 4, 0));
    EXPECT_EQ(Get("RatioText(1)"), FixedText(rate / 6, 2));  // 1.5
    Type("CenterText(1)", "1");
    EXPECT_EQ(Get("CenterText(1)"), least);
    Type("CenterText(1)", "30000");
    EXPECT_EQ(Get("CenterText(1)"), most);
    Type("CenterText(1)", "1000,4");
    EXPECT_EQ(record.parCenter[2][1], static_cast<float>(1000 / rate));
    Type("RatioText(1)", "312.34");
    EXPECT_EQ(Get("RatioText(1)"), "312.34");
    EXPECT_FLOAT_EQ(record.parRatio[2][1], static_cast<float>(1000 / 312.34));
    Type("RatioText(1)", "0.5");
    EXPECT_EQ(record.parRatio[2][1], 6);
    EXPECT_EQ(Get("RatioText(1)"), "166.67");
    Type("RatioText(1)", "30000");
    EXPECT_EQ(record.parRatio[2][1], static_cast<float>(std::max(29.0, std::round(300000 / rate)) / 100));
    EXPECT_EQ(record.parRatio[2][0] + record.parRatio[2][2], 3);
    CloseTop();
    record.parCenter[2].Fill(0.25F), record.parRatio[2].Fill(1.5F);
  }
}

TEST_F(Parametric, ACenterThatRisesTakesTheRatioWithItInOneStep) {
  Open(3);
  Type("CenterText(0)", "200");
  Type("RatioText(0)", "5000");
  EXPECT_EQ(record.parRatio[2][0], 0.29F);
  test.loop.RunFor(2000);
  Slider& center = SliderAt("sldrCenter(0)");
  center.Hold();
  for (const double hertz : {3000.0, 6000.0}) center.SetPosition(hertz);
  center.Release();
  EXPECT_EQ(SliderAt("sldrRatio(0)").PositionMin(), 100);
  EXPECT_EQ(record.parRatio[2][0], 1);
  EXPECT_EQ(Get("RatioText(0)"), "6000.00");
  EXPECT_EQ(session.history.UndoTitle(), "Center Freq");
  Press("Ctrl+Z");
  EXPECT_EQ(Get("CenterText(0)") + " " + Get("RatioText(0)"), "200 689.66");
  EXPECT_EQ(SliderAt("sldrRatio(0)").PositionMin(), 29);
}

TEST_F(Parametric, WhatASetupHasBetweenTheStepsStaysUntilItIsMoved) {
  record.parCenter[2][0] = 0.1234567F;
  record.parRatio[2][0] = 1.2345678F;
  record.parLevel[2] = 200;
  const SystemSettings loaded = record;
  Open();
  for (const char* box : {"CenterText(0)", "RatioText(0)", "txtAtten"}) Type(box, " " + Get(box));
  EXPECT_EQ(Get("CenterText(0)") + " " + Get("RatioText(0)") + " " + Get("txtAtten"), "889 720.00 +4.0");
  EXPECT_TRUE(record.parCenter == loaded.parCenter && record.parRatio == loaded.parRatio);
  EXPECT_EQ(record.parLevel[2], 200);
  PressKey(Find("sldrCenter(0)"), "Right");
  EXPECT_EQ(record.parCenter[2][0], static_cast<float>(890 / 7200.0));
  PressKey(Find("sldrAtten"), "Left");
  EXPECT_EQ(record.parLevel[2], 192);  // 0 dB is all that the panel can set
  EXPECT_EQ(Get("txtAtten"), "0");
  EXPECT_EQ(SliderAt("sldrAtten").PositionMax(), 192);
}

TEST_F(Parametric, BoostsHaveTheirSignAndLevelsTheirHalfDecibels) {
  Open();
  for (const auto& [typed, shown] : {std::pair{"16", "+16.0"},
                                     {"99", "+16.0"},
                                     {"-1", "-1.0"},
                                     {"0", "0.0"},
                                     {"1", "+1.0"},
                                     {"3,4", "+3.0"},
                                     {"-40000", "-60.0"}}) {
    Type("BoostText(1)", typed);
    EXPECT_EQ(Get("BoostText(1)"), shown);
    EXPECT_EQ(record.parBoost[2][1], std::stoi(shown));
  }
  struct Row {
    const char *typed, *shown;
    int stored;
  };
  for (const bool equalizer : {false, true}) {
    if (equalizer) CloseTop(), OpenEqualizer();
    for (const auto& [typed, shown, stored] :
         {Row{"-6", "-6.0", 180}, {"-0.7", "-0.5", 191}, {"-30000", "-60.0", 72}, {"12", "0", 192}}) {
      Type("txtAtten", typed);
      EXPECT_EQ(Get("txtAtten"), shown);
      EXPECT_EQ(equalizer ? record.eqParLevel[9] : record.parLevel[2], stored);
    }
  }
}

TEST_F(Parametric, TheWidthGrowsToTheRightAndUpwards) {
  Open();
  const auto ratio = [this] { return std::lround(record.parRatio[2][0] * 100); };
  for (const auto& [key, expected] :
       {std::pair{"Right", 149}, {"Up", 148}, {"Left", 149}, {"Down", 150}, {"Shift+Right", 140}}) {
    EXPECT_EQ(PressKey(Find("sldrRatio(0)"), key), "");
    EXPECT_EQ(ratio(), expected) << key;
  }
}

TEST_F(Parametric, EachPanelEditsItsOwnStage) {
  Edit("configMode", "2");
  Settle();
  OpenEqualizer(2);
  EXPECT_EQ(Top().Caption(), "Dual Parametric (Right Equalizer)");
  EXPECT_EQ(FindControl(Top(), "sldrCenter(2)"), nullptr);
  EXPECT_EQ(Find("btnEqActive").index(), Find("btnActive(0)").index());
  Settle();
  Click("btnActive(1)");
  EXPECT_EQ(session.history.UndoTitle(), "Substage 2 (Wide)");
  EXPECT_EQ(record.eqChanged[1] * 10 + record.eqChanged[2], -1);
  EXPECT_EQ(record.settingsChanged, 5);
  Type("BoostText(0)", "7");
  EXPECT_EQ(record.eqParActive[10][1] * 10 + record.eqParBoost[10][0], 7);
  EXPECT_EQ(record.eqParActive[9][1] * 10 + record.eqParBoost[9][0], -10);
  Settle();
  ASSERT_TRUE(Stage(10).block);
  const auto& block = *Stage(10).block;
  EXPECT_EQ(block[14] + 256 * block[15], std::lround((std::pow(10, 7 / 20.0) - 1) * 4096));
  Press("Ctrl+Z");
  Press("Ctrl+Z");
  EXPECT_EQ(Get("btnActive(1)"), "1");
}

// Entry i of the unit's block stands 3 dB below the one before, but the last ones; which one is overloaded.
void Report(support::PanelRun& run, std::size_t overloaded) {
  run.unit.Now().sound.status = [overloaded] {
    unit::Status status;
    for (std::size_t i = 0; i < status.stageStatus.size(); ++i) {
      const double decibels = i < 8 ? -3.0 * static_cast<double>(i + 1) : 3.0 * static_cast<double>(i) - 60;
      status.stageStatus[i] = static_cast<std::uint16_t>(std::lround(20675 * std::pow(10, decibels / 20)));
    }
    status.stageNibble[overloaded] = 4;
    return status;
  };
}

TEST_F(Parametric, LevelsAndOverloadAreThoseOfTheStage) {
  struct Row {
    std::int16_t mode;
    bool equalizer;
    int number;
    const char* level;
    std::size_t entry, other;  // whose overload is shown, and one whose is not
  };
  for (const Row& row : {Row{0, false, 3, "-9.0 dB", 2, 4},
                         {1, false, 2, "-9.0 dB", 3, 1},
                         {2, false, 5, "-12.0 dB", 3, 2},
                         {0, true, 1, "-36.0 dB", 8, 9},
                         {1, true, 1, "-36.0 dB", 8, 9},
                         {2, true, 2, "-33.0 dB", 9, 8}}) {
    SCOPED_TRACE(row.mode * 10 + row.number + (row.equalizer ? 100 : 0));
    Edit("configMode", std::to_string(row.mode));
    Settle();
    if (row.equalizer) OpenEqualizer(row.number);
    if (!row.equalizer) OpenFilter(row.number, FilterKind::TriParametric);
    for (const bool shown : {true, false}) {
      Report(*this, shown ? row.entry : row.other);
      test.loop.RunFor(2500);
      EXPECT_EQ(std::get<LevelBar*>(Find("lbOutput"))->Reading(), row.level);
      EXPECT_EQ(CoreOf(Find("TestLabel")).Visible(), shown);
    }
    CloseTop();
  }
}

TEST_F(Parametric, TheEqualizersAreAskedForTheirLevelsForAsLongAsThePanelIsOpen) {
  const auto asked = [this] {
    test.loop.RunFor(700);
    unit.frames.clear();
    test.loop.RunFor(1000);
    return std::ranges::count(unit.frames, 234, &unit::Frame::number) > 3;
  };
  const std::function<void()> ways[] = {
      [this] { Click("btnOK"); },
      [this] { Press("Escape"); },
      [this] { CloseTop(); },
      [this] { OpenFilter(1, FilterKind::Lowpass); },
      [this] { Edit("eqType", "0", 1); },
      [this] {
        Press("Ctrl+Z");
        EXPECT_EQ(Top().name, "MasterControl");
      },
  };
  EXPECT_FALSE(asked());
  for (const auto& way : ways) {
    record.eqType[1] = EqKind::BandGraphic;
    Edit("eqType", "2", 1);
    OpenEqualizer();
    EXPECT_TRUE(asked());
    session.panels.ConfigEqualizers([] {});  // which makes panels that nobody sees
    EXPECT_TRUE(asked());
    way();
    EXPECT_FALSE(asked());
    if (Top().name != "MasterControl") CloseTop();
  }
  OpenEqualizer();
  session.Exit();
  EXPECT_FALSE(session.periodic.eqLevelsWanted);
}

TEST_F(Parametric, HandlesMoveTheirSectionsAndTheLevel) {
  Open();
  Handle(1).Hold();
  for (const double hertz : {700.0, 800.2, 900.4}) Handle(1).MoveTo(hertz, -11.6);
  const PlotAxis held = std::get<Plot*>(Find("pltResponse"))->YAxis();
  Handle(1).MoveTo(900.4, -41);
  EXPECT_EQ(std::get<Plot*>(Find("pltResponse"))->YAxis(), held);  // not while it is held
  Handle(1).Release();
  EXPECT_EQ(std::get<Plot*>(Find("pltResponse"))->YAxis().from, -60);
  EXPECT_EQ(Handle(1).Reading(), "900 Hz, -41.0 dB, Width: 600.00 Hz");
  EXPECT_EQ(session.history.UndoTitle(), "Substage 2 (Mid)");
  EXPECT_TRUE(Handle(1).Turn(-10, false));
  EXPECT_EQ(record.parRatio[2][1], 2.1F);  // a hundredth of the range each
  Click("btnActive(1)");
  EXPECT_TRUE(Handle(1).Usable() && Handle(1).faint());
  EXPECT_FALSE(Handle(0).faint());
  Handle(1).SetDefault();
  EXPECT_EQ(Get("CenterText(1)") + " " + Get("RatioText(1)") + " " + Get("BoostText(1)"), "1800 1200.00 0.0");
  Press("Ctrl+Z");
  EXPECT_EQ(Get("CenterText(1)") + " " + Get("RatioText(1)") + " " + Get("BoostText(1)"), "900 428.57 -41.0");
  Handle(3).Hold();
  Handle(3).MoveTo(0, -7.3);
  Handle(3).Release();
  EXPECT_EQ(record.parLevel[2], 177);
  EXPECT_EQ(session.history.UndoTitle(), "Output Level");
}

TEST_F(Parametric, TheCurveHasItsRoomAndItsSectionsBehindIt) {
  Open();
  const Plot& plot = *std::get<Plot*>(Find("pltResponse"));
  for (const char* box : {"BoostText(0)", "BoostText(1)", "BoostText(2)"}) Type(box, "16");
  const std::size_t all = plot.Traces().size();
  const auto& [least, most] = std::ranges::minmax(plot.Traces().at(0).values);
  EXPECT_GT(most, 40);  // three that lie on each other
  EXPECT_GT(plot.YAxis().to, most);
  Click("btnActive(1)");
  EXPECT_EQ(plot.Traces().size(), all - 1);
  Type("txtAtten", "-60");
  EXPECT_LT(plot.YAxis().from, -60);
}

}  // namespace
}  // namespace vc
