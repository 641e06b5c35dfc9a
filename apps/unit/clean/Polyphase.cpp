#include "unit/clean/Polyphase.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "unit/sound/Blocks.h"
#include "unit/sound/FirDesign.h"
#include "unit/sound/Kernels.h"

namespace unit::clean {
namespace {

using sound::BlockFrames;

constexpr double Attenuation = 120;  // dB
// In cycles per sample of the lower rate: from nine tenths of its half up to its half.
constexpr double Edge = 0.475, Transition = 0.05;
constexpr std::size_t MostTaps = 1U << 18U;
constexpr std::size_t MostPast = 1U << 14U;  // samples that are used and not yet moved out

std::size_t Term(int hertz, int other) { return static_cast<std::size_t>(hertz / std::gcd(hertz, other)); }

// A whole number of what the inner loop takes at once.
std::size_t ReachOf(std::size_t up, std::size_t down) {
  constexpr std::size_t atOnce = 32;
  const double slower = std::max(1.0, static_cast<double>(down) / static_cast<double>(up));
  std::size_t reach = atOnce;
  while (sound::TransitionWidth(reach, Attenuation) > Transition / slower) reach += atOnce;
  return reach;
}

}  // namespace

bool Polyphase::Suits(int fromHertz, int toHertz) {
  const std::size_t up = Term(toHertz, fromHertz), down = Term(fromHertz, toHertz);
  return up <= MostTaps && 2 * up * ReachOf(up, down) <= MostTaps;
}

Polyphase::Polyphase(SampleSource heard, std::size_t channelCount, int fromHertz, int toHertz)
    : source(std::move(heard)),
      channels(channelCount),
      up(Term(toHertz, fromHertz)),
      down(Term(fromHertz, toHertz)),
      reach(ReachOf(up, down)),
      past(channels, std::vector<float>(reach - 1)) {
  MakeTaps();
}

// Of one lowpass at a rate that is a multiple of both, each place has every up-th tap.
void Polyphase::MakeTaps() {
  const std::size_t half = reach * up;
  const std::vector<double> lowpass =
      sound::LowpassTaps(half, Edge / static_cast<double>(std::max(up, down)), Attenuation);
  taps.resize(2 * reach * up);
  for (std::size_t i = 0; i < taps.size(); ++i) {
    const std::size_t between = i / (2 * reach), sample = i % (2 * reach);
    const std::size_t tap = half - 1 + between + (reach - 1) * up - sample * up;
    taps[i] = tap < lowpass.size() ? static_cast<float>(static_cast<double>(up) * lowpass[tap]) : 0.0F;
  }
}

void Polyphase::Read(std::span<float> samples) {
  for (std::size_t i = 0; i < samples.size(); i += channels) {
    while (past[0].size() < at + 2 * reach) Hear();
    const std::span<const float> own = std::span(taps).subspan(2 * reach * place, 2 * reach);
    for (std::size_t channel = 0; channel < channels; ++channel) {
      samples[i + channel] = sound::Dot(own, std::span(past[channel]).subspan(at, 2 * reach));
    }
    place += down;
    at += place / up;
    place %= up;
  }
}

void Polyphase::Hear() {
  std::array<float, 2 * BlockFrames> block;
  const std::span<float> more = std::span(block).first(BlockFrames * channels);
  source(more);
  for (std::size_t channel = 0; channel < channels; ++channel) {
    std::vector<float>& samples = past[channel];
    if (at > MostPast) samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(at));
    for (std::size_t i = channel; i < more.size(); i += channels) samples.push_back(more[i]);
  }
  if (at > MostPast) at = 0;
}

}  // namespace unit::clean
