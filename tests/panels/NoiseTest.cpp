// The panels of the broadband stage, with the unit on the other end of the line.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include <gmock/gmock.h>

#include "PanelRun.h"
#include "link/Status.h"
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
  explicit Noise(std::int16_t mode = ConfigMode::Mono) : PanelRun(mode) {}

  void Open(std::int16_t kind, int stage = 1) {
    Edit("broadbandType", std::to_string(kind), stage);
    session.panels.OpenBroadband(stage);
  }
  Slider& SliderOf(const std::string& name) const { return *std::get<Slider*>(Find(name)); }
  Slider& Band(int band) const { return SliderOf("sldrGain(" + std::to_string(band) + ")"); }
  std::array<float, 20>& Bands(int stage = 1) { return record.noiseEqVals[stage].items; }
  Plot& Picture() const { return *std::get<Plot*>(Find("pltResponse")); }
  // The marks of an edit, which are taken away: "5 B1".
  std::string Marks() {
    std::string marks = std::to_string(std::exchange(record.settingsChanged, std::int16_t{0}));
    for (const int stage : {1, 2}) {
      if (std::exchange(record.broadbandChanged[stage], std::int16_t{0}) != 0)
        marks += " B" + std::to_string(stage);
    }
    return marks;
  }
  // A number of the block that the unit holds: piece 0 is the record, the others have twelve bands each.
  template <typename T>
  T Held(unsigned stage, unsigned piece, std::size_t number) const {
    const auto& payload = unit.Now().HeldStages().Programs().broadband.at(stage - 1).at(piece);
    T value{};
    if (payload) std::memcpy(&value, payload->data() + number * sizeof value, sizeof value);
    return value;
  }
};

std::string Tenths(double value) { return FixedText(value, 1); }

TEST_F(Noise, LawsHoldAtEveryCode) {
  Open(BroadbandKind::NoiseReducer);
  const Slider &atten = SliderOf("sldrAtten"), &gain = SliderOf("sldrFilterGain");
  for (int code = 0; code <= 32767; ++code) {
    const std::string shown = atten.show(1 - code / 32767.0);
    ASSERT_EQ(shown, Tenths(20 * std::log10(1 - code / 32768.0))) << code;
    ASSERT_EQ(atten.show(atten.parse(shown)), shown) << code;
  }
  for (int code = 16; code <= 506; ++code) {
    const std::string shown = gain.show(20 * std::log10(code / 16.0));
    ASSERT_EQ(shown, Tenths(20 * std::log10(code / 16.0))) << code;
    ASSERT_EQ(gain.show(gain.parse(shown)), shown) << code;
  }
}

