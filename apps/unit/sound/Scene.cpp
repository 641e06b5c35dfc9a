// The built-in scene: what the unit hears when it is given no recording.
#include "unit/sound/Scene.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace unit::sound {
namespace {

constexpr double TwoPi = 2.0 * std::numbers::pi;

// Means of men's vowels: i, e, a, o, u (G. E. Peterson, H. L. Barney 1952), and a fourth formant for all.
constexpr std::array<std::array<double, 4>, 5> vowels{{{270.0, 2290.0, 3010.0, 3500.0},
                                                       {530.0, 1840.0, 2480.0, 3500.0},
                                                       {730.0, 1090.0, 2440.0, 3500.0},
                                                       {570.0, 840.0, 2410.0, 3500.0},
                                                       {300.0, 870.0, 2240.0, 3500.0}}};
constexpr std::array formantWidths{70.0, 100.0, 150.0, 250.0};
constexpr double HissWidth = 1500.0;

constexpr double RampSeconds = 0.015;
constexpr double TuningSeconds = 0.004;
constexpr double GlideShare = 0.5;     // of a vowel, in which it comes from the last one
constexpr double HighestShare = 0.44;  // of the rate, for what has a frequency

// Amplitudes of the harmonics of 50 Hz.
constexpr std::array humHarmonics{1.0, 0.35, 0.6, 0.2, 0.4, 0.12, 0.25, 0.08, 0.15, 0.05};

constexpr double NoiseDelaySeconds = 0.002;
// All zeros lie within a radius of 0.64: the inverse is 40 dB down after ten taps.
constexpr std::array referenceFilter{1.0, 0.5, 0.2, 0.1, -0.05};

double Smooth(double x) {
  const double t = std::clamp(x, 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}

template <std::size_t Count>
double Power(const std::array<double, Count>& amplitudes) {
  double power = 0.0;
  for (const double amplitude : amplitudes) power += amplitude * amplitude;
  return power;
}

double Turn(double phase, double step) {
  const double turned = phase + step;
  return turned - std::floor(turned);
}

// Rounds off a step of the phase by a polynomial over one sample on each side, against aliasing
// (V. Valimaki, A. Huovilainen 2007).
double StepCorrection(double phase, double step) {
  if (phase < step) {
    const double t = phase / step;
    return t + t - t * t - 1.0;
  }
  if (phase > 1.0 - step) {
    const double t = (phase - 1.0) / step;
    return t * t + t + t + 1.0;
  }
  return 0.0;
}

}  // namespace

std::uint64_t RandomSource::Next() {
  std::uint64_t z = (state += 0x9E3779B97F4A7C15U);
  z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
  return z ^ (z >> 31U);
}

double RandomSource::Uniform(double low, double high) {
  return low + (high - low) * static_cast<double>(Next() >> 11U) * 0x1p-53;
}

float RandomSource::Noise() {
  constexpr double mean = 2.0 * 65535.0;
  constexpr double deviation = 65536.0 * 0.57735026919;  // of four numbers, each of a width of 65536
  const std::uint64_t bits = Next();
  const std::uint64_t sum =
      (bits & 0xFFFFU) + (bits >> 16U & 0xFFFFU) + (bits >> 32U & 0xFFFFU) + (bits >> 48U);
  return static_cast<float>((static_cast<double>(sum) - mean) / deviation);
}

void Speech::Resonance::Tune(double hertz, double width, double sampleRate) {
  far = -std::exp(-TwoPi * width / sampleRate);
  near = 2.0 * std::exp(-std::numbers::pi * width / sampleRate) * std::cos(TwoPi * hertz / sampleRate);
  gain = 1.0 - near - far;
}

double Speech::Resonance::Next(double x) {
  const double y = gain * x + near * last + far * before;
  before = last;
  last = y;
  return y;
}

double Speech::Resonance::PowerAt(double radians) const {
  const std::complex<double> z = std::polar(1.0, -radians);
  return gain * gain / std::norm(1.0 - near * z - far * z * z);
}

Speech::Speech(double sampleRate, std::uint64_t seed)
    : rate(sampleRate), script(seed), breath(~seed), to(vowels[0]) {
  Begin(Sound::Pause, script.Uniform(0.2, 0.5));
}

void Speech::SetRate(double sampleRate) {
  const double ratio = sampleRate / rate;
  rate = sampleRate;
  length *= ratio;
  at *= ratio;
  untilTuning = 0.0;
  for (Resonance& resonance : resonances) resonance = {};
  hiss = {};
  TuneHiss();
}

void Speech::Begin(Sound next, double seconds) {
  sound = next;
  length = seconds * rate;
  at = 0.0;
}

void Speech::BeginNext() {
  switch (sound) {
    case Sound::Hiss:
      return BeginVowel();
    case Sound::Vowel:
      if (--syllables > 0) return Begin(Sound::Gap, script.Uniform(0.02, 0.07));
      return Begin(Sound::Pause, script.Uniform(0.5, 1.3));
    case Sound::Pause:
      syllables = static_cast<int>(script.Uniform(4.0, 10.0));
      return BeginSyllable();
    case Sound::Gap:
      return BeginSyllable();
  }
}

void Speech::BeginSyllable() {
  if (script.Uniform(0.0, 1.0) < 0.5) return BeginHiss();
  BeginVowel();
}

void Speech::BeginHiss() {
  constexpr double levelDb = -12.0;
  Begin(Sound::Hiss, script.Uniform(0.06, 0.13));
  hissHz = script.Uniform(2500.0, 5500.0);
  TuneHiss();
  gain = std::pow(10.0, levelDb / 20.0) * std::sqrt(0.5 / HissPower());
}

void Speech::TuneHiss() { hiss.Tune(std::min(hissHz, HighestShare * rate), HissWidth, rate); }

void Speech::BeginVowel() {
  Begin(Sound::Vowel, script.Uniform(0.14, 0.28));
  from = to;
  to = vowels[static_cast<std::size_t>(script.Uniform(0.0, static_cast<double>(vowels.size())))];
  pitch = script.Uniform(100.0, 150.0);
  pitchEnd = pitch * script.Uniform(0.85, 1.05);
  TuneVowel(1.0);
  const double level = script.Uniform(-4.0, 3.0);
  gain = std::pow(10.0, level / 20.0) * std::sqrt(0.5 / VowelPower());
  untilTuning = 0.0;
}

// share: how far the vowel is, 0..1.
void Speech::TuneVowel(double share) {
  const double glide = Smooth(share / GlideShare);
  for (std::size_t i = 0; i < FormantCount; ++i) {
    const double hertz = from[i] + (to[i] - from[i]) * glide;
    resonances[i].Tune(std::min(hertz, HighestShare * rate), formantWidths[i], rate);
  }
}

// Of the sawtooth through the resonances.
double Speech::VowelPower() const {
  double power = 0.0;
  for (int k = 1; k * pitch < HighestShare * rate; ++k) {
    double harmonic = 2.0 / (std::numbers::pi * k) * (2.0 / (std::numbers::pi * k));
    for (const Resonance& r : resonances) harmonic *= r.PowerAt(TwoPi * k * pitch / rate);
    power += 0.5 * harmonic;
  }
  return power;
}

// Of white noise of power 1 through the resonance, as a mean over frequencies.
double Speech::HissPower() const {
  constexpr int points = 64;
  double power = 0.0;
  for (int i = 0; i < points; ++i) power += hiss.PowerAt(std::numbers::pi * (i + 0.5) / points) / points;
  return power;
}

double Speech::Sawtooth() {
  const double step = (pitch + (pitchEnd - pitch) * at / length) / rate;
  phase = Turn(phase, step);
  return 2.0 * phase - 1.0 - StepCorrection(phase, step);
}

double Speech::Excite() {
  if (sound == Sound::Hiss) return hiss.Next(breath.Noise());
  if (sound != Sound::Vowel) return 0.0;
  if (untilTuning <= 0.0) {
    TuneVowel(at / length);
    untilTuning += TuningSeconds * rate;
  }
  untilTuning -= 1.0;
  double sample = Sawtooth();
  for (Resonance& resonance : resonances) sample = resonance.Next(sample);
  return sample;
}

float Speech::Next() {
  if (at >= length) BeginNext();
  const double ramp = RampSeconds * rate;
  const double envelope = Smooth(at / ramp) * Smooth((length - at) / ramp);
  const double sample = Excite() * gain * envelope;
  at += 1.0;
  return static_cast<float>(sample);
}

namespace {

// 0 where the part is off: the power is that of its samples before the gain.
float GainFor(double db, double power) {
  return static_cast<float>(std::pow(10.0, db / 20.0) * std::sqrt(0.5 / power));
}

}  // namespace

Scene::Scene(double sampleRate, std::uint64_t seed, const SceneLevels& levels)
    : rate(sampleRate), speech(sampleRate, seed), noise(seed ^ 0x5CE9EULL) {
  SetRate(sampleRate);
  SetLevels(levels);
}

void Scene::SetRate(double sampleRate) {
  rate = sampleRate;
  speech.SetRate(sampleRate);
  delay = std::min(static_cast<std::size_t>(std::lround(NoiseDelaySeconds * sampleRate)), LongestDelay - 1);
}

void Scene::SetLevels(const SceneLevels& levels) {
  speechGain = GainFor(levels.speech, 0.5);
  humGain = GainFor(levels.hum, 0.5 * Power(humHarmonics));
  toneGain = GainFor(levels.tone, 0.5);
  noiseGain = GainFor(levels.noise, 1.0);
  referenceGain = GainFor(levels.reference, Power(referenceFilter));
}

void Scene::Process(std::span<float> left, std::span<float> right) {
  for (float& sample : left) sample = speechGain * speech.Next();
  AddHum(left);
  AddTone(left);
  AddNoise(left, right);
}

// All harmonics from the sine of the first one, by the recurrence of Clenshaw.
void Scene::AddHum(std::span<float> left) {
  for (float& sample : left) {
    const double twice = 2.0 * std::cos(TwoPi * humPhase);
    double sum = 0.0;
    double before = 0.0;
    for (std::size_t k = humHarmonics.size(); k-- > 0;) {
      const double next = humHarmonics[k] + twice * sum - before;
      before = sum;
      sum = next;
    }
    sample += humGain * static_cast<float>(sum * std::sin(TwoPi * humPhase));
    humPhase = Turn(humPhase, HumHz / rate);
  }
}

void Scene::AddTone(std::span<float> left) {
  for (float& sample : left) {
    sample += toneGain * static_cast<float>(std::sin(TwoPi * tonePhase));
    tonePhase = Turn(tonePhase, ToneHz / rate);
  }
}

void Scene::AddNoise(std::span<float> left, std::span<float> right) {
  for (std::size_t i = 0; i < left.size(); ++i) {
    past[at] = noise.Noise();
    double filtered = 0.0;
    for (std::size_t k = 0; k < referenceFilter.size(); ++k) {
      filtered += referenceFilter[k] * past[(at - k) % LongestDelay];
    }
    left[i] += noiseGain * past[(at - delay) % LongestDelay];
    right[i] = referenceGain * static_cast<float>(filtered);
    at = (at + 1) % LongestDelay;
  }
}

}  // namespace unit::sound
