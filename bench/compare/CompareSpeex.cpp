// A sound through the preprocessor of SpeexDSP: compare_speex IN.wav OUT.wav SUPPRESS FRAME
//
// SUPPRESS is its greatest attenuation of noise in dB (below 0), FRAME its frame in ms. Everything of it but
// the noise suppression is off.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include <speex/speex_preprocess.h>

#include "Waves.h"

namespace {

// Its samples have 16 bits. Louder is finer.
constexpr float Unity = 32767, Louder = 2;

void Run(const std::string& in, const std::string& out, int suppress, int frameMs) {
  compare::Wave wave = compare::ReadWave(in);
  measure::Signal& sound = wave.channels[0];
  const auto frame = static_cast<std::size_t>(wave.rate * frameMs / 1000);
  SpeexPreprocessState* const state = speex_preprocess_state_init(static_cast<int>(frame), wave.rate);
  int on = 1, off = 0;
  speex_preprocess_ctl(state, SPEEX_PREPROCESS_SET_DENOISE, &on);
  speex_preprocess_ctl(state, SPEEX_PREPROCESS_SET_AGC, &off);
  speex_preprocess_ctl(state, SPEEX_PREPROCESS_SET_VAD, &off);
  speex_preprocess_ctl(state, SPEEX_PREPROCESS_SET_DEREVERB, &off);
  speex_preprocess_ctl(state, SPEEX_PREPROCESS_SET_NOISE_SUPPRESS, &suppress);
  std::vector<spx_int16_t> piece(frame);
  sound.resize((sound.size() + frame - 1) / frame * frame);
  for (std::size_t at = 0; at < sound.size(); at += frame) {
    for (std::size_t i = 0; i < frame; ++i) {
      const float sample = std::nearbyint(sound[at + i] * Unity * Louder);
      piece[i] = static_cast<spx_int16_t>(std::clamp(sample, -Unity, Unity));
    }
    speex_preprocess_run(state, piece.data());
    for (std::size_t i = 0; i < frame; ++i) sound[at + i] = static_cast<float>(piece[i]) / (Unity * Louder);
  }
  speex_preprocess_state_destroy(state);
  compare::WriteWave(out, wave.rate, sound);
}

}  // namespace

int main(int count, char** words) {
  try {
    if (count != 5) throw std::runtime_error("compare_speex IN.wav OUT.wav SUPPRESS FRAME");
    Run(words[1], words[2], std::stoi(words[3]), std::stoi(words[4]));
    return 0;
  } catch (const std::exception& trouble) {
    std::fprintf(stderr, "%s\n", trouble.what());
    return 1;
  }
}
