#include "analysis/SpectralInverse.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "link/FilterTransform.h"
#include "link/veltrana.h"
#include "text/Convert.h"

namespace vc {
namespace {

constexpr std::int16_t LastBin = 460;

// The curve by bin while it is worked on, in dB below the analyzer's top.
using Work = std::vector<float>;

float& At(Work& work, int bin) { return work[static_cast<std::size_t>(bin)]; }

// So many bins wide are that many hertz.
std::int16_t BinsOf(const SifBuild& build, double hertz) {
  return Nearest(Divide(build.gridLength * hertz, build.sampleRate));
}

double Octaves(double frequency, double corner) {
  const double ratio = Divide(frequency, corner);
  if (ratio <= 0) throw Fault{"Logarithm of zero"};
  return std::log(ratio) / std::log(2.0);
}

// The first two lines and the last one of the analyzer are not trusted.
Work Measured(const SpectrumTrace& yellowTrace) {
  constexpr float tenth = 0.1F, cleared = -1.0F / 256;
  Work SifWork(IfftCapacity, cleared);
  for (int line = 0; line < LastBin; ++line) {
    At(SifWork, line + 1) = yellowTrace[static_cast<std::size_t>(line)] * tenth;
  }
  At(SifWork, 1) = At(SifWork, 0) = At(SifWork, 2);
  At(SifWork, LastBin) = At(SifWork, LastBin - 1);
  return SifWork;
}

// Limits the whole curve to the range that it has in the band, and returns the quietest point of that.
float HoldToBand(Work& SifWork, int lo, int hi) {
  const auto [least, most] = std::minmax_element(SifWork.begin() + lo, SifWork.begin() + hi + 1);
  const float min = *least, top = *most;
  for (int bin = 0; bin <= LastBin; ++bin) At(SifWork, bin) = std::clamp(At(SifWork, bin), min, top);
  return top;
}

// From one bin on towards another one the curve changes by so much a bin.
void Ramp(Work& SifWork, int from, int to, float step) {
  const int way = to < from ? -1 : 1;
  float v = At(SifWork, from);
  for (int bin = from; bin != to + way; bin += way, v += step) At(SifWork, bin) = v;
}

// How far the curve is from where it is to be at the foot of a ramp, by the bins that there are.
float StepOf(float distance, int bins) {
  return static_cast<float>(Divide(static_cast<double>(distance), bins));
}

// What the curve becomes outside the band: of a voice it falls until it is 40 dB below the quietest point,
// of a noise it climbs back to that point, so that what is there is left alone.
void ShapeOutside(Work& SifWork, const SifBuild& build, std::int16_t lo, std::int16_t hi, float top) {
  constexpr double lowSkirt = 300, highSkirt = 500;  // Hz
  constexpr float voiceFloor = 40.0F;
  const bool voice = build.mode == sifMode::EqualizeVoice;
  const std::int16_t b300 = BinsOf(build, lowSkirt), b500 = BinsOf(build, highSkirt);
  const std::int16_t loEdge = MinMax(Nearest(lo - b300), 0, lo);
  const std::int16_t hiEdge = MinMax(Nearest(hi + b500), lo, LastBin);
  const float foot = voice ? top - voiceFloor : top;
  const float s1 = StepOf(foot - At(SifWork, lo), lo - loEdge);
  const float s2 = hiEdge > hi ? StepOf(foot - At(SifWork, hi), hiEdge - hi) : 0.0F;
  Ramp(SifWork, lo, loEdge, s1);
  Ramp(SifWork, hi, hiEdge, s2);
  const float below = voice ? At(SifWork, loEdge) : top, above = voice ? At(SifWork, hiEdge) : top;
  std::fill(SifWork.begin(), SifWork.begin() + loEdge + 1, below);
  std::fill(SifWork.begin() + hiEdge, SifWork.begin() + LastBin + 1, above);
}

void ShapePink(Work& SifWork, const SifBuild& build) {
  constexpr double corner = 100, slope = 3;  // Hz, dB an octave
  const int b = BinsOf(build, corner);
  for (int bin = b; bin <= LastBin; ++bin) {
    At(SifWork, bin) -= static_cast<float>(slope * Octaves(bin, b));
  }
}

// At the corner itself both sides take nothing away.
void ShapeVoice(Work& SifWork, const SifBuild& build) {
  constexpr double corner = 500, slope = 6;
  constexpr float atZeroHertz = -120.0F;
  const int b = BinsOf(build, corner);
  for (int bin = b; bin <= LastBin; ++bin) {
    At(SifWork, bin) -= static_cast<float>(slope * Octaves(bin, b));
  }
  for (int bin = std::min<int>(b, LastBin); bin >= 1; --bin) {
    At(SifWork, bin) -= static_cast<float>(slope * Octaves(b, bin));
  }
  At(SifWork, 0) = atZeroHertz;
}

void ShapeCustom(Work& SifWork, const SifBuild& build) {
  for (int bin = 1; bin <= LastBin; ++bin) {
    At(SifWork, bin) += build.customCurve[static_cast<std::size_t>(bin)];
  }
}

void ShapeOutput(Work& SifWork, const SifBuild& build) {
  switch (build.shape) {
    case sifShape::Pink:
      return ShapePink(SifWork, build);
    case sifShape::Voice:
      return ShapeVoice(SifWork, build);
    case sifShape::Custom:
      return ShapeCustom(SifWork, build);
    default:
      return;
  }
}

}  // namespace

SpectrumTrace BlueTraceOf(DrawnCurve sifCurve, std::int16_t filterAtten) {
  constexpr double fullEffect = 32767, decibels = 20;
  constexpr auto tenth = static_cast<double>(0.1F);
  const double a = filterAtten / fullEffect;
  SpectrumTrace SifBlueTrace{};
  for (std::size_t line = 0; line < SifBlueTrace.size(); ++line) {
    const double g = std::pow(10.0, static_cast<double>(sifCurve[line]) / decibels);
    const double d = decibels * std::log10(1 - (1 - g) * a);
    SifBlueTrace[line] = static_cast<float>(-(d / tenth) * a);
  }
  return SifBlueTrace;
}

SifBuild SifBuildOf(const SystemSettings& settings, int stage) {
  return {.loAttack = settings.sifLoAttack[stage],
          .hiAttack = settings.sifHiAttack[stage],
          .mode = settings.sifModeSelect[stage],
          .shape = settings.sifROSSelect[stage],
          .sampleRate = static_cast<double>(settings.sampleRate),
          .gridLength = FilterSpectrumScale,
          .customCurve = settings.customCurve[stage].items};
}

SpectrumTrace BuildSpectralInverse(const SpectrumTrace& yellowTrace, const SifBuild& build) {
  Work SifWork = Measured(yellowTrace);
  const auto lo = static_cast<std::int16_t>(build.loAttack + 1);
  const auto hi = static_cast<std::int16_t>(build.hiAttack + 1);
  const float top = HoldToBand(SifWork, lo, hi);
  ShapeOutside(SifWork, build, lo, hi, top);
  ShapeOutput(SifWork, build);
  const float m = *std::max_element(SifWork.begin(), SifWork.begin() + LastBin + 1);
  SpectrumTrace sifCurve{};
  for (int line = 0; line < LastBin; ++line) {
    sifCurve[static_cast<std::size_t>(line)] = At(SifWork, line + 1) - m;
  }
  return sifCurve;
}

}  // namespace vc
