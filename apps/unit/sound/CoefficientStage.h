// A stage that works with a table of coefficients from the host.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "unit/sound/Convolver.h"

namespace unit::sound {

struct CoefficientWords {
  bool subtracts = true;  // a filter stage; an equalizer stage gives what its table passes, and no more
  std::uint16_t attenuation = 0;  // 32767 is 1
  std::uint16_t gain = 16;        // 16 is 1
};

class CoefficientStage {
 public:
  // mostTaps: what a table has more than this is left out.
  explicit CoefficientStage(std::size_t mostTaps);

  // table: 24-bit integers, 8388607 is 1, tap 0 first. With h the table, D half of its size and the words a
  // and g: y[n] = g (x[n - D] - a (h * x)[n]), or h * x for an equalizer. A change fades in as Convolver
  // says.
  void Configure(std::span<const std::int32_t> table, const CoefficientWords& words);
  void Reset();
  void Process(std::span<const float> in, std::span<float> out);
  // D, in samples.
  std::size_t Latency() const { return taps.size() / 2; }

 private:
  std::vector<float> taps;
  Convolver convolver;
};

}  // namespace unit::sound
