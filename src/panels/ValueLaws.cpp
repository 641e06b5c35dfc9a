#include "panels/ValueLaws.h"

#include <algorithm>
#include <cmath>

#include "text/Convert.h"

namespace vc {
namespace {

constexpr double UnityGain = 16;

}  // namespace

namespace {

constexpr int FineTo = 256, MiddleTo = 1024;
constexpr int CoarseShift = 2304;  // the coarse part goes on where the middle one ends

}  // namespace

int ShownMu(std::int16_t stored) {
  if (stored <= FineTo) return stored;
  if (stored <= MiddleTo) return 2 * stored - FineTo;
  return 4 * stored - CoarseShift;
}

double StoredMu(std::int16_t typed) {
  if (typed <= FineTo) return typed;
  if (typed <= MiddleTo) return Nearest((typed + FineTo) / 2.0);
  return Nearest((typed + CoarseShift) / 4.0);
}

std::int16_t SizedTaps(std::int16_t position, std::int16_t taps) {
  constexpr std::int16_t blocksFrom = 120, wholeBlocks = 32752, upToNext = 15;
  if (position == taps || position < blocksFrom) return position;
  return LowWord((position > taps ? position + upToNext : position) & wholeBlocks);
}

double NotchWidthHz(std::int16_t n, double sampleRate) { return 3 * sampleRate / (2 * (n + 1.0)) + 0.5; }

double CombHz(std::int16_t period, double sampleRate) { return Divide(sampleRate, period); }

double LineHz(int line, double sampleRate) {
  constexpr double transform = 1024;
  return sampleRate / transform * (line + 1);
}

double MasterAttenuationDb(std::int16_t code) { return 20 * std::log10(1 - code / 32768.0); }

double AttenuationFractionDb(double fraction) { return MasterAttenuationDb(Nearest(fraction * 32767)); }

double AttenuationFraction(double decibels) {
  const double kept = std::pow(10.0, -std::abs(decibels) / 20);
  return std::min(std::round(32768 * (1 - kept)), 32767.0) / 32767;
}

double OutputGainDb(std::int16_t code) { return 20 * std::log10(code / UnityGain); }

std::int16_t OutputGainCode(double decibels) { return Nearest(UnityGain * std::pow(10, decibels / 20)); }

}  // namespace vc
