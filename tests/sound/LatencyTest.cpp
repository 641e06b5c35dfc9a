// How late the chain says that a sound leaves it, against where noise is found again behind it.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "model/Kinds.h"

namespace sound_test::latency {
namespace {

using namespace measure;
using support::SoundRun;
using vc::ConfigMode;
using vc::EqKind;
using vc::FilterKind;

constexpr std::size_t Longest = 3000;

// By how many samples what comes out is most like what went in.
std::size_t FoundLate(std::span<const float> in, std::span<const float> out) {
  std::size_t best = 0;
  double most = 0;
  for (std::size_t late = 0; late < Longest; ++late) {
    float sum = 0;
    for (std::size_t i = 0; i + Longest < in.size(); ++i) sum += in[i] * out[i + late];
    if (std::abs(sum) <= most) continue;
    most = std::abs(sum);
    best = late;
  }
  return best;
}

// Left and right, or the left alone.
void ExpectTrue(SoundRun& run, std::size_t channels = 1) {
  run.Take();
  const SoundRun::Stereo in{Noise(9000, 0.1F, 3), Noise(9000, 0.1F, 4)}, out = run.Through(in);
  for (std::size_t channel = 0; channel < channels; ++channel) {
    const std::size_t from = run.record.channelSwap != 0 ? 1 - channel : channel;
    EXPECT_EQ(run.engine.Latency()[channel], FoundLate(in[from], out[channel])) << channel;
  }
}

TEST(Latency, OfEveryKindOfStageIsWhereNoiseIsFoundAgain) {
  for (const char* bandwidth : {"1", "5"}) {
    SoundRun run(ConfigMode::Mono, bandwidth);
    for (std::int16_t kind = 0; kind <= FilterKind::Compressor; ++kind) {
      SCOPED_TRACE("filter of kind " + std::to_string(kind));
      run.Put(1, kind);
      run.Edit("ch2DelayChan", "0", 1);  // the input, which is then late
      run.Edit("ch2Delay", "30", 1);
      run.record.filterBuilt[1] = -1;
      ExpectTrue(run);
    }
    run.Edit("filterActive", "0", 1);
    for (std::int16_t kind = 0; kind <= EqKind::Compressor; ++kind) {
      SCOPED_TRACE("equalizer of kind " + std::to_string(kind));
      run.Edit("eqActive", "1", 1);
      run.Edit("eqType", std::to_string(kind), 1);
      ExpectTrue(run);
    }
    run.Edit("eqActive", "0", 1);
    run.Edit("broadbandActive", "1", 1);
    ExpectTrue(run);
  }
}

// Each side has the stages on its own way, wherever it comes out.
TEST(Latency, OfAChainIsTheSumOnEachSide) {
  SoundRun run(ConfigMode::StereoIndependent);
  run.Put(1, FilterKind::Lowpass);
  run.Put(2, FilterKind::Comb);
  run.Put(4, FilterKind::Highpass);
  run.Edit("broadbandActive", "1", 1);
  run.Edit("eqActive", "1", 2);
  for (const char* field : {"ihpfEnabled", "ohpfEnabled", "agcEnabled", "limiterEnabled"})
    run.Edit(field, "1");
  ExpectTrue(run, 2);
  const auto apart = run.engine.Latency();
  EXPECT_NE(apart[0], apart[1]);
  run.Edit("channelSwap", "1");
  ExpectTrue(run, 2);
  EXPECT_EQ(run.engine.Latency()[0], apart[1]);
  run.Edit("procEnabled", "0");
  ExpectTrue(run, 2);
  EXPECT_EQ(run.engine.Latency()[0], 0U);
}

}  // namespace
}  // namespace sound_test::latency
