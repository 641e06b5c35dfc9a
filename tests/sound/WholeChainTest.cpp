// What the picture of the whole chain shows is what a channel does to sound, from its input to its output.
#include <gtest/gtest.h>

#include "EvenFrequencies.h"
#include "SoundRun.h"
#include "model/ChainResponse.h"
#include "model/Kinds.h"

namespace sound_test::whole_chain {
namespace {

using namespace measure;
using support::SoundRun;
using vc::ConfigMode;
using vc::EqKind;
using vc::FilterKind;

// Stages from the first one on, the equalizer, and what the operator would switch in at the ends.
void SetSide(SoundRun& run, int stage, int side) {
  run.Put(stage, FilterKind::Lowpass);
  run.Edit("lpfCutoff", "2500", stage);
  run.Edit("lpfTransSlope", "200", stage);
  run.Edit("lpfAtten", "30", stage);
  run.Put(stage + 1, FilterKind::Notch);
  run.Edit("notchFreq", side == 1 ? "1000" : "1700", stage + 1);
  run.Edit("notchWidth", "300", stage + 1);
  run.Edit("notchAtten", "25", stage + 1);
  run.Put(stage + 2, FilterKind::Comb);
  run.Edit("combFreq", "80", stage + 2);
  run.Edit("combDepth", "12", stage + 2);
  run.Edit("combLimit", "1500", stage + 2);
  run.Edit("eqType", std::to_string(EqKind::DualParametric), side);
  run.Edit("eqParCenter", "0.2", side + 8, 0);
  run.Edit("eqParBoost", "9", side + 8, 0);
  run.Edit("eqActive", "1", side);
}

void ExpectHeardAsDrawn(SoundRun& run, std::size_t channel, std::size_t output) {
  vc::ChainResponse chain;
  chain.Follow(run.record, support::EvenFrequencies(run.record, 401));
  constexpr float height = 0.125F;  // nothing is clipped
  Signal impulse(16384);
  impulse[0] = height;
  const Signal response = run.Through({impulse, impulse})[output];
  const auto& drawn = chain.Channels().at(channel).decibels;
  std::size_t compared = 0;
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    if (drawn[i] < -70) continue;
    const double heard = GainAt(response, chain.Places()[i], run.Rate()) - Decibels(height);
    EXPECT_NEAR(heard, drawn[i], 0.5) << chain.Places()[i] << " Hz";
    ++compared;
  }
  EXPECT_GT(compared, drawn.size() * 3 / 4);
}

TEST(Sound, TheWholeChainIsHeardAsItsPictureShowsIt) {
  for (const std::int16_t mode :
       {ConfigMode::Mono, ConfigMode::StereoLinked, ConfigMode::StereoIndependent}) {
    for (const char* bandwidth : {"1", "5"}) {
      SCOPED_TRACE(std::to_string(mode) + ", bandwidth " + bandwidth);
      SoundRun run(mode, bandwidth);
      run.Edit("numFilters", "3");
      SetSide(run, 1, 1);
      if (mode == ConfigMode::StereoIndependent) SetSide(run, vc::PairStages + 1, 2);
      run.Edit("ihpfEnabled", "1");
      run.Edit("ihpfCutoff", "300");
      run.Edit("ohpfEnabled", "1");
      run.Edit("ohpfCutoff", "150");
      run.Take();
      ExpectHeardAsDrawn(run, 0, 0);
      if (mode != ConfigMode::Mono) ExpectHeardAsDrawn(run, mode == ConfigMode::StereoLinked ? 0 : 1, 1);
      // What is not processed passes as it is.
      run.Edit("procEnabled", "0");
      run.Take();
      ExpectHeardAsDrawn(run, 0, 0);
    }
  }
}

}  // namespace
}  // namespace sound_test::whole_chain
