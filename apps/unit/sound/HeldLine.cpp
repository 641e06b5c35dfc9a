#include "unit/sound/HeldLine.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace unit::sound {
namespace {

constexpr double SpellSeconds = 3.0;  // of all spells: longer than a phrase without a pause
constexpr float Unknown = 1e6F;

// Its square adds up to 1 with that of the next frame, half a frame later.
std::array<float, TransformSpan> HalfSine() {
  constexpr double size = TransformSpan;
  std::array<float, TransformSpan> window{};
  for (std::size_t i = 0; i < TransformSpan; ++i) {
    window[i] = static_cast<float>(std::sin(std::numbers::pi * (static_cast<double>(i) + 0.5) / size));
  }
  return window;
}

float PowerOf(float re, float im) { return re * re + im * im; }

// Line i has the frequency i + 1/4, and the line opposite to it, 255 - i, that of i + 3/4: these two and the
// next one of the same sign lie beside each other.
float WithNeighbours(const Points& power, std::size_t i) {
  const std::size_t opposite = TransformPoints - 1 - i;
  return power[i] + power[opposite] + power[(opposite + 1) % TransformPoints];
}

}  // namespace

HeldLine::HeldLine(double sampleRate) : window(HalfSine()) { SetRate(sampleRate); }

void HeldLine::SetRate(double sampleRate) {
  spellBlocks = static_cast<std::size_t>(std::lround(SpellSeconds * sampleRate / (Spells * BlockFrames)));
  Reset();
}

void HeldLine::Reset() {
  predicted = missed = {};
  regular = before = after = {};
  for (Points& spellLeast : least) spellLeast.fill(Unknown);
  best.fill(Unknown);
  tail = {};
  blocks = spell = 0;
}

void HeldLine::Process(std::span<const float, BlockFrames> prediction,
                       std::span<const float, BlockFrames> error, std::span<float, BlockFrames> last) {
  Take(predicted, prediction, right);
  Take(missed, error, wrong);
  FindShares();
  FrameSpectrum early;  // later by half of the frame, so that its first half comes out
  for (std::size_t i = 0; i < TransformPoints; ++i) {
    wrong.re[i] *= share[i];
    wrong.im[i] *= share[i];
    early.re[i] = wrong.im[i];
    early.im[i] = -wrong.re[i];
  }
  std::array<float, BlockFrames> half;
  transform.Inverse(early, half);
  for (std::size_t i = 0; i < BlockFrames; ++i) last[i] = predicted[i] + tail[i] + window[i] * half[i];
  transform.Inverse(wrong, half);
  for (std::size_t i = 0; i < BlockFrames; ++i) tail[i] = window[BlockFrames + i] * half[i];
}

// The block follows in the frame, which gets a spectrum.
void HeldLine::Take(Frame& frame, std::span<const float, BlockFrames> block, FrameSpectrum& spectrum) const {
  std::copy(frame.begin() + BlockFrames, frame.end(), frame.begin());
  std::ranges::copy(block, frame.begin() + BlockFrames);
  Frame windowed;
  for (std::size_t i = 0; i < TransformSpan; ++i) windowed[i] = window[i] * frame[i];
  transform.Forward(windowed, spectrum);
}

// Where the line holds what is not in the input any more, it makes it louder: then it hears all again.
void HeldLine::FindShares() {
  constexpr float kept = 0.97F, keptOfPrediction = 0.95F, enough = 0.07F, fewest = 0.03F, louder = 1.6F;
  constexpr float faintest = 1e-9F;
  Points missedPower, predictedPower;
  for (std::size_t i = 0; i < TransformPoints; ++i) {
    missedPower[i] = PowerOf(wrong.re[i], wrong.im[i]);
    predictedPower[i] = PowerOf(right.re[i], right.im[i]);
    before[i] = kept * before[i] + (1 - kept) * PowerOf(wrong.re[i] + right.re[i], wrong.im[i] + right.im[i]);
    after[i] = kept * after[i] + (1 - kept) * missedPower[i];
  }
  for (std::size_t i = 0; i < TransformPoints; ++i) {
    regular[i] = keptOfPrediction * regular[i] + (1 - keptOfPrediction) * WithNeighbours(predictedPower, i);
    const float part = WithNeighbours(missedPower, i) / (regular[i] + faintest);
    least[spell][i] = std::min(least[spell][i], part);
    const float sure = 1 - std::min({best[i], least[spell][i], 1.0F});
    const float held = std::clamp(enough / (part + faintest), fewest, 1.0F);
    share[i] = after[i] > louder * before[i] ? 1.0F : 1 - sure + sure * held;
  }
  EndSpell();
}

void HeldLine::EndSpell() {
  if (++blocks < spellBlocks) return;
  blocks = 0;
  spell = (spell + 1) % Spells;
  least[spell].fill(Unknown);
  best.fill(Unknown);
  for (const Points& spellLeast : least) {
    for (std::size_t i = 0; i < TransformPoints; ++i) best[i] = std::min(best[i], spellLeast[i]);
  }
}

}  // namespace unit::sound
