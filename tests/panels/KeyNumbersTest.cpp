// What a block's line of numbers says, kind by kind, for records that an operator can set.
#include <sstream>

#include <gtest/gtest.h>

#include "model/Fields.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "panels/KeyNumbers.h"
#include "panels/ValueLaws.h"
#include "text/Convert.h"

namespace vc {
namespace {

// A fresh record at 7200 Hz with some elements set, as in "lpfCutoff(2)=2400 builtFreq(2,16)=120".
SystemSettings With(const char* elements) {
  SystemSettings record;
  InitSettings(record);
  record.sampleRate = 7200;
  record.bandwidthHz = 3200;
  std::istringstream text(elements);
  for (std::string name; std::getline(text >> std::ws, name, '(');) {
    int i = 0, j = 0;
    char mark = 0;
    double value = 0;
    text >> i >> mark;
    if (mark == ',') text >> j >> mark;
    text >> mark >> value;
    std::visit(
        [value]<typename T>(T* element) {
          if constexpr (std::is_arithmetic_v<T>) *element = static_cast<T>(value);
        },
        FindField(name)->at(record, i, j));
  }
  return record;
}

std::string Filter(std::int16_t kind, SystemSettings record) {
  record.filterType[2] = kind;
  return FilterKeyNumbers(record, 2);
}
std::string Equalizer(std::int16_t kind, SystemSettings record) {
  record.eqType[2] = kind;
  return EqualizerKeyNumbers(record, 2);
}
std::string Broadband(std::int16_t kind, SystemSettings record) {
  record.broadbandType[2] = kind;
  return BroadbandKeyNumbers(record, 2);
}

struct Numbered {
  std::int16_t kind;
  const char *elements, *numbers;
};

TEST(KeyNumbers, OfEveryKindOfFilter) {
  for (const Numbered& c : {
           Numbered{FilterKind::OneChAdaptive, "ch1Taps(2)=1024 ch1Mu(2)=16", "1024 taps, Mu 16"},
           {FilterKind::RefCanceller, "ch2Taps(2)=512 ch2Mu(2)=851", "512 taps, Mu 1446"},
           {FilterKind::Lowpass, "lpfCutoff(2)=2400 lpfAtten(2)=40", "2400 Hz, -40 dB"},
           {FilterKind::Highpass, "hpfCutoff(2)=300 hpfAtten(2)=35", "300 Hz, -35 dB"},
           {FilterKind::Bandpass, "bpfLoCutoff(2)=300 bpfHiCutoff(2)=3000 bpfAtten(2)=60",
            "300 to 3000 Hz, -60 dB"},
           {FilterKind::Bandstop, "bsfLoCutoff(2)=0 bsfHiCutoff(2)=700 bsfAtten(2)=10",
            "Out to 700 Hz, -10 dB"},
           {FilterKind::Comb, "combFreq(2)=144 combLimit(2)=1500 combDepth(2)=30",
            "50.000 to 1500 Hz, -30 dB"},
           {FilterKind::InverseComb, "combFreq(2)=800 combLimit(2)=1500 combDepth(2)=30 combHarmonic(2)=1",
            "9.000 to 1500 Hz, -30 dB, odd"},
           {FilterKind::Comb, "combFreq(2)=800 combLimit(2)=1500 combDepth(2)=30 combHarmonic(2)=2",
            "9.000 to 1500 Hz, -30 dB, even"},
           {FilterKind::Notch, "notchFreq(2)=50 notchAtten(2)=60 notchWidth(2)=463",
            "50 Hz, -60 dB, 23.8 Hz wide"},
           {FilterKind::Slot, "slotFreq(2)=1000 slotAtten(2)=20 slotWidth(2)=3",
            "1000 Hz, -20 dB, 2700.5 Hz wide"},
           {FilterKind::MultipleNotch, "filterAtten(2)=32767 builtFreq(2,1)=60", "1 notch, -90.3 dB"},
           {FilterKind::MultipleNotch, "filterAtten(2)=32767 builtFreq(2,1)=60 builtFreq(2,16)=120",
            "2 notches, -90.3 dB"},
           {FilterKind::MultipleSlot, "filterAtten(2)=16384", "0 slots, -6.0 dB"},
           {FilterKind::SpectralInverse, "sifLoAttack(2)=41 sifHiAttack(2)=426 filterAtten(2)=24575",
            "295 to 3002 Hz, 75%"},
           {FilterKind::HiResGraphic, "", "flat, 0.0 dB"},
           // What is beyond the edited lines does not count.
           {FilterKind::HiResGraphic, "hiResCurve(2,459)=-25.04 hiResCurve(2,460)=-60", "0.0 to -25.0 dB"},
           {FilterKind::BandGraphic, "", "no band cut"},
           {FilterKind::BandGraphic, "bandGain(2,0)=12", "1 band cut, -12 dB"},
           {FilterKind::TriParametric, "parCenter(2,2)=0.125 parBoost(2,2)=-20 parBoost(2,0)=16",
            "900 Hz, -20.0 dB, 2 more"},
           {FilterKind::TriParametric, "parBoost(2,0)=16 parActive(2,2)=0 parActive(2,1)=0",
            "1800 Hz, +16.0 dB"},
           {FilterKind::TriParametric, "parActive(2,0)=0 parActive(2,1)=0 parActive(2,2)=0",
            "all substages out"},
           {FilterKind::Compressor, "lceCompThresh(2)=-40 lceCompRatio(2)=4 lceLimitThresh(2)=-10",
            "-40 dB, 4.0:1, limit -10 dB"},
       }) {
    EXPECT_EQ(Filter(c.kind, With(c.elements)), c.numbers);
  }
  for (const auto& [stored, shown] :
       {std::pair{1, 1}, {256, 256}, {257, 258}, {1024, 1792}, {1025, 1796}, {2047, 5884}}) {
    EXPECT_EQ(ShownMu(LowWord(stored)), shown);
  }
}

TEST(KeyNumbers, OfEveryKindOfEqualizerAndNoiseFilter) {
  SystemSettings curved = With("");
  curved.edgeCurve[2].Fill(-3.0F);
  curved.edgeCurve[2][114] = -12;
  curved.edgeCurve[2][115] = -60;
  EXPECT_EQ(Equalizer(EqKind::SpectralGraphic, curved), "-3.0 to -12.0 dB");
  for (const Numbered& c :
       {Numbered{EqKind::BandGraphic, "eqBandGain(10,19)=40 eqBandGain(10,3)=2", "2 bands cut, -40 dB"},
        {EqKind::DualParametric, "eqParBoost(10,2)=16", "1800 Hz, 0.0 dB, 1 more"},  // it has two substages
        {EqKind::DualParametric, "eqParBoost(10,0)=-8 eqParBoost(10,1)=3", "1800 Hz, -8.0 dB, 1 more"},
        {EqKind::Compressor, "eqLceCompRatio(10)=2.5", "0 dB, 2.5:1, limit 0 dB"}}) {
    EXPECT_EQ(Equalizer(c.kind, With(c.elements)), c.numbers);
  }
  for (const Numbered& c :
       {Numbered{BroadbandKind::NoiseReducer, "filterAtten(8)=27500", "-15.9 dB, gain 0.0"},
        {BroadbandKind::NoiseReducer, "filterAtten(8)=0 filterGain(8)=506", "0.0 dB, gain 30.0"},
        {BroadbandKind::NoiseEq, "filterGain(8)=0", "0 bands, muted"},
        {BroadbandKind::NoiseEq, "noiseEqVals(2,7)=0.5 filterAtten(8)=0", "1 band -6.0 dB, gain 0.0"}}) {
    EXPECT_EQ(Broadband(c.kind, With(c.elements)), c.numbers);
  }
}

TEST(KeyNumbers, OfTheProcessorsAndOfWhatIsOutsideATable) {
  EXPECT_EQ(HighpassKeyNumbers(200), "200 Hz");
  EXPECT_EQ(AgcKeyNumbers(With("")), "5 dB, 400 ms");
  EXPECT_EQ(AgcKeyNumbers(With("agcGain(0)=6 agcRelease(0)=3")), "35 dB, 50 ms");
  EXPECT_EQ(AgcKeyNumbers(With("agcGain(0)=9 agcRelease(0)=3")), "5 dB, 50 ms");  // as a panel opens it
  EXPECT_EQ(LimiterKeyNumbers(With("")), "-6 dB, 0.125 s");
  EXPECT_EQ(LimiterKeyNumbers(With("limiterThreshold(0)=3 limiterRelease(0)=3")), "-15 dB, 1.0 s");
  EXPECT_EQ(Filter(17, With("")), Filter(FilterKind::RefCanceller, With("")));
  EXPECT_EQ(Equalizer(-1, With("")), Equalizer(EqKind::Compressor, With("")));
  EXPECT_EQ(Broadband(9, With("")), Broadband(BroadbandKind::NoiseEq, With("")));
}

}  // namespace
}  // namespace vc
