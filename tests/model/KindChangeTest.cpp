// Changes of kind, the noise smoothing presets, and what follows from bandwidth and layout.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/Bandwidth.h"
#include "model/BroadbandPresets.h"
#include "model/Fresh.h"
#include "model/KindChange.h"
#include "model/Kinds.h"

namespace vc {
namespace {

using testing::Each;

TEST(ChangeFilterKind, EmptiesTheTablesOfTheNewKindUnlessASetupIsLoaded) {
  for (const bool loading : {false, true}) {
    SystemSettings s = Filled();
    s.loadingSetup = loading;
    for (const auto& [stage, kind] : {std::pair{3, FilterKind::MultipleNotch},
                                      {4, FilterKind::MultipleSlot},
                                      {5, FilterKind::HiResGraphic},
                                      {6, FilterKind::SpectralInverse}}) {
      EXPECT_FALSE(ChangeFilterKind(s, stage, kind));
      EXPECT_EQ(s.filterType[stage], kind);
    }
    for (const int stage : {3, 4}) {
      EXPECT_THAT(s.mnotchFreq[stage], Each(loading ? 500 : 0));
      EXPECT_THAT(s.mslotFreq[stage], Each(loading ? 600 : 0));
      EXPECT_EQ(s.mnotchWidth[stage] == Fresh().mnotchWidth[stage], !loading);
      EXPECT_EQ(s.mslotWidth[stage] == Fresh().mslotWidth[stage], !loading);
      EXPECT_EQ(s.filterAtten[stage], loading ? 100 : 32767);
    }
    EXPECT_THAT(s.hiResCurve[5], Each(loading ? -6.0F : 0.0F));
    EXPECT_THAT(s.sifCurve[6], Each(loading ? -5.0F : 0.0F));
    EXPECT_EQ(s.filterAtten[6] * 100 + s.filterGain[6], loading ? 10099 : 3276716);
    // What belongs to other kinds and stages stays.
    for (const int stage : {2, 6}) EXPECT_THAT(s.mnotchFreq[stage], Each(500));
    for (const int stage : {3, 5}) EXPECT_THAT(s.sifCurve[stage], Each(-5.0F));
    EXPECT_EQ(s.filterAtten[5], 100);
  }
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

}  // namespace
}  // namespace vc
