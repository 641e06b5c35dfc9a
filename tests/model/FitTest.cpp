// The fit: who gets which DSP stages, what is cut, and what a fit does besides.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/Fresh.h"
#include "model/Kinds.h"
#include "model/modDeviceConfig.h"

namespace vc {
namespace {

using testing::Each;
using testing::ElementsAre;

struct Fit : testing::Test {
  void Chain(std::int16_t mode, std::int16_t bandwidth, std::int16_t filters) {
    s.configMode = mode;
    s.bandwidthIndex = bandwidth;
    s.numFilters = filters;
  }
  // Sizes of one-channel adaptive filters, from stage 1 on.
  void Taps(const std::vector<std::int16_t>& taps) {
    int stage = 1;
    for (const std::int16_t size : taps) s.ch1Taps[stage++] = size;
  }

  SystemSettings s = Fresh();
  modDeviceConfig config{
      s,
      {.hourglass = [this](bool shown) { events.emplace_back(shown ? "busy" : "idle"); },
       .warnTooLarge =
           [this](const std::string& title, const std::string& text) {
             events.emplace_back("warn");
             warning = title + "|" + text;
           },
       .showConfiguration = [this] { events.emplace_back("lists"); },
       .refreshPanel = [this] { events.emplace_back("panel"); },
       .unitOption = [] { return false; },
       .download = [this](int mode) { events.push_back("download " + std::to_string(mode)); }}};
  std::vector<std::string> events;
  std::string warning;
};

// Extra stages by position, and the largest filter that stages 1, 2 and 4 can hold.
struct Share {
  const char* what;
  std::int16_t mode, bandwidth, filters;
  std::vector<std::int16_t> taps;
  bool warned;
  std::int16_t filtersLeft, filtersOffered;
  const char* extraStages;
  std::int16_t maxTaps1, maxTaps2, maxTaps4;
};

const Share shares[] = {
    {"1025 taps cost the last filter", 0, 0, 6, {1025}, true, 5, 5, "100000", 2048, 1024, 1024},
    {"1024 taps borrow nothing", 0, 3, 6, {1024}, false, 6, 6, "000000", 1024, 1024, 1024},
    {"what is not borrowed is offered", 0, 0, 2, {4, 2049}, false, 2, 4, "020000", 1024, 3072, 1024},
    {"the largest filter", 0, 0, 1, {32767}, false, 1, 1, "500000", 6144, 1024, 1024},
    {"the last filter shrinks", 0, 0, 3, {2048, 2048, 4096}, true, 3, 3, "111000", 2048, 2048, 1024},
    {"then it goes", 0, 0, 3, {4096, 2048, 2048}, true, 2, 2, "310000", 4096, 2048, 1024},
    {"then the one before shrinks", 0, 0, 3, {3072, 6144, 2048}, true, 2, 2, "220000", 3072, 3072, 1024},
    {"11 kHz offers five at most", 0, 4, 6, {752, 753}, false, 5, 5, "010000", 752, 1504, 752},
    {"16 kHz in two filters", 0, 5, 2, {2400, 480}, false, 2, 2, "400000", 2400, 480, 480},
    {"16 kHz in one filter", 0, 5, 2, {2881, 4}, true, 1, 1, "500000", 2880, 480, 480},
    {"linked: only the left counts", 1, 0, 1, {100, 4, 4, 2000}, false, 1, 3, "000000", 1024, 1024, 1024},
    {"independent: the larger side", 2, 0, 1, {100, 4, 4, 2000}, false, 1, 2, "110000", 2048, 1024, 2048},
    {"the left may be larger", 2, 0, 2, {4, 2000, 4, 4, 1025}, false, 2, 2, "001100", 1024, 2048, 1024},
    {"stereo: the last pair goes", 1, 0, 3, {4, 2048}, true, 2, 2, "001100", 1024, 2048, 1024},
    {"three stages a side", 1, 1, 3, {32767, 3000}, true, 1, 1, "220000", 3072, 1024, 3072},
    {"stereo at 16 kHz", 2, 5, 6, {4, 4, 4, 961}, false, 1, 1, "220000", 1440, 480, 1440},
    {"negative sizes", 2, 0, 3, {-32768, -1, 4, -5}, false, 3, 3, "000000", 1024, 1024, 1024},
};

TEST_F(Fit, SharesTheStages) {
  for (const Share& share : shares) {
    SCOPED_TRACE(share.what);
    s = Fresh();
    events.clear();
    Chain(share.mode, share.bandwidth, share.filters);
    Taps(share.taps);
    config.ConfigureStages(true);
    EXPECT_EQ(testing::Value(events, testing::Contains("warn")), share.warned);
    EXPECT_EQ(s.numFilters, share.filtersLeft);
    EXPECT_EQ(s.maxDspStages, share.filtersOffered);
    std::string extraStages;
    for (const std::int16_t extra : s.extraStages) extraStages += std::to_string(extra);
    EXPECT_EQ(extraStages, share.extraStages);
    EXPECT_EQ(s.maxTaps[1], share.maxTaps1);
    EXPECT_EQ(s.maxTaps[2], share.maxTaps2);
    EXPECT_EQ(s.maxTaps[4], share.maxTaps4);
  }
}

TEST_F(Fit, CutsTapsSpansAndSlopesInSilence) {
  Chain(ConfigMode::Mono, 5, 2);
  Taps({1025, 4000});
  s.ch1PredSpan.Fill(32767);
  s.lpfTransSlope[1] = 511;
  s.lpfCutoff[1] = 17000;
  config.ConfigureStages(true);
  EXPECT_THAT(s.ch1Taps, ElementsAre(1025, 1440, 4, 4, 4, 4));
  EXPECT_THAT(s.ch1PredSpan, ElementsAre(12287, 12287, 4095, 4095, 4095, 4095));
  EXPECT_EQ(s.lpfTransSlope[1], 487);
  EXPECT_EQ(s.lpfCutoff[1], 16000);
  EXPECT_EQ(s.bandwidthHz, 16000);
  EXPECT_EQ(s.sampleRate, 36000.0F);
  EXPECT_THAT(s.maxFilterSize, Each(976));
}

TEST_F(Fit, WithoutFitEveryLimitIsPlain) {
  Chain(ConfigMode::StereoLinked, 5, 6);
  Taps({4000});
  config.ConfigureStages(false);
  EXPECT_EQ(s.numFilters, 1);
  EXPECT_EQ(s.maxDspStages, 1);
  EXPECT_EQ(s.ch1Taps[1], 480);
  EXPECT_THAT(s.extraStages, Each(0));
  EXPECT_THAT(s.maxSpan, Each(4095));
  EXPECT_THAT(events, testing::Not(testing::Contains("warn")));
}

TEST_F(Fit, GoesInItsOrderAndWarnsOnce) {
  Chain(ConfigMode::Mono, 0, 6);
  Taps({6000, 6000, 6000, 6000, 6000, 6000});
  config.ConfigureStages(true);
  EXPECT_THAT(events, ElementsAre("busy", "warn", "lists", "download 2", "busy", "panel", "idle"));
  EXPECT_EQ(
      warning,
      "Too Many Filters / Filters Too Large|Specified adaptive filters do not fit within physical limits "
      "of Veltrana.  Filter sizes and/or Number DSP Stages will be adjusted for best fit.");
  EXPECT_THAT(config.stageLevelShift, ElementsAre(7, 7, 7, 7, 7, 7, 0, 0, 7, 7));
  EXPECT_THAT(config.stageSpectrumScale,
              ElementsAre(1024, 1024, 1024, 1024, 1024, 1024, 1024, 1024, 246, 246));
}

TEST_F(Fit, BoundsItsCodesAndLatchesTheOption) {
  bool option = true;
  config.hooks.unitOption = [&] { return option; };
  Chain(9, -3, 0);
  config.ConfigureStages(true);
  EXPECT_EQ(s.configMode, 2);
  EXPECT_EQ(s.bandwidthIndex, 0);
  EXPECT_EQ(s.numFilters, 1);
  EXPECT_EQ(s.unitOptionLatched, -1);
  option = false;
  s.bandwidthIndex = 99;
  EXPECT_EQ(s.unitOptionLatched, -1);
  config.ConfigureStages(true);
  EXPECT_EQ(s.bandwidthIndex, 5);
  EXPECT_EQ(s.broadbandParms[1].span, 72);  // the presets follow: 24 points at 12 kHz
  EXPECT_EQ(s.unitOptionLatched, 0);
}

TEST_F(Fit, LeavesAnEditedPresetAloneAtTheSameBandwidth) {
  Chain(ConfigMode::Mono, 3, 2);
  config.ConfigureStages(false);
  s.broadbandPresets[1].span = 77;
  s.broadbandParms[1] = s.broadbandPresets[1];
  s.broadbandType[1] = 1;
  config.ConfigureStages(true);
  EXPECT_EQ(s.broadbandPresets[1].span, 77);
  EXPECT_EQ(s.broadbandParms[1].span, 77);
  s.bandwidthIndex = 5;
  config.ConfigureStages(false);
  EXPECT_EQ(s.broadbandPresets[1].span, 72);
  EXPECT_EQ(s.broadbandParms[1].span, 72);
}

TEST_F(Fit, MonoLinksBothSides) {
  Chain(ConfigMode::StereoIndependent, 0, 1);
  config.ConfigureStages(true);
  EXPECT_EQ(s.agcLinked + s.limiterLinked, 0);
  s.configMode = ConfigMode::Mono;
  config.ConfigureStages(false);
  EXPECT_EQ(s.agcLinked, 1);
  EXPECT_EQ(s.limiterLinked, 1);
}

TEST_F(Fit, OnlyANewBandwidthEmptiesTheTables) {
  s = Filled();
  s.bandwidthIndex = 2;
  config.ConfigureStages(true);  // a setup that was loaded
  s.configMode = ConfigMode::StereoLinked;
  config.ConfigureStages(false);
  EXPECT_EQ(config.lastFitBandwidth, 2);
  EXPECT_THAT(s.sifCurve, Each(Each(-5.0F)));
  EXPECT_THAT(s.mslotWidth, Each(Each(30)));
  EXPECT_THAT(events, testing::Contains("download 2").Times(2));

  s.bandwidthIndex = 3;
  config.ConfigureStages(false);
  EXPECT_THAT(events, testing::Contains("download 1").Times(1));
  for (const auto* curves : {&s.sifCurve, &s.hiResCurve}) EXPECT_THAT(*curves, Each(Each(0.0F)));
  for (const auto* lists : {&s.mnotchFreq, &s.mslotFreq}) EXPECT_THAT(*lists, Each(Each(0)));
  for (const auto* lists : {&s.mnotchWidth, &s.mslotWidth}) EXPECT_THAT(*lists, Each(Each(1)));
  EXPECT_THAT(s.customCurve, Each(Each(-7.0F)));
  config.ConfigureStages(false);
  EXPECT_EQ(events[events.size() - 4], "download 2");
}

TEST_F(Fit, LayoutDiffersWhereStagesWouldMove) {
  Chain(ConfigMode::Mono, 0, 2);
  Taps({4, 1025});
  config.ConfigureStages(true);
  const auto differs = [&] { return LayoutDiffers(s, PlanFit(s, true)); };
  EXPECT_FALSE(differs());
  s.ch1Taps[1] = 1024;
  s.ch1Taps[2] = 2048;
  s.numFilters = 5;  // as many as are offered
  EXPECT_FALSE(differs());
  s.numFilters = 6;
  EXPECT_TRUE(differs());
  s.numFilters = 1;  // filter 2 keeps what it had borrowed
  EXPECT_FALSE(differs());
  s.numFilters = 2;
  s.ch1Taps[1] = 1025;
  EXPECT_TRUE(differs());
}

TEST_F(Fit, HoldsWhatAnotherFitDidUnderTheWarning) {
  config.hooks.warnTooLarge = [this](auto&, auto&) { config.ConfigureStages(false); };
  Chain(ConfigMode::Mono, 0, 6);
  Taps({2000});
  config.ConfigureStages(true);
  EXPECT_EQ(s.numFilters, 6);
  EXPECT_THAT(s.extraStages, Each(0));
  EXPECT_THAT(s.maxTaps, Each(1024));
}

}  // namespace
}  // namespace vc
