// The graphic equalizer: the gains at its bands' centres.
#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/BandGraphic.h"

namespace sound_test::band_graphic {
namespace {

using namespace measure;
using namespace unit::sound;

std::uint16_t Word(double attenuation) {
  return static_cast<std::uint16_t>(std::lround(32767.0 * Linear(-attenuation)));
}

using Curve = std::array<double, GraphicBands>;  // attenuation in dB

std::vector<Curve> Curves() {
  Curve flat{}, comb{}, slope{}, step{}, one{};
  for (std::size_t i = 0; i < GraphicBands; ++i) {
    comb[i] = i % 2 == 0 ? 0.0 : 40.0;
    slope[i] = 2.0 * static_cast<double>(i);
    step[i] = i < 10 ? 40.0 : 0.0;
  }
  one.fill(40.0);
  one[7] = 0.0;
  return {flat, comb, slope, step, one};
}

TEST(BandGraphic, GainsHoldAtTheCentres) {
  for (const double sampleRate : {7200.0, 18000.0, 36000.0}) {
    for (const std::size_t mostTaps : {246U, 1024U}) {
      const BandValues centres = BandCentres(sampleRate);
      for (const Curve& curve : Curves()) {
        std::array<std::uint16_t, GraphicBands> words{};
        std::ranges::transform(curve, words.begin(), Word);
        const Signal taps = GraphicTaps(words, centres, sampleRate, mostTaps);
        EXPECT_LE(taps.size(), mostTaps);
        for (std::size_t i = 0; i < GraphicBands; ++i) {
          EXPECT_NEAR(GainAt(taps, centres[i], sampleRate), -curve[i], 0.2)
              << sampleRate << ' ' << mostTaps << ' ' << i;
        }
        EXPECT_LT(GainBetween(taps, 0, sampleRate / 2, sampleRate, 2000).most, 1.5)
            << sampleRate << ' ' << mostTaps;
      }
    }
  }
}

TEST(BandGraphic, FlatIsTransparent) {
  std::array<std::uint16_t, GraphicBands> words{};
  words.fill(32767);
  const Signal taps = GraphicTaps(words, BandCentres(12000), 12000, 246);
  const Range gain = GainBetween(taps, 0, 6000, 12000);
  EXPECT_NEAR(gain.least, 0.0, 0.001);
  EXPECT_NEAR(gain.most, 0.0, 0.001);
}

}  // namespace
}  // namespace sound_test::band_graphic
