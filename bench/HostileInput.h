// Sound for the simulated unit as no converter gives it: far above full scale, too faint, no number at all.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "unit/sound/Scene.h"

namespace bench {

// The scene, and for up to 300 blocks on either side something else. The same seed gives the same sound.
class HostileInput {
 public:
  HostileInput(double rate, std::uint64_t seed) : scene(rate, seed, {}), random(seed) {}

  void SetRate(double rate) { scene.SetRate(rate); }

  template <std::size_t Frames>
  void Next(std::array<std::array<float, Frames>, 2>& sound) {
    scene.Process(sound[0], sound[1]);
    for (std::size_t side = 0; side < sound.size(); ++side) {
      if (left == 0) Choose();
      for (float& sample : sound[side]) sample = Of(kinds[side], sample);
    }
    --left;
  }

 private:
  enum class Kind { Scene, Silence, Noise, Squares, NotNumbers, FewNotNumbers, Infinite, Faint, Count };

  void Choose() {
    constexpr auto count = static_cast<std::uint64_t>(Kind::Count);
    left = 1 + random.Next() % 300;
    const bool same = random.Next() % 2 == 0;
    for (Kind& kind : kinds) kind = random.Next() % 3 == 0 ? Kind::Scene : Kind(random.Next() % count);
    if (same) kinds[1] = kinds[0];
    height = static_cast<float>(std::pow(10.0, random.Uniform(0, 20)));
    halfPeriod = 1 + random.Next() % 400;
  }

  float Of(Kind kind, float sample) {
    constexpr float notNumber = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const bool up = ++at / halfPeriod % 2 == 0;
    switch (kind) {
      case Kind::Silence:
        return 0;
      case Kind::Noise:
        return static_cast<float>(random.Uniform(-1, 1));
      case Kind::Squares:
        return up ? height : -height;
      case Kind::NotNumbers:
        return notNumber;
      case Kind::FewNotNumbers:
        return at % 97 == 0 ? notNumber : sample;
      case Kind::Infinite:
        return up ? infinite : -infinite;
      case Kind::Faint:
        return sample * 1e-38F;
      default:
        return sample;
    }
  }

  unit::sound::Scene scene;
  unit::sound::RandomSource random;
  std::array<Kind, 2> kinds{};
  std::uint64_t left = 0;  // blocks
  std::uint64_t at = 0, halfPeriod = 1;
  float height = 1;
};

}  // namespace bench
