// From one rate to another, two channels at a time.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "unit/card/Ring.h"

struct SRC_STATE_tag;

namespace unit::sound {

// What goes in comes out at once, but for what the filter holds back: Delay().
class RateConverter {
 public:
  // Both in Hz, and at most 256 times each other.
  RateConverter(int from, int to);

  // Begins anew, in silence.
  void SetRates(int from, int to);

  // All that can be said of the frames; the span is good until the next call.
  std::span<const StereoFrame> Convert(std::span<const StereoFrame> frames);

  // As many frames as there are in the span, of what more() gives: it fills a span and returns how many there
  // were. speed: how much faster than by the rates it is taken, 1 +- 0.01. Returns how many frames there are;
  // fewer only where more() gave none.
  using More = std::function<std::size_t(std::span<StereoFrame>)>;
  std::size_t Produce(std::span<StereoFrame> frames, double speed, const More& more);

  // Seconds.
  double Delay() const;

 private:
  struct Free {
    void operator()(SRC_STATE_tag* state) const;
  };
  struct Moved {
    std::size_t in, out;
  };
  Moved Run(std::span<const StereoFrame> in, std::span<StereoFrame> out, double ratio);
  void Prime();

  std::unique_ptr<SRC_STATE_tag, Free> state;
  int fromRate, toRate;
  std::vector<StereoFrame> converted;
};

}  // namespace unit::sound
