// The measure works at 10 kHz on the envelopes of 15 bands of a third of an octave, from 150 Hz on, over
// pieces of 30 frames.
#include "Intelligibility.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <numeric>
#include <vector>

#include <kissfft/kiss_fftr.h>
#include <samplerate.h>

namespace measure {
namespace {

constexpr double Rate = 10000;
constexpr std::size_t FrameSize = 256, Hop = 128, TransformSize = 512;
constexpr std::size_t BandCount = 15, PieceFrames = 30;

using Sound = std::vector<float>;
using Frame = std::array<float, FrameSize>;
using Envelopes = std::array<std::vector<double>, BandCount>;  // of the bands, a value a frame

Sound AtTheRate(std::span<const float> sound, double sampleRate) {
  Sound out(static_cast<std::size_t>(std::ceil(static_cast<double>(sound.size()) * Rate / sampleRate)) + 1);
  SRC_DATA data{};
  data.data_in = sound.data();
  data.input_frames = static_cast<long>(sound.size());
  data.data_out = out.data();
  data.output_frames = static_cast<long>(out.size());
  data.src_ratio = Rate / sampleRate;
  src_simple(&data, SRC_SINC_MEDIUM_QUALITY, 1);
  out.resize(static_cast<std::size_t>(data.output_frames_gen));
  return out;
}

Frame Window() {
  Frame window{};
  for (std::size_t i = 0; i < FrameSize; ++i) {
    const double turn = 2 * std::numbers::pi * static_cast<double>(i + 1) / (FrameSize + 1);
    window[i] = static_cast<float>(0.5 - 0.5 * std::cos(turn));
  }
  return window;
}

Frame FrameAt(const Sound& sound, std::size_t at) {
  static const Frame window = Window();
  Frame frame{};
  for (std::size_t i = 0; i < FrameSize; ++i) frame[i] = sound[at + i] * window[i];
  return frame;
}

double Energy(const Frame& frame) {
  return std::inner_product(frame.begin(), frame.end(), frame.begin(), 0.0);
}

// Where the frames lie that are within 40 dB of the loudest.
std::vector<std::size_t> Spoken(const Sound& clean) {
  constexpr double range = 1e4;  // of the energy
  std::vector<double> energies;
  for (std::size_t at = 0; at + FrameSize <= clean.size(); at += Hop)
    energies.push_back(Energy(FrameAt(clean, at)));
  std::vector<std::size_t> places;
  if (energies.empty()) return places;
  const double loudest = *std::max_element(energies.begin(), energies.end());
  for (std::size_t i = 0; i < energies.size(); ++i) {
    if (energies[i] > loudest / range) places.push_back(i * Hop);
  }
  return places;
}

// The frames at these places, side by side.
Sound Joined(const Sound& sound, const std::vector<std::size_t>& places) {
  Sound out(places.size() * Hop + FrameSize - Hop);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const Frame frame = FrameAt(sound, places[i]);
    for (std::size_t j = 0; j < FrameSize; ++j) out[i * Hop + j] += frame[j];
  }
  return out;
}

std::size_t LineAt(double hertz) {
  return static_cast<std::size_t>(std::lround(hertz * TransformSize / Rate));
}

Envelopes BandEnvelopes(const Sound& sound) {
  kiss_fftr_state* const transform = kiss_fftr_alloc(TransformSize, 0, nullptr, nullptr);
  Envelopes envelopes;
  for (std::size_t at = 0; at + FrameSize <= sound.size(); at += Hop) {
    std::array<float, TransformSize> padded{};
    std::array<kiss_fft_cpx, TransformSize / 2 + 1> lines{};
    const Frame frame = FrameAt(sound, at);
    std::copy(frame.begin(), frame.end(), padded.begin());
    kiss_fftr(transform, padded.data(), lines.data());
    for (std::size_t band = 0; band < BandCount; ++band) {
      const double center = 150 * std::pow(2.0, static_cast<double>(band) / 3);
      const double half = std::pow(2.0, 1.0 / 6);
      double power = 0;
      for (std::size_t k = LineAt(center / half); k < LineAt(center * half); ++k)
        power += double{lines[k].r} * lines[k].r + double{lines[k].i} * lines[k].i;
      envelopes[band].push_back(std::sqrt(power));
    }
  }
  kiss_fftr_free(transform);
  return envelopes;
}

double Correlation(std::span<const double> a, std::span<const double> b) {
  const auto count = static_cast<double>(a.size());
  const double meanA = std::accumulate(a.begin(), a.end(), 0.0) / count;
  const double meanB = std::accumulate(b.begin(), b.end(), 0.0) / count;
  double ab = 0, aa = 1e-30, bb = 1e-30;
  for (std::size_t i = 0; i < a.size(); ++i) {
    ab += (a[i] - meanA) * (b[i] - meanB);
    aa += (a[i] - meanA) * (a[i] - meanA);
    bb += (b[i] - meanB) * (b[i] - meanB);
  }
  return ab / std::sqrt(aa * bb);
}

// The degraded piece is brought to the level of the clean one, and what is too much is held 15 dB above it.
double Likeness(std::span<const double> clean, std::span<const double> degraded) {
  const double most = 1 + std::pow(10.0, 15.0 / 20);
  const auto energy = [](std::span<const double> piece) {
    return std::inner_product(piece.begin(), piece.end(), piece.begin(), 1e-30);
  };
  const double level = std::sqrt(energy(clean) / energy(degraded));
  std::array<double, PieceFrames> bounded{};
  for (std::size_t i = 0; i < PieceFrames; ++i) bounded[i] = std::min(level * degraded[i], most * clean[i]);
  return Correlation(clean, bounded);
}

}  // namespace

double Intelligibility(std::span<const float> clean, std::span<const float> degraded, double sampleRate) {
  const Sound wanted = AtTheRate(clean, sampleRate);
  Sound heard = AtTheRate(degraded, sampleRate);
  heard.resize(wanted.size());
  const std::vector<std::size_t> places = Spoken(wanted);
  const Envelopes a = BandEnvelopes(Joined(wanted, places)), b = BandEnvelopes(Joined(heard, places));
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t band = 0; band < BandCount; ++band) {
    for (std::size_t at = 0; at + PieceFrames <= a[band].size(); ++at, ++count) {
      sum +=
          Likeness(std::span(a[band]).subspan(at, PieceFrames), std::span(b[band]).subspan(at, PieceFrames));
    }
  }
  return count == 0 ? 0 : sum / static_cast<double>(count);
}

}  // namespace measure
