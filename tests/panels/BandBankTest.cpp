// The bank of twenty bands, as a graphic equalizer of both kinds describes it.
#include <algorithm>
#include <optional>
#include <random>

#include "PanelOpening.h"
#include "model/FieldAccess.h"
#include "model/Kinds.h"
#include "panels/BandBank.h"

namespace vc {
namespace {

constexpr int Most = 40;  // dB

DisplayLaw AttenuationCode() {
  return {.unit = "dB",
          .show = [](double position) { return std::to_string(Nearest(position) - Most); },
          .parse = [](const std::string& text) { return TypedNumber(text) + Most; },
          .stored = [](double position) -> double { return Nearest(Most - position); },
          .position = [](double code) { return Most - code; }};
}

// Linked sides have the same bands.
BandTable OfEqualizers() {
  return {.caption = "Gain",
          .row = RowOf<&SystemSettings::eqBandGain>(),
          .entries =
              [](const SystemSettings& settings) {
                constexpr int first = 9;
                if (settings.configMode == ConfigMode::StereoLinked) return std::vector{first, first + 1};
                return std::vector{first + settings.curEq - 1};
              },
          .law = AttenuationCode(),
          .range = {0, Most},
          .scale = {"0", "-10", "-20", "-30", "-40"},
          .fileType = IndivFileType::BandGraphic,
          .reduces = true};
}

struct GraphicPanel {
  explicit GraphicPanel(const PanelContext& context) : panel(context, "GraphicPanel", "Graphic") {}
  Panel panel;
  BandBank bank{panel, OfEqualizers()};
};

struct Bank : testing::Test {
  using Bands = std::array<std::int16_t, BandCount>;

  explicit Bank(std::int16_t mode = ConfigMode::Mono) : run(mode) {
    all.panel.Fill();
    run.session.forms.Show(all.panel.form);
  }
  Bands& Stored(int entry = 9) { return run.record.eqBandGain[entry].items; }
  void Store(const std::function<int(int band)>& code) {
    for (int band = 0; band < BandCount; ++band) run.record.eqBandGain[9][band] = LowWord(code(band));
    all.panel.Fill();
  }
  // As the host of the panels does after every edit.
  void Move(int band, double position) {
    all.bank.SliderOf(band).SetPosition(position);
    all.panel.Fill();
  }

  PanelContext Around() {
    PanelContext given = support::LoneContext(run, "");
    given.blockSwitch = &inOut;
    given.exchangeTable = [this](const TableExchange& exchange) { asked = exchange; };
    return given;
  }

  support::PanelRun run;
  GraphicButton& inOut = run.session.master.chain.Equalizer(1).active;
  std::optional<TableExchange> asked;
  PanelContext context = Around();
  GraphicPanel all{context};
};

TEST_F(Bank, ShowsWhatIsTakenAwayUnderTheFrequencies) {
  Store([](int band) { return 2 * band; });
  EXPECT_EQ(run.Get("sldrGain(0)") + " " + run.Get("txtGain(0)"), "40 0");
  EXPECT_EQ(run.Get("sldrGain(19)") + " " + run.Get("txtGain(19)"), "2 -38");
  EXPECT_EQ(run.Type("txtGain(3)", "-45"), "");
  EXPECT_EQ(Stored()[3], 40);
  EXPECT_EQ(run.session.history.UndoTitle(), "Gain, 280");
  EXPECT_EQ(CoreOf(run.Find("txtGain(11)")).Caption(), "1.1K");
  EXPECT_EQ(all.bank.fraBands.scale.at(1).position, 30);
}

// Reckoned here on whole numbers alone.
TEST_F(Bank, LinkedSlidersMoveAsFarAndStopAtTheirEnds) {
  std::mt19937 random(7);
  Store([](int band) { return band * 7 % (Most + 1); });
  run.Set("chkLinkSliders", "1");
  Bands expected = Stored();
  for (int move = 0; move < 300; ++move) {
    const auto band = static_cast<std::size_t>(random() % BandCount);
    const int to = static_cast<int>(random() % (Most + 1)), distance = Most - to - expected[band];
    for (std::int16_t& code : expected) code = LowWord(std::clamp(code + distance, 0, Most));
    Move(static_cast<int>(band), to);
    ASSERT_EQ(Stored(), expected) << move;
  }
  EXPECT_EQ(run.Get("sldrGain(4)"), std::to_string(Most - expected[4]));
}

TEST_F(Bank, ADragOfLinkedBandsIsOneStep) {
  Store([](int band) { return band; });
  const Bands before = Stored();
  run.Set("chkLinkSliders", "1");
  all.bank.SliderOf(5).Hold();
  for (const double position : {30.0, 5.0, 36.0}) Move(5, position);
  all.bank.SliderOf(5).Release();
  EXPECT_EQ(Stored()[5], 4);
  EXPECT_EQ(Stored()[0], 0);
  EXPECT_EQ(Stored()[19], 9);  // it stood at its end while the others went on
  run.Press("Ctrl+Z");
  EXPECT_EQ(Stored(), before);
}

TEST_F(Bank, ButtonsMoveAllBandsInOneStepAndHaveThemHeard) {
  Store([](int band) { return 30 - (band == 7 ? 5 : 0); });
  const Bands before = Stored();
  if (inOut.Value() == 1) inOut.Click();
  run.Click("btnNormalize");
  EXPECT_EQ(Stored()[7], 0);
  EXPECT_EQ(Stored()[8], 5);
  EXPECT_EQ(run.record.eqActive[1], 1);
  run.Press("Ctrl+Z");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(run.record.eqActive[1], 0);
  run.Click("btnMaximize");
  EXPECT_EQ(std::ranges::count(Stored(), Most), BandCount);
  EXPECT_EQ(inOut.Value(), 0);
  run.Set("sldrGain(3)", "1");
  run.Click("btnReduce");
  run.Click("btnReduce");
  EXPECT_EQ(std::ranges::count(Stored(), Most), BandCount);
  EXPECT_EQ(inOut.Value(), 1);
  inOut.Click();
  run.Edit("procEnabled", "0");  // which takes the switch away
  run.Click("btnZero");
  EXPECT_EQ(Stored(), Bands{});
  EXPECT_EQ(inOut.Value(), 0);
}

TEST_F(Bank, ARecalledTableIsHeardAndAStoredOneChangesNothing) {
  run.Click("btnStore");
  ASSERT_TRUE(asked);
  EXPECT_EQ(asked->direction, TableExchange::Store);
  EXPECT_EQ(asked->fileType, 4);
  run.Click("btnRecall");
  EXPECT_EQ(asked->direction, TableExchange::Recall);
  if (inOut.Value() == 1) inOut.Click();
  run.record.eqBandGain[9][6] = 17;
  asked->recalled();
  EXPECT_EQ(run.Get("txtGain(6)"), "-17");
  EXPECT_EQ(inOut.Value(), 1);
}

struct LinkedBank : Bank {
  LinkedBank() : Bank(ConfigMode::StereoLinked) {}
};

TEST_F(LinkedBank, WritesBothSides) {
  run.Set("sldrGain(2)", "33");
  EXPECT_EQ(run.record.eqBandGain[10][2], 7);
  run.Click("btnMaximize");
  EXPECT_EQ(Stored(10), Stored(9));
  run.record.configMode = ConfigMode::StereoIndependent;
  run.record.curEq = 2;
  all.panel.Fill();
  run.Set("sldrGain(2)", "12");
  EXPECT_EQ(Stored(9)[2], 40);
  EXPECT_EQ(Stored(10)[2], 28);
}

}  // namespace
}  // namespace vc
