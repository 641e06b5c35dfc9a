// Makes a bad recording of a good one: compare_recording KIND RATIO SEED SPEECH.wav FOLDER
//
// KIND is a row of the table below, RATIO the speech over what disturbs it in dB, over all of the speech
// file. FOLDER gets clean.wav, noisy.wav, and reference.wav of the kinds that have one. All begin with
// LeadSeconds without speech, in which every tool can find the noise.
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>
#include <numeric>
#include <random>

#include "Waves.h"
#include "unit/sound/Convolver.h"
#include "unit/sound/Scene.h"

namespace {

using compare::Wave;
using measure::Signal;

constexpr double LeadSeconds = 2;
constexpr double ReferenceLevel = 0.1;
constexpr double SpeechLevel = 0.05;  // RMS, so that nothing is clipped on the way

struct Disturbance {
  Signal sound;
  Signal reference;  // empty where there is none
};

// Gaussian, the same on every machine: of the standard generator, not of the library's distributions.
Signal White(std::size_t size, std::uint32_t seed) {
  std::mt19937 random(seed);
  Signal sound(size);
  for (float& sample : sound) {
    double sum = 0;
    for (int i = 0; i < 12; ++i) sum += static_cast<double>(random()) / 4294967296.0;
    sample = static_cast<float>(sum - 6);
  }
  return sound;
}

// White noise through three poles and zeros that fall by 3 dB an octave (P. Kellet, music-dsp 1999), within
// 0.3 dB above a 400th of the rate.
Signal Pink(std::size_t size, std::uint32_t seed) {
  Signal sound = White(size, seed);
  double a = 0, b = 0, c = 0;
  for (float& sample : sound) {
    a = 0.99765 * a + 0.0990460 * sample;
    b = 0.96300 * b + 0.2965164 * sample;
    c = 0.57000 * c + 1.0526913 * sample;
    sample = static_cast<float>(a + b + c + 0.1848 * sample);
  }
  return sound;
}

// 20 harmonics of 50 Hz, whose powers fall by 3 dB an octave. The frequency wanders around that by so much
// (Hz, RMS), slowly, as the mains' does.
Signal Hum(std::size_t size, double rate, std::uint32_t seed, double wander) {
  constexpr double hertz = 50, seconds = 10;
  constexpr int harmonics = 20;
  const Signal random = White(size, seed);
  const double kept = std::exp(-1 / (seconds * rate));
  double off = 0, phase = 0;
  Signal sound(size);
  for (std::size_t i = 0; i < size; ++i) {
    off = kept * off + std::sqrt(1 - kept * kept) * random[i];
    phase += 2 * std::numbers::pi * (hertz + wander * off) / rate;
    double sum = 0;
    for (int k = 1; k <= harmonics; ++k) sum += std::cos(k * phase + 1.3 * k * k) / std::sqrt(k);
    sound[i] = static_cast<float>(sum);
  }
  return sound;
}

// Somebody speaks on it over plucked strings.
Signal Radio(std::size_t size, double rate, std::uint32_t seed) {
  constexpr double noteSeconds = 0.4, lowest = 110;
  constexpr std::array<int, 8> scale{0, 2, 3, 5, 7, 8, 10, 12};  // semitones
  unit::sound::Speech voice(rate, seed);
  std::mt19937 random(seed);
  const auto length = static_cast<std::size_t>(noteSeconds * rate);
  Signal sound(size);
  double hertz = lowest;
  for (std::size_t i = 0; i < size; ++i) {
    if (i % length == 0) {
      const int semitones = scale[random() % scale.size()] + 12 * static_cast<int>(random() % 3);
      hertz = lowest * std::pow(2.0, semitones / 12.0);
    }
    const double t = static_cast<double>(i % length) / rate;
    double sum = 0;
    for (int k = 1; k <= 6 && k * hertz < rate / 2; ++k)
      sum += std::sin(2 * std::numbers::pi * k * hertz * t) / k * std::exp(-t * (4 + k));
    sound[i] = voice.Next() + static_cast<float>(0.5 * sum);
  }
  return sound;
}

// A direct path and an echo that dies away by 60 dB over the taps.
Signal Room(std::size_t size, std::uint32_t seed) {
  constexpr std::size_t direct = 8;
  constexpr double decay = 6.9;
  Signal taps = White(size, seed);
  for (std::size_t i = 0; i < size; ++i) {
    const double age = static_cast<double>(i) / static_cast<double>(size);
    taps[i] *= static_cast<float>(0.1 * std::exp(-decay * age));
  }
  std::fill_n(taps.begin(), direct, 0.0F);
  taps[direct] = 0.5F;
  return taps;
}

// The radio through a room, which becomes another one on the way where it is told so.
Disturbance RadioInRoom(std::size_t size, double rate, std::uint32_t seed, bool moves) {
  constexpr std::size_t taps = 1000;
  constexpr double movesAt = 0.4;
  Signal radio = Radio(size, rate, seed);
  const auto heard = [&](std::uint32_t room) {
    unit::sound::Convolver convolver(taps);
    convolver.SetTaps(Room(taps, room));
    return measure::Processed(convolver, radio);
  };
  Signal sound = heard(seed);
  if (moves) {
    const Signal later = heard(seed + 1);
    const auto at = static_cast<std::ptrdiff_t>(movesAt * static_cast<double>(size));
    std::copy(later.begin() + at, later.end(), sound.begin() + at);
  }
  return {std::move(sound), std::move(radio)};
}

using Maker = Disturbance (*)(std::size_t size, double rate, std::uint32_t seed);

const std::map<std::string, Maker>& Kinds() {
  static const std::map<std::string, Maker> kinds{
      {"none",
       [](std::size_t size, double, std::uint32_t) {
         return Disturbance{Signal(size), {}};
       }},
      {"white",
       [](std::size_t size, double, std::uint32_t seed) {
         return Disturbance{White(size, seed), {}};
       }},
      {"pink",
       [](std::size_t size, double, std::uint32_t seed) {
         return Disturbance{Pink(size, seed), {}};
       }},
      {"hum",
       [](std::size_t size, double rate, std::uint32_t seed) {
         return Disturbance{Hum(size, rate, seed, 0), {}};
       }},
      {"mains",
       [](std::size_t size, double rate, std::uint32_t seed) {
         return Disturbance{Hum(size, rate, seed, 0.02), {}};
       }},
      {"radio", [](std::size_t size, double rate,
                   std::uint32_t seed) { return RadioInRoom(size, rate, seed, false); }},
      {"moved",
       [](std::size_t size, double rate, std::uint32_t seed) { return RadioInRoom(size, rate, seed, true); }},
      {"elsewhere",  // a radio that the room does not hear
       [](std::size_t size, double rate, std::uint32_t seed) {
         return Disturbance{Signal(size), Radio(size, rate, seed)};
       }},
  };
  return kinds;
}

double Rms(const Signal& sound) {
  return std::sqrt(std::inner_product(sound.begin(), sound.end(), sound.begin(), 0.0) /
                   static_cast<double>(sound.size()));
}

void Scale(Signal& sound, double factor) {
  for (float& sample : sound) sample *= static_cast<float>(factor);
}

int Make(const std::string& kind, double ratio, std::uint32_t seed, const std::string& from,
         const std::string& folder) {
  const auto maker = Kinds().find(kind);
  if (maker == Kinds().end()) throw std::runtime_error(kind + " is no kind of disturbance");
  const Wave speech = compare::ReadWave(from);
  Signal clean = speech.channels.front();
  Scale(clean, SpeechLevel / Rms(clean));
  clean.insert(clean.begin(), static_cast<std::size_t>(LeadSeconds * speech.rate), 0.0F);

  Disturbance made = maker->second(clean.size(), speech.rate, seed);
  const double level = Rms(made.sound);
  if (level > 0) Scale(made.sound, SpeechLevel * measure::Linear(-ratio) / level);
  Signal noisy = clean;
  for (std::size_t i = 0; i < noisy.size(); ++i) noisy[i] += made.sound[i];

  compare::WriteWave(folder + "/clean.wav", speech.rate, clean);
  compare::WriteWave(folder + "/noisy.wav", speech.rate, noisy);
  const double played = made.reference.empty() ? 0 : Rms(made.reference);
  if (played > 0) Scale(made.reference, ReferenceLevel / played);
  if (!made.reference.empty()) compare::WriteWave(folder + "/reference.wav", speech.rate, made.reference);
  return 0;
}

}  // namespace

int main(int count, char** words) {
  try {
    if (count != 6) throw std::runtime_error("compare_recording KIND RATIO SEED SPEECH.wav FOLDER");
    return Make(words[1], std::stod(words[2]), static_cast<std::uint32_t>(std::stoul(words[3])), words[4],
                words[5]);
  } catch (const std::exception& trouble) {
    std::fprintf(stderr, "%s\n", trouble.what());
    return 1;
  }
}
