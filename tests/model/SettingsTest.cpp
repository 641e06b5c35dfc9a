// Defaults, masks and clamps of the settings record.
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/BroadbandPresets.h"
#include "model/Clamp.h"
#include "model/Fresh.h"
#include "model/Settings.h"

namespace vc {
namespace {

using testing::Each;
using testing::ElementsAre;

TEST(InitSettings, GivesStatedDefaults) {
  const SystemSettings s = Fresh();
  EXPECT_EQ(s.comPort, 1);
  EXPECT_EQ(s.baudIndex, 4);
  EXPECT_EQ(s.numFilters, 1);
  EXPECT_EQ(s.adaptEnabled, 1);
  EXPECT_THAT(s.levelControl, ElementsAre(192, 192));
  EXPECT_EQ(s.ihpfCutoff, 200);
  EXPECT_EQ(s.blueSignal, 2);
  EXPECT_THAT(s.filterType, Each(1));
  EXPECT_THAT(s.filterActive, ElementsAre(1, 0, 0, 0, 0, 0));
  EXPECT_THAT(s.eqActive, ElementsAre(1, 0));
  EXPECT_THAT(s.ch1Taps, Each(4));
  EXPECT_THAT(s.ch1Thresh, Each(-10));
  EXPECT_THAT(s.mslotWidth[6], Each(1));
  EXPECT_THAT(s.filterAtten, Each(32767));
  EXPECT_THAT(s.filterGain, Each(16));
  EXPECT_THAT(s.parCenter[1], Each(0.25F));
  EXPECT_THAT(s.eqParRatio[10], Each(1.5F));
  EXPECT_THAT(s.parActive[6], Each(-1));
  EXPECT_THAT(s.eqLceAttack, Each(50));
  EXPECT_THAT(s.lceRelease, Each(200));
}

TEST(InitSettings, MovesZerosIntoRange) {
  const SystemSettings s = Fresh();
  EXPECT_THAT(s.lpfCutoff, Each(100));
  EXPECT_THAT(s.hpfCutoff, Each(0));
  EXPECT_THAT(s.lpfTransSlope, Each(3));
  EXPECT_THAT(s.lpfAtten, Each(10));
  EXPECT_THAT(s.bpfHiCutoff, Each(10));
  EXPECT_THAT(s.combFreq, Each(5));
  EXPECT_THAT(s.combLimit, Each(100));
  EXPECT_THAT(s.notchFreq, Each(100));
  EXPECT_THAT(s.slotWidth, Each(3));
}

TEST(InitSettings, GivesPlainLimitsWhateverStoodThere) {
  SystemSettings s;
  s.bandwidthIndex = 5;
  s.bandwidthHz = -1;
  s.maxTaps.Fill(0);
  s.extraStages.Fill(3);
  InitSettings(s);
  EXPECT_EQ(s.bandwidthIndex, 0);
  EXPECT_EQ(s.bandwidthHz, 3200);
  EXPECT_EQ(s.sampleRate, 7200.0F);
  EXPECT_EQ(s.maxDspStages, 6);
  EXPECT_THAT(s.maxTaps, Each(1024));
  EXPECT_THAT(s.maxSpan, Each(4095));
  EXPECT_THAT(s.maxFilterSize, Each(1024));
  EXPECT_THAT(s.extraStages, Each(0));
  EXPECT_THAT(s.lpfCutoff, Each(100));
}

TEST(InitSettings, LeavesTheRunAloneButForTheLink) {
  SystemSettings s = Fresh();
  s.loadingSetup = true;
  s.linkReady = true;
  s.curFilter = 4;
  s.workingFolder = "setups";
  s.setupDescription = "old";
  s.unitOptionLatched = -1;
  InitSettings(s);
  EXPECT_TRUE(s.loadingSetup);
  EXPECT_FALSE(s.linkReady);
  EXPECT_EQ(s.curFilter, 4);
  EXPECT_EQ(s.workingFolder, "setups");
  EXPECT_EQ(s.setupDescription, "");
  EXPECT_EQ(s.unitOptionLatched, -1);
}

TEST(InitSettings, ComputesThePlotGrids) {
  const SystemSettings s = Fresh();
  EXPECT_EQ(s.curvePlotX[0], 513);
  EXPECT_EQ(s.curvePlotX[1], 513);  // 13.913 cut
  EXPECT_EQ(s.curvePlotX[460], 6900);
  EXPECT_EQ(s.curvePlotX[512], 7623);  // 7123.478
  EXPECT_EQ(s.edgePlotX[1], 556);      // 56.14
  EXPECT_EQ(s.edgePlotX[114], 6900);
  EXPECT_EQ(s.linePlotX[1], 514);  // 13.943 rounded
  EXPECT_EQ(s.linePlotX[459], 6900);
}

TEST(ValidateSettings, MasksAreBitMasks) {
  SystemSettings s = Fresh();
  s.agcRelease = 7;
  s.limiterRelease = 4;
  s.limiterThreshold = -1;
  s.specAverages = 17;
  s.blueSignal = -1;
  s.sifAverages[3] = 9;
  s.procEnabled = 2;
  s.filterActive[2] = -1;
  s.ch2DelayChan[1] = 3;
  ValidateSettings(s);
  EXPECT_EQ(s.agcRelease, 3);
  EXPECT_EQ(s.limiterRelease, 0);
  EXPECT_EQ(s.limiterThreshold, 3);
  EXPECT_EQ(s.specAverages, 1);
  EXPECT_EQ(s.blueSignal, 31);
  EXPECT_EQ(s.sifAverages[3], 1);
  EXPECT_EQ(s.procEnabled, 0);
  EXPECT_EQ(s.filterActive[2], 1);
  EXPECT_EQ(s.ch2DelayChan[1], 1);
}

TEST(ValidateSettings, CorrectsCodesOutsideTheirLists) {
  SystemSettings s = Fresh();
  s.filterType[1] = 17;
  s.filterType[2] = -1;
  s.eqType[1] = 9;
  s.broadbandType[2] = -4;
  s.agcGain = 7;
  s.parActive[1][0] = 1;
  s.eqParActive[9][1] = 0;
  s.ch1AdaptSelect[1] = 6;
  s.ch2AdaptSelect[1] = 99;
  ValidateSettings(s);
  EXPECT_EQ(s.filterType[1], 0);
  EXPECT_EQ(s.filterType[2], 0);
  EXPECT_EQ(s.eqType[1], 3);
  EXPECT_EQ(s.broadbandType[2], 1);
  EXPECT_EQ(s.agcGain, 0);
  EXPECT_EQ(s.parActive[1][0], -1);
  EXPECT_EQ(s.eqParActive[9][1], 0);
  EXPECT_EQ(s.ch1AdaptSelect[1], 4);
  EXPECT_EQ(s.ch2AdaptSelect[1], 99);  // waits for its panel
}

TEST(ValidateSettings, HoldsRulesBetweenFields) {
  SystemSettings s = Fresh();
  s.lceCompThresh[1] = -20;
  s.lceLimitThresh[1] = -30;
  s.eqLceCompThresh[10] = 5;
  s.eqLceLimitThresh[10] = -200;
  s.sifLoAttack[2] = 900;
  s.sifHiAttack[2] = 20;
  ValidateSettings(s);
  EXPECT_EQ(s.lceCompThresh[1], -30);
  EXPECT_EQ(s.lceLimitThresh[1], -30);
  EXPECT_EQ(s.eqLceCompThresh[10], -90);
  EXPECT_EQ(s.sifLoAttack[2], 449);
  EXPECT_EQ(s.sifHiAttack[2], 459);
}

TEST(ValidateSettings, NotANumberBecomesTheDefault) {
  SystemSettings s = Fresh();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  s.parRatio[1][0] = nan;
  s.hiResCurve[1][512] = nan;
  s.reservedFloats[2] = nan;
  s.broadbandParms[1].coefA = nan;
  ValidateSettings(s);
  EXPECT_EQ(s.parRatio[1][0], 1.5F);
  EXPECT_EQ(s.hiResCurve[1][512], 0.0F);
  EXPECT_EQ(s.reservedFloats[2], 0.0F);
  EXPECT_EQ(s.broadbandParms[1].coefA, 0.0F);
}

TEST(ValidateSettings, BoundsBroadbandRecordsButLeavesTheOffRecord) {
  SystemSettings s = Fresh();
  s.broadbandParms[1] = s.broadbandPresets[OffPreset];
  s.broadbandParms[2] = s.broadbandPresets[OffPreset];
  s.broadbandParms[2].mode = 2;
  ValidateSettings(s);
  EXPECT_EQ(s.broadbandParms[1], s.broadbandPresets[OffPreset]);
  EXPECT_EQ(s.broadbandParms[2], (BroadbandParms{1, 100, 1, 1, 1, 1, 1, {}}));
}

TEST(ClampSettingsToLimits, FollowsTheDerivedLimits) {
  SystemSettings s = Fresh();
  for (auto* field : {&s.lpfCutoff, &s.hpfCutoff, &s.bpfLoCutoff, &s.bpfHiCutoff, &s.notchFreq, &s.ch1Taps,
                      &s.ch2Delay, &s.hpfTransSlope, &s.bsfTransSlope, &s.combLimit}) {
    field->Fill(30000);
  }
  s.bsfLoCutoff[1] = 1000;
  s.bsfHiCutoff[1] = 900;
  s.slotFreq.Fill(50);  // mains hum must survive
  s.mnotchFreq[4][16] = 5000;
  s.bandwidthHz = 5400;
  s.maxTaps[2] = 2048;
  s.maxSpan[2] = 8191;
  s.maxFilterSize.Fill(976);
  ClampSettingsToLimits(s);
  EXPECT_EQ(s.lpfCutoff[1], 5400);
  EXPECT_EQ(s.hpfCutoff[1], 5300);
  EXPECT_EQ(s.bpfLoCutoff[1], 5390);
  EXPECT_EQ(s.bpfHiCutoff[1], 5400);
  EXPECT_EQ(s.notchFreq[1], 5400);
  EXPECT_EQ(s.slotFreq[1], 50);
  EXPECT_EQ(s.mnotchFreq[4][16], 5000);
  EXPECT_THAT(s.ch1Taps, ElementsAre(1024, 2048, 1024, 1024, 1024, 1024));
  EXPECT_EQ(s.ch2Delay[2], 8191);
  EXPECT_EQ(s.hpfTransSlope[1], 487);
  EXPECT_EQ(s.bsfTransSlope[1], 488);
  EXPECT_EQ(s.combLimit[1], 5400);
  EXPECT_EQ(s.bsfHiCutoff[1], 1010);
}

template <typename T>
T Clamped(T value, T lower, T upper) {
  Clamp(value, lower, upper);
  return value;
}

TEST(Clamp, TestsTheLowerBoundFirst) {
  EXPECT_EQ(Clamped<std::int16_t>(5, 10, 20), 10);
  EXPECT_EQ(Clamped<std::int32_t>(70000, 10, 60000), 60000);
  EXPECT_EQ(Clamped(0.5F, 0.0F, 1.0F), 0.5F);
  EXPECT_EQ(Clamped<std::int16_t>(25, 20, 10), 10);  // not below lower, above upper
  EXPECT_EQ(Clamped<std::int16_t>(15, 20, 10), 20);  // below lower
  EXPECT_EQ(Clamped(std::numeric_limits<double>::quiet_NaN(), -1.0, 1.0), -1.0);
}

TEST(Rows, AnIndexOutsideRaisesAFault) {
  SystemSettings s;
  EXPECT_THROW(s.filterType[0], Fault);
  EXPECT_THROW(s.filterType[7], Fault);
  EXPECT_THROW(s.eqParLevel[8], Fault);
  EXPECT_THROW(s.customCurve[6][461], Fault);
  EXPECT_NO_THROW(s.hiResCurve[6][512]);
}

}  // namespace
}  // namespace vc
