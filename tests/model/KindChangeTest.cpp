// Changes of kind, the noise smoothing presets, and what follows from bandwidth and layout.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/Bandwidth.h"
#include "model/BroadbandPresets.h"
#include "model/Fresh.h"
#include "model/KindChange.h"
#include "model/Kinds.h"
#include "model/Stages.h"

namespace vc {
namespace {

using testing::Each;

// A record with something in every table that a change of kind may clear.
SystemSettings Filled() {
  SystemSettings s = Fresh();
  for (int stage = 1; stage <= FilterStages; stage++) {
    s.mnotchFreq[stage].Fill(500);
    s.mnotchWidth[stage].Fill(20);
    s.mslotFreq[stage].Fill(600);
    s.mslotWidth[stage].Fill(30);
    s.sifCurve[stage].Fill(-5);
    s.hiResCurve[stage].Fill(-6);
  }
  s.filterAtten.Fill(100);
  s.filterGain.Fill(99);
  s.filterBuilt.Fill(-1);
  return s;
}

TEST(ChangeFilterKind, MultipleKindsStartEmpty) {
  for (const std::int16_t kind : {FilterKind::MultipleNotch, FilterKind::MultipleSlot}) {
    SystemSettings s = Filled();
    EXPECT_FALSE(ChangeFilterKind(s, 3, kind));
    EXPECT_EQ(s.filterType[3], kind);
    EXPECT_THAT(s.mnotchFreq[3], Each(0));
    EXPECT_THAT(s.mslotFreq[3], Each(0));
    EXPECT_THAT(s.mnotchWidth[3], Each(1));
    EXPECT_THAT(s.mslotWidth[3], Each(1));
    EXPECT_EQ(s.filterAtten[3], 32767);
    EXPECT_THAT(s.mnotchFreq[2], Each(500));
    EXPECT_THAT(s.sifCurve[3], Each(-5.0F));
  }
}

TEST(ChangeFilterKind, CurveKindsStartFlat) {
  SystemSettings s = Filled();
  ChangeFilterKind(s, 6, FilterKind::SpectralInverse);
  ChangeFilterKind(s, 5, FilterKind::HiResGraphic);
  EXPECT_THAT(s.sifCurve[6], Each(0.0F));
  EXPECT_EQ(s.filterAtten[6], 32767);
  EXPECT_EQ(s.filterGain[6], 16);
  EXPECT_THAT(s.mnotchFreq[6], Each(500));
  EXPECT_THAT(s.hiResCurve[5], Each(0.0F));
  EXPECT_THAT(s.sifCurve[5], Each(-5.0F));
  EXPECT_EQ(s.filterAtten[5], 100);
}

TEST(ChangeFilterKind, CombKindsShareTheirFields) {
  SystemSettings s = Filled();
  ChangeFilterKind(s, 1, FilterKind::Comb);
  SystemSettings expected = s;
  ChangeFilterKind(s, 1, FilterKind::InverseComb);
  expected.filterType[1] = 15;
  EXPECT_EQ(s, expected);
}

TEST(ChangeFilterKind, LoadingClearsNothing) {
  SystemSettings s = Filled();
  s.loadingSetup = true;
  ChangeFilterKind(s, 1, 8);
  ChangeFilterKind(s, 2, 11);
  ChangeFilterKind(s, 3, 12);
  EXPECT_THAT(s.mnotchFreq[1], Each(500));
  EXPECT_THAT(s.sifCurve[2], Each(-5.0F));
  EXPECT_THAT(s.hiResCurve[3], Each(-6.0F));
}

TEST(ChangeFilterKind, MarksTheStageUnlessAFitIsDue) {
  SystemSettings s = Filled();
  EXPECT_FALSE(ChangeFilterKind(s, 2, 2));
  EXPECT_EQ(s.filterDirty[2], -1);
  EXPECT_EQ(s.filterBuilt[2], 0);

  s.extraStages[1] = 2;
  EXPECT_TRUE(ChangeFilterKind(s, 1, 2));
  EXPECT_EQ(s.filterDirty[1], 0);
  EXPECT_EQ(s.filterBuilt[1], -1);
  EXPECT_FALSE(ChangeFilterKind(s, 1, 3));  // a lowpass had borrowed nothing
}

TEST(ChangeFilterKind, BorrowedStagesCountByPositionInStereo) {
  SystemSettings s = Fresh();
  s.configMode = ConfigMode::StereoIndependent;
  s.extraStages[3] = 1;  // the left filter of pair 2, and its right partner
  s.extraStages[4] = 1;
  EXPECT_FALSE(ChangeFilterKind(s, 3, 2));
  EXPECT_FALSE(ChangeFilterKind(s, 4, 2));
  EXPECT_TRUE(ChangeFilterKind(s, 2, 2));
  EXPECT_TRUE(ChangeFilterKind(s, 5, 2));
}

TEST(ChangeKind, CodesOutsideTheListsAreCorrected) {
  SystemSettings s = Fresh();
  ChangeFilterKind(s, 1, 17);
  ChangeFilterKind(s, 2, -1);
  ChangeEqKind(s, 1, 4);
  ChangeBroadbandKind(s, 1, 2);
  EXPECT_EQ(s.filterType[1], 0);
  EXPECT_EQ(s.filterType[2], 0);
  EXPECT_EQ(s.eqType[1], 3);
  EXPECT_EQ(s.broadbandType[1], 1);
}

TEST(ChangeEqKind, ClearsTheCurveUnlessLoading) {
  SystemSettings s = Fresh();
  for (int equalizer : {1, 2}) s.edgeCurve[equalizer].Fill(-3);
  ChangeEqKind(s, 1, 1);
  s.loadingSetup = true;
  ChangeEqKind(s, 2, 1);
  EXPECT_THAT(s.edgeCurve[1], Each(0.0F));
  EXPECT_THAT(s.edgeCurve[2], Each(-3.0F));
  EXPECT_THAT(s.eqChanged, Each(-1));
}

TEST(BroadbandPresets, AreScaledFromTwelveKilohertz) {
  SystemSettings s = Fresh();
  EXPECT_EQ(s.broadbandPresets[0].span, 14);                  // 14.4
  EXPECT_NEAR(s.broadbandPresets[0].coefA, 0.9505017, 1e-7);  // 0.97^(5/3)
  s.bandwidthIndex = 1;
  RebuildBroadbandPresets(s);
  EXPECT_EQ(s.broadbandPresets[0], (BroadbandParms{0, 24, 0.97F, 0.97F, 0, 0.7F, 0.00001F, {}}));
  EXPECT_EQ(s.broadbandPresets[1], (BroadbandParms{0, 24, 0.8988253F, 0.8988253F, 0, 0.7F, 0.00001F, {}}));
  EXPECT_EQ(s.broadbandPresets[2], (BroadbandParms{9999, 9999, 9999, 9999, 9999, 9999, 9999, {}}));
  s.bandwidthIndex = 5;
  RebuildBroadbandPresets(s);
  EXPECT_EQ(s.broadbandPresets[1].span, 72);
  EXPECT_NEAR(s.broadbandPresets[0].coefB, 0.9898983, 1e-7);  // 0.97^(1/3)
}

TEST(BroadbandPresets, StagesFollowUnlessTheirRecordIsTheirOwn) {
  SystemSettings s = Fresh();
  s.broadbandParms[2].coefC = 0.5F;
  const BroadbandParms own = s.broadbandParms[2];
  s.bandwidthIndex = 4;
  RebuildBroadbandPresets(s);
  EXPECT_EQ(s.broadbandParms[1].span, 48);
  EXPECT_EQ(s.broadbandParms[2], own);

  ChangeBroadbandKind(s, 1, BroadbandKind::NoiseEq);
  ChangeBroadbandKind(s, 2, BroadbandKind::NoiseEq);
  EXPECT_EQ(s.broadbandParms[1], s.broadbandPresets[1]);
  EXPECT_EQ(s.broadbandParms[2], own);
  EXPECT_THAT(s.broadbandChanged, Each(-1));

  s.broadbandParms[1] = s.broadbandPresets[OffPreset];
  ChangeBroadbandKind(s, 1, BroadbandKind::NoiseReducer);
  EXPECT_EQ(s.broadbandParms[1].mode, OffMode);
}

TEST(Bandwidth, LimitsComeFromTheIndexAndNotFromDerivedFields) {
  SystemSettings s = Fresh();
  s.bandwidthIndex = 4;
  EXPECT_EQ(GetSampleRate(s), 24000);
  EXPECT_EQ(GetBandwidthLimits(s).bandwidthHz, 10500);
  EXPECT_EQ(MaxDspStages(BandwidthOf(4), ConfigMode::Mono), 5);
  EXPECT_EQ(MaxDspStages(BandwidthOf(4), ConfigMode::StereoLinked), 2);
  s.bandwidthIndex = -1;
  EXPECT_EQ(GetSampleRate(s), 7200);
}

TEST(Bandwidth, DisplayLimitIsTheTopOfTheGrid) {
  for (std::int16_t index = 0; index < 6; index++) {
    EXPECT_EQ(GetDisplayLimit(index), std::to_string(Nearest32(BandwidthOf(index).sampleRate * 230 / 512.0)));
  }
  EXPECT_EQ(GetDisplayLimit(6), "3234");
}

TEST(Stages, PositionsPairPartnersInStereo) {
  const auto positions = [](std::int16_t mode) {
    std::vector<int> result;
    for (int stage = 1; stage <= 6; stage++) result.push_back(PositionOfStage(mode, stage));
    return result;
  };
  EXPECT_THAT(positions(ConfigMode::Mono), testing::ElementsAre(1, 2, 3, 4, 5, 6));
  EXPECT_THAT(positions(ConfigMode::StereoLinked), testing::ElementsAre(1, 3, 5, 2, 4, 6));
}

TEST(Stages, TitlesNameSideAndNumber) {
  EXPECT_EQ(StageTitleSuffix(0, 5), " (Filter 5)");
  EXPECT_EQ(StageTitleSuffix(1, 2), " (Left/Right Filter 2)");
  EXPECT_EQ(StageTitleSuffix(2, 3), " (Left Filter 3)");
  EXPECT_EQ(StageTitleSuffix(2, 4), " (Right Filter 1)");
  EXPECT_EQ(EqTitleSuffix(0, 1), " (Mono Equalizer)");
  EXPECT_EQ(EqTitleSuffix(1, 2), " (Left/Right Equalizer)");
  EXPECT_EQ(EqTitleSuffix(2, 2), " (Right Equalizer)");
}

}  // namespace
}  // namespace vc
