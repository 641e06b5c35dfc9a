// Bad recordings of the built-in scene, and what an operator sets to clean them.
#pragma once

#include <string>

#include "SoundRun.h"
#include "model/Kinds.h"
#include "model/Settings.h"
#include "unit/sound/Scene.h"

namespace cleaning {

using measure::Signal;
using support::SoundRun;
using unit::sound::Scene;
using unit::sound::SceneLevels;
using unit::sound::SceneOff;

inline SoundRun::Stereo SceneSound(double rate, std::size_t size, const SceneLevels& levels) {
  Scene scene(rate, 1, levels);
  SoundRun::Stereo sound{Signal(size), Signal(size)};
  scene.Process(sound[0], sound[1]);
  return sound;
}

inline SceneLevels SpeechAlone() {
  return {.hum = SceneOff, .tone = SceneOff, .noise = SceneOff, .reference = SceneOff};
}

inline SceneLevels WithoutNoise() { return {.noise = SceneOff}; }

// Next to nothing but speech and hum.
inline SceneLevels SpeechAndHum() { return {.tone = SceneOff, .noise = -60, .reference = SceneOff}; }

// The one-channel filter as stage 1. Its span is longer than a vowel holds still.
inline void SetHumFilter(SoundRun& run, int taps, int mu) {
  run.Put(1, vc::FilterKind::OneChAdaptive);
  run.Edit("ch1Taps", std::to_string(taps), 1);
  run.Settle();
  run.Edit("ch1Mu", std::to_string(mu), 1);
  run.Edit("ch1PredSpan", "1200", 1);
  run.Edit("ch1AutoNormalize", "1", 1);
  run.Edit("ch1AdaptSelect", "0", 1);
  run.Edit("filterAdapt", "1", 1);
  run.Edit("adaptEnabled", "1");
  run.Take();
}

// The reference canceller as stage 1, with the second input as its reference.
inline void SetCanceller(SoundRun& run) {
  run.Put(1, vc::FilterKind::RefCanceller);
  run.Edit("ch2Taps", "64", 1);
  run.Edit("ch2Mu", "4", 1);
  run.Edit("ch2DelayChan", "1", 1);  // the reference, so that the speech is not late
  run.Edit("ch2Delay", "0", 1);
  run.Edit("ch2AutoNormalize", "1", 1);
  run.Edit("ch2AdaptSelect", "2", 1);
  run.Edit("ch2Thresh", "-21", 1);
  run.Edit("filterAdapt", "1", 1);
  run.Edit("adaptEnabled", "1");
  run.Take();
}

inline void SetNoiseReducer(SoundRun& run) {
  run.Edit("broadbandType", "0", 1);
  run.Edit("broadbandActive", "1", 1);
  run.Take();
}

}  // namespace cleaning
