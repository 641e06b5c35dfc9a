// The built-in scene: what the unit hears when it is given no recording.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace unit::sound {

// Uniform numbers from a seed (splitmix64: G. L. Steele, D. Lea, C. H. Flood 2014).
class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed) : state(seed) {}

  std::uint64_t Next();
  double Uniform(double low, double high);
  // Mean 0, variance 1, nearly Gaussian: the sum of four uniform numbers.
  float Noise();

 private:
  std::uint64_t state;
};

// A voice that speaks in phrases of four to nine syllables, each a vowel of 140 to 280 ms, in front of many a
// hiss, and pauses for half a second to 1.3 s after each phrase. The vowels are a sawtooth at 90 to 150 Hz
// through four resonances that glide from one vowel to the next (in cascade: D. H. Klatt 1980). The same
// phrases at any rate.
class Speech {
 public:
  Speech(double sampleRate, std::uint64_t seed);

  void SetRate(double sampleRate);

  // RMS over the vowels near that of a sine of peak 1.0.
  float Next();

 private:
  static constexpr std::size_t FormantCount = 4;
  using Formants = std::array<double, FormantCount>;  // Hz

  enum class Sound { Hiss, Vowel, Gap, Pause };

  struct Resonance {
    double gain = 1.0, near = 0.0, far = 0.0;  // y[n] = gain x[n] + near y[n - 1] + far y[n - 2]
    double last = 0.0, before = 0.0;

    void Tune(double hertz, double width, double sampleRate);
    double Next(double x);
    double PowerAt(double radians) const;
  };

  void Begin(Sound next, double seconds);
  void BeginNext();
  void BeginSyllable();
  void BeginHiss();
  void BeginVowel();
  void TuneHiss();
  void TuneVowel(double share);
  double VowelPower() const;
  double HissPower() const;
  double Sawtooth();
  double Excite();

  double rate;
  RandomSource script;  // what is said
  RandomSource breath;  // the noise that says it
  std::array<Resonance, FormantCount> resonances;
  Resonance hiss;
  Formants from{}, to{};
  Sound sound = Sound::Pause;
  double length = 0.0, at = 0.0;  // samples of this sound, and how far it is
  double untilTuning = 0.0;       // samples
  double gain = 0.0;
  double hissHz = 4000.0;
  double pitch = 110.0, pitchEnd = 100.0;  // Hz
  double phase = 0.0;                      // of the sawtooth, 0..1
  int syllables = 0;
};

inline constexpr double SceneOff = -std::numeric_limits<double>::infinity();

// RMS levels in dB, 0 dB is a sine of peak 1.0; SceneOff for a part that is not there. That of the speech
// counts while a vowel is spoken.
struct SceneLevels {
  double speech = -18.0;
  double hum = -30.0;  // all its harmonics together
  double tone = -40.0;
  double noise = -23.0;  // white
  double reference = -18.0;
};

// Left: speech, hum of 50 Hz and its harmonics up to 500 Hz, a tone of 1 kHz and white noise, 2 ms late.
// Right: the same noise in time, through a filter that has a stable inverse of few taps, so that it can be
// taken off the left. Samples depend on rate, seed and levels alone; the parts on their own add up to the
// whole.
class Scene {
 public:
  static constexpr double HumHz = 50.0;
  static constexpr double ToneHz = 1000.0;

  // sampleRate: 7200..36000 Hz.
  Scene(double sampleRate, std::uint64_t seed, const SceneLevels& levels);

  // Goes on in the same syllable at another rate.
  void SetRate(double sampleRate);
  void SetLevels(const SceneLevels& levels);

  // Spans of the same length, which may be any.
  void Process(std::span<float> left, std::span<float> right);

 private:
  static constexpr std::size_t LongestDelay = 128;

  void AddHum(std::span<float> left);
  void AddTone(std::span<float> left);
  void AddNoise(std::span<float> left, std::span<float> right);

  double rate;
  Speech speech;
  RandomSource noise;
  float speechGain = 0.0F, humGain = 0.0F, toneGain = 0.0F, noiseGain = 0.0F, referenceGain = 0.0F;
  double humPhase = 0.0, tonePhase = 0.0;  // 0..1
  std::array<float, LongestDelay> past{};  // of the noise, a ring
  std::size_t at = 0, delay = 0;
};

}  // namespace unit::sound
