// The panels of the parametric equalizers, with the unit on the other end of the line.
#include <algorithm>
#include <cmath>

#include "PanelOpening.h"
#include "model/Bandwidth.h"
#include "widgets/PlotHandle.h"

namespace vc {
namespace {

struct Parametric : testing::Test, support::PanelRun {
  void Open(int bandwidthIndex = 0) {
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
  const Plot& Response() const { return *std::get<Plot*>(Find("pltResponse")); }
  std::string Section(const char* index) const {
    return Get("CenterText" + std::string(index)) + " " + Get("RatioText" + std::string(index));
  }
};

TEST_F(Parametric, CentersAndWidthsFollowTheBandwidth) {
  const char* const ends[][2] = {{"20", "3240"}, {"20", "5400"},  {"20", "6480"},
                                 {"20", "8100"}, {"30", "10800"}, {"40", "16200"}};
  for (int index = 0; index < 6; ++index) {
    Open(index);
    const double rate = Bandwidths()[static_cast<std::size_t>(index)].sampleRate;
    EXPECT_EQ(Section("(1)"), FixedText(rate / 4, 0) + " " + FixedText(rate / 6, 2));
    for (const int end : {0, 1}) {
      Type("CenterText(1)", end == 0 ? "1" : "30000");
      EXPECT_EQ(Get("CenterText(1)"), ends[index][end]);
    }
    Type("CenterText(1)", "1000,4");
    EXPECT_EQ(record.parCenter[2][1], static_cast<float>(1000 / rate));
    Type("RatioText(1)", "312.34");
    EXPECT_EQ(Section("(1)"), "1000 312.34");
    EXPECT_FLOAT_EQ(record.parRatio[2][1], static_cast<float>(1000 / 312.34));
    Type("RatioText(1)", "0.5");
    EXPECT_EQ(Section("(1)"), "1000 166.67");  // a sixth is the narrowest
    Type("RatioText(1)", "30000");
    EXPECT_FLOAT_EQ(record.parRatio[2][1],
                    static_cast<float>(std::max(29.0, std::round(300000 / rate)) / 100));
    CloseTop();
    record.parCenter[2].Fill(0.25F);
    record.parRatio[2].Fill(1.5F);
  }
}

TEST_F(Parametric, ACenterThatRisesTakesTheRatioWithItInOneStep) {
  Open(3);
  Type("CenterText(0)", "200");
  Type("RatioText(0)", "5000");
  Slider &center = SliderAt("sldrCenter(0)"), &ratio = SliderAt("sldrRatio(0)");
  EXPECT_EQ(ratio.Position(), 29);
  center.Hold();
  for (const double hertz : {3000.0, 6000.0}) center.SetPosition(hertz);
  center.Release();
  EXPECT_EQ(ratio.PositionMin(), 100);
  EXPECT_EQ(record.parRatio[2][0], 1);
  EXPECT_EQ(Section("(0)"), "6000 6000.00");
  for (const char* key : {"Left", "Down"}) EXPECT_EQ(PressKey(Find("sldrRatio(0)"), key), "");
  EXPECT_EQ(record.parRatio[2][0], 1.02F);  // the width grows to the right
  for (int step = 0; step < 2; ++step) Press("Ctrl+Z");
  EXPECT_EQ(session.history.RedoTitle(), "Center Freq");
  EXPECT_EQ(Section("(0)"), "200 689.66");
  EXPECT_EQ(ratio.PositionMin(), 29);
}

TEST_F(Parametric, WhatASetupHasBetweenTheStepsStaysUntilItIsMoved) {
  record.parCenter[2][0] = 0.1234567F;
  record.parRatio[2][0] = 1.2345678F;
  record.parLevel[2] = 200;
  const SystemSettings loaded = record;
  Open();
  EXPECT_EQ(Section("(0)") + " " + Get("txtAtten"), "889 720.00 +4.0");
  for (const char* box : {"CenterText(0)", "RatioText(0)", "txtAtten"}) Type(box, " " + Get(box));
  EXPECT_TRUE(record.parCenter == loaded.parCenter && record.parRatio == loaded.parRatio);
  EXPECT_EQ(record.parLevel[2], 200);
  PressKey(Find("sldrCenter(0)"), "Right");
  EXPECT_EQ(record.parCenter[2][0], static_cast<float>(890 / 7200.0));
  PressKey(Find("sldrAtten"), "Left");
  EXPECT_EQ(Get("txtAtten"), "0");  // all that the panel can set
  EXPECT_EQ(SliderAt("sldrAtten").PositionMax(), record.parLevel[2]);
}

TEST_F(Parametric, BoostsHaveTheirSignAndLevelsTheirHalfDecibels) {
  const auto expect = [this](const char* box, const char* typed, const char* shown) {
    Type(box, typed);
    EXPECT_EQ(Get(box), shown) << typed;
  };
  Open();
  for (const auto& [typed, shown] :
       {std::pair{"99", "+16.0"}, {"-1", "-1.0"}, {"0", "0.0"}, {"3,4", "+3.0"}, {"-40000", "-60.0"}}) {
    expect("BoostText(1)", typed, shown);
    EXPECT_EQ(record.parBoost[2][1], std::stoi(shown));
  }
  expect("txtAtten", "-30000", "-60.0");
  EXPECT_EQ(record.parLevel[2], 72);
  Edit("configMode", "2");
  OpenEqualizer(2);
  expect("txtAtten", "12", "0");
  expect("txtAtten", "-0.7", "-0.5");
  expect("txtAtten", "-6", "-6.0");
  EXPECT_EQ(record.eqParLevel[10], 180);
  Settle();
  Click("btnActive(1)");
  EXPECT_EQ(record.eqParActive[10][1] * 10 + record.eqParActive[9][1], -1);
  EXPECT_EQ(record.eqChanged[1] * 10 + record.eqChanged[2], -1);
  EXPECT_EQ(record.settingsChanged, 5);
  EXPECT_EQ(session.history.UndoTitle(), "Substage 2 (Wide)");
  Press("Ctrl+Z");
  EXPECT_EQ(Get("btnActive(1)"), "1");
}

// Each entry of the unit's block is twice as loud as the one before, and the last one at 0 dB.
TEST_F(Parametric, LevelsAndOverloadAreThoseOfTheStage) {
  struct Row {
    const char* mode;
    int filter, equalizer;
    const char* level;
    std::size_t entry, other;  // whose overload is shown, and one whose is not
  };
  for (const Row& row : {Row{"0", 3, 0, "-42.2 dB", 2, 4},
                         {"1", 2, 0, "-36.1 dB", 2, 1},
                         {"2", 5, 0, "-36.1 dB", 3, 2},
                         {"1", 0, 1, "-6.0 dB", 8, 9},
                         {"2", 0, 2, "0.0 dB", 9, 8}}) {
    SCOPED_TRACE(row.mode + std::string(row.level));
    Edit("configMode", row.mode);
    if (row.filter != 0) OpenFilter(row.filter, FilterKind::TriParametric);
    if (row.equalizer != 0) OpenEqualizer(row.equalizer);
    for (const bool shown : {true, false}) {
      unit.Now().sound.status = [entry = shown ? row.entry : row.other] {
        unit::Status status;
        for (unsigned i = 0; i < 10; ++i)
          status.stageStatus[i] = static_cast<std::uint16_t>(20675 >> (9 - i));
        status.stageNibble[entry] = 4;
        return status;
      };
      test.loop.RunFor(2500);
      EXPECT_EQ(std::get<LevelBar*>(Find("lbOutput"))->Reading(), row.level);
      EXPECT_EQ(CoreOf(Find("TestLabel")).Visible(), shown);
    }
    CloseTop();
  }
}

TEST_F(Parametric, TheEqualizersAreAskedForTheirLevelsForAsLongAsAPanelOfTheirsIsOpen) {
  const auto asked = [this] {
    constexpr int equalizerStatus = 234;
    test.loop.RunFor(700);
    unit.frames.clear();
    test.loop.RunFor(500);
    return std::ranges::count(unit.frames, equalizerStatus, &unit::Frame::number) > 0;
  };
  const std::function<void()> ways[] = {[this] { Click("btnOK"); },
                                        [this] { Press("Escape"); },
                                        [this] { CloseTop(); },
                                        [this] { OpenFilter(1, FilterKind::Lowpass); },
                                        [this] { Edit("eqType", "0", 1); },
                                        [this] { Press("Ctrl+Z"); }};
  EXPECT_FALSE(asked());
  for (const std::int16_t kind : {EqKind::DualParametric, EqKind::Compressor}) {
    for (const auto& way : ways) {
      record.eqType[1] = EqKind::BandGraphic;
      Edit("eqType", std::to_string(kind), 1);
      session.panels.OpenEqualizer(1);
      const std::string panel = Top().name;
      session.panels.ConfigEqualizers([] {});  // makes panels that nobody sees
      EXPECT_TRUE(asked());
      way();
      EXPECT_NE(Top().name, panel);
      EXPECT_FALSE(asked());
      if (Top().name != "MasterControl") CloseTop();
    }
  }
  record.eqType[1] = EqKind::Compressor;
  session.panels.OpenEqualizer(1);
  EXPECT_TRUE(asked());
  session.Exit();
  EXPECT_FALSE(session.periodic.eqLevelsWanted);
}

TEST_F(Parametric, HandlesMoveTheirSectionsAndTheLevel) {
  Open();
  PlotHandle &middle = *Response().handles.at(1), &level = *Response().handles.at(3);
  middle.Hold();
  for (const double boost : {-10.0, -41.0}) middle.MoveTo(900.4, boost);
  EXPECT_EQ(Response().YAxis().from, -20);  // not while it is held
  middle.Release();
  EXPECT_EQ(Response().YAxis().from, -60);
  EXPECT_EQ(middle.Reading(), "900 Hz, -41.0 dB, Width: 600.00 Hz");
  EXPECT_EQ(session.history.UndoTitle(), "Substage 2 (Mid)");
  level.Hold();
  level.MoveTo(0, -7.3);
  level.Release();
  EXPECT_EQ(record.parLevel[2], 177);
  EXPECT_EQ(Response().Traces().size(), 2U);  // the whole, and no line for sections at 0 dB
  Click("btnActive(1)");
  EXPECT_TRUE(middle.Usable() && middle.faint() && !Response().handles.at(0)->faint());
  EXPECT_EQ(Response().Traces().size(), 1U);
  for (const char* box : {"BoostText(0)", "BoostText(2)"}) Type(box, "16");
  const float highest = *std::ranges::max_element(Response().Traces().at(0).values);
  EXPECT_NEAR(highest, 32 - 7.5, 0.1);  // they lie on each other
  EXPECT_GT(Response().YAxis().to, highest);
}

}  // namespace
}  // namespace vc
