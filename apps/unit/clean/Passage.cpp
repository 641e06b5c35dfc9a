#include "unit/clean/Passage.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include <samplerate.h>

namespace unit::clean {
namespace {

using sound::BlockFrames;

// Where the unit's bandwidth ends, its medium quality has lost 4 dB at 12 kHz and 2 dB at 36 kHz, there and
// back, and its best one nothing. That one takes three times as long, and seven times as long as Polyphase,
// which is as good. So it has what is left: rates with little in common.
constexpr int Quality = SRC_SINC_BEST_QUALITY;

}  // namespace

void Converter::Free::operator()(SRC_STATE_tag* of) const { src_delete(of); }

Converter::Converter(SampleSource heard, std::size_t channelCount, int fromHertz, int toHertz)
    : source(std::move(heard)),
      channels(channelCount),
      ratio(static_cast<double>(toHertz) / fromHertz),
      chunk(BlockFrames * channelCount),
      chunkAt(BlockFrames) {
  if (fromHertz == toHertz) return;
  if (Polyphase::Suits(fromHertz, toHertz)) {
    polyphase.emplace(source, channels, fromHertz, toHertz);
    return;
  }
  int error = 0;
  library.reset(src_new(Quality, static_cast<int>(channels), &error));
  if (!library) throw std::bad_alloc();
}

void Converter::Read(std::span<float> samples) {
  if (polyphase) return polyphase->Read(samples);
  if (library) return ReadConverted(samples);
  source(samples);
}

void Converter::ReadConverted(std::span<float> samples) {
  while (!samples.empty()) {
    if (chunkAt == BlockFrames) {
      source(chunk);
      chunkAt = 0;
    }
    SRC_DATA data{};
    data.data_in = &chunk[chunkAt * channels];
    data.input_frames = static_cast<long>(BlockFrames - chunkAt);
    data.data_out = samples.data();
    data.output_frames = static_cast<long>(samples.size() / channels);
    data.src_ratio = ratio;
    const int error = src_process(library.get(), &data);
    if (error != 0) throw std::runtime_error(src_strerror(error));
    chunkAt += static_cast<std::size_t>(data.input_frames_used);
    samples = samples.subspan(static_cast<std::size_t>(data.output_frames_gen) * channels);
  }
}

ChainPass::ChainPass(SampleSource heard, std::size_t channelCount, sound::Engine& chain)
    : source(std::move(heard)),
      channels(channelCount),
      engine(chain),
      late(chain.Latency()),
      block(BlockFrames * channelCount) {}

void ChainPass::Read(std::span<float> samples) {
  const std::size_t frames = samples.size() / channels;
  for (std::size_t channel = 0; channel < channels; ++channel) {
    while (outputs[channel].Size() < frames) RunBlock();
    const std::span<const float> made = outputs[channel].Take(frames);
    for (std::size_t i = 0; i < frames; ++i) samples[i * channels + channel] = made[i];
  }
}

void ChainPass::RunBlock() {
  source(block);
  std::array<std::array<float, BlockFrames>, 2> sides;
  for (const std::size_t side : {0U, 1U}) {
    const std::size_t channel = std::min(side, channels - 1);
    for (std::size_t i = 0; i < BlockFrames; ++i) sides[side][i] = block[i * channels + channel];
  }
  engine.Process(sides[0], sides[1], sides[0], sides[1]);
  for (std::size_t side = 0; side < channels; ++side) {
    const std::size_t dropped = std::min(late[side], BlockFrames);
    late[side] -= dropped;
    outputs[side].Push(std::span<const float>(sides[side]).subspan(dropped));
  }
}

Passage::Passage(SampleSource heard, std::size_t channels, int rate, sound::Engine& engine)
    : there(std::move(heard), channels, rate, engine.SampleRate()),
      chain([this](std::span<float> samples) { there.Read(samples); }, channels, engine),
      back([this](std::span<float> samples) { chain.Read(samples); }, channels, engine.SampleRate(), rate) {}

}  // namespace unit::clean
