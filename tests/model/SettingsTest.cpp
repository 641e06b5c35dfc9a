// Defaults, masks and clamps of the settings record.
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/BroadbandPresets.h"
#include "model/Clamp.h"
#include "model/Fields.h"
#include "model/Fresh.h"
#include "model/Settings.h"

namespace vc {
namespace {

using testing::ElementsAre;

TEST(InitSettings, LeavesNothingAsItWasButTheRunWithoutItsLink) {
  SystemSettings s;
  s.bandwidthIndex = 5;
  s.bandwidthHz = -1;
  s.maxTaps.Fill(0);
  s.extraStages.Fill(3);
  s.loadingSetup = true;
  s.linkReady = true;
  s.curFilter = 4;
  s.workingFolder = "setups";
  s.setupDescription = "old";
  s.unitOptionLatched = -1;
  SystemSettings expected = Fresh();
  expected.loadingSetup = true;
  expected.curFilter = 4;
  expected.workingFolder = "setups";
  expected.unitOptionLatched = -1;
  InitSettings(s);
  EXPECT_EQ(s, expected);
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

// Masks are bit masks, codes outside their lists become the one that is nearest in meaning, and pairs keep
// their order.
struct Corrected {
  const char* field;
  int i, j;
  std::int16_t given, held;
};
const Corrected corrections[] = {
    {"agcRelease", 0, 0, 7, 3},         {"limiterRelease", 0, 0, 4, 0},
    {"limiterThreshold", 0, 0, -1, 3},  {"specAverages", 0, 0, 17, 1},
    {"blueSignal", 0, 0, -1, 31},       {"sifAverages", 3, 0, 9, 1},
    {"procEnabled", 0, 0, 2, 0},        {"filterActive", 2, 0, -1, 1},
    {"ch2DelayChan", 1, 0, 3, 1},       {"filterType", 1, 0, 17, 0},
    {"filterType", 2, 0, -1, 0},        {"eqType", 1, 0, 9, 3},
    {"broadbandType", 2, 0, -4, 1},     {"agcGain", 0, 0, 7, 0},
    {"parActive", 1, 0, 1, -1},         {"eqParActive", 9, 1, 0, 0},
    {"ch1AdaptSelect", 1, 0, 6, 4},     {"ch2AdaptSelect", 1, 0, 99, 99},  // waits for its panel
    {"lceCompThresh", 1, 0, -20, -30},  {"lceLimitThresh", 1, 0, -30, -30},
    {"eqLceCompThresh", 10, 0, 5, -90}, {"eqLceLimitThresh", 10, 0, -200, -90},
    {"sifLoAttack", 2, 0, 900, 449},    {"sifHiAttack", 2, 0, 20, 459}};

TEST(ValidateSettings, CorrectsWhatAFileMayHold) {
  SystemSettings s = Fresh();
  const auto at = [&s](const Corrected& c) {
    return std::get<std::int16_t*>(FindField(c.field)->at(s, c.i, c.j));
  };
  for (const Corrected& c : corrections) *at(c) = c.given;
  ValidateSettings(s);
  for (const Corrected& c : corrections) EXPECT_EQ(*at(c), c.held) << c.field << " " << c.i;
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
  s.slotFreq[2] = 9;
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
  EXPECT_EQ(s.slotFreq[2], 10);
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
