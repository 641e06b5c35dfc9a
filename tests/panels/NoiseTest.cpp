// The panels of the broadband stage, with the unit on the other end of the line.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include <gmock/gmock.h>

#include "PanelRun.h"
#include "model/BroadbandPresets.h"
#include "model/FilterResponse.h"
#include "model/Kinds.h"
#include "widgets/PlotHandle.h"
#include "widgets/PlotLayout.h"

namespace vc {
namespace {

using testing::Contains;
using testing::DoubleNear;
using testing::Each;
using testing::FloatNear;

struct Noise : testing::Test, support::PanelRun {
  void Open(std::int16_t kind, int stage = 1) {
    Edit("broadbandType", std::to_string(kind), stage);
    session.panels.OpenBroadband(stage);
  }
  Slider& SliderOf(const std::string& name) const { return *std::get<Slider*>(Find(name)); }
  Slider& Band(int band) const { return SliderOf("sldrGain(" + std::to_string(band) + ")"); }
  std::array<float, 20>& Bands() { return record.noiseEqVals[1].items; }
  Plot& Picture() const { return *std::get<Plot*>(Find("pltResponse")); }
  // A number of the block that the unit holds: piece 0 is the record, the others have twelve values each.
  template <typename T>
  T Held(unsigned piece, std::size_t number) const {
    const auto& payload = unit.Now().HeldStages().Programs().broadband.at(0).at(piece);
    T value{};
    if (payload) std::memcpy(&value, payload->data() + number * sizeof value, sizeof value);
    return value;
  }
};

TEST_F(Noise, LawsHoldAtEveryCode) {
  Open(BroadbandKind::NoiseReducer);
  const auto holds = [](const Slider& slider, double position, double decibels) {
    const std::string shown = slider.show(position);
    return shown == FixedText(decibels, 1) && slider.show(slider.parse(shown)) == shown;
  };
  for (int code = 0; code <= 32767; ++code) {
    const double left = 1 - code / 32767.0, decibels = 20 * std::log10(1 - code / 32768.0);
    ASSERT_TRUE(holds(SliderOf("sldrAtten"), left, decibels)) << code;
  }
  for (int code = 16; code <= 506; ++code) {
    const double decibels = 20 * std::log10(code / 16.0);
    ASSERT_TRUE(holds(SliderOf("sldrFilterGain"), decibels, decibels)) << code;
  }
}

TEST_F(Noise, AttenuationAndGainAreStoredAsTheirCodes) {
  Open(BroadbandKind::NoiseReducer);
  EXPECT_EQ(Top().Caption(), "Noise Reducer (Filter)");
  EXPECT_EQ(Get("sldrAtten") + Get("txtAtten") + Get("txtFilterGain"), "0-90.30.0");
  for (const auto& [typed, code] : {std::pair{"-6", 16345}, {"3", 0}, {"-200", 32767}}) {
    Type("txtAtten", typed);
    EXPECT_EQ(record.filterAtten[7], code);
  }
  Type("txtFilterGain", "99");
  EXPECT_EQ(record.filterGain[7], 506);
  Type("txtFilterGain", "6");
  EXPECT_EQ(record.filterGain[7], 32);
  EXPECT_EQ(record.filterGain[1] + record.filterGain[8], 32);
  CloseTop();
  record.filterGain[8] = 0;  // as a file may have it
  record.configMode = ConfigMode::StereoIndependent;
  Open(BroadbandKind::NoiseReducer, 2);
  EXPECT_EQ(Get("txtFilterGain"), "0.0");
  Set("sldrAtten", "0.5");
  EXPECT_EQ(record.filterAtten[8], 16384);
  EXPECT_EQ(record.filterAtten[7], 32767);
}

TEST_F(Noise, BandsHoldWhatTheyTakeAway) {
  Open(BroadbandKind::NoiseEq);
  EXPECT_EQ(Get("sldrGain(0)") + Get("txtGain(0)"), "10.0");
  Set("sldrGain(3)", "0.25");
  EXPECT_EQ(Bands()[3], 0.75F);
  EXPECT_EQ(Get("txtGain(3)"), "-12.0");
  const auto before = Bands();
  Set("chkLinkSliders", "1");
  for (const int step : {1, 2, 3, 2, 1, 0}) Band(5).SetPosition(1 - 0.07 * step);
  EXPECT_EQ(Bands(), before);  // there and back, to the bit
  EXPECT_EQ(record.settingsChanged, 10);
  Set("chkLinkSliders", "0");
  for (const auto& [button, all] : {std::pair{"btnMaximize", 1.0F}, {"btnZero", 0.0F}}) {
    Click(button);
    EXPECT_THAT(Bands(), Each(all));
    EXPECT_EQ(record.broadbandActive[1], all == 1.0F ? 0 : 1);
  }
  for (int band = 0; band < 20; ++band) Band(band).SetPosition(band == 0 ? 0.5 : 0.3);
  Click("btnNormalize");
  EXPECT_EQ(Bands()[0], 0.0F);
  EXPECT_EQ(Bands()[19], 0.2F);
}

TEST_F(Noise, ReachesTheUnit) {
  Open(BroadbandKind::NoiseEq);
  for (int band = 0; band < 20; ++band) Band(band).SetPosition(1 - band / 20.0);
  Set("btnActive", "0");
  Settle();
  Settle();
  EXPECT_FLOAT_EQ(Held<float>(4, 7), 0.35F);  // the second of the six values of band 7
  EXPECT_EQ(Held<std::int32_t>(0, 0), 9999);
  Sent();
  Set("btnActive", "1");
  Settle();
  EXPECT_EQ(Sent(), "#0 102/0 ");
  const std::string title = session.history.UndoTitle();
  Click("btnClear");
  EXPECT_EQ(record.broadbandClear[1], -1);
  EXPECT_EQ(session.history.UndoTitle(), title);
  Settle();
  EXPECT_EQ(Sent(), "113/1 ");
}

TEST_F(Noise, SmoothingIsOnWhileTheStageHoldsThePresetOfItsKind) {
  Open(BroadbandKind::NoiseReducer);
  Set("btnActive", "0");
  EXPECT_EQ(record.broadbandParms[1], record.broadbandPresets[OffPreset]);
  Press("Ctrl+Z");
  EXPECT_EQ(Get("btnActive"), "1");
  CloseTop();
  Edit("broadbandParms.coefD", "0.25", 1);
  Open(BroadbandKind::NoiseEq);
  EXPECT_EQ(Get("btnActive"), "0");
  Set("btnActive", "1");
  EXPECT_EQ(record.broadbandParms[1], record.broadbandPresets[BroadbandKind::NoiseEq]);
}

struct NoiseParms : Noise {
  NoiseParms() {
    Edit("broadbandType", "1", 1);
    session.panels.OpenBroadband(1);
    Press("Ctrl+N");
  }
  BroadbandParms& Stage() { return record.broadbandParms[1]; }
  BroadbandParms& Preset(int which) { return record.broadbandPresets[which]; }
};

TEST_F(NoiseParms, OpenByTheirKeyAndShowTheStagesRecord) {
  EXPECT_EQ(Top().name, "CtlNoiseParms");
  EXPECT_FALSE(session.forms.Operable(*session.forms.Find("CtlNoiseEq")));
  EXPECT_EQ(Get("txtNoiseFloor") + " " + Get("txtNoiseEst") + " " + Get("txtMinimBufs"), "1e-05 0.7 14");
  EXPECT_EQ(Get("txtNoiseAvg") + Get("btnActive"), "01");
  Click("btnClose");
  EXPECT_EQ(Top().name, "CtlNoiseEq");
}

TEST_F(NoiseParms, TakeNothingWhereOneTextSaysNothing) {
  const SystemSettings before = record;
  Type("txtNoiseFloor", "0.5");
  for (const auto& [text, bad] :
       {std::pair{"txtSigAvg", "1e39"}, {"txtSigAvg", ""}, {"txtMinimBufs", "3000000000"}}) {
    const std::string good = Get(text);
    Type(text, bad);
    Click("btnActivate");
    EXPECT_EQ(test.desk.boxes.back().text, "Invalid Paramter");
    EXPECT_TRUE(record == before) << bad;
    EXPECT_EQ(Get(text), bad);
    Type(text, good);
  }
  EXPECT_EQ(test.desk.boxes.size(), 3U);
}

TEST_F(NoiseParms, EditThePresetThatIsChosenAndTheStageWithIt) {
  const BroadbandParms reducer = Preset(0), off = Preset(OffPreset), before = Stage();
  Type("txtSigAvg", "0.25");
  Type("txtAvgSpec", "7");
  Type("txtMinimBufs", "33.4");
  Click("btnActivate");
  EXPECT_EQ(Stage(), (BroadbandParms{0, 33, 0.25F, 1, 0, 0.7F, 1e-5F, {}}));
  EXPECT_EQ(Preset(1), Stage());
  EXPECT_EQ(Get("txtAvgSpec"), "1");  // as it was bounded
  EXPECT_EQ(Preset(0), reducer);
  EXPECT_EQ(Preset(OffPreset), off);
  Settle();
  EXPECT_EQ(Held<float>(0, 2), 0.25F);
  session.edits.Fit();
  EXPECT_EQ(Preset(1).span, 33);  // it lives through a fit
  Press("Ctrl+Z");
  EXPECT_EQ(Get("txtSigAvg") + Get("btnActive"), ShortestText(before.coefA) + "0");
  Press("Ctrl+Y");
  EXPECT_EQ(Get("txtSigAvg") + Get("btnActive"), "0.251");
  Edit("bandwidthIndex", "5");
  EXPECT_EQ(Get("txtMinimBufs"), "72");
}

TEST_F(NoiseParms, TakeTheOffRecordAsItIsTypedAndFindTheWayBack) {
  Set("btnActive", "0");
  EXPECT_EQ(Stage(), Preset(1));
  Type("txtNoiseEst", "12.5");
  Type("txtMinimBufs", "-3");
  Click("btnActivate");
  EXPECT_EQ(Stage().mode, 9999);
  EXPECT_EQ(Stage().coefD, 12.5F);
  EXPECT_EQ(Stage().span, -3);
  EXPECT_EQ(Preset(OffPreset), Stage());
  Set("btnActive", "1");
  Click("btnActivate");
  EXPECT_EQ(Stage().mode, 0);
  EXPECT_EQ(Stage().coefD, 1);
  EXPECT_EQ(Stage().span, 0);
  Click("btnReset");
  EXPECT_EQ(Stage(), Preset(1));
  EXPECT_EQ(Preset(OffPreset).span, 9999);
  EXPECT_EQ(Get("txtMinimBufs") + Get("btnActive"), "141");
  Settle();
  EXPECT_EQ(Held<std::int32_t>(0, 1), 14);
  Set("btnActive", "0");
  Click("btnReset");
  EXPECT_EQ(Stage(), Preset(OffPreset));
}

TEST_F(Noise, HandlesStandOnTheCurveAndDragAsOneStep) {
  Open(BroadbandKind::NoiseEq);
  Type("txtAtten", "-6");
  ASSERT_EQ(Picture().handles.size(), 20U);
  PlotHandle& handle = *Picture().handles[4];
  const auto before = Bands();
  handle.Hold();
  for (const double level : {-1.0, -2.5, -3.0}) handle.MoveTo(0, level);
  handle.Release();
  EXPECT_NEAR(1 - record.filterAtten[7] / 32768.0 * static_cast<double>(Bands()[4]), std::pow(10, -0.15),
              0.003);
  handle.Hold();
  handle.MoveTo(0, -60);  // further than the master attenuation lets it go
  EXPECT_EQ(Bands()[4], 1);
  handle.Release();
  Press("Ctrl+Z");
  Press("Ctrl+Z");
  EXPECT_EQ(Bands(), before);
  Set("sldrAtten", "1");
  handle.MoveTo(0, -20);  // where nothing is taken away, no band is moved either
  EXPECT_EQ(Bands()[4], 0);
  CloseTop();
  Open(BroadbandKind::NoiseReducer);
  PlotHandle& master = *Picture().handles.at(0);
  master.Hold();
  master.MoveTo(0, -12);
  master.Release();
  EXPECT_EQ(Get("txtAtten"), "-12.0");
}

// At every bandwidth; a caption has two or three digits of its frequency.
TEST_F(Noise, ABandActsWhereItsCaptionAndItsHandleSay) {
  Open(BroadbandKind::NoiseEq);
  const BlockKind block{BlockFamily::Broadband, 1, BroadbandKind::NoiseEq};
  for (int bandwidth = 0; bandwidth < 6; ++bandwidth) {
    Edit("bandwidthIndex", std::to_string(bandwidth));
    const PlotScale scale(Picture().XAxis(), 0, 1e6);
    PlotLayout layout;
    layout.frame = {0, 0, 1000001, 100};
    layout.x = layout.y = scale;
    std::vector<double> said, stand;
    for (int band = 0; band < 20; ++band) {
      const std::string& caption = Band(band).core.Caption();
      const bool kilo = caption.back() == 'K', tenths = caption.find('.') != std::string::npos;
      said.push_back(std::stod(caption) * (kilo ? 1000 : 1));
      stand.push_back(scale.ValueAt(Picture().handles[said.size() - 1]->Place(layout).x));
      EXPECT_NEAR(stand.back(), said.back(), tenths ? 50 : kilo ? 500 : 0.5);
      EXPECT_THAT(TellingFrequencies(record, block), Contains(DoubleNear(stand.back(), 0.01)));
    }
    for (std::size_t band = 0; band < said.size(); ++band) {
      Bands() = {};
      Bands()[band] = 1;
      EXPECT_LT(FilterResponse(record, block, std::span(said).subspan(band, 1))[0], -6);
      std::vector<float> levels = FilterResponse(record, block, stand);
      EXPECT_LT(std::exchange(levels[band], 0.0F), -7) << said[band] << " Hz";
      EXPECT_THAT(levels, Each(FloatNear(0, 0.2F))) << said[band] << " Hz";
    }
  }
}

TEST_F(Noise, TheBarIsTheStagesOwn) {
  Open(BroadbandKind::NoiseEq);
  unit.Now().sound.status = [] {
    unit::Status status;
    status.stageStatus[6] = 2068;
    return status;
  };
  test.loop.RunFor(2500);
  EXPECT_EQ(std::get<LevelBar*>(Find("lbOutput"))->Reading(), "-20.0 dB");
}

}  // namespace
}  // namespace vc
