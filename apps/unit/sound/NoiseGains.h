// What the lines of a spectrum keep so that the noise in them goes and speech stays.
#pragma once

#include <array>
#include <cstddef>

#include "unit/sound/NoiseFloor.h"

namespace unit::sound {

enum class NoiseSmoothing { Ratio, Spectrum, None };

struct NoiseGainSettings {
  NoiseSmoothing smoothing = NoiseSmoothing::Ratio;
  float averaging = 0.97F;    // of what is smoothed, 0..1: what the last frame counts in the next one
  float floor = 0;            // the least gain, 0..1, of the amplitude
  double sampleRate = 12000;  // Hz
};

// Ratio: the gain of the least error in the logarithm of the spectrum, for the signal-to-noise ratio that the
// decision-directed rule gives (Y. Ephraim, D. Malah, IEEE Transactions on Acoustics, Speech and Signal
// Processing 32, 1984, and 33, 1985); its smoothing gives way to what stands clear of the noise. Spectrum:
// Wiener's gain for the averaged spectrum. None: Wiener's gain for the frame alone.
//
// But for None, what a chance peak of the noise would leave as a short tone is evened out: where nothing
// stands clear, a line gets the mean gain of many lines around it (T. Esch, P. Vary, ICASSP 2009; here each
// line by its surroundings), and no line falls further than 22 dB, so that what is left is noise and not
// silence with holes.
class NoiseGains {
 public:
  using Spectrum = NoiseFloor::Spectrum;
  static constexpr std::size_t Lines = NoiseFloor::Lines;

  void Configure(const NoiseGainSettings& wanted);
  void Reset();

  // Of the next frame, 0..1: from the powers of its lines and of the noise in them, all above 0.
  const Spectrum& Take(const Spectrum& power, const Spectrum& noise);

 private:
  // Means of neighbours in a time that does not depend on their number.
  class Sums {
   public:
    void Add(std::size_t line, float value) { sums[line + 1] = sums[line] + value; }
    // Of the lines up to reach away from a line.
    float Mean(std::size_t line, std::size_t reach) const;

   private:
    std::array<double, Lines + 1> sums{};  // of the lines before each
  };

  void FindClear();
  float Gain(std::size_t line, float noise) const;
  void EvenOut();

  NoiseGainSettings settings;
  float floor = 0;
  std::size_t nearReach = 1, surroundings = 1;  // lines on each side
  float kept = 0;
  Spectrum ratio{};  // of the power to the noise
  Spectrum near{};   // its mean over neighbours in time and frequency
  Spectrum clear{};  // whether a line stands clear of the noise, 0..1
  Spectrum last{};   // Ratio: the powers that the last frame kept; Spectrum: the averages
  Spectrum gain{};
  Sums ratios;
};

}  // namespace unit::sound
