// The panels of twenty bands, of a filter stage and of an equalizer, as the operator works them.
#include <algorithm>
#include <cmath>
#include <random>

#include "PanelOpening.h"
#include "model/BandFrequencies.h"
#include "widgets/PlotHandle.h"

namespace vc {
namespace {

constexpr int Most = 40;  // dB
using Bands = std::array<std::int16_t, BandCount>;

struct Bank : testing::TestWithParam<const char*> {
  Bank() {
    run.record.workingFolder = folder.Path();
    run.Edit("numFilters", std::to_string(support::PanelStage));
    support::OpenPanel(run, GetParam());
  }
  bool OfFilter() const { return std::string(GetParam()) == "Ctl20Ban"; }
  Bands& Stored() {
    return OfFilter() ? run.record.bandGain[support::PanelStage].items : run.record.eqBandGain[9].items;
  }
  GraphicButton& Switch() {
    ChainLayout& chain = run.session.master.chain;
    return OfFilter() ? chain.Filter(support::PanelStage).active : chain.Equalizer(1).active;
  }
  void SwitchOut() {
    if (Switch().Value() == 1) Switch().Click();
  }
  void Store(int (*attenuation)(int band)) {
    for (int band = 0; band < BandCount; ++band) {
      run.Edit(OfFilter() ? "bandGain" : "eqBandGain", std::to_string(attenuation(band)),
               OfFilter() ? support::PanelStage : 9, band);
    }
  }
  Slider& SliderOf(int band) {
    return *std::get<Slider*>(run.Find("sldrGain(" + std::to_string(band) + ")"));
  }
  Plot& Curve() { return *std::get<Plot*>(run.Find("pltResponse")); }

