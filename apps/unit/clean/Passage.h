// The way of a sound through the unit and back: to the unit's rate, through its chain, to the sound's rate.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "unit/clean/Fifo.h"
#include "unit/clean/Polyphase.h"
#include "unit/clean/SampleSource.h"
#include "unit/sound/Engine.h"

struct SRC_STATE_tag;

namespace unit::clean {

// A source at another rate, without a delay; at the same rate as it is. Nine tenths of what the lower rate
// can hold pass unchanged.
class Converter {
 public:
  Converter(SampleSource heard, std::size_t channelCount, int fromHertz, int toHertz);
  void Read(std::span<float> samples);

 private:
  struct Free {
    void operator()(SRC_STATE_tag* state) const;
  };

  void ReadConverted(std::span<float> samples);

  SampleSource source;
  std::size_t channels;
  double ratio;
  std::optional<Polyphase> polyphase;            // where it suits the rates
  std::unique_ptr<SRC_STATE_tag, Free> library;  // where it does not; null at the same rate, too
  std::vector<float> chunk;
  std::size_t chunkAt;  // frames of it that are used
};

// A source through an engine, shifted back by the delay of its chain on each side. Of one channel, which is
// heard on both sides, the left output.
class ChainPass {
 public:
  // engine must outlive it, and be set.
  ChainPass(SampleSource heard, std::size_t channelCount, sound::Engine& chain);
  void Read(std::span<float> samples);

 private:
  void RunBlock();

  SampleSource source;
  std::size_t channels;
  sound::Engine& engine;
  std::array<std::size_t, 2> late;     // frames that are still to be dropped
  std::array<Fifo<float>, 2> outputs;  // by side
  std::vector<float> block;
};

class Passage {
 public:
  // engine must outlive it, and be set.
  Passage(SampleSource heard, std::size_t channels, int rate, sound::Engine& engine);
  Passage(const Passage&) = delete;
  Passage& operator=(const Passage&) = delete;

  void Read(std::span<float> samples) { back.Read(samples); }

 private:
  Converter there;
  ChainPass chain;
  Converter back;
};

}  // namespace unit::clean
