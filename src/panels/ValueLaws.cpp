#include "panels/ValueLaws.h"

#include <cmath>

#include "text/Convert.h"

namespace vc {

int ShownMu(std::int16_t stored) {
  constexpr int fineTo = 256, middleTo = 1024;
  if (stored <= fineTo) return stored;
  if (stored <= middleTo) return 2 * stored - fineTo;
  return 4 * stored - 2304;  // goes on where the middle part ends
}

double NotchWidthHz(std::int16_t n, double sampleRate) { return 3 * sampleRate / (2 * (n + 1.0)) + 0.5; }

double CombHz(std::int16_t period, double sampleRate) { return Divide(sampleRate, period); }

double LineHz(int line, double sampleRate) {
  constexpr double transform = 1024;
  return sampleRate / transform * (line + 1);
}

double MasterAttenuationDb(std::int16_t code) { return 20 * std::log10(1 - code / 32768.0); }

double AttenuationFractionDb(double fraction) { return MasterAttenuationDb(Nearest(fraction * 32767)); }

double OutputGainDb(std::int16_t code) {
  constexpr double unity = 16;
  return 20 * std::log10(code / unity);
}

}  // namespace vc
