// What a reference carries out of a sound by the echo canceller of SpeexDSP:
// compare_echo IN.wav REFERENCE.wav OUT.wav FRAME TAPS
//
// FRAME and TAPS in samples. Its own preprocessor, which would take noise out as well, is not used.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include <speex/speex_echo.h>

#include "Waves.h"

namespace {

constexpr float Unity = 32767;  // its samples have 16 bits

std::vector<spx_int16_t> Words(std::span<const float> sound) {
  std::vector<spx_int16_t> words;
  for (const float sample : sound)
    words.push_back(static_cast<spx_int16_t>(std::clamp(std::nearbyint(sample * Unity), -Unity, Unity)));
  return words;
}

void Run(const std::string& in, const std::string& reference, const std::string& out, int frame, int taps) {
  compare::Wave wave = compare::ReadWave(in);
  measure::Signal& sound = wave.channels[0];
  measure::Signal played = compare::ReadWave(reference).channels[0];
  const auto size = static_cast<std::size_t>(frame);
  sound.resize((sound.size() + size - 1) / size * size);
  played.resize(sound.size());
  SpeexEchoState* const state = speex_echo_state_init(frame, taps);
  speex_echo_ctl(state, SPEEX_ECHO_SET_SAMPLING_RATE, &wave.rate);
  std::vector<spx_int16_t> left(size);
  for (std::size_t at = 0; at < sound.size(); at += size) {
    const std::span<float> piece = std::span(sound).subspan(at, size);
    speex_echo_cancellation(state, Words(piece).data(), Words(std::span(played).subspan(at, size)).data(),
                            left.data());
    std::ranges::transform(left, piece.begin(),
                           [](spx_int16_t word) { return static_cast<float>(word) / Unity; });
  }
  speex_echo_state_destroy(state);
  compare::WriteWave(out, wave.rate, sound);
}

}  // namespace

int main(int count, char** words) {
  try {
    if (count != 6) throw std::runtime_error("compare_echo IN.wav REFERENCE.wav OUT.wav FRAME TAPS");
    Run(words[1], words[2], words[3], std::stoi(words[4]), std::stoi(words[5]));
    return 0;
  } catch (const std::exception& trouble) {
    std::fprintf(stderr, "%s\n", trouble.what());
    return 1;
  }
}
