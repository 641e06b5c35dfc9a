// Sounds of length to test the processors with: noise and speech, of full scale 1.0.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include "Measure.h"

namespace test::signals {

using Sound = measure::Signal;

using measure::AmplitudeAt;
using measure::Decibels;
using measure::Linear;

inline double Rms(std::span<const float> sound) {
  double sum = 0;
  for (const float sample : sound) sum += double{sample} * sample;
  return std::sqrt(sum / static_cast<double>(sound.size()));
}

inline std::span<const float> LastOf(const Sound& sound, std::size_t count) {
  return std::span(sound).last(count);
}

inline Sound Tone(std::size_t size, double frequency, double rate, double peak) {
  return measure::Sine(frequency, rate, size, peak);
}

inline Sound Noise(std::size_t size, double rms, unsigned seed) {
  std::mt19937 random(seed);
  Sound sound(size);
  constexpr double half = 2147483648.0;
  for (float& sample : sound)
    sample = static_cast<float>((static_cast<double>(random()) / half - 1) * rms * std::sqrt(3.0));
  return sound;
}

// Syllables of gliding pitch, 0.18 s in every 0.25 s, and a pause of half a second after every third of the
// seconds; its RMS while it sounds is about the one given.
inline Sound Speech(std::size_t size, double rate, double rms) {
  Sound sound(size);
  double phase = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const double t = static_cast<double>(i) / rate;
    phase += 2 * std::numbers::pi * (125 + 25 * std::sin(2.3 * t) + 11 * std::sin(7.1 * t)) / rate;
    const double syllable = std::fmod(t, 0.25) / 0.18;
    if (syllable >= 1 || std::fmod(t, 3.0) >= 2.5) continue;
    const double formant = 700 + 300 * std::sin(3.7 * t);
    double sum = 0;
    for (int k = 1; k <= 20; ++k) sum += std::sin(k * phase) / (1 + std::pow((125 * k - formant) / 300, 2));
    sound[i] = static_cast<float>(rms * sum * std::pow(std::sin(std::numbers::pi * syllable), 0.5) / 1.5);
  }
  return sound;
}

inline Sound Sum(Sound a, std::span<const float> b) {
  for (std::size_t i = 0; i < a.size(); ++i) a[i] += b[i];
  return a;
}

// The mean signal-to-noise ratio, in dB, of the pieces of 20 ms in which there is speech; each is bounded to
// -10..35 dB. The sound is delayed samples behind the speech, and its first second is left out.
inline double SegmentalRatio(const Sound& speech, const Sound& sound, std::size_t delay, double rate) {
  const auto second = static_cast<std::size_t>(rate);
  const std::size_t piece = second / 50;
  const double audible = Rms(speech) / 10;
  double sum = 0;
  int count = 0;
  for (std::size_t at = second; at + piece + delay <= sound.size(); at += piece) {
    const std::span<const float> clean = std::span(speech).subspan(at, piece);
    if (Rms(clean) < audible) continue;
    Sound wrong(sound.begin() + static_cast<std::ptrdiff_t>(at + delay),
                sound.begin() + static_cast<std::ptrdiff_t>(at + delay + piece));
    for (std::size_t i = 0; i < piece; ++i) wrong[i] -= clean[i];
    sum += std::clamp(Decibels(Rms(clean) / Rms(wrong)), -10.0, 35.0);
    ++count;
  }
  return sum / count;
}

}  // namespace test::signals
