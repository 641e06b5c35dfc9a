// Notch and slot as the unit designs them, against the laws of their words.
#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/FirDesign.h"

namespace sound_test::fir {
namespace {

using namespace measure;
using unit::sound::FirKind;
using unit::sound::FirTaps;

constexpr std::size_t MostTaps = 1024;

std::uint16_t AttenWord(double decibels) {
  return static_cast<std::uint16_t>(std::lround(32768.0 * Linear(-decibels)));
}

TEST(Fir, NotchHasItsDepthAtItsFrequencyAndItsWidthAtHalfHeight) {
  for (const double depth : {10.0, 30.0, 60.0}) {
    const auto word = static_cast<std::uint16_t>(std::lround(32768.0 * (1.0 - Linear(-depth))));
    const Signal taps = FirTaps(FirKind::Notch, {1000, 0, 120, word}, 7200, MostTaps);
    EXPECT_NEAR(GainAt(taps, 1000, 7200), -depth, 0.2);
    const double width = 1.5 * 7200 / 121;
    const double half = Decibels(1.0 - (1.0 - Linear(-depth)) / 2.0);
    EXPECT_NEAR(GainAt(taps, 1000 - width / 2, 7200), half, 0.1);
    EXPECT_NEAR(GainAt(taps, 1000 + width / 2, 7200), half, 0.1);
    EXPECT_NEAR(GainBetween(taps, 0, 850, 7200).least, 0.0, 0.1);
    EXPECT_NEAR(GainBetween(taps, 1150, 3600, 7200).most, 0.0, 0.1);
  }
}

TEST(Fir, SlotPassesItsFrequencyAndStopsTheOthers) {
  for (const double attenuation : {10.0, 40.0, 60.0}) {
    for (const double hertz : {300.0, 4000.0, 15000.0}) {
      const auto centre = static_cast<std::uint16_t>(hertz);
      const Signal taps = FirTaps(FirKind::Slot, {centre, 0, 400, AttenWord(attenuation)}, 36000, MostTaps);
      const double foot = 2.5 * 36000 / 401;
      EXPECT_NEAR(GainAt(taps, hertz, 36000), 0.0, 0.01);
      const Range below = GainBetween(taps, 0, hertz - foot, 36000),
                  above = GainBetween(taps, hertz + foot, 18000, 36000);
      EXPECT_NEAR(std::max(below.most, above.most), -attenuation, 0.5);
      EXPECT_NEAR(std::min(below.least, above.least), -attenuation, 0.5);
    }
  }
}

}  // namespace
}  // namespace sound_test::fir
