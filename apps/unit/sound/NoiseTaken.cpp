#include "unit/sound/NoiseTaken.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace unit::sound {
namespace {

constexpr std::size_t Size = NoiseFrame::Size, Hop = NoiseFrame::Hop;
constexpr std::size_t MeasuredFrames = 256;

// The power spectra of frames of white noise, the same every time.
class Frames {
 public:
  Frames(std::span<const float, Size> frameWindow, kiss_fftr_cfg frameTransform)
      : window(frameWindow), transform(frameTransform) {
    for (std::size_t i = 0; i < Size / Hop; ++i) Next();
  }

  const NoiseFloor::Spectrum& Next() {
    std::shift_left(sound.begin(), sound.end(), Hop);
    std::generate(sound.end() - Hop, sound.end(), [this] { return Sample(); });
    for (std::size_t i = 0; i < Size; ++i) frame[i] = sound[i] * window[i];
    kiss_fftr(transform, frame.data(), lines.data());
    for (std::size_t k = 0; k < power.size(); ++k) {
      power[k] = lines[k].r * lines[k].r + lines[k].i * lines[k].i;
    }
    return power;
  }

 private:
  // Numerical Recipes' generator of 32 bits, of which the upper ones are used.
  float Sample() {
    seed = seed * 1664525U + 1013904223U;
    return static_cast<float>(seed >> 8U) / 8388608.0F - 1;
  }

  std::span<const float, Size> window;
  kiss_fftr_cfg transform;
  std::uint32_t seed = 1;
  std::array<float, Size> sound{}, frame{};
  std::array<kiss_fft_cpx, NoiseFloor::Lines> lines{};
  NoiseFloor::Spectrum power{};
};

}  // namespace

float NoiseTaken::ShareFor(double left) const {
  // The noise that is left is 1 - 2 x mean + x^2 square of its power, least for an x of 1 or more.
  const double root = mean * mean - square * (1 - left * left);
  if (root <= 0) return 1;
  return static_cast<float>(std::clamp((mean - std::sqrt(root)) / square, 0.0, 1.0));
}

NoiseTaken TakenOfNoise(const NoiseFloorSettings& floor, const NoiseGainSettings& gains,
                        std::span<const float, Size> window, kiss_fftr_cfg transform) {
  Frames frames(window, transform);
  NoiseFloor noise;
  noise.Configure(floor);
  noise.Reset();
  NoiseGains lines;
  lines.Configure(gains);
  const std::size_t settling = (floor.buffers + 2) * NoiseFloor::FramesPerBuffer;
  double sum = 0, squares = 0, powers = 1e-30;
  for (std::size_t i = 0; i < settling + MeasuredFrames; ++i) {
    const NoiseFloor::Spectrum& power = frames.Next();
    noise.Take(power);
    const NoiseGains::Spectrum& gain = lines.Take(power, noise.Noise());
    if (i < settling) continue;
    for (std::size_t k = 0; k < power.size(); ++k) {
      const double taken = 1 - static_cast<double>(gain[k]);
      sum += power[k] * taken;
      squares += power[k] * taken * taken;
      powers += power[k];
    }
  }
  return {sum / powers, std::max(squares / powers, 1e-9)};
}

}  // namespace unit::sound