  support::TempFolder folder;
  support::PanelRun run;
};

TEST_P(Bank, ShowsWhatIsTakenAwayUnderTheFrequencies) {
  Store([](int band) { return 2 * band; });
  EXPECT_EQ(run.Get("sldrGain(0)") + " " + run.Get("txtGain(0)"), "40 0");
  EXPECT_EQ(run.Get("sldrGain(19)") + " " + run.Get("txtGain(19)"), "2 -38");
  EXPECT_EQ(run.Type("txtGain(3)", "-45"), "");
  EXPECT_EQ(Stored()[3], 40);
  EXPECT_EQ(run.Get("sldrGain(3)") + " " + run.Get("txtGain(3)"), "0 -40");
  EXPECT_EQ(run.session.history.UndoTitle(), "Band Gain, 280");
  for (const auto& [bandwidth, captions] : {std::pair{0, "680 740 880 1.1K 2.2K"},
                                            {1, "1.1K 1.3K 1.5K 1.8K 3.7K"},
                                            {2, "1.4K 1.5K 1.8K 2.2K 4.4K"},
                                            {3, "1.7K 1.9K 2.2K 2.7K 5.6K"},
                                            {4, "2.3K 2.5K 2.9K 3.6K 7.5K"},
                                            {5, "3.4K 3.8K 4.4K 5.4K 11K"}}) {
    run.Edit("bandwidthIndex", std::to_string(bandwidth));
    std::string shown;
    for (const int band : {8, 9, 10, 11, 16}) shown += " " + SliderOf(band).core.Caption();
    EXPECT_EQ(shown, std::string(" ") + captions);
  }
}

TEST_P(Bank, IsReadBandByBandWithItsNumbers) {
  const std::vector<AnyControl> order = ReadingOrder(run.Top());
  const auto frame = std::ranges::find_if(
      order, [](const AnyControl& control) { return CoreOf(control).FullName() == "fraBands"; });
  ASSERT_GE(order.end() - frame, 5);
  std::string names;
  for (int i = 0; i < 5; ++i) names += CoreOf(frame[i]).FullName() + " ";
  EXPECT_EQ(names, "fraBands sldrGain(0) txtGain(0) sldrGain(1) txtGain(1) ");
  EXPECT_EQ(KindOf(*frame) + " " + RangeOf(*frame), "bank Hz | 0 | -10 | -20 | -30 | -40");
  // Of the arrows a band leaves those to its neighbours alone.
  EXPECT_NE(PressKey(frame[3], "Left"), "");
  EXPECT_EQ(PressKey(frame[3], "Down"), "");
  EXPECT_EQ(run.Get("txtGain(1)"), "-1");
}

// A bar as high as its slider from halfway to halfway, the curve through a point on each.
TEST_P(Bank, DrawsTheBandsAsBarsUnderWhatTheUnitMakesOfThem) {
  Store([](int band) { return band == 6 ? 40 : band; });
  const auto bands = BandFrequencies(run.record.bandwidthIndex);
  const std::vector<PlotBar>& bars = Curve().Bars();
  ASSERT_EQ(bars.size(), bands.size());
  EXPECT_EQ(bars[5], (PlotBar{(bands[4] + bands[5]) / 2, (bands[5] + bands[6]) / 2, -5}));
  EXPECT_EQ(bars[0].from, 0);
  EXPECT_EQ(bars[19].to, run.record.bandwidthHz);
  for (std::size_t band = 0; band < bands.size(); ++band) {
    EXPECT_NEAR(*Curve().LevelAt(Curve().Traces().front(), bands[band]), bars[band].level, 0.2) << band;
    PlotHandle& handle = *Curve().handles[band];
    EXPECT_EQ(&handle.Main(), &SliderOf(static_cast<int>(band)));
  }
  Curve().handles[6]->Hold();
  Curve().handles[6]->MoveTo(0, -12.4);
  Curve().handles[6]->Release();
  EXPECT_EQ(Stored()[6], 12);
  EXPECT_EQ(Curve().Bars()[6].level, -12);
}

// Reckoned here on whole numbers alone.
TEST_P(Bank, LinkedSlidersMoveAsFarAndStopAtTheirEnds) {
  std::mt19937 random(7);
  Store([](int band) { return band * 7 % (Most + 1); });
  run.Set("chkLinkSliders", "1");
  Bands expected = Stored();
  for (int move = 0; move < 100; ++move) {
    const auto band = static_cast<std::size_t>(random() % BandCount);
    const int to = static_cast<int>(random() % (Most + 1)), distance = Most - to - expected[band];
    for (std::int16_t& code : expected) code = LowWord(std::clamp(code + distance, 0, Most));
    SliderOf(static_cast<int>(band)).SetPosition(to);
    ASSERT_EQ(Stored(), expected) << move;
  }
  EXPECT_EQ(run.Get("sldrGain(4)"), std::to_string(Most - expected[4]));
}

TEST_P(Bank, ADragOfLinkedBandsIsOneStep) {
  Store([](int band) { return band; });
  const Bands before = Stored();
  run.Set("chkLinkSliders", "1");
  SliderOf(5).Hold();
  for (const double position : {30.0, 5.0, 36.0}) SliderOf(5).SetPosition(position);
  SliderOf(5).Release();
  EXPECT_EQ(Stored()[5], 4);
  EXPECT_EQ(Stored()[0], 0);
  EXPECT_EQ(Stored()[19], 9);  // it stood at its end while the others went on
  run.Press("Ctrl+Z");
  EXPECT_EQ(Stored(), before);
}

TEST_P(Bank, ButtonsMoveAllBandsInOneStepAndHaveThemHeard) {
  Store([](int band) { return 30 - (band == 7 ? 5 : 0); });
  const Bands before = Stored();
  SwitchOut();
  run.Click("btnNormalize");
  EXPECT_EQ(Stored()[7], 0);
  EXPECT_EQ(Stored()[8], 5);
  EXPECT_EQ(Switch().Value(), 1);
  EXPECT_EQ(run.Get(OfFilter() ? "btnActive" : "btnEqActive"), "1");
  run.Press("Ctrl+Z");
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(Switch().Value(), 0);
  run.Click("btnMaximize");
  EXPECT_EQ(std::ranges::count(Stored(), Most), BandCount);
  EXPECT_EQ(Switch().Value(), 0);
  run.Set("sldrGain(3)", "1");
  run.Click("btnReduce");
  run.Click("btnReduce");
  EXPECT_EQ(std::ranges::count(Stored(), Most), BandCount);
  EXPECT_EQ(Switch().Value(), 1);
  Switch().Click();
  run.Edit("procEnabled", "0");  // which takes the switch away
  run.Click("btnZero");
  EXPECT_EQ(Stored(), Bands{});
  EXPECT_EQ(Switch().Value(), 0);
}

TEST_P(Bank, ItsTableIsStoredAndARecalledOneIsHeard) {
  const auto exchange = [this](const char* button) {
    run.Click(button);
    ASSERT_EQ(run.Top().name, "MemSelect");
    run.Type("txtFileName", "bands");
    run.Click("btnOK");
  };
  Store([](int band) { return 2 * band; });
  const Bands stored = Stored();
  exchange("btnStore");
  EXPECT_EQ(support::Content(folder.Path() + "/bands.tbg").substr(0, 9), "0\r\n2\r\n4\r\n");
  run.Click("btnMaximize");
  SwitchOut();
  exchange("btnRecall");
  EXPECT_EQ(Stored(), stored);
  EXPECT_EQ(run.Get("txtGain(6)"), "-12");
  EXPECT_EQ(Switch().Value(), 1);
}

INSTANTIATE_TEST_SUITE_P(Twenty, Bank, testing::Values("Ctl20Ban", "CtlEq"),
                         [](const auto& panel) { return std::string(panel.param); });

TEST(EqualizerBank, WritesBothSidesWhileTheyAreLinked) {
  support::PanelRun run(ConfigMode::StereoLinked);
  support::OpenPanel(run, "CtlEq");
  run.Set("sldrGain(2)", "33");
  run.Click("btnReduce");
  EXPECT_EQ(run.record.eqBandGain[10][2], 8);
  EXPECT_EQ(run.record.eqBandGain[10], run.record.eqBandGain[9]);
  EXPECT_EQ(run.Top().Caption(), "20-Band Graphic (Left/Right Equalizer)");
  run.CloseTop();
  run.Edit("configMode", "2");
  run.session.panels.OpenEqualizer(2);
  run.Set("sldrGain(2)", "12");
  EXPECT_EQ(run.record.eqBandGain[9][2], 8);
  EXPECT_EQ(run.record.eqBandGain[10][2], 28);
}

}  // namespace
}  // namespace vc
