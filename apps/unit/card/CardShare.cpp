// What the sound thread and the unit share, and all that the sound thread does.
#include "unit/card/CardShare.h"

namespace unit::sound {
namespace {

constexpr std::size_t Chunk = 64;  // frames that are moved at a time

// A card of one channel plays the mean of both.
void Put(const StereoFrame& frame, std::span<float> samples) {
  if (samples.size() == 1) {
    samples[0] = (frame[0] + frame[1]) / 2;
    return;
  }
  std::fill(samples.begin(), samples.end(), 0.0F);
  samples[0] = frame[0];
  samples[1] = frame[1];
}

}  // namespace

void CardShare::Beat(std::size_t frames) {
  const auto now = static_cast<std::uint32_t>(frames);
  if (now > period.load(std::memory_order_relaxed)) period.store(now, std::memory_order_relaxed);
  beats.fetch_add(1, std::memory_order_release);
}

void CardShare::Play(std::span<float> buffer, std::size_t channels, bool disturbed) {
  const std::size_t frames = buffer.size() / channels;
  Beat(frames);
  const bool played = playing;
  playing = playing || ring.Fill() >= std::max<std::size_t>(enough.load(std::memory_order_relaxed), 1);
  std::array<StereoFrame, Chunk> chunk;
  for (std::size_t done = 0; done < frames; done += Chunk) {
    const std::size_t count = std::min(Chunk, frames - done);
    const std::size_t there = playing ? ring.Pop(std::span(chunk).first(count)) : 0;
    playing = playing && there == count;
    for (std::size_t i = 0; i < count; ++i) {
      const StereoFrame frame = i < there ? fader.Next(chunk[i]) : fader.NextOfGap();
      Put(frame, buffer.subspan((done + i) * channels, channels));
    }
  }
  const bool missed = !playing && !resting.load(std::memory_order_acquire);
  if (played && (missed || disturbed)) dropOuts.fetch_add(1, std::memory_order_relaxed);
}

void CardShare::Hear(std::span<const float> buffer, std::size_t channels, bool disturbed) {
  const std::size_t frames = buffer.size() / channels;
  Beat(frames);
  std::array<StereoFrame, Chunk> chunk;
  for (std::size_t done = 0; done < frames; done += Chunk) {
    const std::size_t count = std::min(Chunk, frames - done);
    for (std::size_t i = 0; i < count; ++i) {
      const auto samples = buffer.subspan((done + i) * channels, channels);
      chunk[i] = {samples[0], samples[channels > 1 ? 1 : 0]};
    }
    ring.Push(std::span(chunk).first(count));
  }
  if (disturbed && !resting.load(std::memory_order_acquire)) dropOuts.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace unit::sound
