// The panels of the limiter, compressor and expander, with the unit on the other end of the line.
#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "PanelOpening.h"
#include "model/FieldText.h"
#include "widgets/PlotHandle.h"

namespace vc {
namespace {

struct Dynamics : testing::Test, support::PanelRun {
  static constexpr std::array Boxes{"txtLimitThresh", "txtCompThresh", "txtCompRatio",
                                    "txtExpRatio",    "txtAttack",     "txtRelease"};
  static constexpr std::array Rows{"LimitThresh", "CompThresh", "CompRatio", "ExpRatio", "Attack", "Release"};

  void Open(int stage = 2, const char* mode = "0") {
    if (mode[0] != '0') Edit("configMode", mode);
    OpenFilter(stage, FilterKind::Compressor);
    Settle();
  }
  void OpenEqualizer(int number) {
    record.eqType[number] = EqKind::Compressor;
    session.master.ConfigMasterControl();
    session.panels.OpenEqualizer(number);
  }
  std::string Shown() const {
    std::string texts;
    for (const char* box : Boxes) texts += Get(box) + " ";
    return texts;
  }
  std::string Kept(int entry, const std::string& family = "lce") const {
    std::string texts;
    for (const char* row : Rows) texts += FieldText(record, *FindField(family + row), entry, 0) + " ";
    return texts;
  }
  const Plot& Graph() const { return *std::get<Plot*>(Find("pbGraph")); }
  PlotHandle& Handle(const char* name) const {
    return **std::ranges::find(Graph().handles, name, &PlotHandle::name);
  }
  LevelBar& Bar(const char* name) const { return *std::get<LevelBar*>(Find(name)); }
};

TEST_F(Dynamics, ThresholdsNeverCrossAndWhatIsOutOfRangeIsMovedIn) {
  record.lceCompRatio[2] = 0.5F;
  record.lceExpRatio[2] = 2.34F;
  record.lceAttack[2] = 0;
  Open();
  EXPECT_EQ(Shown(), "0 0 1.0 2.3 1 200 ");
  EXPECT_EQ(Kept(2), "0 0 1 2.34 1 200 ");
  const auto expect = [this](const char* box, const char* typed, const char* shown) {
    Type(box, typed);
    EXPECT_EQ(Shown(), shown) << box << ' ' << typed;
  };
  expect("txtLimitThresh", "-30", "0 0 1.0 2.3 1 200 ");
  expect("txtCompThresh", "-40", "0 -40 1.0 2.3 1 200 ");
  expect("txtLimitThresh", "-50", "-40 -40 1.0 2.3 1 200 ");
  expect("txtCompThresh", "-10", "-40 -40 1.0 2.3 1 200 ");
  expect("txtLimitThresh", "-12,6", "-13 -40 1.0 2.3 1 200 ");
  expect("txtCompRatio", "3.46", "-13 -40 3.5 2.3 1 200 ");
  expect("txtExpRatio", "4000", "-13 -40 3.5 100.0 1 200 ");
  expect("txtAttack", "999", "-13 -40 3.5 100.0 250 200 ");
  expect("txtRelease", "x", "-13 -40 3.5 100.0 250 200 ");
  EXPECT_EQ(Kept(2), "-13 -40 3.5 100 250 200 ");
  for (const char* last : {"Attack Time", "Expansion Ratio"}) {
    EXPECT_EQ(session.history.UndoTitle(), last);
    Press("Ctrl+Z");
  }
}

TEST_F(Dynamics, ThePresetIsOneStep) {
  Open();
  Type("txtCompThresh", "-40");
  Type("txtCompRatio", "4");
  Settle();
  Click("btnNagra");
  EXPECT_EQ(Kept(2), "0 0 1 2 1 100 ");
  EXPECT_EQ(Shown(), "0 0 1.0 2.0 1 100 ");
  EXPECT_EQ(record.settingsChanged, 5);
  EXPECT_EQ(session.history.UndoTitle(), "Expand 2:1");
  Press("Ctrl+Z");
  EXPECT_EQ(Shown(), "0 -40 4.0 1.0 50 200 ");
}

TEST_F(Dynamics, BothStagesOfALinkedPairAreKept) {
  for (const char* mode : {"0", "1", "2"}) {
    record.lceCompThresh[5] = -7;
    const std::string before = Kept(5);
    Open(2, mode);
    Type("txtCompThresh", "-40");
    Type("txtAttack", "7");
    if (mode[0] == '1') {
      EXPECT_EQ(Kept(5), Kept(2));
    }
    for (int step = 0; step < 2; ++step) Press("Ctrl+Z");
    EXPECT_EQ(Kept(5), before) << mode;
    EXPECT_EQ(Kept(3), "0 0 1 1 50 200 ");
    CloseTop();
  }
  OpenEqualizer(1);
  Settle();
  Click("btnNagra");
  EXPECT_EQ(Kept(9, "eqLce"), "0 0 1 2 1 100 ");
  EXPECT_EQ(Kept(10, "eqLce"), "0 0 1 1 50 200 ");
  EXPECT_EQ(record.eqChanged[1] * 10 + record.eqChanged[2], -10);
}

// Each entry of the unit's block is 6 dB less than the one before, and so is its gain. What was told before
// the stage became what it is meant something else.
TEST_F(Dynamics, LevelsAreThoseOfTheStage) {
  const auto other = [] {
    unit::Status status;
    status.stageStatus.fill(0x4FFF);
    return status;
  };
  const auto dynamics = [] {
    unit::Status status;
    for (int i = 0; i < 10; ++i) {
      status.stageStatus[static_cast<std::size_t>(i)] =
          static_cast<std::uint16_t>((-8 * i & 0xFF) << 8 | (120 - 8 * i));
    }
    return status;
  };
  struct Row {
    const char* mode;
    int filter, equalizer;
    const char *input, *output, *gain;
  };
  for (const Row& row : {Row{"0", 3, 0, "-12.0 dB", "-24.1 dB", "-12.0 dB"},
                         {"1", 2, 0, "-12.0 dB", "-24.1 dB", "-12.0 dB"},
                         {"2", 5, 0, "-18.1 dB", "-36.1 dB", "-18.1 dB"},
                         {"2", 0, 2, "-54.2 dB", "-108.4 dB", "-54.2 dB"},
                         {"1", 0, 1, "-48.2 dB", "-96.3 dB", "-48.2 dB"}}) {
    SCOPED_TRACE(row.input);
    Edit("configMode", row.mode);
    session.periodic.eqLevelsWanted = true;
    unit.Now().sound.status = other;
    Settle();
    if (row.filter != 0) OpenFilter(row.filter, FilterKind::Compressor);
    if (row.equalizer != 0) OpenEqualizer(row.equalizer);
    unit.Now().sound.status = dynamics;
    for (int tick = 0; tick < 60; ++tick) {
      EXPECT_EQ(Graph().Dot().has_value(), Bar("lbInput").Reading() == row.input);
      EXPECT_EQ(Graph().Dot().has_value(), !Bar("lbInput").Reading().empty());
      test.loop.RunFor(20);
    }
    EXPECT_EQ(Bar("lbInput").Reading(), row.input);
    EXPECT_EQ(Bar("lbOutput").Reading(), row.output);
    EXPECT_EQ(CoreOf(Find("lblLceGain")).Caption(), row.gain);
    EXPECT_EQ(Bar("lbInput").Value(), std::lround(100 + std::stod(row.input)));
    EXPECT_EQ(Bar("lbOutput").Value(), std::max(0L, std::lround(100 + std::stod(row.output))));
    CloseTop();
  }
}

TEST_F(Dynamics, TheMarkerAndTheThresholdsStandWhereTheyAreToldTo) {
  Open();
  Type("txtCompThresh", "-40");
  Type("txtLimitThresh", "-10");
  Type("txtCompRatio", "100");
  EXPECT_EQ(Bar("lbInput").MarkerValue(1) * 1000 + Bar("lbInput").MarkerValue(2), 90060);
  EXPECT_EQ(Bar("lbOutput").MarkerValue(1) * 1000 + Bar("lbOutput").MarkerValue(2), 90090);
  EXPECT_EQ(Bar("lbOutput").MarkerText(), "Limit -10.0 dB, Compression -10.3 dB");
  unit.Now().sound.status = [] {
    unit::Status status;
    status.stageStatus[1] = 0xF000 | 24;
    return status;
  };
  Settle();
  ASSERT_TRUE(Graph().Dot());
  EXPECT_NEAR(Graph().Dot()->x, -72.2, 0.05);
  EXPECT_NEAR(Graph().Dot()->y, -84.3, 0.05);
  unit.Now().sound.status = [] { return unit::Status{}; };
  Settle();
  EXPECT_NEAR(Graph().Dot()->y, -90.3, 0.05);
  session.master.menus.mnuDisconnect.Click();
  test.loop.RunFor(60);
  EXPECT_FALSE(Graph().Dot());
  EXPECT_EQ(Bar("lbInput").Value() + Bar("lbOutput").Value(), 0);
  EXPECT_EQ(Bar("lbInput").Reading() + Bar("lbOutput").Reading(), "");
}

void Drag(PlotHandle& handle, const std::vector<PlotSpot>& way) {
  handle.Hold();
  for (const PlotSpot& to : way) handle.MoveTo(to.x, to.y);
  handle.Release();
}

TEST_F(Dynamics, KneesAreDraggedFromEndToEndAndNeverCross) {
  Open();
  double last = -0.7;
  for (const char* name : {"Compression Knee", "Limit Knee", "Compression Knee"}) {
    const std::string before = Kept(2);
    const bool limits = name[0] == 'L';
    PlotHandle& knee = Handle(name);
    const double limit = record.lceLimitThresh[2], compression = record.lceCompThresh[2];
    double expected = limits ? limit : compression;
    knee.Hold();
    for (const double way : {-1.0, 1.0, last}) {
      for (double part = 0; part <= 1.1; part += 0.003) {
        const double x = std::round(way < 0 ? 1000 * way * part : 1000 * (part - 1)) / 10,
                     y = 20 - 130 * part;
        knee.MoveTo(x, y);
        if (x >= -90 && x < 0) {
          expected = limits ? std::max(std::ceil(x), compression) : std::min(std::nearbyint(x), limit);
        }
        ASSERT_EQ(limits ? record.lceLimitThresh[2] : record.lceCompThresh[2], expected) << name << x;
        ASSERT_EQ(limits ? record.lceCompThresh[2] : record.lceLimitThresh[2], limits ? compression : limit);
      }
    }
    knee.Release();
    last -= 0.05;
    ASSERT_NE(Kept(2), before);
    Press("Ctrl+Z");
    EXPECT_EQ(Kept(2), before);
    Press("Ctrl+Y");
  }
  EXPECT_EQ(test.desk.beeps, 0);
}

// A line in the hand goes through the place that it is taken to, for as long as its ratio lets it.
TEST_F(Dynamics, LinesGoThroughTheHand) {
  std::mt19937 random(1);
  const auto within = [&random](double lower, double upper) {
    return std::uniform_real_distribution<double>(lower, upper)(random);
  };
  Open();
  int reached = 0;
  for (int round = 0; round < 300; ++round) {
    Type("txtLimitThresh", "0");
    Type("txtCompThresh", std::to_string(std::lround(within(-80, -20))));
    const double limit = std::round(within(record.lceCompThresh[2] + 5, 0)), knee = record.lceCompThresh[2];
    Type("txtLimitThresh", std::to_string(std::lround(limit)));
    const std::string before = Kept(2);
    const bool compresses = round % 2 == 0;
    const double rise = compresses ? limit - knee : 100 + knee;  // of the input, along the line
    const double ratio = std::exp(within(0.0, std::log(60.0))), part = within(0.3, 1.0);
    const double low = Graph().LevelAt(Graph().Traces().front(), knee).value();
    const PlotSpot at = compresses ? PlotSpot{limit - part * rise, limit - part * rise / ratio}
                                   : PlotSpot{knee - part * (low + 100) / ratio, low - part * (low + 100)};
    if (at.x < (compresses ? -90 : -99)) continue;
    ++reached;
    PlotHandle& line = Handle(compresses ? "Compression Line" : "Expansion Line");
    Drag(line, {{-50, limit + 9}, {-1, -99}, {at.x, at.y}});
    const double kept = static_cast<double>(compresses ? record.lceCompRatio[2] : record.lceExpRatio[2]);
    EXPECT_NEAR(kept, ratio, 0.0501) << Kept(2);
    if (Kept(2) != before) Press("Ctrl+Z");
    EXPECT_EQ(Kept(2), before);
  }
  EXPECT_GT(reached, 200);
}

TEST_F(Dynamics, LinesInTheHandEndAtTheRatiosThatThereAre) {
  Open();
  Type("txtCompThresh", "-40");
  Type("txtLimitThresh", "-10");
  const auto ratios = [this] { return Get("txtCompRatio") + " " + Get("txtExpRatio"); };
  PlotHandle &compression = Handle("Compression Line"), &expansion = Handle("Expansion Line");
  Drag(compression, {{-25, -18}, {-25, -10.1}});
  EXPECT_EQ(ratios(), "100.0 1.0");
  Drag(compression, {{-25, -10}, {-95, -95}, {0, -3}, {3, -3}});  // on the limit, and where nothing is taken
  EXPECT_EQ(ratios(), "100.0 1.0");
  Drag(compression, {{-25, -2}});  // it would fall
  EXPECT_EQ(ratios(), "1.0 1.0");
  Drag(compression, {{-25, -20}, {-25, -60}});
  EXPECT_EQ(ratios(), "1.0 1.0");
  Drag(expansion, {{-50, -90}, {-40.2, -90}, {-40, -90}});  // the last of them on the knee
  EXPECT_EQ(ratios(), "1.0 100.0");
  Drag(expansion, {{-20, -90}});
  EXPECT_EQ(ratios(), "1.0 1.0");
  Drag(expansion, {{-50, -90}, {-40, -40}, {-95, -45}});
  EXPECT_EQ(ratios(), "1.0 1.0");
  EXPECT_TRUE(expansion.Press("Shift+Up") && compression.Press("Right"));
  EXPECT_EQ(ratios(), "1.1 2.0");
  EXPECT_EQ(expansion.Reading(), "Expansion Ratio: 2.0");
  EXPECT_TRUE(Handle("Limit Knee").Press("Left") && Handle("Compression Knee").Press("Down"));
  EXPECT_EQ(Handle("Limit Knee").Reading() + Handle("Compression Knee").Reading(),
            "Limiting Threshold: -11 dBCompression Threshold: -41 dB");
}

// The hand goes on while the unit is brought up to date, which takes longer than from one of its events to
// the next.
TEST_F(Dynamics, TheUnitFollowsTheHandAtTheSlowestRate) {
  unit::Options slow;
  slow.baud = 9600;
  slow.pace = true;
  unit.PlugIn(slow);
  record.baudIndex = 0;
  Edit("filterType", "16", 1);
  Edit("filterActive", "1", 1);
  Reconnect();
  Open(1);
  test.loop.RunFor(5000);
  ASSERT_TRUE(Connected());
  struct Set {
    std::int64_t since;
    int threshold;
  };
  std::vector<Set> hand{{0, 0}};
  const auto now = [this] { return test.clock.Microseconds(); };
  const auto held = [this] {
    const double octaves =
        static_cast<std::int16_t>((*Stage(1).block)[12] + 256 * (*Stage(1).block)[13]) / 256.0;
    return static_cast<int>(std::lround(20 * std::log10(std::exp2(octaves - 15))));
  };
  PlotHandle& knee = Handle("Compression Knee");
  knee.Hold();
  std::int64_t longestPass = 0, furthestBehind = 0;
  for (const std::int64_t begin = now(); now() < begin + 20'000'000;) {
    const std::int64_t at = now();
    knee.MoveTo(-1.5 - 43 * (1 - std::cos(static_cast<double>(at - begin) / 1.7e6)), -20);
    if (hand.back().threshold != record.lceCompThresh[1]) {
      hand.push_back({at, record.lceCompThresh[1]});
    }
    test.loop.RunFor(20);
    longestPass = std::max(longestPass, now() - at);
    const auto is =
        std::find_if(hand.rbegin(), hand.rend(), [&](const Set& set) { return set.threshold == held(); });
    ASSERT_NE(is, hand.rend()) << held();
    if (is != hand.rbegin()) furthestBehind = std::max(furthestBehind, now() - std::prev(is)->since);
  }
  knee.Release();
  test.loop.RunFor(500);
  EXPECT_EQ(held(), record.lceCompThresh[1]);
  EXPECT_GT(longestPass, 100'000);
  EXPECT_LT(furthestBehind, longestPass);
  EXPECT_EQ(record.settingsChanged, 0);
  unit.frames.clear();
  Settle();
  EXPECT_EQ(Sent(), "");
}

}  // namespace
}  // namespace vc
