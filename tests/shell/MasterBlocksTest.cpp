// What the blocks of the master panel tell of the record, and which of them there are.
#include <gtest/gtest.h>

#include "PanelRun.h"
#include "model/Kinds.h"

namespace vc {
namespace {

struct MasterBlocks : testing::Test, support::PanelRun {
  ChainLayout& chain = session.master.chain;

  std::string Keys(int stage) { return chain.Filter(stage).keys.core.Caption(); }
  // The switch of the panel that is on top.
  const GraphicButton& PanelSwitch() const {
    for (const AnyControl& control : Top().controls) {
      auto* const* button = std::get_if<GraphicButton*>(&control);
      if (button != nullptr && (*button)->style == GraphicButton::Style::Latching) return **button;
    }
    throw Fault{Top().name + " has no switch"};
  }
};

TEST_F(MasterBlocks, NumbersAndPictureFollowAPanelAtOnce) {
  OpenFilter(1, FilterKind::Lowpass);
  const std::vector<PlotTrace> before = chain.Filter(1).response.Traces();
  EXPECT_EQ(Type("txtCutoff", "1500", true), "");
  EXPECT_EQ(Type("txtAtten", "40", true), "");
  EXPECT_EQ(Keys(1), "1500 Hz, -40 dB");
  EXPECT_NE(chain.Filter(1).response.Traces(), before);
  Press("Ctrl+Z");
  EXPECT_EQ(Keys(1), "1500 Hz, -10 dB");
  CloseTop();
  EXPECT_EQ(Set("cmbFilter(1)", "Hi-Res Graphic"), "");
  EXPECT_TRUE(chain.Filter(1).response.core.Visible());
  EXPECT_EQ(Set("cmbFilter(1)", "1-Ch Adaptive"), "");
  EXPECT_FALSE(chain.Filter(1).response.core.Visible());
  EXPECT_NE(Keys(1), "");
  Edit("agcGain", "2");
  EXPECT_EQ(chain.agc.keys.core.Caption(), "15 dB, 400 ms");
  Edit("filterAtten", "16384", 7);
  EXPECT_EQ(chain.Broadband(1).keys.core.Caption(), "-6.0 dB, gain 0.0");
}

// Whatever the record is brought to, step by step, its pictures are those that are drawn of it at once.
TEST_F(MasterBlocks, PicturesStayThoseOfTheRecord) {
  const auto pictures = [](ChainLayout& layout) {
    std::vector<std::vector<PlotTrace>> all;
    for (int stage = 1; stage <= FilterStages; ++stage) all.push_back(layout.Filter(stage).response.Traces());
    for (const int side : {1, 2}) {
      all.push_back(layout.Equalizer(side).response.Traces());
      all.push_back(layout.Broadband(side).response.Traces());
    }
    return all;
  };
  struct Step {
    const char *field, *value;
    int i = 0, j = 0;
  };
  for (const Step& step : std::initializer_list<Step>{
           {"filterType", "13", 1},      {"bandGain", "17", 1, 4},  {"filterType", "12", 2},
           {"hiResCurve", "-40", 2, 77}, {"filterType", "16", 3},   {"lceCompThresh", "-30", 3},
           {"lceCompRatio", "4", 3},     {"filterType", "2", 4},    {"lpfAtten", "33", 4},
           {"filterType", "11", 5},      {"filterGain", "32", 5},   {"filterType", "3", 4},
           {"eqBandGain", "9", 10, 3},   {"eqType", "1", 1},        {"edgeCurve", "-20", 1, 30},
           {"eqType", "3", 1},           {"eqLceExpRatio", "3", 9}, {"broadbandType", "1", 1},
           {"noiseEqVals", "0.7", 1, 5}, {"bandwidthIndex", "5"},   {"bandwidthIndex", "2"}}) {
    const auto before = pictures(chain);
    Edit(step.field, step.value, step.i, step.j);
    EXPECT_NE(pictures(chain), before) << step.field;
    support::PanelRun fresh;
    fresh.record = record;
    fresh.session.master.ConfigMasterControl();
    EXPECT_EQ(pictures(chain), pictures(fresh.session.master.chain)) << step.field;
  }
  EXPECT_EQ(chain.Filter(3).response.XAxis(), (PlotAxis{-100, 0, "dB"}));
  const Plot& transfer = chain.Filter(3).response;
  EXPECT_NEAR(transfer.LevelAt(transfer.Traces().front(), -30).value_or(0), -7.5, 0.01);
}

TEST_F(MasterBlocks, APictureOfWhatIsOutIsDimmed) {
  Edit("filterType", "2", 1);
  Edit("filterActive", "1", 1);
  EXPECT_EQ(chain.Filter(1).response.Traces().front().colour, TraceColours[0]);
  Edit("filterActive", "0", 1);
  EXPECT_EQ(chain.Filter(1).response.Traces().front().colour, GrayText);
  Edit("filterActive", "1", 1);
  Edit("ihpfEnabled", "1");
  Edit("agcEnabled", "0");
  EXPECT_EQ(chain.ihpf.frame.InTheWay(), Standing::In);
  EXPECT_EQ(chain.agc.frame.InTheWay(), Standing::Out);
  EXPECT_EQ(Click("btnProcEnabled"), "");
  EXPECT_EQ(chain.Filter(1).response.Traces().front().colour, GrayText);
}

TEST_F(MasterBlocks, TheChannelsGoThroughWhatThereIs) {
  Edit("numFilters", "3");
  EXPECT_FALSE(chain.fraLastStages.core.Enabled());
  EXPECT_EQ(chain.fraStages.Channels(), 1);
  Edit("numFilters", "4");
  EXPECT_TRUE(chain.fraLastStages.core.Enabled());
  Edit("configMode", "1");
  EXPECT_FALSE(chain.fraLastStages.core.Enabled());
  EXPECT_EQ(chain.Filter(1).frame.Channels(), 2);
  EXPECT_EQ(chain.fraInputProcessor.Channels(), 2);
  Edit("configMode", "2");
  EXPECT_TRUE(chain.fraLastStages.core.Enabled());
  EXPECT_EQ(chain.Filter(1).frame.Channels(), 1);
  EXPECT_EQ(chain.fraStages.Channels(), 2);
}

TEST_F(MasterBlocks, ASwitchBearsTheSameWordOnItsPanel) {
  for (const std::int16_t kind : {FilterKind::Lowpass, FilterKind::Bandstop}) {
    OpenFilter(1, kind);
    EXPECT_EQ(PanelSwitch().core.Caption(), chain.Filter(1).active.core.Caption());
    CloseTop();
  }
  const std::pair<const char*, const GraphicButton*> ends[] = {{"btnIhpfConfig", &chain.ihpf.active},
                                                               {"btnOhpfConfig", &chain.ohpf.active},
                                                               {"btnAgcConfig", &chain.agc.active},
                                                               {"btnLimiterConfig", &chain.limiter.active}};
  for (const auto& [setup, master] : ends) {
    ASSERT_EQ(Click(setup), "");
    EXPECT_EQ(PanelSwitch().core.Caption(), master->core.Caption()) << setup;
    CloseTop();
  }
}

TEST_F(MasterBlocks, TheLimitersMarkerSaysWhatItIs) {
  LevelBar& bar = chain.inputs[0].bar;
  Edit("limiterThreshold", "2");
  Edit("limiterEnabled", "1");
  session.periodic.ShowLevelBars();
  EXPECT_EQ(bar.MarkerText(), "Limiter threshold -12 dB");
  EXPECT_EQ(bar.MarkerStyle(), 0);
  EXPECT_EQ(bar.MarkerValue(1), DbToBarPosition(-12.0));
  EXPECT_NE(bar.core.AccessibleName().find("Limiter threshold -12 dB"), std::string::npos);
  Edit("limiterEnabled", "0");
  session.periodic.ShowLevelBars();
  EXPECT_EQ(bar.MarkerStyle(), HiddenMarker);
  EXPECT_EQ(bar.core.AccessibleName().find("Limiter"), std::string::npos);
}

}  // namespace
}  // namespace vc
