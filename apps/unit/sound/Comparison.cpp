#include "unit/sound/Comparison.h"

#include <algorithm>
#include <cmath>
#include <new>

#include <ebur128.h>

#include "unit/sound/Blocks.h"

namespace unit::sound {
namespace {

constexpr double FadeSeconds = 0.02;
constexpr double PartSeconds = 0.1;
constexpr double MostDecibels = 20.0;
constexpr double GainSeconds = 0.3;      // time constant at which the gain follows while it is heard
constexpr double LeastSeconds = 0.4;     // the shortest window that the loudness of sound is told of
constexpr double SilenceLoudness = -70;  // LUFS, the absolute gate of EBU R 128

float Linear(double decibels) { return static_cast<float>(std::pow(10.0, decibels / 20.0)); }

float PeakOf(std::span<const float> sound) {
  float peak = 0.0F;
  for (const float sample : sound) peak = std::max(peak, std::abs(sample));
  return peak;
}

}  // namespace

struct ShortTermLoudness::State {
  ebur128_state* library;
};

void ShortTermLoudness::Free::operator()(State* held) const {
  ebur128_destroy(&held->library);
  delete held;
}

ShortTermLoudness::ShortTermLoudness(int sampleRate) : rate(sampleRate) {
  ebur128_state* const made = ebur128_init(2, static_cast<unsigned long>(rate), EBUR128_MODE_S);
  if (made == nullptr) throw std::bad_alloc();
  state.reset(new State{made});
}

void ShortTermLoudness::Add(std::span<const float> left, std::span<const float> right) {
  interleaved.resize(2 * left.size());
  for (std::size_t i = 0; i < left.size(); ++i) {
    interleaved[2 * i] = left[i];
    interleaved[2 * i + 1] = right[i];
  }
  ebur128_add_frames_float(state->library, interleaved.data(), left.size());
  frames += left.size();
}

std::optional<double> ShortTermLoudness::Value() const {
  double loudness = 0;
  if (static_cast<double>(frames) < LeastSeconds * rate ||
      ebur128_loudness_shortterm(state->library, &loudness) != EBUR128_SUCCESS ||
      !(loudness > SilenceLoudness))
    return std::nullopt;
  return loudness;
}

void DelayedSound::SetDelay(std::size_t samples, std::size_t fadeSamples) {
  samples = std::min(samples, LongestDelay);
  if (samples == delay || fade > 0) return;
  before = delay;
  delay = samples;
  fade = fadeLength = fadeSamples;
}

void DelayedSound::Process(std::span<const float> in, std::span<float> out) {
  for (std::size_t i = 0; i < in.size(); ++i) {
    at = (at + 1) % ring.size();
    ring[at] = in[i];
    out[i] = Ago(delay);
    if (fade == 0) continue;
    out[i] += (Ago(before) - out[i]) * static_cast<float>(fade) / static_cast<float>(fadeLength);
    --fade;
  }
}

Comparison::Comparison(int sampleRate) : rate(sampleRate), before(sampleRate), after(sampleRate) {}

void Comparison::SetRate(int sampleRate) {
  if (sampleRate == rate) return;
  rate = sampleRate;
  before = ShortTermLoudness(rate);
  after = ShortTermLoudness(rate);
  peaks.fill(0.0F);
}

void Comparison::Process(const Input& in, const Stereo& sound, const std::array<std::size_t, 2>& delays) {
  std::array<std::array<float, BlockFrames>, 2> room;
  const std::size_t count = sound[0].size();
  const Stereo input{std::span(room[0]).first(count), std::span(room[1]).first(count)};
  for (const std::size_t side : {0U, 1U}) {
    delayed[side].SetDelay(delays[side], static_cast<std::size_t>(FadeSeconds * rate));
    delayed[side].Process(in[side], input[side]);
  }
  Measure(input, sound);
  Mix(input, sound);
}

void Comparison::Measure(const Stereo& input, const Stereo& processed) {
  before.Add(input[0], input[1]);
  after.Add(processed[0], processed[1]);
  peaks[part] = std::max({peaks[part], PeakOf(input[0]), PeakOf(input[1])});
  partFrames += input[0].size();
  if (static_cast<double>(partFrames) < PartSeconds * rate) return;
  Aim();
  partFrames = 0;
  part = (part + 1) % PeakParts;
  peaks[part] = 0.0F;
}

void Comparison::Aim() {
  const std::optional<double> was = before.Value(), is = after.Value();
  if (was && is) target = std::clamp(*is - *was, -MostDecibels, MostDecibels);
  const float peak = *std::ranges::max_element(peaks);
  if (peak > 0.0F) target = std::min(target, std::max(-20.0 * std::log10(double{peak}), -MostDecibels));
}

// What nobody hears takes its gain at once. A peak that is too loud for the gain pulls it down within its
// block; what is beyond full scale until then is clipped.
void Comparison::Mix(const Stereo& input, const Stereo& sound) {
  const std::size_t count = sound[0].size();
  const float loudest = std::max(PeakOf(input[0]), PeakOf(input[1]));
  const float aim = Linear(target);
  if (share == 0.0F) gain = aim;
  if (!bypass && share == 0.0F) return;
  const double blocks = GainSeconds * rate / static_cast<double>(count);
  float next = gain + (aim - gain) * static_cast<float>(1.0 - std::exp(-1.0 / blocks));
  if (loudest * next > 1.0F) next = 1.0F / loudest;
  const float step = (next - gain) / static_cast<float>(count);
  const float shareStep = static_cast<float>((bypass ? 1.0 : -1.0) / (FadeSeconds * rate));
  for (std::size_t i = 0; i < count; ++i) {
    gain += step;
    share = std::clamp(share + shareStep, 0.0F, 1.0F);
    if (share == 0.0F) return;
    for (const std::size_t side : {0U, 1U}) {
      const float louder = std::clamp(gain * input[side][i], -1.0F, 1.0F);
      sound[side][i] = (1.0F - share) * sound[side][i] + share * louder;
    }
  }
}

}  // namespace unit::sound
