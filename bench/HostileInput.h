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
  HostileInput(double rate, std::uint64_t seed) : scene_(rate, seed, {}), random_(seed) {}

  void SetRate(double rate) { scene_.SetRate(rate); }

  template <std::size_t Frames>
  void Next(std::array<std::array<float, Frames>, 2>& sound) {
    scene_.Process(sound[0], sound[1]);
    for (std::size_t side = 0; side < sound.size(); ++side) {
      if (left_ == 0) Choose();
      for (float& sample : sound[side]) sample = Of(kinds_[side], sample);
    }
    --left_;
  }

 private:
  enum class Kind { Scene, Silence, Noise, Squares, NotNumbers, FewNotNumbers, Infinite, Faint, Count };

  void Choose() {
    constexpr auto count = static_cast<std::uint64_t>(Kind::Count);
    left_ = 1 + random_.Next() % 300;
    const bool same = random_.Next() % 2 == 0;
    for (Kind& kind : kinds_) kind = random_.Next() % 3 == 0 ? Kind::Scene : Kind(random_.Next() % count);
    if (same) kinds_[1] = kinds_[0];
    height_ = static_cast<float>(std::pow(10.0, random_.Uniform(0, 20)));
    halfPeriod_ = 1 + random_.Next() % 400;
  }

  float Of(Kind kind, float scene) {
    constexpr float notNumber = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const bool up = ++at_ / halfPeriod_ % 2 == 0;
    switch (kind) {
      case Kind::Silence:
        return 0;
      case Kind::Noise:
        return static_cast<float>(random_.Uniform(-1, 1));
      case Kind::Squares:
        return up ? height_ : -height_;
      case Kind::NotNumbers:
        return notNumber;
      case Kind::FewNotNumbers:
        return at_ % 97 == 0 ? notNumber : scene;
      case Kind::Infinite:
        return up ? infinite : -infinite;
      case Kind::Faint:
        return scene * 1e-38F;
      default:
        return scene;
    }
  }

  unit::sound::Scene scene_;
  unit::sound::RandomSource random_;
  std::array<Kind, 2> kinds_{};
  std::uint64_t left_ = 0;  // blocks
  std::uint64_t at_ = 0, halfPeriod_ = 1;
  float height_ = 1;
};

}  // namespace bench
