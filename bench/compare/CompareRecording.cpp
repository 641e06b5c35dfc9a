// Makes a bad recording of a good one: compare_recording KIND RATIO SEED SPEECH.wav FOLDER
//
// KIND is a row of the table below, RATIO the speech over what disturbs it in dB, over all of the speech
// file. FOLDER gets clean.wav, noisy.wav, and reference.wav of the kinds that have one. All begin with
// LeadSeconds without speech, in which every tool can find the noise.
#include <cmath>
#include <cstdio>
#include <map>
#include <numeric>
#include <random>

#include "Waves.h"

namespace {

using compare::Wave;
using measure::Signal;

constexpr double LeadSeconds = 2;
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
