// Before and after: what comes in, heard in the place of what goes out and as loud.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace unit::sound {

// Loudness as EBU R 128 has it, over the last three seconds (short-term).
class ShortTermLoudness {
 public:
  // rate in Hz.
  explicit ShortTermLoudness(int rate);

  // Any number of samples, the same in both.
  void Add(std::span<const float> left, std::span<const float> right);
  // In LUFS. Nothing for silence, below -70 LUFS, and before there was 0.4 s of sound.
  std::optional<double> Value() const;

 private:
  struct State;
  struct Free {
    void operator()(State* held) const;
  };
  std::unique_ptr<State, Free> state;
  int rate;
  std::size_t frames = 0;
  std::vector<float> interleaved;
};

// A sound as it was up to 65000 samples ago. Another delay is faded in.
class DelayedSound {
 public:
  static constexpr std::size_t LongestDelay = 65000;

  void SetDelay(std::size_t samples, std::size_t fadeSamples);
  void Process(std::span<const float> in, std::span<float> out);

 private:
  float Ago(std::size_t samples) const { return ring[(at + ring.size() - samples) % ring.size()]; }

  std::vector<float> ring = std::vector<float>(LongestDelay + 1);
  std::size_t at = 0;  // of the newest sample
  std::size_t delay = 0, before = 0;
  std::size_t fade = 0, fadeLength = 1;  // samples that are left of the change from `before`
};

// Switches what is heard between the processed sound, which passes bit for bit, and the input, delayed as the
// processed sound is and brought to its loudness.
class Comparison {
 public:
  explicit Comparison(int sampleRate);

  // What was measured is forgotten; the gain stays.
  void SetRate(int sampleRate);
  // on: the input is heard. The change takes 20 ms.
  void SetBypass(bool on) { bypass = on; }
  bool Bypass() const { return bypass; }
  // What the input gets where it is heard, in dB, -20..20: the difference of the two loudnesses, and no more
  // than keeps the input's peaks of the last three seconds within full scale. Where either is silent it stays
  // as it was, 0 at first.
  double GainDecibels() const { return target; }

  using Stereo = std::array<std::span<float>, 2>;
  using Input = std::array<std::span<const float>, 2>;
  // All of the same length, at most BlockFrames. in: what went into the chain; sound: what came out, and then
  // what is heard. delays: of the chain, in samples, by side.
  void Process(const Input& in, const Stereo& sound, const std::array<std::size_t, 2>& delays);

 private:
  static constexpr std::size_t PeakParts = 30;  // of 0.1 s

  void Measure(const Stereo& input, const Stereo& processed);
  void Aim();
  void Mix(const Stereo& input, const Stereo& sound);

  int rate;
  bool bypass = false;
  ShortTermLoudness before, after;
  std::array<DelayedSound, 2> delayed;
  std::array<float, PeakParts> peaks{};
  std::size_t part = 0, partFrames = 0;
  double target = 0.0;  // dB
  float gain = 1.0F;    // of the input at the last sample
  float share = 0.0F;   // of the input in what is heard
};

}  // namespace unit::sound
