#include "model/GraphicFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "model/Bandwidth.h"
#include "model/RegisterImage.h"
#include "model/SynthesisBlock.h"

namespace vc {
namespace {

constexpr std::size_t Bands = BandCount;
constexpr double WordUnity = 32767;
constexpr double RippleAttenuation = 50;

using PerBand = std::array<double, Bands>;
using Matrix = std::array<PerBand, Bands>;

// A cosine at a band repeats after BandSteps samples, and reads the same backwards: one half period of them
// stands for all samples.
constexpr std::size_t HalfPeriod = BandSteps / 2;
template <typename T>
using PerSample = std::array<T, HalfPeriod + 1>;
using Waves = PerSample<PerBand>;

std::size_t Folded(std::size_t sample) {
  const std::size_t within = sample % BandSteps;
  return std::min(within, BandSteps - within);
}

PerBand InCycles(const std::array<int, Bands>& places) {
  PerBand f{};
  std::ranges::transform(places, f.begin(), [](int place) { return place / static_cast<double>(BandSteps); });
  return f;
}

Waves WavesAt(const std::array<int, Bands>& places) {
  std::array<double, BandSteps> cosine{};
  for (std::size_t step = 0; step < cosine.size(); step++) {
    cosine[step] = std::cos(2 * std::numbers::pi * static_cast<double>(step) / BandSteps);
  }
  Waves waves{};
  for (std::size_t band = 0; band < Bands; band++) {
    const auto place = static_cast<std::size_t>(places[band]);
    for (std::size_t k = 0; k <= HalfPeriod; k++) waves[k][band] = cosine[place * k % BandSteps];
  }
  return waves;
}

// A line through the gains at the bands, flat outside: its mean over all frequencies, and by how much its
// slope changes at each band, of which cosines its other taps are made.
struct BrokenLine {
  double mean = 0;
  PerBand bends{};
};

BrokenLine LineThrough(const PerBand& f, const PerBand& gains) {
  BrokenLine line{.mean = 2 * (gains.front() * f.front() + gains.back() * (0.5 - f.back()))};
  for (std::size_t i = 0; i + 1 < Bands; i++) {
    const double width = f[i + 1] - f[i];
    const double slope = (gains[i + 1] - gains[i]) / width;
    line.mean += (gains[i] + gains[i + 1]) * width;
    line.bends[i] -= slope;
    line.bends[i + 1] += slope;
  }
  return line;
}

// What a bend's cosine has to be multiplied by to be taps under the window: the transform of a broken line is
// a sum over its bends.
HalfTaps BendTaps(int halfLength) {
  HalfTaps taps = KaiserWindow(halfLength, KaiserBeta(RippleAttenuation), halfLength);
  for (std::size_t k = 1; k < taps.size(); k++) {
    const double turn = 2 * std::numbers::pi * static_cast<double>(k);
    taps[k] *= 2 / (turn * turn);
  }
  return taps;
}

// What one bend of 1 at each band adds to the gain at every band; the same both ways.
Matrix GainsOfBends(const HalfTaps& bendTaps, const Waves& waves) {
  PerSample<double> folded{};
  for (std::size_t k = 1; k < bendTaps.size(); k++) folded[Folded(k)] += 2 * bendTaps[k];
  Matrix gains{};
  for (std::size_t i = 0; i < Bands; i++) {
    PerBand sums{};
    for (std::size_t k = 0; k <= HalfPeriod; k++) {
      const double weight = folded[k] * waves[k][i];
      for (std::size_t j = 0; j < Bands; j++) sums[j] += weight * waves[k][j];
    }
    gains[i] = sums;
  }
  return gains;
}

// Row i: what the filter gives at band i for each point of the line alone.
Matrix GainsOfPoints(const PerBand& f, const Matrix& ofBends) {
  Matrix gains{};
  for (std::size_t j = 0; j < Bands; j++) {
    PerBand point{};
    point[j] = 1;
    const BrokenLine line = LineThrough(f, point);
    for (std::size_t i = 0; i < Bands; i++) {
      gains[i][j] = line.mean;
      const std::size_t last = std::min(j + 1, Bands - 1);
      for (std::size_t bend = j - std::min<std::size_t>(j, 1); bend <= last; bend++) {
        gains[i][j] += line.bends[bend] * ofBends[i][bend];
      }
    }
  }
  return gains;
}

// Gaussian elimination; the diagonal leads by far.
PerBand Solved(Matrix a, PerBand x) {
  for (std::size_t i = 0; i < Bands; i++) {
    for (std::size_t row = i + 1; row < Bands; row++) {
      const double part = a[row][i] / a[i][i];
      for (std::size_t j = i; j < Bands; j++) a[row][j] -= part * a[i][j];
      x[row] -= part * x[i];
    }
  }
  for (std::size_t i = Bands; i-- > 0;) {
    for (std::size_t j = i + 1; j < Bands; j++) x[i] -= a[i][j] * x[j];
    x[i] /= a[i][i];
  }
  return x;
}

GraphicFilter FilterOf(const SystemSettings& settings, const StageBlock& block) {
  GraphicFilter filter{.places = BandPlaces(settings.bandwidthIndex)};
  for (std::size_t band = 0; band < Bands; band++) filter.gains[band] = BlockWord(block, band) / WordUnity;
  filter.halfLength = std::min((BandwidthOf(settings.bandwidthIndex).generalStageTaps + 1) / 2, 512);
  return filter;
}

}  // namespace

GraphicFilter GraphicFilterOf(const SystemSettings& settings, int stage) {
  return FilterOf(settings, TwentyBandBlock(settings.bandGain[stage].items));
}

GraphicFilter GraphicEqualizerOf(const SystemSettings& settings, int equalizer) {
  return FilterOf(settings, TwentyBandBlock(settings.eqBandGain[EqualizerPosition + equalizer - 1].items));
}

HalfTaps GraphicTaps(const GraphicFilter& filter) {
  const PerBand f = InCycles(filter.places);
  const Waves waves = WavesAt(filter.places);
  HalfTaps taps = BendTaps(filter.halfLength);
  const PerBand points = Solved(GainsOfPoints(f, GainsOfBends(taps, waves)), filter.gains);
  const BrokenLine line = LineThrough(f, points);
  PerSample<double> sums{};
  for (std::size_t k = 0; k <= HalfPeriod; k++) {
    for (std::size_t band = 0; band < Bands; band++) sums[k] += line.bends[band] * waves[k][band];
  }
  for (std::size_t k = 1; k < taps.size(); k++) taps[k] *= sums[Folded(k)];
  taps.front() = line.mean;
  return taps;
}

std::vector<double> GainsAt(const GraphicFilter& filter, std::span<const double> frequencies) {
  return AmplitudesAt(GraphicTaps(filter), frequencies);
}

std::vector<double> TellingAt(const GraphicFilter& filter) {
  const PerBand f = InCycles(filter.places);
  return {f.begin(), f.end()};
}

}  // namespace vc
