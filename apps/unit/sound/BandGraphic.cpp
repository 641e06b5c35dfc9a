#include "unit/sound/BandGraphic.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "unit/sound/FirDesign.h"

namespace unit::sound {
namespace {

constexpr std::size_t MostLength = 512;  // taps up to the middle one
constexpr double WindowAttenuation = 50.0;
constexpr double WordUnity = 32767.0;

using Half = std::vector<double>;
using Matrix = std::array<BandValues, GraphicBands>;

// Tap k of the filter whose gain goes straight through the given points, flat outside of them: the transform
// of a broken line is a sum over its bends.
double BrokenLineTap(const BandValues& f, const BandValues& gain, std::size_t k) {
  const double turn = 2.0 * std::numbers::pi * static_cast<double>(k);
  double sum = 0.0;
  for (std::size_t i = 0; i + 1 < GraphicBands; ++i) {
    const double slope = (gain[i + 1] - gain[i]) / (f[i + 1] - f[i]);
    if (slope == 0.0) continue;  // most of them are where a point stands alone
    sum += slope * (std::cos(turn * f[i + 1]) - std::cos(turn * f[i]));
  }
  return 2.0 * sum / (turn * turn);
}

double BrokenLineMean(const BandValues& f, const BandValues& gain) {
  double area = gain.front() * f.front() + gain.back() * (0.5 - f.back());
  for (std::size_t i = 0; i + 1 < GraphicBands; ++i)
    area += (gain[i] + gain[i + 1]) / 2.0 * (f[i + 1] - f[i]);
  return 2.0 * area;
}

Half Design(const BandValues& f, const BandValues& gain, const Half& window) {
  Half half = window;
  half[0] *= BrokenLineMean(f, gain);
  for (std::size_t k = 1; k < half.size(); ++k) half[k] *= BrokenLineTap(f, gain, k);
  return half;
}

// What the filter gives at each centre for each point alone.
Matrix Responses(const BandValues& f, const Half& window) {
  Matrix gains{};
  for (std::size_t j = 0; j < GraphicBands; ++j) {
    BandValues one{};
    one[j] = 1.0;
    const Half half = Design(f, one, window);
    for (std::size_t i = 0; i < GraphicBands; ++i) gains[i][j] = GainAt(half, f[i]);
  }
  return gains;
}

// Gaussian elimination. The diagonal leads by far, so that no rows need to be exchanged.
BandValues Solve(Matrix a, BandValues x) {
  for (std::size_t i = 0; i < GraphicBands; ++i) {
    for (std::size_t row = i + 1; row < GraphicBands; ++row) {
      const double part = a[row][i] / a[i][i];
      for (std::size_t j = i; j < GraphicBands; ++j) a[row][j] -= part * a[i][j];
      x[row] -= part * x[i];
    }
  }
  for (std::size_t i = GraphicBands; i-- > 0;) {
    for (std::size_t j = i + 1; j < GraphicBands; ++j) x[i] -= a[i][j] * x[j];
    x[i] /= a[i][i];
  }
  return x;
}

}  // namespace

BandValues BandCentres(double sampleRate) {
  constexpr double Rate = 18000.0;
  // Those that do not follow the rate.
  struct Centre {
    double sampleRate;
    std::size_t band;
    double hertz;
  };
  constexpr Centre moved[] = {{7200, 9, 740}, {14400, 16, 4400}};
  BandValues centres{100,  300,  500,  700,  900,  1100, 1300, 1500, 1700, 1900,
                     2200, 2700, 3200, 3800, 4400, 5000, 5600, 6200, 6800, 7400};
  for (double& centre : centres) centre *= sampleRate / Rate;
  for (const Centre& one : moved) {
    if (one.sampleRate == sampleRate) centres[one.band] = one.hertz;
  }
  return centres;
}

std::vector<float> GraphicTaps(const std::array<std::uint16_t, GraphicBands>& words,
                               const BandValues& centres, double sampleRate, std::size_t mostTaps) {
  const std::size_t n = std::clamp<std::size_t>((mostTaps + 1) / 2, 1, MostLength);
  BandValues f{};
  BandValues wanted{};
  for (std::size_t i = 0; i < GraphicBands; ++i) {
    f[i] = centres[i] / sampleRate;
    wanted[i] = words[i] / WordUnity;
  }
  // The window rounds the bends; the points are moved so far that the centres come out right.
  Half window(n, 1.0);
  KaiserWindow(window, static_cast<double>(n), WindowAttenuation);
  return Mirrored(Design(f, Solve(Responses(f, window), wanted), window));
}

}  // namespace unit::sound
