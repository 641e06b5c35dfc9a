// The filters that the unit designs itself, against the laws of their words.
#include <array>

#include <gtest/gtest.h>

#include "sound/Measure.h"
#include "unit/sound/FirDesign.h"

namespace sound_test::fir {
namespace {

using namespace measure;
using unit::sound::FirKind;
using unit::sound::FirTaps;
using unit::sound::FirWords;

constexpr std::size_t MostTaps = 1024;

std::uint16_t AttenWord(double decibels) {
  return static_cast<std::uint16_t>(std::lround(32768.0 * Linear(-decibels)));
}

struct CutOffCase {
  FirKind kind;
  std::uint16_t first, second, n;
  double attenuation, sampleRate;
};

// From edge to full attenuation.
double HalfTransition(const CutOffCase& c) {
  return 0.55 * c.sampleRate * (c.attenuation + 36.0 - 7.95) / (14.36 * (2.0 * c.n - 2.0));
}

void ExpectPassed(const Signal& taps, double from, double to, double sampleRate) {
  const Range gain = GainBetween(taps, from, to, sampleRate);
  EXPECT_NEAR(gain.least, 0.0, 0.1) << from << " to " << to;
  EXPECT_NEAR(gain.most, 0.0, 0.1) << from << " to " << to;
}

void ExpectStopped(const Signal& taps, double from, double to, const CutOffCase& c) {
  const Range gain = GainBetween(taps, from, to, c.sampleRate);
  EXPECT_NEAR(gain.least, -c.attenuation, 0.7) << from << " to " << to;
  EXPECT_NEAR(gain.most, -c.attenuation, 0.7) << from << " to " << to;
}

TEST(Fir, CutOffFiltersPassAndStop) {
  const CutOffCase cases[] = {
      {FirKind::Lowpass, 1000, 0, 100, 60, 7200},      {FirKind::Lowpass, 8000, 0, 463, 40, 36000},
      {FirKind::Highpass, 800, 0, 200, 50, 12000},     {FirKind::Highpass, 3000, 0, 60, 10, 18000},
      {FirKind::Bandpass, 900, 2200, 150, 60, 7200},   {FirKind::Bandpass, 2000, 9000, 100, 30, 24000},
      {FirKind::Bandstop, 1500, 3500, 120, 60, 14400}, {FirKind::Bandstop, 4000, 12000, 80, 20, 36000},
  };
  for (const CutOffCase& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.kind));
    const Signal taps =
        FirTaps(c.kind, FirWords{c.first, c.second, c.n, AttenWord(c.attenuation)}, c.sampleRate, MostTaps);
    ASSERT_EQ(taps.size(), 2U * c.n - 1);
    const bool band = c.second > 0;
    const bool inverted = c.kind == FirKind::Highpass || c.kind == FirKind::Bandstop;
    const double half = HalfTransition(c), nyquist = c.sampleRate / 2;
    const double upper = band ? c.second : c.first;
    const double lowest = band ? c.first + half : 0.0;
    if (inverted) {
      ExpectStopped(taps, lowest, upper - half, c);
      ExpectPassed(taps, upper + half, nyquist, c.sampleRate);
      if (band) ExpectPassed(taps, 0.0, c.first - half, c.sampleRate);
    } else {
      ExpectPassed(taps, lowest, upper - half, c.sampleRate);
      ExpectStopped(taps, upper + half, nyquist, c);
      if (band) ExpectStopped(taps, 0.0, c.first - half, c);
    }
  }
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
