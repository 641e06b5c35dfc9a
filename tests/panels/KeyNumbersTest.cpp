// What a block's line of numbers says, kind by kind, for records that an operator can set.
#include <gtest/gtest.h>

#include "model/Kinds.h"
#include "model/Settings.h"
#include "panels/KeyNumbers.h"
#include "panels/ValueLaws.h"
#include "text/Convert.h"

namespace vc {
namespace {

struct KeyNumbers : testing::Test {
  SystemSettings record;

  KeyNumbers() {
    InitSettings(record);
    record.sampleRate = 7200;
    record.bandwidthHz = 3200;
  }
  std::string Filter(std::int16_t kind) {
    record.filterType[2] = kind;
    return FilterKeyNumbers(record, 2);
  }
  std::string Equalizer(std::int16_t kind) {
    record.eqType[2] = kind;
    return EqualizerKeyNumbers(record, 2);
  }
  std::string Broadband(std::int16_t kind) {
    record.broadbandType[2] = kind;
    return BroadbandKeyNumbers(record, 2);
  }
};

TEST_F(KeyNumbers, AdaptiveFiltersTellSizeAndTheShownRate) {
  record.ch1Taps[2] = 1024;
  record.ch1Mu[2] = 16;
  record.ch2Taps[2] = 512;
  record.ch2Mu[2] = 851;
  EXPECT_EQ(Filter(FilterKind::OneChAdaptive), "1024 taps, Mu 16");
  EXPECT_EQ(Filter(FilterKind::RefCanceller), "512 taps, Mu 1446");
  const std::pair<int, int> laws[] = {{1, 1},       {256, 256},   {257, 258},
                                      {1024, 1792}, {1025, 1796}, {2047, 5884}};
  for (const auto& [stored, shown] : laws) EXPECT_EQ(ShownMu(LowWord(stored)), shown);
}

TEST_F(KeyNumbers, CutOffFiltersTellEdgesAndDepth) {
  record.lpfCutoff[2] = 2400;
  record.lpfAtten[2] = 40;
  record.hpfCutoff[2] = 300;
  record.hpfAtten[2] = 35;
  record.bpfLoCutoff[2] = 300;
  record.bpfHiCutoff[2] = 3000;
  record.bpfAtten[2] = 60;
  record.bsfLoCutoff[2] = 0;
  record.bsfHiCutoff[2] = 700;
  record.bsfAtten[2] = 10;
  EXPECT_EQ(Filter(FilterKind::Lowpass), "2400 Hz, -40 dB");
  EXPECT_EQ(Filter(FilterKind::Highpass), "300 Hz, -35 dB");
  EXPECT_EQ(Filter(FilterKind::Bandpass), "300 to 3000 Hz, -60 dB");
  EXPECT_EQ(Filter(FilterKind::Bandstop), "Out to 700 Hz, -10 dB");
}

TEST_F(KeyNumbers, CombsTellTheFundamentalThatTheirPeriodMakes) {
  record.combFreq[2] = 144;
  record.combLimit[2] = 1500;
  record.combDepth[2] = 30;
  EXPECT_EQ(Filter(FilterKind::Comb), "50.000 to 1500 Hz, -30 dB");
  record.combHarmonic[2] = 1;
  record.combFreq[2] = 800;
  EXPECT_EQ(Filter(FilterKind::InverseComb), "9.000 to 1500 Hz, -30 dB, odd");
  record.combHarmonic[2] = 2;
  EXPECT_EQ(Filter(FilterKind::Comb), "9.000 to 1500 Hz, -30 dB, even");
}

TEST_F(KeyNumbers, NotchesAndSlotsTellTheirWidthOrHowManyAreIn) {
  record.notchFreq[2] = 50;
  record.notchAtten[2] = 60;
  record.notchWidth[2] = 463;
  record.slotFreq[2] = 1000;
  record.slotAtten[2] = 20;
  record.slotWidth[2] = 3;
  EXPECT_EQ(Filter(FilterKind::Notch), "50 Hz, -60 dB, 23.8 Hz wide");
  EXPECT_EQ(Filter(FilterKind::Slot), "1000 Hz, -20 dB, 2700.5 Hz wide");
  record.filterAtten[2] = FullEffect;
  record.mnotchFreq[2][1] = 60;
  EXPECT_EQ(Filter(FilterKind::MultipleNotch), "1 notch, -90.3 dB");
  record.mnotchFreq[2][16] = 120;
  EXPECT_EQ(Filter(FilterKind::MultipleNotch), "2 notches, -90.3 dB");
  record.filterAtten[2] = 16384;
  EXPECT_EQ(Filter(FilterKind::MultipleSlot), "0 slots, -6.0 dB");
}

TEST_F(KeyNumbers, CurvesTellTheirReachAndNotWhatIsBeyondTheEditedLines) {
  record.sifLoAttack[2] = 41;
  record.sifHiAttack[2] = 426;
  record.filterAtten[2] = 24575;
  EXPECT_EQ(Filter(FilterKind::SpectralInverse), "295 to 3002 Hz, 75%");
  EXPECT_EQ(Filter(FilterKind::HiResGraphic), "flat, 0.0 dB");
  record.hiResCurve[2][459] = -25.04F;
  record.hiResCurve[2][460] = -60;
  EXPECT_EQ(Filter(FilterKind::HiResGraphic), "0.0 to -25.0 dB");
  record.edgeCurve[2].Fill(-3.0F);
  record.edgeCurve[2][114] = -12;
  record.edgeCurve[2][115] = -60;
  EXPECT_EQ(Equalizer(EqKind::SpectralGraphic), "-3.0 to -12.0 dB");
}

TEST_F(KeyNumbers, GraphicsAndParametricsTellWhatTheyDoMost) {
  EXPECT_EQ(Filter(FilterKind::BandGraphic), "no band cut");
  record.bandGain[2][0] = 12;
  EXPECT_EQ(Filter(FilterKind::BandGraphic), "1 band cut, -12 dB");
  record.eqBandGain[10][19] = 40;
  record.eqBandGain[10][3] = 2;
  EXPECT_EQ(Equalizer(EqKind::BandGraphic), "2 bands cut, -40 dB");
  record.parCenter[2][2] = 0.125F;
  record.parBoost[2][2] = -20;
  record.parBoost[2][0] = 16;
  EXPECT_EQ(Filter(FilterKind::TriParametric), "900 Hz, -20.0 dB, 2 more");
  record.parActive[2][2] = record.parActive[2][1] = 0;
  EXPECT_EQ(Filter(FilterKind::TriParametric), "1800 Hz, +16.0 dB");
  record.parActive[2][0] = 0;
  EXPECT_EQ(Filter(FilterKind::TriParametric), "all substages out");
  record.eqParBoost[10][2] = 16;  // kept, but no substage of this kind
  EXPECT_EQ(Equalizer(EqKind::DualParametric), "1800 Hz, 0.0 dB, 1 more");
  record.eqParBoost[10][0] = -8;
  record.eqParBoost[10][1] = 3;
  EXPECT_EQ(Equalizer(EqKind::DualParametric), "1800 Hz, -8.0 dB, 1 more");
}

TEST_F(KeyNumbers, DynamicsTellThresholdRatioAndLimit) {
  record.lceCompThresh[2] = -40;
  record.lceCompRatio[2] = 4;
  record.lceLimitThresh[2] = -10;
  EXPECT_EQ(Filter(FilterKind::Compressor), "-40 dB, 4.0:1, limit -10 dB");
  record.eqLceCompRatio[10] = 2.5F;
  EXPECT_EQ(Equalizer(EqKind::Compressor), "0 dB, 2.5:1, limit 0 dB");
}

TEST_F(KeyNumbers, NoiseFiltersTellDepthAndGain) {
  record.filterAtten[8] = 27500;
  EXPECT_EQ(Broadband(BroadbandKind::NoiseReducer), "-15.9 dB, gain 0.0");
  record.filterAtten[8] = 0;
  record.filterGain[8] = 506;
  EXPECT_EQ(Broadband(BroadbandKind::NoiseReducer), "0.0 dB, gain 30.0");
  record.filterGain[8] = 0;
  EXPECT_EQ(Broadband(BroadbandKind::NoiseEq), "0 bands, muted");
  record.filterGain[8] = 16;
  record.noiseEqVals[2][7] = 0.5F;
  EXPECT_EQ(Broadband(BroadbandKind::NoiseEq), "1 band -6.0 dB, gain 0.0");
}

TEST_F(KeyNumbers, TheProcessorsTellTheirChoices) {
  EXPECT_EQ(HighpassKeyNumbers(200), "200 Hz");
  EXPECT_EQ(AgcKeyNumbers(record), "5 dB, 400 ms");
  record.agcGain = 6;
  record.agcRelease = 3;
  EXPECT_EQ(AgcKeyNumbers(record), "35 dB, 50 ms");
  record.agcGain = 9;  // what a panel would open as the first choice
  EXPECT_EQ(AgcKeyNumbers(record), "5 dB, 50 ms");
  EXPECT_EQ(LimiterKeyNumbers(record), "-6 dB, 0.125 s");
  record.limiterThreshold = 3;
  record.limiterRelease = 3;
  EXPECT_EQ(LimiterKeyNumbers(record), "-15 dB, 1.0 s");
}

TEST_F(KeyNumbers, AKindOutsideItsTableIsTheOneItIsCorrectedTo) {
  EXPECT_EQ(Filter(17), Filter(FilterKind::RefCanceller));
  EXPECT_EQ(Equalizer(-1), Equalizer(EqKind::Compressor));
  EXPECT_EQ(Broadband(9), Broadband(BroadbandKind::NoiseEq));
}

}  // namespace
}  // namespace vc
