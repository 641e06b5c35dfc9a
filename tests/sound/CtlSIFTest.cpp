// A room with hum and a fan, levelled by the panel of the spectral inverse filter: it is measured in the
// unit, read over the line, built here, and heard in the unit again.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SoundRun.h"
#include "model/Kinds.h"

namespace sound_test::spectral_inverse {
namespace {

using namespace measure;

// Noise that is strongest around 700 Hz and falls to both sides, and a hum of 120 Hz with its harmonics.
Signal Room(std::size_t size, double rate, std::uint32_t seed) {
  Signal sound = Noise(size, 0.3F, seed);
  const double turn = 2 * std::numbers::pi * 700 / rate, radius = 0.8;
  float one = 0, two = 0;
  for (float& sample : sound) {
    const float shaped = 0.2F * sample + static_cast<float>(2 * radius * std::cos(turn)) * one -
                         static_cast<float>(radius * radius) * two;
    two = one;
    sample = one = shaped;
  }
  for (int harmonic = 1; harmonic <= 10; ++harmonic) {
    const Signal tone = Sine(120.0 * harmonic, rate, size, 0.03 / harmonic);
    for (std::size_t i = 0; i < size; ++i) sound[i] += tone[i];
  }
  return sound;
}

// The mean power in dB of each so many lines from one line up to another, over many spectra.
std::vector<double> Bands(const Signal& sound, int from, int to, int width) {
  std::vector<double> bands(static_cast<std::size_t>((to - from) / width), 1e-30);
  ForEachSpectrum(sound, 1024, [&](const std::vector<double>& powers) {
    for (std::size_t line = 0; line < bands.size() * static_cast<std::size_t>(width); ++line) {
      bands[line / static_cast<std::size_t>(width)] += powers[line + static_cast<std::size_t>(from) + 1];
    }
  });
  for (double& band : bands) band = 10 * std::log10(band / width);
  return bands;
}

struct SifRun : support::SoundRun {
  static constexpr int Lower = 30, Upper = 290, Width = 20;  // 363 to 3410 Hz, at 12 kHz

  SifRun() {
    unit.Now().sound.spectrum = [this](unsigned trace) { return engine.Lines(trace); };
    OpenFilter(1, vc::FilterKind::SpectralInverse);
    Edit("sifHiAttack", std::to_string(Upper), 1);
    Edit("sifLoAttack", std::to_string(Lower), 1);
    Type("txtAverages", "128");
  }
  Signal Heard(double seconds, std::uint32_t seed) {
    return Left(Room(static_cast<std::size_t>(seconds * Rate()), Rate(), seed));
  }
  // Until the panel has the spectrum.
  void Listen() {
    Take();
    Heard(20, 1);
    Settle();
  }
  void Build() {
    EXPECT_EQ(Click("btnBuild"), "");
    Take();
  }
};

double Spread(const std::vector<double>& bands) {
  const auto [least, most] = std::ranges::minmax(bands);
  return most - least;
}

TEST(SpectralInverse, LevelsAVoiceBand) {
  SifRun run;
  run.Listen();
  const auto before = Bands(run.Heard(10, 2), run.Lower, run.Upper, run.Width);
  run.Build();
  const auto after = Bands(run.Heard(10, 2), run.Lower, run.Upper, run.Width);
  EXPECT_GT(Spread(before), 20);
  EXPECT_LT(Spread(after), 3);
}

TEST(SpectralInverse, AttacksANoiseWhereItIsStrong) {
  SifRun run;
  run.Set("ModeSelect(1)", "1");
  run.Listen();
  const auto before = Bands(run.Heard(10, 2), 0, 460, run.Width);
  run.Build();
  const auto after = Bands(run.Heard(10, 2), 0, 460, run.Width);
  constexpr std::size_t first = 3, behind = 14, clear = 17;  // bands within the limits, and beyond the ramp
  const double quietest = *std::min_element(before.begin() + first, before.begin() + behind);
  for (std::size_t band = first; band < behind; ++band) {
    EXPECT_NEAR(after[band], quietest, 3) << band;
  }
  for (std::size_t band = clear; band < after.size(); ++band) EXPECT_NEAR(after[band], before[band], 0.2);
}

}  // namespace
}  // namespace sound_test::spectral_inverse
