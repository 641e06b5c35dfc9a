// What the lines of a spectrum keep so that the noise in them goes and speech stays.
#pragma once

#include <array>
#include <cstddef>

#include "unit/sound/NoiseFloor.h"

namespace unit::sound {

enum class NoiseSmoothing { Ratio, Spectrum, None };

struct NoiseGainSettings {
  NoiseSmoothing smoothing = NoiseSmoothing::Ratio;
  float averaging = 0.94F;    // of what is smoothed, 0..1: what the last frame counts in the next one
  float floor = 0;            // the least gain, 0..1, of the amplitude
  double sampleRate = 12000;  // Hz
};

// Wiener's gain for a signal-to-noise ratio. Ratio: the one that the decision-directed rule gives (Y.
// Ephraim, D. Malah, IEEE Transactions on Acoustics, Speech and Signal Processing 32, 1984); its smoothing
// gives way to what stands clear of the noise. Spectrum: that of the averaged spectrum. None: that of the
// frame alone.
//
// But for None, a line keeps that gain as far as speech is present in it: between it and the least gain, 22
// dB down, it lies by the probability of speech, which is found over neighbours, far neighbours and the whole
// frame (I. Cohen, B. Berdugo, Signal Processing 81, 2001: "optimally modified log-spectral amplitude"). So
// a chance peak of the noise leaves no tone, and what is left is noise and not silence with holes.
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
  float SignalRatio(std::size_t line, float noise) const;
  void WeighBySpeech();
  float Likelihood(float mean) const;

  NoiseGainSettings settings;
  float floor = 0, floorLog = 0;
  std::size_t nearReach = 1, farReach = 1, voiceReach = 1;  // lines on each side
  float clearKept = 0, presentKept = 0;
  float leastPresent = 0, surelyPresent = 1, perLog = 1;
  Spectrum ratio{};    // of the power to the noise
  Spectrum near{};     // its mean over neighbours in time and frequency
  Spectrum clear{};    // whether a line stands clear of the noise, 0..1
  Spectrum signal{};   // the signal-to-noise ratio
  Spectrum present{};  // its average, of short memory
  Spectrum last{};     // Ratio: the powers of speech in the last frame; Spectrum: the averages
  Spectrum gain{};
};

}  // namespace unit::sound
