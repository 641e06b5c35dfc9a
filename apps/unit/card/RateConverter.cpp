// From one rate to another, two channels at a time.
#include "unit/card/RateConverter.h"

#include <algorithm>
#include <cmath>
#include <new>

#include <samplerate.h>

namespace unit::sound {
namespace {

// Its pass band, nine tenths of the lower rate, has all of the unit's bandwidths.
constexpr int Quality = SRC_SINC_MEDIUM_QUALITY;
constexpr double HalfLength = 22438.0 / 491;  // of its filter, in samples of the lower rate

}  // namespace

void RateConverter::Free::operator()(SRC_STATE_tag* converter) const { src_delete(converter); }

RateConverter::RateConverter(int from, int to) : fromRate(from), toRate(to) {
  int error = 0;
  state.reset(src_new(Quality, 2, &error));
  if (!state) throw std::bad_alloc();
  Prime();
}

void RateConverter::SetRates(int from, int to) {
  fromRate = from;
  toRate = to;
  src_reset(state.get());
  Prime();
}

RateConverter::Moved RateConverter::Run(std::span<const StereoFrame> in, std::span<StereoFrame> out,
                                        double ratio) {
  SRC_DATA data{};
  data.data_in = in.data()->data();
  data.input_frames = static_cast<long>(in.size());
  data.data_out = out.data()->data();
  data.output_frames = static_cast<long>(out.size());
  data.src_ratio = ratio;
  if (src_process(state.get(), &data) != 0) return {0, 0};
  return {static_cast<std::size_t>(data.input_frames_used), static_cast<std::size_t>(data.output_frames_gen)};
}

// Silence up to the first frame that comes out: from then on as much comes as goes in.
void RateConverter::Prime() {
  const StereoFrame silence{};
  StereoFrame first{};
  const double ratio = static_cast<double>(toRate) / fromRate;
  const auto most = static_cast<std::size_t>(3 * HalfLength * std::max(1.0, 1 / ratio)) + 3;
  for (std::size_t fed = 0; fed < most && Run({&silence, 1}, {&first, 1}, ratio).out == 0;) ++fed;
}

std::span<const StereoFrame> RateConverter::Convert(std::span<const StereoFrame> frames) {
  const double ratio = static_cast<double>(toRate) / fromRate;
  converted.resize(static_cast<std::size_t>(static_cast<double>(frames.size() + 2) * ratio) + 2);
  std::size_t made = 0;
  while (!frames.empty()) {
    const Moved moved = Run(frames, std::span(converted).subspan(made), ratio);
    if (moved.in + moved.out == 0) break;
    frames = frames.subspan(moved.in);
    made += moved.out;
  }
  return std::span(converted).first(made);
}

std::size_t RateConverter::Produce(std::span<StereoFrame> frames, double speed, const More& more) {
  const double ratio = static_cast<double>(toRate) / fromRate / speed;
  constexpr std::size_t chunkFrames = 256;
  std::array<StereoFrame, chunkFrames> chunk;
  std::size_t there = 0, made = 0;
  while (true) {
    // More than is needed would be held back.
    made += Run(std::span(chunk).first(there), frames.subspan(made), ratio).out;
    if (made == frames.size()) return made;
    const auto needed = static_cast<std::size_t>(static_cast<double>(frames.size() - made) / ratio);
    there = more(std::span(chunk).first(std::clamp<std::size_t>(needed, 1, chunkFrames)));
    if (there == 0) return made;
  }
}

double RateConverter::Delay() const { return HalfLength / std::min(fromRate, toRate); }

}  // namespace unit::sound
