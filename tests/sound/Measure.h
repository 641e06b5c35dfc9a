// Measuring what is under test from outside: sines, impulses and noise in, decibels out.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

#include <kissfft/kiss_fftr.h>

#include "unit/sound/Blocks.h"

namespace measure {

using Signal = std::vector<float>;

inline double Decibels(double ratio) { return 20.0 * std::log10(std::max(ratio, 1e-12)); }
inline double Linear(double decibels) { return std::pow(10.0, decibels / 20.0); }

inline Signal Sine(double hertz, double sampleRate, std::size_t size, double amplitude = 1.0) {
  Signal signal(size);
  for (std::size_t i = 0; i < size; ++i) {
    signal[i] = static_cast<float>(
        amplitude * std::sin(2.0 * std::numbers::pi * hertz / sampleRate * static_cast<double>(i)));
  }
  return signal;
}

inline Signal Impulse(std::size_t size) {
  Signal signal(size);
  signal[0] = 1.0F;
  return signal;
}

// White, -amplitude..amplitude, the same for the same seed on every machine.
inline Signal Noise(std::size_t size, float amplitude = 0.5F, std::uint32_t seed = 1) {
  Signal signal(size);
  for (float& sample : signal) {
    seed = seed * 1664525U + 1013904223U;
    sample = amplitude * (static_cast<float>(seed >> 8) / 8388608.0F - 1.0F);
  }
  return signal;
}

// What a processor with Process(in, out) makes of a signal, in blocks of the given size.
template <typename Processor>
Signal Processed(Processor& processor, Signal signal, std::size_t block = unit::sound::BlockFrames) {
  for (std::size_t at = 0; at < signal.size(); at += block) {
    const std::span<float> piece = std::span(signal).subspan(at, std::min(block, signal.size() - at));
    processor.Process(piece, piece);
  }
  return signal;
}

// The same in blocks of ever other sizes from 1 to BlockFrames.
template <typename Processor>
Signal ProcessedInPieces(Processor& processor, Signal signal) {
  std::uint32_t seed = 7;
  for (std::size_t at = 0; at < signal.size();) {
    seed = seed * 1664525U + 1013904223U;
    const std::size_t size =
        std::min<std::size_t>(1 + (seed >> 16) % unit::sound::BlockFrames, signal.size() - at);
    const std::span<float> piece = std::span(signal).subspan(at, size);
    processor.Process(piece, piece);
    at += size;
  }
  return signal;
}

// The amplitude of a sine in a signal, under a raised cosine, so that neither its ends nor other tones count.
inline double AmplitudeAt(std::span<const float> signal, double hertz, double sampleRate) {
  const double step = 2.0 * std::numbers::pi * hertz / sampleRate;
  std::complex<double> sum;
  double weights = 0.0;
  for (std::size_t i = 0; i < signal.size(); ++i) {
    const auto at = static_cast<double>(i);
    const double weight =
        1.0 - std::cos(2.0 * std::numbers::pi * (at + 0.5) / static_cast<double>(signal.size()));
    sum += weight * static_cast<double>(signal[i]) * std::polar(1.0, -step * at);
    weights += weight;
  }
  return 2.0 * std::abs(sum) / weights;
}

// The gain in dB of an impulse response at a frequency.
inline double GainAt(std::span<const float> response, double hertz, double sampleRate) {
  std::complex<double> sum;
  const double step = 2.0 * std::numbers::pi * hertz / sampleRate;
  for (std::size_t i = 0; i < response.size(); ++i) {
    sum += static_cast<double>(response[i]) * std::polar(1.0, -step * static_cast<double>(i));
  }
  return Decibels(std::abs(sum));
}

// The powers of the lines of each spectrum of so many samples, under a raised cosine.
template <typename Visit>
void ForEachSpectrum(std::span<const float> sound, std::size_t size, Visit visit) {
  kiss_fftr_state* const transform = kiss_fftr_alloc(static_cast<int>(size), 0, nullptr, nullptr);
  Signal windowed(size);
  std::vector<kiss_fft_cpx> lines(size / 2 + 1);
  std::vector<double> powers(lines.size());
  for (std::size_t at = 0; at + size <= sound.size(); at += size / 2) {
    for (std::size_t i = 0; i < size; ++i) {
      const double turn = 2 * std::numbers::pi * (static_cast<double>(i) + 0.5) / static_cast<double>(size);
      windowed[i] = sound[at + i] * static_cast<float>(1 - std::cos(turn));
    }
    kiss_fftr(transform, windowed.data(), lines.data());
    std::ranges::transform(lines, powers.begin(), [](const kiss_fft_cpx& line) {
      return static_cast<double>(line.r) * line.r + static_cast<double>(line.i) * line.i;
    });
    visit(powers);
  }
  kiss_fftr_free(transform);
}

// The kurtosis of the lines of short spectra: the mean square of their powers by the square of their mean. It
// is 2 for noise, and more for lone peaks, which are heard as short tones (Y. Uemura and others, IWAENC
// 2008).
inline double LineKurtosis(std::span<const float> sound) {
  double count = 0.0, sum = 0.0, squares = 0.0;
  ForEachSpectrum(sound, 256, [&](const std::vector<double>& powers) {
    for (std::size_t k = 2; k + 2 < powers.size(); ++k, ++count) {
      sum += powers[k];
      squares += powers[k] * powers[k];
    }
  });
  return count * squares / (sum * sum);
}

// What of a sound is the wanted one at any level, by what is not, in dB (J. Le Roux and others, ICASSP 2019).
inline double ScaleInvariantRatio(std::span<const float> wanted, std::span<const float> sound) {
  double both = 0.0, power = 1e-30, rest = 1e-30;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    both += static_cast<double>(wanted[i]) * sound[i];
    power += static_cast<double>(wanted[i]) * wanted[i];
  }
  const double scale = both / power;
  for (std::size_t i = 0; i < wanted.size(); ++i) rest += std::pow(sound[i] - scale * wanted[i], 2);
  return Decibels(std::sqrt(scale * scale * power / rest));
}

inline double GreatestDifference(std::span<const float> a, std::span<const float> b) {
  double most = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i)
    most = std::max(most, std::abs(static_cast<double>(a[i]) - b[i]));
  return most;
}

}  // namespace measure
