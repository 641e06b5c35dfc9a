// The response that is built of a measured spectrum, against one that is reckoned in another way: bin by bin
// in closed form.
#include <algorithm>
#include <cmath>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/SpectralInverse.h"

namespace vc {
namespace {

using testing::Each;

constexpr int Voice = 0, Noise = 1, Flat = 0, Pink = 1, VoiceShape = 2, Custom = 3;

struct Reckoned {
  const SpectrumTrace& yellow;
  const SifBuild& build;
  int lo = build.loAttack + 1, hi = build.hiAttack + 1;
  int loEdge = std::max(0, lo - Bins(300)), hiEdge = std::min(460, hi + Bins(500));

  int Bins(double hertz) const {
    return static_cast<int>(std::nearbyint(build.gridLength * hertz / build.sampleRate));
  }
  double Measured(int bin) const {
    return yellow[static_cast<std::size_t>(std::clamp(bin, 2, 459) - 1)] / 10.0;
  }
  double InBand(bool quietest) const {
    double found = Measured(lo);
    for (int bin = lo; bin <= hi; ++bin) {
      found = quietest ? std::max(found, Measured(bin)) : std::min(found, Measured(bin));
    }
    return found;
  }
  double Levelled(int bin) const {
    const double top = InBand(true), foot = build.mode == Voice ? top - 40 : top;
    const double held = std::clamp(Measured(std::clamp(bin, lo, hi)), InBand(false), top);
    if (bin > lo && bin < hi) return held;
    if (bin <= lo) return held + (foot - held) * std::min(1.0, double(lo - bin) / (lo - loEdge));
    if (hiEdge == hi) return build.mode == Voice ? held : top;
    return held + (foot - held) * std::min(1.0, double(bin - hi) / (hiEdge - hi));
  }
  double At(int bin) const {
    const double level = Levelled(bin);
    if (build.shape == Pink) return level - 3 * std::max(0.0, std::log2(double(bin) / Bins(100)));
    if (build.shape == VoiceShape)
      return bin == 0 ? -120 : level - 6 * std::abs(std::log2(double(bin) / Bins(500)));
    if (build.shape == Custom && bin > 0) return level + build.customCurve[static_cast<std::size_t>(bin)];
    return level;
  }
  double Most() const {
    double most = At(0);
    for (int bin = 1; bin <= 460; ++bin) most = std::max(most, At(bin));
    return most;
  }
};

struct SpectralInverses : testing::Test {
  std::vector<float> custom = std::vector<float>(461);
  SpectrumTrace yellow{};
  SifBuild build{100, 300, Voice, Flat, 16000, 1024, custom};
};

TEST_F(SpectralInverses, AreWhatIsReckonedInClosedForm) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> level(0, 700), drop(-60, 0);
  for (const auto& [lo, hi] : std::vector<std::pair<int, int>>{
           {0, 10}, {0, 459}, {1, 11}, {20, 200}, {100, 300}, {430, 445}, {440, 459}, {449, 459}}) {
    for (const double rate : {7200.0, 12000.0, 36000.0}) {
      for (int kind = 0; kind < 8; ++kind) {
        for (float& line : yellow) line = level(random);
        for (float& bin : custom) bin = drop(random);
        build = {static_cast<std::int16_t>(lo),
                 static_cast<std::int16_t>(hi),
                 static_cast<std::int16_t>(kind % 2),
                 static_cast<std::int16_t>(kind / 2),
                 rate,
                 1024,
                 custom};
        const SpectrumTrace built = BuildSpectralInverse(yellow, build);
        const Reckoned reckoned{yellow, build};
        const double most = reckoned.Most();
        for (int line = 0; line < 460; ++line) {
          ASSERT_NEAR(built[static_cast<std::size_t>(line)], reckoned.At(line + 1) - most, 2e-4)
              << lo << ".." << hi << ", rate " << rate << ", kind " << kind << ", line " << line;
        }
      }
    }
  }
}

TEST_F(SpectralInverses, OfAFlatSpectrumAreFlatOrARamp) {
  yellow.fill(350);
  build.hiAttack = 110;
  build.mode = Noise;
  EXPECT_THAT(BuildSpectralInverse(yellow, build), Each(0.0F));
  build.mode = Voice;
  const SpectrumTrace ramp = BuildSpectralInverse(yellow, build);
  EXPECT_NEAR(ramp[0], -40, 1e-4);
  EXPECT_NEAR(ramp[100 - 19 / 2], -40.0 * 9 / 19, 1e-4);  // 300 Hz are 19 bins
  EXPECT_EQ(ramp[105], 0);
  EXPECT_NEAR(ramp[459], -40, 1e-4);
}

TEST_F(SpectralInverses, FailWhereThereIsNoRoomForARampOrACorner) {
  const auto fails = [&](int lo, int shape, double rate) {
    build.loAttack = static_cast<std::int16_t>(lo);
    build.shape = static_cast<std::int16_t>(shape);
    build.sampleRate = rate;
    try {
      BuildSpectralInverse(yellow, build);
      return false;
    } catch (const Fault&) {
      return true;
    }
  };
  EXPECT_FALSE(fails(0, Flat, 1024 * 300 / 0.51));
  EXPECT_TRUE(fails(0, Flat, 1024 * 300 / 0.49));  // the lower ramp has no bin
  EXPECT_FALSE(fails(5, Pink, 1024 * 100 / 0.51));
  EXPECT_TRUE(fails(5, Pink, 1024 * 100 / 0.49));
  EXPECT_TRUE(fails(5, Flat, 0));
}

TEST(FilterShape, IsWeakenedTwiceByTheAmount) {
  std::array<float, CurveLines> curve{};
  curve[1] = -20;
  EXPECT_NEAR(BlueTraceOf(curve, 32767)[1], 200, 1e-3);
  EXPECT_EQ(BlueTraceOf(curve, 32767)[0], 0);
  const double half = 16384 / 32767.0;
  EXPECT_NEAR(BlueTraceOf(curve, 16384)[1], -200 * std::log10(1 - 0.9 * half) * half, 1e-3);
}

}  // namespace
}  // namespace vc