TEST_F(Noise, AttenuationAndGainAreStoredAsTheirCodes) {
  Open(BroadbandKind::NoiseReducer);
  EXPECT_EQ(Top().Caption(), "Noise Reducer (Filter)");
  EXPECT_EQ(Get("sldrAtten") + Get("txtAtten"), "0-90.3");
  Marks();
  Set("sldrAtten", "1");
  EXPECT_EQ(Marks(), "5 B1");
  EXPECT_EQ(std::to_string(record.filterAtten[7]) + Get("txtAtten"), "00.0");
  Type("txtAtten", "-6");
  EXPECT_EQ(record.filterAtten[7], std::lround(32768 * (1 - std::pow(10, -0.3))));
  for (const auto& [typed, code] : {std::pair{"3", 0}, {"-200", 32767}}) {
    Type("txtAtten", typed);
    EXPECT_EQ(record.filterAtten[7], code);
  }
  Marks();
  EXPECT_EQ(Get("txtFilterGain"), "0.0");
  Type("txtFilterGain", "99");
  EXPECT_EQ(Marks(), "5 B1");
  EXPECT_EQ(std::to_string(record.filterGain[7]) + Get("txtFilterGain"), "50630.0");
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

TEST_F(Noise, BandsHoldWhatTheyTakeAwayAndLinkedOnesSettleLonger) {
  Open(BroadbandKind::NoiseEq);
  EXPECT_EQ(Get("sldrGain(0)") + Get("txtGain(0)"), "10.0");
  Marks();
  Set("sldrGain(3)", "0.25");
  EXPECT_EQ(Marks(), "5 B1");
  EXPECT_EQ(Bands()[3], 0.75F);
  EXPECT_EQ(Get("txtGain(3)"), "-12.0");
  const auto before = Bands();
  Set("chkLinkSliders", "1");
  for (const int step : {1, 2, 3, 2, 1, 0}) Band(5).SetPosition(1 - 0.07 * step);
  EXPECT_EQ(Marks(), "10 B1");
  EXPECT_EQ(Bands(), before);  // there and back, to the bit
  Band(5).SetPosition(0.5);
  EXPECT_EQ(Bands()[3], 1.0F);
  EXPECT_EQ(Bands()[4], 0.5F);
  Set("chkLinkSliders", "0");
  for (const auto& [button, all] : {std::pair{"btnMaximize", 1.0F}, {"btnZero", 0.0F}}) {
    Marks();
    Click(button);
    EXPECT_THAT(Bands(), Each(all));
    EXPECT_EQ(record.settingsChanged, all == 1.0F ? 10 : 5) << "switching the stage in comes last";
  }
  EXPECT_EQ(record.broadbandActive[1], 1);
  Marks();
  Click("btnZero");
  EXPECT_EQ(Marks(), "10 B1");
  Set("sldrGain(0)", "0.5");
  for (int band = 1; band < 20; ++band) Band(band).SetPosition(0.3);
  Click("btnNormalize");
  EXPECT_EQ(Bands()[0], 0.0F);
  EXPECT_EQ(Bands()[19], 0.2F);
}

TEST_F(Noise, ReachesTheUnit) {
  Open(BroadbandKind::NoiseEq);
  for (int band = 0; band < 20; ++band) Band(band).SetPosition(1 - band / 20.0);
  Type("txtAtten", "-12");
  Type("txtFilterGain", "6");
  Set("btnActive", "0");
  Settle();
  Settle();
  for (std::size_t line = 0; line < 132; ++line) {
    const auto band = std::min<std::size_t>(line / 6, 19);
    const float expected = line < 128 ? static_cast<float>(band) / 20 : 0;
    const auto piece = static_cast<unsigned>(1 + line / 12);
    ASSERT_FLOAT_EQ(Held<float>(1, piece, line % 12), expected) << line;
  }
  EXPECT_EQ(Held<std::int32_t>(1, 0, 0), 9999);
  Sent();
  Set("btnActive", "1");
  Settle();
  EXPECT_EQ(Sent(), "#0 102/0 ");
  EXPECT_EQ(Held<float>(1, 0, 5), 0.7F);
  const bool couldUndo = session.history.CanUndo();
  const std::string title = session.history.UndoTitle();
  Click("btnClear");
  EXPECT_EQ(record.broadbandClear[1], -1);
  EXPECT_EQ(record.settingsChanged, 5);
  EXPECT_EQ(session.history.CanUndo(), couldUndo);
  EXPECT_EQ(session.history.UndoTitle(), title);
  Settle();
  EXPECT_EQ(Sent(), "113/1 ");
}

TEST_F(Noise, SmoothingIsOnWhileTheStageHoldsThePresetOfItsKind) {
  Open(BroadbandKind::NoiseReducer);
  EXPECT_EQ(Get("btnActive"), "1");
  Marks();
  Set("btnActive", "0");
  EXPECT_EQ(Marks(), "5 B1");
  EXPECT_EQ(record.broadbandParms[1], record.broadbandPresets[OffPreset]);
  Press("Ctrl+Z");
  EXPECT_EQ(Get("btnActive"), "1");
  CloseTop();
  Open(BroadbandKind::NoiseEq);
  EXPECT_EQ(Get("btnActive"), "1");
  CloseTop();
  Edit("broadbandParms.coefD", "0.25", 1);
  session.panels.OpenBroadband(1);
  EXPECT_EQ(Get("btnActive"), "0");
  Set("btnActive", "1");
  EXPECT_EQ(record.broadbandParms[1], record.broadbandPresets[BroadbandKind::NoiseEq]);
}

struct NoiseParms : Noise {
  NoiseParms() {
    Edit("broadbandType", "1", 1);
    session.panels.OpenBroadband(1);
    Press("Ctrl+N");
    Marks();
  }
  BroadbandParms& Stage() { return record.broadbandParms[1]; }
  BroadbandParms& Preset(int which) { return record.broadbandPresets[which]; }
};

TEST_F(NoiseParms, OpenByTheirKeyAndShowTheStagesRecord) {
  EXPECT_EQ(Top().name, "CtlNoiseParms");
  EXPECT_FALSE(session.forms.Operable(*session.forms.Find("CtlNoiseEq")));
  EXPECT_EQ(Get("txtNoiseFloor") + " " + Get("txtNoiseEst") + " " + Get("txtMinimBufs"), "1e-05 0.7 14");
  EXPECT_EQ(Get("txtNoiseAvg") + Get("btnActive"), "01");
  EXPECT_EQ(Get("txtAvgSpec"), Get("txtSigAvg"));
  Click("btnClose");
  EXPECT_EQ(Top().name, "CtlNoiseEq");
  EXPECT_NE(Top().Press("n"), "");
  EXPECT_EQ(Top().name, "CtlNoiseEq");
}

TEST_F(NoiseParms, TakeNothingWhereOneTextSaysNothing) {
  const SystemSettings before = record;
  Type("txtNoiseFloor", "0.5");
  for (const auto& [text, bad] : {std::pair{"txtSigAvg", "abc"},
                                  {"txtSigAvg", "1e39"},
                                  {"txtSigAvg", ""},
                                  {"txtMinimBufs", "3000000000"}}) {
    const std::string good = Get(text);
    Type(text, bad);
    Click("btnActivate");
    EXPECT_EQ(test.desk.boxes.back().text, "Invalid Paramter");
    EXPECT_EQ(test.desk.boxes.back().title, "Noise Filter Parameters");
    EXPECT_TRUE(record == before) << bad;
    EXPECT_EQ(Get(text), bad);
    Type(text, good);
  }
  EXPECT_EQ(test.desk.boxes.size(), 4U);
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
  EXPECT_EQ(Held<float>(1, 0, 2), 0.25F);
  session.edits.Fit();
  EXPECT_EQ(Preset(1).span, 33);  // it lives through a fit
  Press("Ctrl+Z");
  EXPECT_EQ(Stage(), before);
  EXPECT_EQ(Get("txtSigAvg") + Get("btnActive"), ShortestText(before.coefA) + "0");
  Press("Ctrl+Y");
  EXPECT_EQ(Get("txtSigAvg") + Get("btnActive"), "0.251");
  Edit("bandwidthIndex", "5");
  EXPECT_EQ(Preset(1).span, 72);
  EXPECT_EQ(Stage(), Preset(1));
  EXPECT_EQ(Get("txtMinimBufs"), "72");
}

TEST_F(NoiseParms, TakeTheOffRecordAsItIsTypedAndFindTheWayBack) {
  Set("btnActive", "0");
  EXPECT_EQ(Marks(), "0");
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
  EXPECT_EQ(Marks(), "5 B1");
  EXPECT_EQ(Stage(), Preset(1));
  EXPECT_EQ(Stage().span, 14);
  EXPECT_EQ(Preset(OffPreset).span, 9999);
  EXPECT_EQ(Get("txtMinimBufs") + Get("btnActive"), "141");
  Set("btnActive", "0");
  Click("btnReset");
  EXPECT_EQ(Stage(), Preset(OffPreset));
  Click("btnClose");
  EXPECT_EQ(Get("btnActive"), "0");
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
  Set("sldrGain(4)", "0.5");
  handle.SetDefault();
  EXPECT_EQ(Bands()[4], 0);
  Set("sldrAtten", "1");
  handle.Hold();
  handle.MoveTo(0, -20);  // where nothing is taken away, no band is moved either
  handle.Release();
  EXPECT_EQ(Bands()[4], 0);
  CloseTop();
  Open(BroadbandKind::NoiseReducer);
  PlotHandle& master = *Picture().handles.at(0);
  master.Hold();
  master.MoveTo(0, -12);
  master.Release();
  EXPECT_EQ(Get("txtAtten"), "-12.0");
  master.SetDefault();
  EXPECT_EQ(record.filterAtten[7], 32767);
}

// At every bandwidth; a caption has two or three digits of its frequency.
TEST_F(Noise, ABandActsWhereItsCaptionAndItsHandleSay) {
  Open(BroadbandKind::NoiseEq);
  const BlockKind block{BlockFamily::Broadband, 1, BroadbandKind::NoiseEq};
  for (int bandwidth = 0; bandwidth < 6; ++bandwidth) {
    Edit("bandwidthIndex", std::to_string(bandwidth));
    const PlotScale scale(Picture().XAxis(), 0, 1e6);
    const PlotLayout layout{{}, {0, 0, 1000001, 100}, scale, scale, {}, {}, {}, {}};
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
  Edit("configMode", "1");
  Settle();
  session.periodic.EnableMainTimer(false);
  session.device.status.stageStatus = {1, 1, 1, 1, 1, 1, 2068, 20675, 1, 1};
  Open(BroadbandKind::NoiseEq);
  const LevelBar& bar = *std::get<LevelBar*>(Find("lbOutput"));
  test.loop.RunFor(200);
  EXPECT_EQ(bar.Value(), DbToBarPosition(0));  // the larger of the pair
  record.configMode = ConfigMode::StereoIndependent;
  test.loop.RunFor(200);
  EXPECT_EQ(bar.Value(), DbToBarPosition(-20));
}

}  // namespace
}  // namespace vc
